#include "commands.h"

#include "failure.h"
#include "path.h"
#include "transaction.h"

namespace cwmp {

namespace {

template <typename Action>
void note_failure(Report& report, Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        report.errors.push_back(failure);
    }
}

void walk(Session& session, const Node& node, const std::vector<int>& numbers);

void visit(Session& session, const Node& node, const std::vector<int>& numbers) {
    switch (node.kind) {
        case Node::Kind::Parameter:
            session.report.parameters.push_back({concrete_path(node.path, numbers),
                                                 session.agent.get(node, numbers),
                                                 std::string(node.type.wire_name())});
            break;
        case Node::Kind::Table:
            for (int number : session.agent.instances(node, numbers)) {
                std::vector<int> inner = numbers;
                inner.push_back(number);
                walk(session, node, inner);
            }
            break;
        case Node::Kind::Branch:
            walk(session, node, numbers);
            break;
    }
}

// All below a node whose own instance is chosen; goes on after a failure.
void walk(Session& session, const Node& node, const std::vector<int>& numbers) {
    for (const auto& child : node.children) {
        if (!child->exists_below(numbers)) continue;
        note_failure(session.report, [&] { visit(session, *child, numbers); });
    }
}

// The table that a path such as Device.NAT.PortMapping. names.
const Node& table_of(const Target& target) {
    const Node* table = target.partial ? target.node->child(kInstance) : nullptr;
    if (table) return *table;
    throw Failure{target.path, kInvalidName, Exit::Missing, "the path names no multi-instance object"};
}

void require_changeable(const Node& table, const std::string& path) {
    if (table.writable) return;
    throw Failure{path, kInvalidName, Exit::Refused, "instances of this object are fixed"};
}

void add_names(const Node& node, std::vector<Entry>& names) {
    if (node.kind != Node::Kind::Branch) names.push_back(node);
    for (const auto& child : node.children) add_names(*child, names);
}

}  // namespace

void get_values(Session& session, const std::vector<std::string>& paths) {
    for (const std::string& path : paths) {
        note_failure(session.report, [&] {
            const Target target = find_target(session.model, path);
            session.agent.require_instances(target);
            if (target.partial) {
                walk(session, *target.node, target.numbers);
            } else {
                visit(session, *target.node, target.numbers);
            }
        });
    }
}

void set_values(Session& session, const std::vector<std::string>& assignments) {
    Transaction transaction(session.agent, session.model, session.report);
    for (const std::string& assignment : assignments) {
        note_failure(session.report, [&] { transaction.add(assignment); });
    }
    if (session.report.errors.empty()) transaction.run();
}

void add_instance(Session& session, const std::string& object) {
    note_failure(session.report, [&] {
        const Target target = find_target(session.model, object);
        const Node& table = table_of(target);
        require_changeable(table, object);
        session.agent.require_instances(target);
        unsigned flags = 0;
        const int number = session.agent.add(table, target.numbers, flags);
        session.report.instances = {object + std::to_string(number) + '.'};
        session.report.apply_flags = flags;
    });
}

void delete_instance(Session& session, const std::string& instance) {
    note_failure(session.report, [&] {
        Target target = find_target(session.model, instance);
        if (target.node->kind != Node::Kind::Table) {
            throw Failure{instance, kInvalidName, Exit::Missing, "the path names no instance"};
        }
        require_changeable(*target.node, instance);
        session.agent.require_instances(target);
        const int number = target.numbers.back();
        target.numbers.pop_back();
        unsigned flags = 0;
        session.agent.remove(*target.node, target.numbers, number, flags);
        session.report.instances = {instance};
        session.report.apply_flags = flags;
    });
}

void list_instances(Session& session, const std::string& object) {
    note_failure(session.report, [&] {
        const Target target = find_target(session.model, object);
        const Node& table = table_of(target);
        session.agent.require_instances(target);
        session.report.instances.emplace();
        for (int number : session.agent.instances(table, target.numbers)) {
            session.report.instances->push_back(object + std::to_string(number) + '.');
        }
    });
}

void list_names(const Model& model, const std::string& path, Report& report) {
    note_failure(report, [&] {
        const Node& node = path.empty() ? model.root() : find_name(model, path);
        add_names(node, report.names.emplace());
    });
}

}  // namespace cwmp
