#include "path.h"

#include "failure.h"
#include "text.h"

namespace cwmp {

namespace {

std::vector<std::string> checked_segments(const std::string& path) {
    auto segments = split(path, '.');
    if (segments.back().empty()) segments.pop_back();
    auto malformed = [&](const char* message) {
        throw Failure{path, kInvalidName, Exit::Malformed, message};
    };
    if (segments.empty()) malformed("the path is empty");
    for (const std::string& segment : segments) {
        if (segment.empty()) malformed("the path has an empty segment");
    }
    if (!is_root_object(segments.front())) malformed("the path has no root object");
    return segments;
}

int instance_number(const std::string& segment, const std::string& path) {
    const auto number = decimal<int>(segment);
    if (number && *number > 0 && segment.front() != '0') return *number;
    throw Failure{path, kInvalidName, Exit::Malformed, "'" + segment + "' is not an instance number"};
}

enum class Placeholders { Refused, Taken };

Target find(const Model& model, const std::string& path, Placeholders placeholders) {
    Target target{path, &model.root(), path.ends_with('.'), {}, {}};
    for (const std::string& segment : checked_segments(path)) {
        if (const Node* table = target.node->child(kInstance)) {
            const bool placeholder = placeholders == Placeholders::Taken && segment == kInstance;
            if (!placeholder) target.numbers.push_back(instance_number(segment, path));
            target.tables.push_back(table);
            target.node = table;
            continue;
        }
        target.node = target.node->child(segment);
        if (!target.node) throw Failure{path, kInvalidName, Exit::Missing, "unknown path"};
    }
    const bool parameter = target.node->kind == Node::Kind::Parameter;
    if (parameter && target.partial) {
        throw Failure{path, kInvalidName, Exit::Missing, "a parameter's path does not end in '.'"};
    }
    if (!parameter && !target.partial) {
        throw Failure{path, kInvalidName, Exit::Missing, "an object's path ends in '.'"};
    }
    return target;
}

}  // namespace

Target find_target(const Model& model, const std::string& path) {
    return find(model, path, Placeholders::Refused);
}

const Node& find_name(const Model& model, const std::string& path) {
    return *find(model, path, Placeholders::Taken).node;
}

}  // namespace cwmp
