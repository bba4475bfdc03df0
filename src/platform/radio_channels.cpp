#include "platform/radio_channels.h"

#include <cstring>
#include <string>

#include "core/command.h"
#include "core/refusal.h"
#include "core/shell.h"
#include "core/text.h"
#include "cwmp/handler.h"
#include "cwmp/platform.h"
#include "cwmp/value_checks.h"
#include "platform/profile.h"

using namespace cwmp;

namespace {

enum : int { kBand2G = 1, kBand5G = 2 };
constexpr std::size_t kListSize = 1024;

// The 2.4 GHz radio's conditions come first, whatever the other arguments say.
const std::string* choose_radio(const int* locate, int band, const std::string& radio_2g, const std::string& radio_5g) {
    if ((locate[0] == 1 && locate[1] == 1) || band == kBand2G) return &radio_2g;
    if ((locate[0] == 1 && locate[1] == 2) || band == kBand5G) return &radio_5g;
    return nullptr;
}

std::string channel_command(const std::string& interface) {
    constexpr std::size_t kLongest = 254;
    return formatted("iwlist %s channel | grep Channel| grep -v Current | awk '{print $2}' | tr '\n' ' ' ",
                     shell_word(interface).c_str())
        .substr(0, kLongest);
}

std::string as_frequency(const std::string& channel) {
    int mhz = 0;
    channel_to_mhz(decimal_prefix(channel.c_str()), &mhz);
    return formatted("%dMHz", mhz);
}

bool same_number(const std::string& entry, const char* value) {
    const int number = decimal_prefix(entry.c_str());
    return number != 0 && number == decimal_prefix(value);
}

}  // namespace

int cwmp::radio_channels(int op, char* value, const int* locate, int band, bool frequencies) {
    // Reports as the exported call does.
    const Caller caller = {"GetRadioInfo", __LINE__};
    const std::string radio_2g = interface_name(&cwmp_interface_info::wifi_2_4G);
    const std::string radio_5g = interface_name(&cwmp_interface_info::wifi_5G);
    const std::string* radio = choose_radio(locate, band, radio_2g, radio_5g);
    if (radio == nullptr) return -1;
    Command pipe(channel_command(*radio));
    if (!pipe) return refuse(caller, kError, "Failed to get Channel pool\n");
    const std::string line = pipe.line().value_or("");
    std::string list;
    std::size_t position = 0;
    for (auto token = next_word(line, position); !token.empty(); token = next_word(line, position)) {
        std::string entry = leading_digits(std::string(token));
        if (entry.empty()) continue;
        if (frequencies) entry = as_frequency(entry);
        if (op != CWMP_OP_GET && same_number(entry, value)) return op;
        if (list.size() + entry.size() + 1 >= kListSize) break;
        list += entry + ",";
    }
    if (op != CWMP_OP_GET) return 0;
    if (!list.empty()) list.pop_back();
    std::memcpy(value, list.c_str(), list.size() + 1);
    return 0;
}

int GetRadioInfo(int op, va_list /*args*/, char* value, int* locate, int band, const char* kind) {
    const bool frequencies = kind != nullptr && std::strcmp(kind, "freqency") == 0;
    return radio_channels(op, value, locate, band, frequencies);
}

int GetChannelPoll(int op, va_list /*args*/, char* value, int* locate, int band) {
    return radio_channels(op, value, locate, band);
}

int GetFrequencyPoll(int op, va_list /*args*/, char* value, int* locate, int band) {
    return radio_channels(op, value, locate, band, true);
}
