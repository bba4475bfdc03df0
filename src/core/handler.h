// What every parameter handler is made of: the exported shape, its arguments, and the simplest answer.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/log.h"
#include "cwmp/apply_flags.h"
#include "cwmp/export.h"
#include "cwmp/handler.h"

// Defines or declares a parameter handler. The parameters are named op and args; a forward passes both on.
#define HANDLER(name) extern "C" CWMP_EXPORT int name([[maybe_unused]] int op, [[maybe_unused]] cwmp::Arguments args)

// A handler that is one block with its arguments: PARAMETER(NAME, constant, "1").
#define PARAMETER(name, block, ...) \
    HANDLER(name) { return block(op, args __VA_OPT__(, ) __VA_ARGS__); }

// A handler whose body answers a GET: READ_ONLY(NAME) { return get.answer(...); }. A SET is refused, or made by a
// function of the file that changes something: WRITABLE(NAME, set_something) { ... }.
#define READ_ONLY(name) CWMP_BODY(name, cwmp::read_only(op, args, name##_))
#define WRITABLE(name, change) CWMP_BODY(name, cwmp::writable(op, args, name##_, change))
// What the body reports, it reports under the handler's name.
#define CWMP_BODY(name, call)                          \
    static int name##_(const cwmp::GetArguments& get); \
    HANDLER(name) { return call; }                     \
    static int name##_([[maybe_unused]] const cwmp::GetArguments& get)

// A handler that passes its list on to one of another file; of the same file, it is that one's second name and
// costs no code.
#define FORWARD(name, target) \
    HANDLER(target);          \
    HANDLER(name) { return target(op, args); }
// The same by a block, which gets that handler and what follows it: THROUGH(NAME, block, HANDLER_OF_ANOTHER_FILE).
#define THROUGH(name, block, target, ...) \
    HANDLER(target);                      \
    PARAMETER(name, block, target __VA_OPT__(, ) __VA_ARGS__)
#define ALIAS(name, target) HANDLER(name) __attribute__((alias(#target)));

namespace cwmp {

// A handler's variable-argument list. On 64-bit Arm it is a structure that arrives by its address, so that a
// reference is the same call; taken by value it would be copied by each function that hands it on.
#if defined(__aarch64__)
using Arguments = va_list&;
#else
using Arguments = va_list;
#endif
using Handler = int (*)(int op, Arguments args);

inline constexpr int kDone = 0;
inline constexpr int kRefused = -1;

// Called by any writable parameter's SET: its stage pass begins a transaction.
void enter_pass(int op);
// What the next transaction begins with.
void at_next_stage_pass(void (*action)());

// Writes an answer to the agent's room for it; refused without one.
int answer_in(char* value, std::string_view text);

// The arguments are taken from a copy of the list: a handler may read them and still forward the list.
class GetArguments {
  public:
    explicit GetArguments(Arguments args);

    int* locate() const { return locate_; }
    // The answer so far: where another handler was asked with the same list, what it has written.
    std::string_view answered() const { return value_ != nullptr ? value_ : ""; }
    int answer(std::string_view text) const;
    // Each made a view in one place, not at every call.
    int answer(const char* text) const;
    int answer(const std::string& text) const;
    // Nothing, whose reason was told where it was found missing, refuses the GET.
    int answer(const std::optional<std::string>& text) const;

  private:
    int* locate_ = nullptr;
    char* value_ = nullptr;
};

// What changes something: locate, a text, and the flags that the change raises.
class ChangeArguments {
  public:
    explicit ChangeArguments(Arguments args);

    int* locate() const { return locate_; }
    unsigned int* flags() const { return flags_; }
    void raise(unsigned int bits) const {
        if (flags_ != nullptr) *flags_ |= bits;
    }

  protected:
    int* locate_ = nullptr;
    char* text_ = nullptr;
    unsigned int* flags_ = nullptr;
};

// A pass of a SET. The stage pass of any writable parameter begins a transaction of grouped settings.
class PassArguments : public ChangeArguments {
  public:
    PassArguments(int op, Arguments args);

    int op() const { return op_; }
    // Null when the agent passed none.
    const char* text() const { return text_; }

  private:
    int op_;
};

// The same with a value.
class SetArguments : public PassArguments {
  public:
    const char* value() const { return text(); }

  private:
    using PassArguments::PassArguments;

    template <typename Setter>
    friend int change(int op, Arguments args, const Setter& setter);
};

// What a SET does: setter(const SetArguments&). One without a value is refused before.
template <typename Setter>
int change(int op, Arguments args, const Setter& setter) {
    const SetArguments set(op, args);
    return set.text() != nullptr ? setter(set) : kRefused;
}

int read_only(int op, Arguments args, int (*getter)(const GetArguments& get));
int writable(int op, Arguments args, int (*getter)(const GetArguments& get),
             int (*setter)(const SetArguments& set, Caller caller), Caller caller = Caller::here());

// The number that a path's first two choose: the second under a first 1, or the first where there is but one; 0
// for any other pair.
int number_of_pair(const int* locate);

// A GET's answer where neither instance numbers nor an earlier answer matter.
int answer(Arguments args, std::string_view text);
int answer(Arguments args, const char* text);
int answer(Arguments args, const std::string& text);

// A read-only parameter with a fixed value.
int constant(int op, Arguments args, const char* text);
// The same that takes a SET without effect.
int tolerant_constant(int op, Arguments args, const char* text);

}  // namespace cwmp
