#include "core/addresses.h"

#include <arpa/inet.h>

#include "core/text.h"
#include "cwmp/value_checks.h"

namespace cwmp {

uint32_t address_number(const char* address) {
    uint32_t number = 0;
    libutil_addrStrToNum(address, &number);
    return ntohl(number);
}

std::string host_part(const char* address, const char* mask) {
    const uint32_t covered = address_number(mask);
    const uint32_t host = address_number(address) & ~covered;
    std::string part;
    for (unsigned shift = 32; shift > 0;) {
        shift -= 8;
        if (part.empty() && (covered >> shift & 255) == 255) continue;
        if (!part.empty()) part += '.';
        part += decimal(host >> shift & 255);
    }
    return part;
}

std::string host_address(const char* address, const char* mask, const std::string& host) {
    constexpr std::size_t kLongestHost = 15;
    const std::string text = host.substr(0, kLongestHost);
    uint32_t number = 0;
    std::size_t position = 0;
    for (auto part = next_word(text, position, "."); !part.empty(); part = next_word(text, position, ".")) {
        number = number << 8 | static_cast<uint32_t>(decimal_prefix(std::string(part).c_str()));
    }
    const uint32_t covered = address_number(mask);
    char dotted[16];
    libutil_addrNumToStr((address_number(address) & covered) | (number & ~covered), dotted);
    return dotted;
}

std::string canonical_mac(std::string mac) {
    adjustMacFmt(mac.data(), 1, ':');
    return mac;
}

}  // namespace cwmp
