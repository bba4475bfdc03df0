#include "core/refusal.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

#include "core/text.h"
#include "cwmp/last_refusal.h"

namespace cwmp {
namespace {

char kept[256] = "";
bool handed_out = false;

}  // namespace

int refuse(Caller caller, int level, const char* format, ...) {
    char message[kMessageSize] = "";
    va_list args;
    va_start(args, format);
    std::vsnprintf(message, sizeof message, format, args);
    va_end(args);
    log_event(caller, level, "%s", message);
    keep_refusal(message);
    return kRefused;
}

void keep_refusal(const char* text) {
    constexpr const char* kAround = " \t\r\n";
    std::string_view reason = text;
    reason.remove_prefix(std::min(reason.find_first_not_of(kAround), reason.size()));
    copy_to_field(kept, reason.substr(0, reason.find_last_not_of(kAround) + 1));
    handed_out = false;
}

void forget_refusal() { kept[0] = '\0'; }

}  // namespace cwmp

const char* cwmp_last_refusal() {
    if (cwmp::handed_out) cwmp::forget_refusal();
    cwmp::handed_out = true;
    return cwmp::kept;
}
