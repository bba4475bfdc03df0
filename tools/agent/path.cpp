#include "path.h"

#include "failure.h"
#include "text.h"

namespace cwmp {

namespace {

std::vector<std::string> segments_of(const std::string& path) {
    auto segments = split(path, '.');
    if (segments.back().empty()) segments.pop_back();
    return segments;
}

std::vector<std::string> names_below(const Node& node) {
    std::vector<std::string> names;
    for (const auto& child : node.children) names.push_back(child->segment);
    return names;
}

bool is_instance(std::string_view segment) {
    return segment == kInstance || segment == "*" || decimal<int>(segment).value_or(0) > 0;
}

// The path of the model that is spelt most like this one, empty when none is near.
std::string nearest_path(const Model& model, const std::string& path) {
    const Node* node = &model.root();
    std::string near;
    for (const std::string& segment : segments_of(path)) {
        if (const Node* table = node->child(kInstance)) {
            node = table;
            near += (is_instance(segment) ? segment : "*") + '.';
            if (is_instance(segment)) continue;
        }
        const auto name = node->child(segment) ? segment : nearest(segment, names_below(*node));
        if (!name) return "";
        node = node->child(*name);
        near += *name + '.';
    }
    if (node->kind == Node::Kind::Parameter) near.pop_back();
    return near;
}

// The path that may be meant, empty for none.
std::string meant(const Model& model, const std::string& path) {
    for (const char* root : {"", "Device.", "InternetGatewayDevice."}) {
        std::string near = path.empty() ? "" : nearest_path(model, root + path);
        if (!near.empty() && near != path) return near;
    }
    return "";
}

[[noreturn]] void refuse(const Model& model, const std::string& path, Exit exit, const std::string& message) {
    const std::string near = meant(model, path);
    throw Failure{path, kInvalidName, exit, near.empty() ? message : message + "; did you mean " + near + "?"};
}

std::vector<std::string> checked_segments(const Model& model, const std::string& path) {
    auto segments = segments_of(path);
    auto malformed = [&](const char* message) { refuse(model, path, Exit::Malformed, message); };
    if (segments.empty()) malformed("the path is empty");
    for (const std::string& segment : segments) {
        if (segment.empty()) malformed("the path has an empty segment");
    }
    if (!is_root_object(segments.front())) malformed("the path has no root object");
    return segments;
}

enum class Takes { Numbers, Each, Placeholders };

Target find(const Model& model, const std::string& path, Takes takes) {
    Target target{path, &model.root(), path.ends_with('.'), {}, {}};
    for (const std::string& segment : checked_segments(model, path)) {
        if (const Node* table = target.node->child(kInstance)) {
            const auto number = decimal<int>(segment);
            const bool each =
                (takes != Takes::Numbers && segment == "*") || (takes == Takes::Placeholders && segment == kInstance);
            if (!each && (!number || *number < 1 || segment.front() == '0')) {
                refuse(model, path, Exit::Malformed, "'" + segment + "' is not an instance number");
            }
            target.numbers.push_back(each ? Target::kEach : *number);
            target.tables.push_back(table);
            target.node = table;
            continue;
        }
        target.node = target.node->child(segment);
        if (!target.node) refuse(model, path, Exit::Missing, "unknown path");
    }
    const bool parameter = target.node->kind == Node::Kind::Parameter;
    if (parameter && target.partial) refuse(model, path, Exit::Missing, "a parameter's path does not end in '.'");
    if (!parameter && !target.partial) refuse(model, path, Exit::Missing, "an object's path ends in '.'");
    return target;
}

}  // namespace

Target find_target(const Model& model, const std::string& path) { return find(model, path, Takes::Numbers); }

Target find_targets(const Model& model, const std::string& path) { return find(model, path, Takes::Each); }

const Node& find_name(const Model& model, const std::string& path) {
    return *find(model, path, Takes::Placeholders).node;
}

}  // namespace cwmp
