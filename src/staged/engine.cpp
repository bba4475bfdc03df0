#include "staged/engine.h"

#include <cstdio>
#include <string>

#include "core/handler.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/value_checks.h"
#include "staged/check_script.h"

namespace cwmp::staged {

namespace {

constexpr int kPassed = 1;
constexpr int kFailed = 0;

// A revert must undo the running transaction only: what an earlier one loaded goes when the next one begins.
void forget_in_force() {
    for (const Object* object : kObjects) Record::revert(*object).clear();
}

int put(const Object& object, const Record& record, int option, const char* value, bool true_enables, Caller caller) {
    const char* shown = value != nullptr ? value : "(null)";
    if (object.prints) std::printf("!!!option:%d, val:%s\n", option, shown);
    log_event(caller, kProgress, "!!!option:%d, val:%s\n\n", option, shown);
    if (value == nullptr || option < 0 || option >= object.count()) return kFailed;
    if (!object.is_switch(option)) {
        record.put_text(option, value);
        return kPassed;
    }
    const std::string_view word = value;
    const bool enabled = word == "1"sv || (true_enables && word == "true"sv);
    record.enable() = enabled ? CWMP_STAGED_ENABLED : CWMP_STAGED_DISABLED;
    return kPassed;
}

int reject(const Object& object, Verdict verdict, Caller caller) {
    if (verdict == Verdict::no_request && object.request_failed != nullptr) {
        log_event(caller, kError, "%s", object.request_failed);
    } else if (object.apply_rejected != nullptr) {
        log_event(caller, kProgress, "%s", object.apply_rejected);
    }
    refuse(caller, kProgress, "!!!  %s set fail \n\n", object.name);
    Record::staging(object).clear();
    return kFailed;
}

}  // namespace

Refusal Check::filled(int option) const {
    if (!staged(option)) staging_.put_text(option, revert_.text(option));
    return unless(staged(option), kSilent);
}

Refusal Check::address(int option, const char* refusal) const {
    if (!staged(option)) return filled(option);
    return unless(checkValidIP(std::string(text(option)).c_str()) != 0, {refusal});
}

Refusal Check::number(int option, int least, int most, const char* refusal) const {
    if (!staged(option)) return filled(option);
    const int number = decimal_prefix(std::string(text(option)).c_str());
    return unless(number >= least && number <= most, {refusal});
}

Refusal Check::accepted_by_script(const Check& group) {
    if (ask_script(group.object_, "check", group.caller_) == Verdict::accepted) return {};
    keep_refusal("the check script refuses these settings together");
    return kSilent;
}

Refusal Check::refusal() const {
    const bool has_switch = object_.is_switch(0);
    const bool switched_off = has_switch && staging_.enable() == CWMP_STAGED_DISABLED;
    if (switched_off || (object_.exempt != nullptr && object_.exempt(*this))) {
        tell(object_.exempted);
        return {};
    }
    // Unless enabling was staged, the switch stays as the configuration has it.
    if (has_switch && staging_.enable() != CWMP_STAGED_ENABLED) staging_.enable() = revert_.enable();
    for (const Rule rule : object_.rules) {
        if (const Refusal refusal = rule(*this)) return refusal;
    }
    tell(object_.check_passed);
    return {};
}

void forget_groups() {
    for (const Object* object : kObjects) {
        Record::revert(*object).clear();
        Record::staging(*object).clear();
    }
}

// What a check has not seen must not be applied: a new field takes the marker away.
int stage(const Object& object, int option, const char* value, Caller caller) {
    enter_pass(CWMP_OP_STAGE);
    const auto staging = Record::staging(object);
    const int taken = put(object, staging, option, value, false, caller);
    if (taken == kPassed) staging.checked() = 0;
    return taken;
}

int stage_revert(const Object& object, int option, const char* value, Caller caller) {
    return put(object, Record::revert(object), option, value, object.true_enables_revert, caller);
}

int check(const Object& object, Caller caller) {
    const auto staging = Record::staging(object);
    if (staging.checked() == 1) {
        log_event(caller, kProgress, "!!!  %s check ever exec, return \n\n", object.name);
        return kPassed;
    }
    log_event(caller, kProgress, "!!!  %s check enter \n\n", object.name);
    const bool loaded = load_revert_record(object);
    if (const Refusal refusal = Check(object, caller).refusal()) {
        if (*refusal.text != '\0') refuse(caller, refusal.level, "%s", refusal.text);
        log_event(caller, object.check_failed.level, "%s", object.check_failed.text);
        const Object* cleared = object.check_failure_clears;
        Record::staging(cleared != nullptr ? *cleared : object).clear();
        return kFailed;
    }
    staging.checked() = 1;
    if (loaded) Record::revert(object).checked() = 1;
    return kPassed;
}

int apply(const Object& object, unsigned int* flags, Caller caller) {
    at_next_stage_pass(forget_in_force);
    log_event(caller, kProgress, "!!!  %s set enter \n\n", object.name);
    const auto staging = Record::staging(object);
    if (staging.checked() != 1) {
        log_event(caller, kProgress, "!!!  %s set ever exec, return \n\n", object.name);
        return kPassed;
    }
    if (!note_in_force(object)) return reject(object, Verdict::rejected, caller);
    if (object.before_apply != nullptr) object.before_apply(caller);
    const Verdict verdict = ask_script(object, "whole", caller);
    if (verdict != Verdict::accepted) return reject(object, verdict, caller);
    log_event(caller, kProgress, "!!!  %s set success \n\n", object.name);
    staging.clear();
    if (flags != nullptr) *flags |= object.apply;
    return kPassed;
}

}  // namespace cwmp::staged
