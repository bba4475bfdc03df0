#include "commands.h"

#include <functional>
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
            session.report.parameters.push_back({concrete_path(node.path, numbers), session.agent.get(node, numbers),
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
    if (object.empty()) throw Failure{'.' + text, kNoFault, Exit::Malformed, "no instance is added before it"};
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

// The steps of a change, each of which is looked at before the first is taken.
class Plan {
  public:
    explicit Plan(Session& session) : session_(session), settings_(session.agent, session.model, session.report) {}

    void take(const Step& step) {
        if (step.kind == Step::Kind::Set) take_set(step.text);
        if (step.kind == Step::Kind::Add) take_add(step.text);
        if (step.kind == Step::Kind::Delete) take_delete(step.text);
    }

    void carry_out(Change& whole) {
        for (const auto& act : actions_) act();
        settings_.run(whole, session_.dry_run);
    }

  private:
    void take_set(const std::string& text) {
        if (!text.starts_with('.')) return settings_.add(text);
        require_assignable(session_.model, object_, text.substr(1));
        actions_.emplace_back([this, text] { settings_.add(added_ + text.substr(1)); });
    }

    void take_add(const std::string& path) {
        const Target target = find_target(session_.model, path);
        const Node& table = table_of(target);
        require_changeable(table, path);
        session_.agent.resolve(target);
        object_ = path;
        actions_.emplace_back([this, path, &table, outer = target.numbers] {
            unsigned flags = 0;
            added_ = path + std::to_string(session_.agent.add(table, outer, flags)) + '.';
            note_changed(added_, flags);
        });
    }

    void take_delete(const std::string& path) {
        actions_.emplace_back([this, path, instance = deletable(session_, path)] {
            unsigned flags = 0;
            session_.agent.remove(instance.table, instance.outer, instance.number, flags);
            note_changed(path, flags);
        });
    }

    void note_changed(const std::string& instance, unsigned flags) {
        Report& report = session_.report;
        if (!report.instances) report.instances.emplace();
        report.instances->push_back(instance);
        report.apply_flags = report.apply_flags.value_or(0) | flags;
        session_.agent.forget_instances();
    }

    Session& session_;
    Transaction settings_;
    std::vector<std::function<void()>> actions_;
    std::string object_, added_;  // of the last add
};

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

void make_changes(Session& session, const std::vector<Step>& steps) {
    Plan plan(session);
    for (const Step& step : steps) note_failure(session.report, [&] { plan.take(step); });
    change(session, [&](Change& whole) { plan.carry_out(whole); });
}

void set_values(Session& session, const Words& assignments) {
    std::vector<Step> steps;
    for (const std::string& text : assignments) steps.push_back({Step::Kind::Set, text});
    make_changes(session, steps);
}

void add_instance(Session& session, const std::string& object, const Words& assignments) {
    std::vector<Step> steps = {{Step::Kind::Add, object}};
    for (const std::string& text : assignments) steps.push_back({Step::Kind::Set, '.' + text});
    make_changes(session, steps);
}

void delete_instances(Session& session, const Words& instances) {
    std::vector<Step> steps;
    for (const std::string& path : instances) steps.push_back({Step::Kind::Delete, path});
    make_changes(session, steps);
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
