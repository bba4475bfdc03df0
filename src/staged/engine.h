// The operations that all groups of settings share. Their events carry the name of the exported operation
// that calls them.
//
// A group has a staging and a revert record:
//
//   state     staging record             revert record               goes on
//   idle      zero                       zero                        stage: staged
//   staged    fields, marker 0           zero, or what is in force   check: checked, or refused: idle, revert
//                                                                    record without marker
//   checked   all fields, marker 1       in force, marker 1; marker  stage: staged
//                                        0 when the script told      apply: applied, or rejected: idle with the
//                                        none                        revert record kept
//   applied   zero                       kept                        next stage pass: idle; stage: staged
//
// check of a checked group and apply of one that is not checked do nothing and pass: every handler of the group
// runs them, the first one works. func_obj_revert copies the revert records that are marked into the staging
// records, applies them, and leaves every group idle; the DHCP pool is not copied.
//
// The records stand apart because a refused transaction must still know what the applied groups had before. They
// are kept until the next stage pass and not until the apply, because the refusal may come from a later group.
#pragma once

#include "staged/object.h"

namespace cwmp::staged {

// One check of a group, as its rules see it.
class Check {
  public:
    Check(const Object& object, Caller caller)
        : object_(object), staging_(Record::staging(object)), revert_(Record::revert(object)), caller_(caller) {}

    std::string_view text(int option) const { return staging_.text(option); }
    // As a reader that knows no field's end sees it: a text that fills its field runs on into the next.
    std::size_t length(int option) const { return staging_.length(option); }
    bool staged(int option) const { return !text(option).empty(); }
    // A text that was not staged comes from the configuration; refused in silence when there is none either.
    Refusal filled(int option) const;
    // A staged address must be one; another one is filled.
    Refusal address(int option, const char* refusal) const;
    // The same for a number in a range.
    Refusal number(int option, int least, int most, const char* refusal) const;

    void tell(const char* message) const { log_event(caller_, kProgress, "%s", message); }

    // The rule of a group that the device has to agree to.
    static Refusal accepted_by_script(const Check& group);
    // That of the first rule that refuses. A group that passes is told.
    Refusal refusal() const;

  private:
    const Object& object_;
    Record staging_;
    Record revert_;
    Caller caller_;
};

constexpr Refusal unless(bool met, Refusal refusal) { return met ? Refusal{} : refusal; }

int stage(const Object& object, int option, const char* value, Caller caller = Caller::here());
int stage_revert(const Object& object, int option, const char* value, Caller caller = Caller::here());
int check(const Object& object, Caller caller = Caller::here());
int apply(const Object& object, unsigned int* flags, Caller caller = Caller::here());
// Notes what is in force of a group that is about to be applied. False when it must not be applied, because the
// transaction that runs could not undo it.
bool note_in_force(const Object& object);
// Leaves all records idle.
void forget_groups();
// Applies every group that is checked, then forgets them all. False when the script refused one.
bool apply_all(unsigned int* flags);

}  // namespace cwmp::staged
