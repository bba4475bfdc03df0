#include "handlers/blocks/object.h"

#include <algorithm>

#include "core/refusal.h"

namespace cwmp {

int fail(Caller caller, int level, const char* event) {
    refuse(caller, level, "%s", event);
    return kFailed;
}

ListArguments::ListArguments(Arguments args) {
    va_list copy;
    va_copy(copy, args);
    va_arg(copy, int*);
    auto* array = va_arg(copy, uint32_t*);
    const auto* capacity = va_arg(copy, const uint32_t*);
    va_end(copy);
    if (capacity == nullptr) return;
    array_ = array;
    capacity_ = *capacity;
}

int ListArguments::answer(const std::vector<int32_t>& numbers) const {
    if (array_ == nullptr) return kFailed;
    std::copy_n(numbers.begin(), std::min<std::size_t>(numbers.size(), capacity_), array_);
    return kDone;
}

int object(int op, Arguments args, const ObjectOperations& operations, Caller caller) {
    switch (op) {
        case CWMP_OP_ADD:
            return operations.add(AddArguments(args), caller);
        case CWMP_OP_DELETE:
            return operations.remove(DeleteArguments(args), caller);
        case CWMP_OP_LIST:
            return operations.list(ListArguments(args), caller);
        default:
            refuse(caller, kError, "unkown optFlag %d\n", op);
            return kFailed;
    }
}

}  // namespace cwmp
