#include "handlers/wifi/settings.h"

#include <cstring>

#include "core/refusal.h"
#include "cwmp/platform.h"
#include "handlers/blocks/option.h"

namespace cwmp {

int accepted_constant(int op, Arguments args, const char* text) {
    return op == CWMP_OP_GET && text == nullptr ? kDone : option(op, args, {.missing = text});
}

int refused_constant(int op, Arguments args, const char* text, const char* refusal, Caller caller) {
    enter_pass(op);
    if (op != CWMP_OP_GET) return refuse(caller, kError, "%s", refusal);
    return constant(op, args, text);
}

int radio_counter(int op, Arguments args, const char* counter) {
    const char* const radios[] = {"wifi0", "wifi1", ""};
    return get_TotalBytesAndPackets_by_name(op, args, radios, counter);
}

std::optional<std::string> pass_phrase(const char* value) {
    constexpr std::size_t kShortest = 8;
    constexpr std::size_t kLongest = 64;
    const std::size_t length = std::strlen(value);
    if (length < kShortest || length > kLongest) return std::nullopt;
    return value;
}

std::optional<std::string> beacon_type(const char* value) {
    if (std::strcmp(value, "None") == 0) return "0";
    if (std::strcmp(value, "11i") == 0) return "1";
    return std::nullopt;
}

std::optional<std::string> stored_beacon_type(Section network) {
    const auto encryption = read_option(network / "encryption");
    if (!encryption) return std::nullopt;
    return *encryption == "0" ? "None" : "11i";
}

}  // namespace cwmp
