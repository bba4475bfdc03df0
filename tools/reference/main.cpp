#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <map>

#include "agent.h"
#include "agent_state.h"
#include "failure.h"
#include "findings.h"
#include "pages.h"
#include "path.h"

namespace cwmp {

namespace {

constexpr const char* kModel = "/usr/share/cwmp-datamodel/model";
constexpr const char* kLibrary = "/usr/lib/libcwmp-datamodel.so";

// Walks all there is in the router.
class Walk {
  public:
    Walk(Router& router, Agent& agent, Depth depth) : router_(router), agent_(agent), depth_(depth) {}

    void below(const Node& node, const std::vector<int>& numbers) {
        for (const auto& child : node.children) {
            if (child->exists_below(numbers)) visit(*child, numbers);
        }
    }

    std::vector<Finding> findings;

  private:
    void visit(const Node& node, const std::vector<int>& numbers) {
        if (node.kind == Node::Kind::Parameter) {
            findings.push_back(examined(node, numbers));
        } else if (node.kind == Node::Kind::Branch) {
            below(node, numbers);
        } else {
            table(node, numbers);
        }
    }

    // Both roots hold some objects: what the same handler does with the same numbers is looked at once.
    Finding examined(const Node& node, const std::vector<int>& numbers) {
        std::string call = node.handler;
        for (std::size_t i = 0; i < numbers.size(); ++i) {
            const std::size_t position = node.locate && i < node.locate->size() ? (*node.locate)[i] - 1 : i;
            if (!node.locate || i < node.locate->size()) call += " " + std::to_string(numbers[position]);
        }
        const auto [entry, is_new] = examined_.try_emplace(call, findings.size());
        if (is_new) return examine(router_, node, numbers, known_, depth_);
        Finding again = findings[entry->second];
        again.facts = {"as " + again.path};
        again.path = concrete_path(node.path, numbers);
        again.model = node.path;
        return again;
    }

    void table(const Node& node, const std::vector<int>& numbers) {
        if (node.writable && depth_ == Depth::Full) findings.push_back(examine_object(router_, node, numbers));
        known_.push_back(agent_.instances(node, numbers));
        const std::vector<int> instances = known_.back();
        for (int number : instances) {
            std::vector<int> inner = numbers;
            inner.push_back(number);
            below(node, inner);
        }
        known_.pop_back();
    }

    Router& router_;
    Agent& agent_;
    Depth depth_;
    std::vector<std::vector<int>> known_;
    std::map<std::string, std::size_t> examined_;
};

// The library fills tables of its own once, so each look at a router has a process of its own.
void in_a_process(const std::function<void()>& act) {
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        try {
            act();
            std::fflush(nullptr);
            _exit(0);
        } catch (const Failure& failure) {
            std::fprintf(stderr, "reference: %s: %s\n", failure.subject.c_str(), failure.message.c_str());
        } catch (const std::exception& error) {
            std::fprintf(stderr, "reference: %s\n", error.what());
        }
        _exit(1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (status != 0)
        throw Failure{"a look at the router", kNoFault, Exit::Unusable, "has failed: " + std::to_string(status)};
}

void look(const std::string& name, Depth depth, const std::string& directory) {
    const Model model(kModel);
    const Library library(kLibrary);
    const auto state = agent_state(std::nullopt);
    Agent agent(library, state ? &*state : nullptr);
    Router router(library, state ? &*state : nullptr);
    Walk walk(router, agent, depth);
    walk.below(model.root(), {});
    save({name, std::move(walk.findings)}, directory + "/" + name + ".findings");
}

// What a GET answers in a router that has and tells nothing; the instances are those of another world.
void answer_in_nothing(Router& router, const Model& model, Finding& finding) {
    finding.facts.clear();
    if (finding.path.ends_with('.')) return;
    const Target target = find_target(model, finding.path);
    finding.value = examine(router, *target.node, target.numbers, {}, Depth::Glance).value;
}

void look_at_nothing(const std::string& instances, const std::string& directory) {
    const Model model(kModel);
    const Library library(kLibrary);
    World world = load_world(directory + "/" + instances + ".findings");
    const Files files = read_files();
    Files emptied = files;
    for (auto& [path, text] : emptied) text.clear();
    restore_files(emptied, files);
    watch::make_up_answers([](const std::string&) { return ""; });
    watch::silence_unknown(true);
    Router router(library, nullptr);
    for (Finding& finding : world.findings) answer_in_nothing(router, model, finding);
    restore_files(files);
    save({"nothing", std::move(world.findings)}, directory + "/nothing.findings");
}

void prepare() {
    // The library prints traces there.
    if (!std::freopen("/dev/null", "w", stdout)) throw Failure{"/dev/null", kNoFault, Exit::Unusable, "not there"};
    keep_files_in_memory();
}

// reference glance DIRECTORY WORLD: inside the router root of that world.
void glance(const std::string& directory, const std::string& world) {
    prepare();
    in_a_process([&] { look(world, Depth::Brief, directory); });
}

// reference try DIRECTORY WORLD...: inside a router root; the first world is looked at in full.
void try_worlds(const std::string& directory, const std::vector<std::string>& worlds) {
    prepare();
    const Files files = read_files();
    for (const std::string& world : worlds) {
        if (std::system(("/usr/lib/router/wan-type " + world).c_str()) != 0) {
            throw Failure{world, kNoFault, Exit::Unusable, "no such world"};
        }
        const bool first = &world == &worlds.front();
        in_a_process([&] { look(world, first ? Depth::Full : Depth::Brief, directory); });
        if (first) in_a_process([&] { look_at_nothing(world, directory); });
        restore_files(files);
    }
}

}  // namespace

}  // namespace cwmp

int main(int argc, char** argv) {
    const std::vector<std::string> arguments(argv + 1, argv + argc);
    try {
        if (arguments.size() >= 3 && arguments[0] == "try") {
            cwmp::try_worlds(arguments[1], {arguments.begin() + 2, arguments.end()});
        } else if (arguments.size() == 3 && arguments[0] == "glance") {
            cwmp::glance(arguments[1], arguments[2]);
        } else if (arguments.size() >= 4 && arguments[0] == "write") {
            cwmp::write_pages(arguments[1], arguments[2], {arguments.begin() + 3, arguments.end()});
        } else {
            std::fprintf(stderr,
                         "usage: reference try DIRECTORY WORLD...\n"
                         "       reference glance DIRECTORY WORLD\n"
                         "       reference write MODEL DOCS FINDINGS...\n");
            return 2;
        }
    } catch (const cwmp::Failure& failure) {
        std::fprintf(stderr, "reference: %s: %s\n", failure.subject.c_str(), failure.message.c_str());
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "reference: %s\n", error.what());
        return 1;
    }
    return 0;
}
