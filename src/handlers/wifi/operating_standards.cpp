// Device.WiFi.Radio.{i}.OperatingStandards
#include <cstring>

#include "handlers/wifi/selection.h"
#include "platform/profile.h"

using namespace cwmp;

namespace {

using Modes = cwmp_wireless_mode[CWMP_WIRELESS_MODES];

const char* standards_of(const Modes& modes, const std::string& hwmode) {
    // This mode stands for the whole list, not for its first row.
    if (&modes == &mode_5g && hwmode == "11axa") return "a,n,ac,ax";
    for (const auto& mode : modes) {
        if (hwmode == mode.hwmode) return mode.standards;
    }
    return nullptr;
}

const char* hwmode_of(const Modes& modes, const char* standards) {
    for (const auto& mode : modes) {
        if (std::strcmp(standards, mode.standards) == 0) return mode.hwmode;
    }
    return nullptr;
}

// The first instance number chooses the table, whichever radio the pair chose.
int standards(const GetArguments& get, const Radio& radio, Caller /*caller*/) {
    const auto hwmode = read_option(radio.device_at("hwmode"));
    if (!hwmode) return get.answer("");
    const char* shown = standards_of(get.locate()[0] == 1 ? mode_2g : mode_5g, *hwmode);
    return shown == nullptr ? kRefused : get.answer(shown);
}

// A profile that names the radio leaves its standards to the device.
int set_standards(const SetArguments& set, const Radio& radio, Caller /*caller*/) {
    if (profile_option(radio.section)) return kRefused;
    const bool is_2g = &radio == &kRadio2G;
    const char* hwmode = hwmode_of(is_2g ? mode_2g : mode_5g, set.value());
    if (hwmode == nullptr) return kRefused;
    if (!write_option(is_2g ? radio.at("ax_hwmode") : radio.device_at("hwmode"), hwmode)) return kRefused;
    set.raise(is_2g ? CWMP_APPLY_WIRELESS : CWMP_APPLY_WIRELESS_MODE);
    return kDone;
}

}  // namespace

PARAMETER(WiFi_Radio_OperatingStandards, of_radio, {standards, set_standards})
