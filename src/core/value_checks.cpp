#include "cwmp/value_checks.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <cstdio>
#include <cstring>
#include <string>

#include "core/addresses.h"
#include "core/assertion.h"
#include "core/log.h"

namespace {

constexpr const char* kUnit = "libutil";

bool is_hex(char digit) { return std::isxdigit(static_cast<unsigned char>(digit)) != 0; }

int hex_value(char digit) {
    const int lower = std::tolower(static_cast<unsigned char>(digit));
    return lower <= '9' ? lower - '0' : lower - 'a' + 10;
}

bool is_mac_separator(char c) { return c == '-' || c == ':'; }

}  // namespace

int checkValidIP(const char* text) {
    in_addr parsed = {};
    return text != nullptr && inet_pton(AF_INET, text, &parsed) == 1 ? 1 : 0;
}

int check_subnet(const char* a, const char* b) {
    if (a == nullptr || b == nullptr) return 0;
    // A number that a text lacks is 0.
    int first[3] = {};
    int second[3] = {};
    std::sscanf(a, "%d.%d.%d", &first[0], &first[1], &first[2]);
    std::sscanf(b, "%d.%d.%d", &second[0], &second[1], &second[2]);
    return std::memcmp(first, second, sizeof first) == 0 ? 1 : 0;
}

int CheckValidMacAddr(const char* text) {
    constexpr std::size_t kShortest = 17;
    constexpr std::size_t kLongest = 32;
    if (text == nullptr || std::strlen(text) < kShortest) {
        LOG_ERROR(" the length of MAC is too short \n");
        return -1;
    }
    const std::string mac(text, strnlen(text, kLongest));
    int groups = 0;
    for (std::size_t start = 0; start <= mac.size(); ++groups) {
        const std::size_t end = std::min(mac.find(':', start), mac.size());
        if (end - start != 2) return -1;
        if (!is_hex(mac[start]) || !is_hex(mac[start + 1])) return 0;
        start = end + 1;
    }
    return groups == 6 ? 1 : 0;
}

int adjustMacFmt(char* text, int upper, char separator) {
    char* next = text;
    for (; *next != '\0'; ++next) {
        if (is_mac_separator(*next)) {
            *next = separator;
        } else if (is_hex(*next)) {
            const auto digit = static_cast<unsigned char>(*next);
            *next = static_cast<char>(upper != 0 ? std::toupper(digit) : std::tolower(digit));
        }
    }
    return static_cast<int>(next - text);
}

int libutil_macStrToEth(const char* text, uint8_t mac[6]) {
    if (text == nullptr || mac == nullptr) return -1;
    for (int i = 0; i < 6; ++i) {
        if (is_mac_separator(*text)) ++text;
        if (!is_hex(text[0]) || !is_hex(text[1])) return -1;
        mac[i] = static_cast<uint8_t>(hex_value(text[0]) << 4 | hex_value(text[1]));
        text += 2;
    }
    return 0;
}

int libutil_addrNumToStr(uint32_t address, char* text) {
    if (text == nullptr) return 0;
    std::snprintf(text, 16, "%u.%u.%u.%u", address >> 24, address >> 16 & 255, address >> 8 & 255, address & 255);
    return 0;
}

int libutil_addrStrToNum(const char* text, uint32_t* address) {
    in_addr parsed = {};
    if (text == nullptr || inet_aton(text, &parsed) == 0) parsed.s_addr = 0;
    *address = parsed.s_addr;
    return 0;
}

int libutil_netChkDotIpAddr(const char* text) {
    CONTRACT_ASSERT(kUnit, text != nullptr, "pStrIp != NULL");
    const std::size_t length = std::strlen(text);
    if (length < 7 || length > 15) return 0;
    constexpr int kNone = -1;
    int dots = 0;
    int number = kNone;
    for (const char* next = text; *next != '\0'; ++next) {
        if (*next == '.') {
            if (number == kNone) return 0;
            ++dots;
            number = kNone;
        } else {
            if (*next < '0' || *next > '9') return 0;
            number = std::max(number, 0) * 10 + (*next - '0');
            if (number > 255) return 0;
        }
    }
    return dots == 3 && number != kNone ? 1 : 0;
}

int libutil_netChkStrMacAddr(const char* text) {
    CONTRACT_ASSERT(kUnit, text != nullptr, "pStrMac != NULL");
    constexpr std::size_t kLength = 17;
    if (std::strlen(text) != kLength) return 0;
    for (std::size_t i = 0; i < kLength; ++i) {
        if (i % 3 == 2 ? text[i] != ':' : !is_hex(text[i])) return 0;
    }
    return 1;
}

int libutil_netChkLegalMacAddr(const char* text) {
    CONTRACT_ASSERT(kUnit, text != nullptr, "pStrMac != NULL");
    uint8_t mac[6] = {};
    if (libutil_macStrToEth(text, mac) != 0) {
        LOG_ERROR("Error mac: %s\n", text);
        return 0;
    }
    constexpr uint8_t kZero[6] = {};
    const bool group = (mac[0] & 1) != 0;
    return group || std::memcmp(mac, kZero, sizeof mac) == 0 ? 0 : 1;
}

int libutil_netChkLegalIpAddr(const char* text) {
    const uint32_t first = cwmp::address_number(text) >> 24;
    return first != 0 && first != 127 && first < 224 ? 1 : 0;
}

int libutil_netChkSameSubnet(const char* test, const char* second_mask, const char* address, const char* mask) {
    CONTRACT_ASSERT(kUnit, test != nullptr && address != nullptr && mask != nullptr,
                    "(pStrTestIp != NULL) && (pStrIp != NULL) && (pStrMask != NULL)");
    const uint32_t tested = cwmp::address_number(test);
    const uint32_t own = cwmp::address_number(address);
    const uint32_t covered = cwmp::address_number(mask);
    const uint32_t second = cwmp::address_number(second_mask);
    const uint32_t host = tested & ~covered;
    if (second == 0 && (host == 0 || host == ~covered)) return 0;
    if ((tested & covered) == (own & covered)) return 1;
    return second != 0 && (tested & second) == (own & second) ? 1 : 0;
}

char* libutil_strncpy(char* destination, const char* source, int size) {
    CONTRACT_ASSERT(kUnit, destination != nullptr && source != nullptr, "(dst != NULL) && (src != NULL)");
    CONTRACT_ASSERT(kUnit, size > 0, "n > 0");
    const auto room = static_cast<std::size_t>(size);
    const std::size_t length = strnlen(source, room - 1);
    std::memcpy(destination, source, length);
    std::memset(destination + length, 0, room - length);
    return destination;
}

char* string_split(char* text, const char* delimiters, int limit, int index) {
    constexpr int kMost = 20;
    if (text == nullptr || index < 1) return nullptr;
    char* chosen = nullptr;
    char* rest = nullptr;
    for (int number = 1; number <= std::min(limit, kMost); ++number) {
        char* token = strtok_r(number == 1 ? text : nullptr, delimiters, &rest);
        if (token == nullptr) break;
        if (number == index) chosen = token;
    }
    return chosen;
}

int string_split_num(const char* text, char* numbers, int size) {
    constexpr const char* kDigits = "0123456789";
    if (text == nullptr || numbers == nullptr || size < 1) return 0;
    std::size_t written = 0;
    int count = 0;
    for (const char* next = text; *(next += std::strcspn(next, kDigits)) != '\0';) {
        std::size_t length = std::strspn(next, kDigits);
        const std::size_t fraction = next[length] == '.' ? std::strspn(next + length + 1, kDigits) : 0;
        if (fraction > 0) length += 1 + fraction;
        const std::size_t separator = count > 0 ? 1 : 0;
        if (written + separator + length >= static_cast<std::size_t>(size)) break;
        if (separator != 0) numbers[written++] = ',';
        std::memcpy(numbers + written, next, length);
        written += length;
        next += length;
        ++count;
    }
    numbers[written] = '\0';
    return count;
}

char* strlowr(char* text) {
    for (char* next = text; *next != '\0'; ++next) {
        *next = static_cast<char>(std::tolower(static_cast<unsigned char>(*next)));
    }
    return text;
}

int mhz_to_channel(int mhz) {
    const int64_t f = mhz;
    int64_t channel = (f - 5000) / 5;
    if (f == 2484) {
        channel = 14;
    } else if (f < 2484) {
        channel = (f - 2407) / 5;
    } else if (f <= 4900) {
        channel = (f - 2512) / 20 + 15;
    } else if (f > 4940 && f < 4990) {
        channel = ((f % 5 == 2 ? 5 : 0) + 10 * f - 49400) / 5;
    } else if (f < 5000) {
        channel = (f - 4000) / 5;
    }
    return static_cast<int>(channel);
}

void channel_to_mhz(int channel, int* mhz) {
    const int64_t c = channel;
    int64_t result = 2512 + 20 * (c - 15);
    if (c == 14) {
        result = 2484;
    } else if (c < 14) {
        result = 2407 + 5 * c;
    } else if (c > 26) {
        result = 5000 + 5 * c;
    }
    *mhz = static_cast<int>(result);
}
