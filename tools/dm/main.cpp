#include <CLI/CLI.hpp>

#include <cstdio>
#include <exception>
#include <optional>
#include <string>
#include <vector>

#include "agent_state.h"
#include "commands.h"
#include "diagnose.h"
#include "library.h"
#include "router_root.h"
#include "standard_output.h"

namespace cwmp {

namespace {

constexpr const char* kExitCodes =
    "Exit codes:\n"
    "  0  all done\n"
    "  1  a handler refused: a fault was answered\n"
    "  2  wrong command line or malformed path\n"
    "  3  unknown path or missing instance\n"
    "  4  the library or the model cannot be used\n"
    "  5  not allowed: the root cannot be entered or the output cannot be written\n"
    "Of several failures the highest code counts.";

struct Options {
    bool json = false;
    std::string library = "/usr/lib/libcwmp-datamodel.so";
    std::string model = "/usr/share/cwmp-datamodel/model";
    std::string root;
    std::optional<std::string> agent;
    std::optional<int> log_level;
    std::vector<std::string> paths;
    std::vector<std::string> assignments;
    std::string object;
    std::string below;
    const Test* test = nullptr;
    int seconds = 120;
};

using Command = void (*)(Session&, const Options&);

class CommandLine {
  public:
    CommandLine() {
        app_.require_subcommand(1);
        app_.fallthrough();
        app_.footer(kExitCodes);
        app_.set_version_flag("--version", "dm " DM_VERSION);
        app_.add_flag("--json", options.json, "Print JSON");
        app_.add_option("--library", options.library, "The data-model library")
            ->capture_default_str()
            ->take_last();
        app_.add_option("--model", options.model, "The directory of the model files")
            ->capture_default_str()
            ->take_last();
        app_.add_option("--root", options.root, "Enter this router root first; other paths are inside it")
            ->take_last();
        app_.add_option("--agent", options.agent, "The file that describes the agent itself")->take_last();
        app_.add_option("--log", options.log_level, "The library's log level: 3 error, 6 progress, 7 debug")
            ->take_last();
        add_commands();
    }

    // The exit code when there is nothing to run: after help, version or a mistake.
    std::optional<int> parse(int argc, char** argv) {
        try {
            app_.parse(argc, argv);
        } catch (const CLI::ParseError& error) {
            const bool mistake = app_.exit(error) != 0;
            return static_cast<int>(mistake ? Exit::Malformed : Exit::Done);
        }
        return std::nullopt;
    }

    Options options;
    Command command = nullptr;  // nullptr: names, which needs no library

  private:
    CLI::App* add(const char* name, const char* description, Command chosen) {
        CLI::App* subcommand = app_.add_subcommand(name, description);
        subcommand->callback([this, chosen] { command = chosen; });
        return subcommand;
    }

    void add_commands() {
        add("get", "Read parameters, or all below a path that ends in '.'",
            [](Session& session, const Options& o) { get_values(session, o.paths); })
            ->add_option("PATH", options.paths)
            ->required();
        add("set", "Set parameters in one transaction",
            [](Session& session, const Options& o) { set_values(session, o.assignments); })
            ->add_option("PATH=VALUE", options.assignments)
            ->required();
        add("add", "Add an instance: Device.NAT.PortMapping.",
            [](Session& session, const Options& o) { add_instance(session, o.object); })
            ->add_option("OBJECT", options.object)
            ->required();
        add("del", "Delete an instance: Device.NAT.PortMapping.3.",
            [](Session& session, const Options& o) { delete_instance(session, o.object); })
            ->add_option("OBJECT", options.object)
            ->required();
        add("list", "List the instances of an object",
            [](Session& session, const Options& o) { list_instances(session, o.object); })
            ->add_option("OBJECT", options.object)
            ->required();
        add_diagnostics();
        add("names", "List the supported names, all or below PATH", nullptr)
            ->add_option("PATH", options.below);
    }

    void add_wait(CLI::App* subcommand) {
        subcommand->add_option("--wait", options.seconds, "Seconds to wait for the end of the test")
            ->check(CLI::Range(1, 86400))
            ->capture_default_str();
    }

    void add_diagnostics() {
        CLI::App* diagnose_command = add(
            "diagnose", "Run or request a diagnostic test",
            [](Session& session, const Options& o) { diagnose(session, *o.test, o.assignments, o.seconds); });
        diagnose_command->require_subcommand(1)->fallthrough();
        for (const Test& test : tests()) {
            CLI::App* subcommand = diagnose_command->add_subcommand(test.name, test.help);
            subcommand->callback([this, &test] { options.test = &test; });
            if (test.results) add_wait(subcommand);
            for (const Test::Setting& setting : test.settings) {
                const std::string path = std::string(test.object) + setting.parameter;
                CLI::Option* option = subcommand->add_option_function<std::string>(
                    setting.option,
                    [this, path](const std::string& value) {
                        options.assignments.push_back(path + '=' + value);
                    },
                    setting.help);
                if (setting.option[0] != '-') option->required();
            }
        }
        add_wait(add("wait-diagnostics", "Wait for the end of a test that was requested elsewhere",
                     [](Session& session, const Options& o) { wait_diagnostics(session, o.seconds); }));
    }

    CLI::App app_{"Plays the TR-069 agent: calls the parameter handlers of the data-model library.", "dm"};
};

void run(const CommandLine& line, Report& report) {
    const Options& options = line.options;
    try {
        if (!options.root.empty()) enter_root(options.root);
        const Model model(options.model);
        if (!line.command) return list_names(model, options.below, report);
        const Library library(options.library);
        const auto state = agent_state(options.agent);
        Agent agent(library, state ? &*state : nullptr);
        if (options.log_level) agent.set_log_level(*options.log_level);
        Session session{library, model, agent, report};
        line.command(session, options);
    } catch (const Failure& failure) {
        report.errors.push_back(failure);
    }
}

int finish(Report& report, bool json, FILE* out) {
    if (json) {
        print_json(report, out);
    } else {
        print_text(report, out);
    }
    if (std::fflush(out) != 0) {
        report.errors.push_back({"standard output", kNoFault, Exit::NotAllowed, "cannot be written"});
    }
    print_errors(report, stderr);
    return static_cast<int>(report.exit());
}

}  // namespace

}  // namespace cwmp

int main(int argc, char** argv) {
    try {
        cwmp::CommandLine line;
        if (const auto code = line.parse(argc, argv)) return *code;
        if (line.options.test) cwmp::hide_arguments(argc, argv);
        const cwmp::File out = cwmp::take_standard_output();
        cwmp::Report report;
        cwmp::run(line, report);
        return cwmp::finish(report, line.options.json, out.get());
    } catch (const cwmp::Failure& failure) {
        std::fprintf(stderr, "dm: %s: %s\n", failure.subject.c_str(), failure.message.c_str());
        return static_cast<int>(failure.exit);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dm: %s\n", error.what());
        return static_cast<int>(cwmp::Exit::Unusable);
    }
}
