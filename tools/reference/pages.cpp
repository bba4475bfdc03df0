#include "pages.h"

#include <algorithm>
#include <fstream>
#include <map>

#include "failure.h"
#include "findings.h"
#include "model.h"

namespace cwmp {

namespace {

constexpr std::size_t kMostValues = 3;

class Page {
  public:
    Page(const std::filesystem::path& file) : file_(file), out_(file, std::ios::binary) {}
    Page& operator<<(const std::string& text) {
        out_ << text;
        return *this;
    }
    void finish() {
        out_.close();
        if (!out_) throw Failure{file_.string(), kNoFault, Exit::NotAllowed, "cannot be written"};
    }

  private:
    std::filesystem::path file_;
    std::ofstream out_;
};

std::string cell(std::string text) {
    for (std::size_t at = 0; (at = text.find_first_of("|<", at)) != std::string::npos; at += 2) text.insert(at, "\\");
    return text;
}

std::string code(const std::string& text) { return text.empty() ? "" : "`" + cell(text) + "`"; }

// Each text once, in order, cut after a few.
std::string several(const std::vector<std::string>& texts) {
    std::vector<std::string> each;
    for (const std::string& text : texts) {
        if (std::find(each.begin(), each.end(), text) == each.end()) each.push_back(text);
    }
    if (each.size() == 1) return each[0];
    std::string result;
    for (std::size_t i = 0; i < std::min(each.size(), kMostValues); ++i) {
        result += (i ? ", " : "") + (each[i].empty() ? "nothing" : each[i]);
    }
    return result + (each.size() > kMostValues ? ", …" : "");
}

using ByModel = std::map<std::string, std::vector<const Finding*>>;

ByModel by_model(const World& world) {
    ByModel groups;
    for (const Finding& finding : world.findings) groups[finding.model].push_back(&finding);
    return groups;
}

std::vector<std::string> column(const std::vector<const Finding*>& findings, std::string Finding::*field) {
    std::vector<std::string> texts;
    for (const Finding* finding : findings) texts.push_back(finding->*field);
    return texts;
}

std::string marks(const Entry& entry) {
    std::string text;
    auto add = [&](const std::string& mark) { text += (text.empty() ? "" : ", ") + mark; };
    if (entry.secret) add("secret");
    if (entry.inform) add("inform");
    if (entry.reboot) add("reboot");
    if (!entry.notify.empty()) add(entry.notify);
    return text;
}

// "Device.WiFi." of "Device.WiFi.Radio.{i}.Channel".
std::string family_of(const std::string& path) {
    const std::size_t dot = path.find('.');
    const std::size_t end = path.find('.', dot + 1);
    return end == std::string::npos ? path.substr(0, dot + 1) : path.substr(0, end + 1);
}

constexpr const char* kParametersHead =
    "# Supported parameters\n\n"
    "Made by running the library in the demo router: `make parameters` renews this page, and a test compares "
    "it.\n"
    "Change the model or the library, not this file.\n\n"
    "- Access: R read, W read and write; of an object AD when instances can be added and deleted, - when "
    "they are "
    "fixed.\n"
    "- Type: what the parameter answers and takes ([model.md](model.md) tells how it is written), then what "
    "an "
    "agent must "
    "know of it.\n"
    "- Value: in the demo router. Unset: in a router without store, files and answers, where that is "
    "another.\n"
    "- SET: where a valid value went (`package.section.option`; a file; of a group what the check script "
    "stored), the "
    "group of settings, and the services to reload.\n"
    "- Others: whether the library itself refuses values that are not of the type. The agent must refuse "
    "them "
    "anyway.\n\n"
    "Instances that differ are shown one after the other. What each value does, what is read and run, and "
    "what other "
    "contents\nof the store lead to is in [reference.txt](reference/reference.txt); other kinds of WAN in "
    "[parameters-elsewhere.md](parameters-elsewhere.md).\n";

void write_parameters(const std::filesystem::path& file, const std::vector<const Node*>& entries, const World& world,
                      const World& nothing) {
    Page page(file);
    page << kParametersHead;
    const ByModel here = by_model(world), unset = by_model(nothing);
    std::string family;
    for (const Node* entry : entries) {
        if (family_of(entry->path) != family) {
            family = family_of(entry->path);
            page << "\n## " + family +
                        "\n\n| Path | Access | Type | Value | Unset | SET | Others "
                        "|\n|---|---|---|---|---|---|---|\n";
        }
        page << "| `" + entry->path + "` | " + std::string(entry->access()) + " | ";
        const auto found = here.find(entry->path);
        if (entry->kind == Entry::Kind::Table) {
            page << "| | | | |\n";
            continue;
        }
        const std::string notes = marks(*entry);
        page << code(entry->type.text) + (notes.empty() ? "" : " " + notes) + " | ";
        if (found == here.end()) {
            page << "no instance | | | |\n";
            continue;
        }
        const auto& findings = found->second;
        const std::string value = several(column(findings, &Finding::value));
        const std::string empty = several(column(unset.at(entry->path), &Finding::value));
        page << code(value) + " | " + (empty == value ? "" : code(empty)) + " | ";
        if (entry->writable) {
            const std::string stored = several(column(findings, &Finding::stored));
            const std::string group = several(column(findings, &Finding::group));
            const std::string services = several(column(findings, &Finding::services));
            page << (group.empty() ? "" : "group " + group + ": ") + (stored.empty() ? "nothing" : code(stored)) +
                        (services.empty() ? "" : "; " + services);
            page << " | " + findings.front()->others + " |\n";
        } else {
            page << "| |\n";
        }
    }
    page.finish();
}

void write_facts(const std::filesystem::path& file, const World& world, const World& nothing) {
    Page page(file);
    page << "# What the library does in the demo router, one path after the other. Made by `make "
            "parameters`.\n";
    for (std::size_t i = 0; i < world.findings.size(); ++i) {
        const Finding& finding = world.findings[i];
        page << finding.path + "\n";
        for (const std::string& fact : finding.facts) page << "  " + fact + "\n";
        if (!finding.path.ends_with('.')) page << "  GET unset " + nothing.findings[i].value + "\n";
    }
    page.finish();
}

// The row of a parameter that differs from what it is in the first world; nothing where it is the same.
std::string row_elsewhere(const Finding& finding, const Finding* before) {
    const bool same_value = before && before->value == finding.value;
    const bool same_set = before && before->stored == finding.stored && before->services == finding.services &&
                          before->group == finding.group;
    if (same_value && same_set) return {};
    std::string set = finding.stored.empty() ? "nothing" : code(finding.stored);
    if (!finding.services.empty()) set += "; " + finding.services;
    return "| `" + finding.path + "` | " + (same_value ? "same" : code(finding.value)) + " | " + (same_set ? "" : set) +
           " |\n";
}

void write_elsewhere(const std::filesystem::path& file, const World& first, const std::vector<World>& others) {
    Page page(file);
    page << "# Parameters in other routers\n\nDifferences from [parameters.md](parameters.md), which shows "
            "the demo "
            "router with a WAN of the kind `" +
                first.name + "`. Made by `make parameters`.\n";
    std::map<std::string, const Finding*> known;
    for (const Finding& finding : first.findings) known[finding.path] = &finding;
    for (const World& world : others) {
        page << "\n## " + world.name + "\n\n| Path | Value | SET of a valid value |\n|---|---|---|\n";
        std::map<std::string, bool> here;
        for (const Finding& finding : world.findings) {
            here[finding.path] = true;
            const auto entry = known.find(finding.path);
            page << row_elsewhere(finding, entry == known.end() ? nullptr : entry->second);
        }
        for (const Finding& finding : first.findings) {
            if (!here.contains(finding.path) && !finding.path.ends_with('.'))
                page << "| `" + finding.path + "` | not there | |\n";
        }
    }
    page.finish();
}

std::string published(const Difference& difference) {
    if (difference.what == "R") return "read-only there";
    if (difference.what == "W") return "writable there";
    if (difference.what == "filled") return "never empty there";
    if (difference.what == "path") return "not there";
    return code(difference.what) + " there";
}

constexpr const char* kDeviationsHead =
    "# Where the library leaves the published data models\n\n"
    "Made from the model and by running the library: `make parameters`. The reason is *kept* (this is how "
    "the device "
    "has\nalways answered, and others rely on it), *unset* (empty while there is no value yet) or *vendor* "
    "(an "
    "addition of its own).\n";

void write_deviations(const std::filesystem::path& file, const std::vector<const Node*>& entries,
                      const std::vector<const World*>& worlds) {
    Page page(file);
    page << kDeviationsHead << "\n| Path | Here | Published | Reason |\n|---|---|---|---|\n";
    for (const Node* entry : entries) {
        const bool vendor = entry->kind == Entry::Kind::Parameter && entry->path.find("X_QM_") != std::string::npos;
        std::vector<Difference> differs = entry->differs;
        if (vendor) differs.push_back({"vendor", "path"});
        for (const Difference& difference : differs) {
            const bool access = difference.what == "R" || difference.what == "W";
            page << "| `" + entry->path + "` | " + (access ? std::string(entry->access()) : code(entry->type.text)) +
                        " | " + published(difference) + " | " + difference.reason + " |\n";
        }
    }
    page << "\n## Answers outside their type\n\n";
    bool none = true;
    for (const World* world : worlds) {
        for (const Finding& finding : world->findings) {
            if (finding.misfit.empty()) continue;
            none = false;
            page << "- " + world->name + ": `" + finding.path + "`: " + finding.misfit + "\n";
        }
    }
    if (none) page << "None, with any kind of WAN and in the extender.\n";
    page << "\n## Writing back what a GET shows\n\nIt changes nothing, and is done, but for these. Secrets "
            "are left "
            "out: they are never shown.\n\n| Router | Path | What happens |\n|---|---|---|\n";
    for (const World* world : worlds) {
        for (const Finding& finding : world->findings) {
            if (!finding.back.empty())
                page << "| " + world->name + " | `" + finding.path + "` | " + code(finding.back) + " |\n";
        }
    }
    page.finish();
}

// Throws when the model does not say what was seen.
void compare_with_model(const std::vector<const Node*>& entries, const World& world) {
    bool same = true;
    const ByModel found = by_model(world);
    for (const Node* entry : entries) {
        const auto findings = found.find(entry->path);
        if (entry->kind != Entry::Kind::Parameter || findings == found.end()) continue;
        std::vector<std::string> seen;
        for (const Finding* finding : findings->second) {
            if (!finding->group.empty() && std::find(seen.begin(), seen.end(), finding->group) == seen.end()) {
                seen.push_back(finding->group);
            }
        }
        std::string group;
        for (const std::string& one : seen) group += (group.empty() ? "" : ",") + one;
        if (group != entry->group) {
            same = false;
            std::fprintf(stderr, "reference: %s stages the group '%s', the model says '%s'\n", entry->path.c_str(),
                         group.c_str(), entry->group.c_str());
        }
    }
    if (!same) throw Failure{"the model", kNoFault, Exit::Unusable, "does not say what was seen"};
}

}  // namespace

void write_pages(const std::filesystem::path& model_directory, const std::filesystem::path& directory,
                 const std::vector<std::string>& files) {
    const Model model(model_directory);
    std::vector<World> worlds;
    for (const std::string& file : files) worlds.push_back(load_world(file));
    const World first = worlds.at(0), nothing = worlds.at(1);
    worlds.erase(worlds.begin(), worlds.begin() + 2);
    const auto entries = model.root().lines();
    std::vector<const World*> all = {&first};
    for (const World& world : worlds) all.push_back(&world);
    compare_with_model(entries, first);
    std::filesystem::create_directories(directory / "reference");
    write_parameters(directory / "parameters.md", entries, first, nothing);
    write_elsewhere(directory / "parameters-elsewhere.md", first, worlds);
    write_deviations(directory / "deviations.md", entries, all);
    write_facts(directory / "reference" / "reference.txt", first, nothing);
}

}  // namespace cwmp
