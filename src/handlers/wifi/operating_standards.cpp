// Device.WiFi.Radio.{i}.OperatingStandards
#include "core/table.h"
#include "handlers/wifi/selection.h"
#include "platform/profile.h"

using namespace cwmp;

namespace {

using Modes = cwmp_wireless_mode[CWMP_WIRELESS_MODES];

const char* standards_of(const Modes& modes, const std::string& hwmode) {
    // This mode stands for the whole list, not for its first row.
    if (&modes == &mode_5g && hwmode == "11axa") return "a,n,ac,ax";
    const auto* mode = row_with(modes, &cwmp_wireless_mode::hwmode, hwmode);
    return mode != nullptr ? mode->standards : nullptr;
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
    const auto* mode = row_with(is_2g ? mode_2g : mode_5g, &cwmp_wireless_mode::standards, set.value());
    if (mode == nullptr) return kRefused;
    const auto at = is_2g ? radio.at("ax_hwmode") : radio.device_at("hwmode");
    if (!write_option(at, mode->hwmode)) return kRefused;
    set.raise(is_2g ? CWMP_APPLY_WIRELESS : CWMP_APPLY_WIRELESS_MODE);
    return kDone;
}

}  // namespace

PARAMETER(WiFi_Radio_OperatingStandards, of_radio, {standards, set_standards})
