#include "config/device_profile.h"

#include <string>

#include "config/store.h"
#include "core/text.h"

using namespace cwmp;

namespace {

constexpr const char* kPackage = "profile";
constexpr Section kEthernet{kPackage, "ethernet"};

}  // namespace

int uci_get_profile(const char* section, const char* option, char* value, size_t size) {
    const auto stored = read_option(kPackage, section, option, kProfileStore);
    if (!stored || size == 0) return -1;
    value[stored->copy(value, size - 1)] = '\0';
    return 0;
}

int uci_get_profile_eths(char (*names)[16], int count) {
    const auto stored = read_option(kEthernet / "names", kProfileStore).value_or("");
    std::size_t position = 0;
    int found = 0;
    for (; found < count; ++found) {
        const auto name = next_word(stored, position);
        if (name.empty()) break;
        copy_to_field(names[found], name);
    }
    return found > 0 ? 0 : -1;
}

int uci_get_profile_eth_port(const char* name, int* port) {
    const std::string option = std::string(name) + "_port";
    const auto stored = read_option(kEthernet / option.c_str(), kProfileStore);
    const auto number = stored ? leading_decimal(stored->c_str()) : std::nullopt;
    if (!number) return -1;
    *port = *number;
    return 0;
}
