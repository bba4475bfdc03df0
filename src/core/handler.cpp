#include "core/handler.h"

#include <utility>

#include "core/bulk_read.h"
#include "core/refusal.h"

namespace cwmp {
namespace {

void (*first_action)() = nullptr;

}  // namespace

void enter_pass(int op) {
    if (op == CWMP_OP_STAGE && first_action != nullptr) std::exchange(first_action, nullptr)();
}

void at_next_stage_pass(void (*action)()) { first_action = action; }

GetArguments::GetArguments(Arguments args) {
    forget_refusal();
    va_list copy;
    va_copy(copy, args);
    locate_ = va_arg(copy, int*);
    value_ = va_arg(copy, char*);
    va_end(copy);
}

int answer_in(char* value, std::string_view text) {
    if (value == nullptr) return kRefused;
    forget_refusal();
    value[text.copy(value, CWMP_VALUE_SIZE - 1)] = '\0';
    return kDone;
}

int GetArguments::answer(std::string_view text) const { return answer_in(value_, text); }
int GetArguments::answer(const char* text) const { return answer(std::string_view(text)); }
int GetArguments::answer(const std::string& text) const { return answer(std::string_view(text)); }
int GetArguments::answer(const std::optional<std::string>& text) const { return text ? answer(*text) : kRefused; }

int answer(Arguments args, std::string_view text) { return GetArguments(args).answer(text); }
int answer(Arguments args, const char* text) { return answer(args, std::string_view(text)); }
int answer(Arguments args, const std::string& text) { return answer(args, std::string_view(text)); }

ChangeArguments::ChangeArguments(Arguments args) {
    end_bulk_read();
    forget_refusal();
    va_list copy;
    va_copy(copy, args);
    locate_ = va_arg(copy, int*);
    text_ = va_arg(copy, char*);
    flags_ = va_arg(copy, unsigned int*);
    va_end(copy);
}

PassArguments::PassArguments(int op, Arguments args) : ChangeArguments(args), op_(op) { enter_pass(op); }

int read_only(int op, Arguments args, int (*getter)(const GetArguments& get)) {
    return op == CWMP_OP_GET ? getter(GetArguments(args)) : kRefused;
}

int writable(int op, Arguments args, int (*getter)(const GetArguments& get),
             int (*setter)(const SetArguments& set, Caller caller), Caller caller) {
    if (op == CWMP_OP_GET) return getter(GetArguments(args));
    return change(op, args, [&](const SetArguments& set) { return setter(set, caller); });
}

int number_of_pair(const int* locate) {
    if (locate[1] == 0) return locate[0];
    return locate[0] == 1 ? locate[1] : 0;
}

int tolerant_constant(int op, Arguments args, const char* text) {
    return op == CWMP_OP_GET ? constant(op, args, text) : kDone;
}

int constant(int op, Arguments args, const char* text) { return op == CWMP_OP_GET ? answer(args, text) : kRefused; }

}  // namespace cwmp
