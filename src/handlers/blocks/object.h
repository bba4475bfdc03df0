// A multi-instance object itself: adding, deleting and listing its instances.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "core/handler.h"
#include "core/log.h"
#include "core/text.h"

namespace cwmp {

// What the operations of an object answer when they fail; kDone otherwise.
inline constexpr int kFailed = 1;

// Logs the event and keeps its text as the reason: return fail(...).
int fail(Caller caller, int level, const char* event);

// The agent's arguments of an add: locate, room for the new number, flags.
struct AddArguments : ChangeArguments {
    using ChangeArguments::ChangeArguments;

    int answer(const std::string& name) const { return answer_in(text_, name) == kDone ? kDone : kFailed; }
};

// Those of a delete: locate, the number as text, flags.
struct DeleteArguments : ChangeArguments {
    using ChangeArguments::ChangeArguments;

    // 0 where the agent names none.
    int number() const { return text_ == nullptr ? 0 : decimal_prefix(text_); }
};

// Those of a list: locate, an array of the agent's and its capacity.
class ListArguments {
  public:
    explicit ListArguments(Arguments args);

    // False when the agent passed no array.
    explicit operator bool() const { return array_ != nullptr; }
    uint32_t capacity() const { return capacity_; }
    // Writes the numbers, as many as there is room for. The count is not written back: the agent zeroes the
    // array beforehand.
    int answer(const std::vector<int32_t>& numbers) const;

  private:
    uint32_t* array_ = nullptr;
    uint32_t capacity_ = 0;
};

struct ObjectOperations {
    int (*add)(const AddArguments& arguments, Caller caller);
    int (*remove)(const DeleteArguments& arguments, Caller caller);
    int (*list)(const ListArguments& arguments, Caller caller);
};

int object(int op, Arguments args, const ObjectOperations& operations, Caller caller = Caller::here());

}  // namespace cwmp
