#include "commands.h"

#include <optional>

#include "change.h"
#include "failure.h"
#include "path.h"
#include "transaction.h"

namespace cwmp {

namespace {

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
        if (session.wanted && child->kind == Node::Kind::Parameter && !session.wanted(*child)) continue;
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
    throw Failure{path, kInvalidName, Exit::Fixed, "instances of this object are fixed"};
}

void note_apply_flags(Report& report, unsigned flags) {
    report.apply_flags = report.apply_flags.value_or(0) | flags;
}

// The object's table and its number, where the instance can be deleted.
struct Instance {
    const Node& table;
    std::vector<int> outer;
    int number;
};

Instance deletable(Session& session, const std::string& path) {
    Target target = find_target(session.model, path);
    if (target.node->kind != Node::Kind::Table) {
        throw Failure{path, kInvalidName, Exit::Missing, "the path names no instance"};
    }
    require_changeable(*target.node, path);
    session.agent.resolve(target);
    const int number = target.numbers.back();
    target.numbers.pop_back();
    return {*target.node, target.numbers, number};
}

// Looks at NAME=VALUE of an instance that is still to be added; its faults name the path as it was typed.
void require_assignable(const Model& model, const std::string& object, const std::string& text) {
    try {
        assignment(model, object + "1." + text);
    } catch (Failure& failure) {
        failure.subject = object + ' ' + text.substr(0, text.find('='));
        throw;
    }
}

// Runs the action unless something was wrong before; a failure undoes all of it.
template <typename Action>
void change(Session& session, Action action) {
    Report& report = session.report;
    if (!report.errors.empty()) return;
    note_failure(report, [&] {
        Change whole(session.library, report);
        note_failure(report, [&] { action(whole); });
        if (report.errors.empty() && !session.dry_run) return whole.keep();
        whole.undo();
        report.instances.reset();
    });
}

}  // namespace

void get_values(Session& session, const Words& paths) {
    std::optional<BulkRead> bulk;
    if (!session.live) bulk.emplace(session.library);
    for (const std::string& path : paths) {
        note_failure(session.report, [&] {
            const Target target = find_targets(session.model, path);
            for (const std::vector<int>& numbers : session.agent.resolve(target)) {
                note_failure(session.report, [&] {
                    if (target.partial) {
                        walk(session, *target.node, numbers);
                    } else {
                        visit(session, *target.node, numbers);
                    }
                });
            }
        });
    }
}

void set_values(Session& session, const Words& assignments) {
    Transaction transaction(session.agent, session.model, session.report);
    for (const std::string& assignment : assignments) {
        note_failure(session.report, [&] { transaction.add(assignment); });
    }
    change(session, [&](Change& whole) { transaction.run(whole, session.dry_run); });
}

void add_instance(Session& session, const std::string& object, const Words& assignments) {
    note_failure(session.report, [&] {
        const Target target = find_target(session.model, object);
        const Node& table = table_of(target);
        require_changeable(table, object);
        session.agent.resolve(target);
        for (const std::string& text : assignments) require_assignable(session.model, object, text);
        change(session, [&](Change& whole) {
            unsigned flags = 0;
            const int number = session.agent.add(table, target.numbers, flags);
            const std::string added = object + std::to_string(number) + '.';
            session.report.instances = {added};
            note_apply_flags(session.report, flags);
            session.agent.forget_instances();
            Transaction transaction(session.agent, session.model, session.report);
            for (const std::string& text : assignments) transaction.add(added + text);
            transaction.run(whole, session.dry_run);
        });
    });
}

void delete_instances(Session& session, const Words& instances) {
    Report& report = session.report;
    std::vector<Instance> found;
    for (const std::string& path : instances) {
        note_failure(report, [&] { found.push_back(deletable(session, path)); });
    }
    change(session, [&](Change&) {
        for (const Instance& instance : found) {
            unsigned flags = 0;
            session.agent.remove(instance.table, instance.outer, instance.number, flags);
            note_apply_flags(report, flags);
        }
        report.instances = instances;
    });
}

void list_instances(Session& session, const Words& objects) {
    for (const std::string& object : objects) {
        note_failure(session.report, [&] {
            const Target target = find_targets(session.model, object);
            const Node& table = table_of(target);
            if (!session.report.instances) session.report.instances.emplace();
            for (std::vector<int> numbers : session.agent.resolve(target)) {
                numbers.push_back(0);
                for (int number : session.agent.instances(table, {numbers.begin(), numbers.end() - 1})) {
                    numbers.back() = number;
                    session.report.instances->push_back(concrete_path(table.path, numbers));
                }
            }
        });
    }
}

}  // namespace cwmp
