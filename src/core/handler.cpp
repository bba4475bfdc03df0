#include "core/handler.h"

#include "core/bulk_read.h"
#include "core/refusal.h"

namespace cwmp {

GetArguments::GetArguments(Arguments args) {
    forget_refusal();
    va_list copy;
    va_copy(copy, args);
    locate_ = va_arg(copy, int*);
    value_ = va_arg(copy, char*);
    va_end(copy);
}

int GetArguments::answer(std::string_view text) const {
    if (value_ == nullptr) return kRefused;
    forget_refusal();
    const std::size_t length = text.copy(value_, CWMP_VALUE_SIZE - 1);
    value_[length] = '\0';
    return kDone;
}

int GetArguments::answer(const char* text) const { return answer(std::string_view(text)); }
int GetArguments::answer(const std::string& text) const { return answer(std::string_view(text)); }

SetArguments::SetArguments(int op, Arguments args) {
    if (op == CWMP_OP_STAGE) begin_stage_pass();
    end_bulk_read();
    forget_refusal();
    va_list copy;
    va_copy(copy, args);
    locate_ = va_arg(copy, int*);
    value_ = va_arg(copy, const char*);
    flags_ = va_arg(copy, unsigned int*);
    va_end(copy);
}

int constant(int op, Arguments args, const char* text) {
    return op == CWMP_OP_GET ? GetArguments(args).answer(text) : kRefused;
}

}  // namespace cwmp
