// Interface counters of the kernel, as the statistics parameters show them.
#include <cstdio>
#include <cstring>
#include <string>

#include "core/command.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "core/table.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "platform/profile.h"

using namespace cwmp;

namespace {

struct Counter {
    const char* name;
    int field;
};

// Fields of a /proc/net/dev line; field 0 is the interface name with its colon.
constexpr Counter kCounters[] = {
    {"TotalBytesReceived", 1}, {"TotalPacketsReceived", 2}, {"TotalErrorsReceived", 3}, {"DiscardPacketsReceived", 4},
    {"TotalBytesSent", 9},     {"TotalPacketsSent", 10},    {"TotalErrorsSent", 11},    {"DiscardPacketsSent", 12},
};
constexpr int kFields = 14;

// A name of 14 characters fills the first field's column, so that its colon becomes a field of its own.
constexpr const char* kNameThatFillsItsColumn = "pppoe-internet";

struct Fields {
    char text[kFields][20] = {};
};

Fields scan(const char* line) {
    Fields fields;
    auto& f = fields.text;
    std::sscanf(line, "%14s%19s%19s%14s%14s%14s%14s%14s%14s%19s%19s%19s%19s%19s", f[0], f[1], f[2], f[3], f[4], f[5],
                f[6], f[7], f[8], f[9], f[10], f[11], f[12], f[13]);
    return fields;
}

const char* chosen_name(const int* locate, const char* const names[3]) {
    const int number = number_of_pair(locate);
    return number >= 1 && number <= 3 && names[number - 1] != nullptr ? names[number - 1] : "";
}

// An interface as /proc/net/dev names it. A radio's sub-interfaces, named after it with a dot, are not it.
struct Interface {
    std::string name;
    bool is_radio = false;
};

Interface resolve(const char* name) {
    if (std::strcmp(name, "wifi0") == 0) return {interface_name(&cwmp_interface_info::wifi_2_4G), true};
    if (std::strcmp(name, "wifi1") == 0) return {interface_name(&cwmp_interface_info::wifi_5G), true};
    return {name};
}

const char* find_line_of(const Interface& interface, const std::string& line) {
    const auto position = line.find(interface.name);
    if (position == std::string::npos) return nullptr;
    const char* at = line.c_str() + position;
    return interface.is_radio && at[interface.name.size()] == '.' ? nullptr : at;
}

}  // namespace
int get_TotalBytesAndPackets_by_name(int op, va_list args, const char* const names[3], const char* counter) {
    const GetArguments get(args);
    if (op != CWMP_OP_GET) return REFUSE("error set Bytes and Packets !\n");
    const Interface interface = resolve(chosen_name(get.locate(), names));
    Fields fields;
    if (!interface.name.empty()) {
        Command pipe("cat /proc/net/dev");
        if (!pipe) return REFUSE("Failed to get TotableBytesReceived\n");
        while (const auto line = pipe.line()) {
            if (const char* at = find_line_of(interface, *line)) fields = scan(at);
        }
    }
    const Counter* found = row_with(kCounters, &Counter::name, counter);
    if (found == nullptr) return REFUSE("error get Bytes and Packets !\n");
    const int shift = interface.name == kNameThatFillsItsColumn ? 1 : 0;
    const std::string value = fields.text[found->field + shift];
    return get.answer(all_digits(value) ? value : "0");
}
