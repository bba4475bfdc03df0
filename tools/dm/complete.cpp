#include "complete.h"

#include "failure.h"
#include "path.h"

namespace cwmp {

Words completions(Session& session, const std::string& beginning) {
    const std::string object = beginning.substr(0, beginning.rfind('.') + 1);
    const Node* node = &session.model.root();
    std::vector<std::vector<int>> instances;
    if (!object.empty()) {
        const Target target = find_targets(session.model, object);
        node = target.node;
        if (node->child(kInstance)) instances = session.agent.resolve(target);
    }
    Words found;
    auto offer = [&](const std::string& name, bool parameter) {
        const std::string path = object + name + (parameter ? "" : ".");
        if (path.starts_with(beginning)) found.push_back(path);
    };
    for (const auto& child : node->children) {
        if (child->segment != kInstance) offer(child->segment, child->kind == Node::Kind::Parameter);
    }
    for (const auto& outer : instances) {
        for (int number : session.agent.instances(*node->child(kInstance), outer)) {
            offer(std::to_string(number), false);
        }
    }
    return found;
}

}  // namespace cwmp
