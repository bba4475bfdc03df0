#include "transaction.h"

#include "failure.h"

namespace cwmp {

namespace {

struct Pass {
    int op;
    const char* name;
};

// What the handler is told. The agent checks types, since many handlers store any text, and takes booleans in each
// of their spellings, since most handlers know "1" and "0" alone.
std::string typed_value(const Type& type, const std::string& path, const std::string& value) {
    if (type.holds(value)) return type.normalised(value);
    const bool wrong_type = type.fit(value) == Type::Fit::WrongType;
    throw Failure{path, wrong_type ? kInvalidType : kInvalidValue, Exit::Refused, "the value is no " + type.text};
}

constexpr Pass kPasses[] = {{CWMP_OP_STAGE, "stage"}, {CWMP_OP_CHECK, "check"}, {CWMP_OP_APPLY, "apply"}};

}  // namespace

Assignment assignment(const Model& model, const std::string& text) {
    const size_t equals = text.find('=');
    if (equals == std::string::npos) throw Failure{text, kNoFault, Exit::Malformed, "PATH=VALUE expected"};
    const std::string path = text.substr(0, equals);
    Target target = find_target(model, path);
    if (target.partial) throw Failure{path, kInvalidName, Exit::Missing, "an object has no value"};
    if (!target.node->writable) throw Failure{path, kNotWritable, Exit::Fixed, "the parameter is read-only"};
    std::string value = typed_value(target.node->type, path, text.substr(equals + 1));
    return {std::move(target), std::move(value)};
}

void Transaction::add(const std::string& text) {
    auto [target, value] = assignment(model_, text);
    for (const Setting& other : settings_) {
        if (other.target.path == target.path) {
            throw Failure{target.path, kInvalidArguments, Exit::Malformed, "set twice"};
        }
    }
    agent_.resolve(target);
    const cwmp_handler handler = agent_.handler_of(*target.node, target.path);
    settings_.push_back({std::move(target), std::move(value), handler, {}, {}});
}

void Transaction::run(Change& whole, bool dry_run) {
    if (settings_.empty()) return;
    note_failure(report_, [&] { run_passes(dry_run); });
    report_.apply_flags = report_.apply_flags.value_or(0) | flags_;
    if (dry_run || !report_.errors.empty()) {
        groups_.before_revert();
        whole.undo();
        groups_.after_revert(*report_.reverted);
    }
    report_.groups = groups_.touched();
    for (const Setting& setting : settings_) {
        if (!setting.passes.empty()) {
            report_.parameters.push_back({setting.target.path, setting.value,
                                          std::string(setting.target.node->type.wire_name()), setting.passes});
        }
    }
}

void Transaction::run_passes(bool dry_run) {
    for (const Pass& pass : kPasses) {
        if (dry_run && pass.op == CWMP_OP_APPLY) return;
        for (Setting& setting : settings_) {
            if (setting.target.node->apply_only && pass.op != CWMP_OP_APPLY) continue;
            if (!accepts(setting, pass.op)) {
                throw Failure{setting.target.path, kInvalidValue, Exit::Refused,
                              std::string("the value was refused in the ") + pass.name + " pass" + agent_.reason(),
                              pass.name};
            }
            setting.passes.emplace_back(pass.name);
        }
    }
}

bool Transaction::accepts(Setting& setting, int op) {
    groups_.before_call();
    const bool accepted = agent_.set(setting.handler, setting.target, op, setting.value, flags_) == 0;
    groups_.after_call(op, accepted, setting.group);
    return accepted;
}

}  // namespace cwmp
