#include "change.h"

#include <filesystem>

#include "failure.h"

namespace cwmp {

namespace {

constexpr const char* kSubject = "configuration";
constexpr int kMillisecondsToWait = 10'000;
constexpr std::uintmax_t kNoNotes = 32;  // at most, in the notes of a change that has just begun

[[noreturn]] void refuse(const std::string& message) {
    throw Failure{kSubject, kInternalError, Exit::Refused, message};
}

}  // namespace

Change::Change(const Library& library, Report& report) : library_(library), report_(report) {
    if (library.function<decltype(cwmp_transaction_begin)>("cwmp_transaction_begin")(kMillisecondsToWait) != 0) {
        refuse("another program is changing it, or a change cannot be noted");
    }
    std::error_code missing;
    const auto notes = std::filesystem::file_size(CWMP_TRANSACTION_NOTES, missing);
    if (!missing && notes > kNoNotes) {
        report.notes.emplace_back("an earlier change was cut off half done: 'dm recover' undoes it");
    }
}

Change::~Change() {
    if (running_) end(0);
}

void Change::keep() {
    if (!end(1)) refuse("the change cannot be ended");
}

void Change::undo() {
    if (running_) report_.reverted = end(0);
}

bool Change::end(int keep) {
    running_ = false;
    // What was raised before needs no service after it is undone.
    unsigned flags = keep ? report_.apply_flags.value_or(0) : 0;
    const bool done = library_.function<decltype(cwmp_transaction_end)>("cwmp_transaction_end")(keep, &flags) == 0;
    report_.apply_flags = flags;
    return done;
}

void recover(const Library& library, Report& report) {
    unsigned flags = 0;
    const int result = library.function<decltype(cwmp_transaction_recover)>("cwmp_transaction_recover")(&flags);
    report.apply_flags = flags;
    report.notes.emplace_back(result == 1 ? "a change that was cut off is undone" : "no change was cut off");
    if (result >= 0) return;
    report.notes.clear();
    refuse("a change that was cut off cannot be undone whole");
}

}  // namespace cwmp
