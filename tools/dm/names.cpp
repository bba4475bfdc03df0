#include <algorithm>

#include "commands.h"
#include "path.h"
#include "text.h"

namespace cwmp {

namespace {

constexpr int kAllLevels = -1;

void add_names(const Node& node, int levels, std::vector<Entry>& names) {
    // Where the levels end, the objects that only group others are told too.
    const bool last = levels == 0;
    if (node.kind != Node::Kind::Branch || last) names.push_back(node);
    if (last) return;
    for (const auto& child : node.children) add_names(*child, levels - 1, names);
}

}  // namespace

void list_names(const Model& model, const Words& paths, int levels, Report& report) {
    auto& names = report.names.emplace();
    if (levels == 0) levels = kAllLevels;
    auto add = [&](const Node& node) {
        // Of a path that ends in "." the next level is wanted, not the object again.
        if (levels == kAllLevels || node.kind == Node::Kind::Parameter) return add_names(node, levels, names);
        for (const auto& child : node.children) add_names(*child, levels - 1, names);
    };
    if (paths.empty()) add(model.root());
    for (const std::string& path : paths) {
        note_failure(report, [&] { add(find_name(model, path)); });
    }
}

void find_names(const Model& model, const Words& parts, Report& report) {
    list_names(model, {}, 0, report);
    std::erase_if(*report.names, [&](const Entry& name) {
        return std::any_of(parts.begin(), parts.end(),
                           [&](const std::string& part) { return !contains(name.path, part); });
    });
}

}  // namespace cwmp
