// Device.WiFi.AccessPoint.{i}. Its security and its clients are in files of their own.
#include <cstring>

#include "handlers/blocks/option.h"
#include "handlers/wifi/network_switch.h"
#include "handlers/wifi/settings.h"
#include "handlers/wifi/wlan_configuration.h"

using namespace cwmp;

HANDLER(WiFi_AccessPointNumberOfEntries) { return constant(op, args, "4"); }
HANDLER(WiFi_AccessPoint_Enable) { return LANDevice_WLANConfiguration_Enable(op, args); }
HANDLER(WiFi_AccessPoint_WPS_Enable) { return LANDevice_WLANConfiguration_WPS_Enable(op, args); }

HANDLER(WiFi_AccessPoint_SSIDReference) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const int number = get.locate()[0];
    const int reference = network_by_number(number) == nullptr ? 1 : number;
    return get.answer("Device.WiFi.SSID." + std::to_string(reference) + ".");
}

HANDLER(WiFi_AccessPoint_X_QM_APType) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const int number = get.locate()[0];
    return get.answer(number == 2 || number == 4 || number == 6 ? "Guest" : "Primary");
}

HANDLER(WiFi_AccessPoint_Status) { return network_status(op, args); }

namespace {

std::optional<std::string> hidden_when_zero(const char* value) {
    return std::strcmp(value, "0") == 0 ? "1" : "0";
}

}  // namespace

// Every access point shows the main network's.
HANDLER(WiFi_AccessPoint_SSIDAdvertisementEnabled) {
    constexpr OptionPath kHidden = kMainNetwork / "hidessid";
    if (op == CWMP_OP_GET) {
        const auto hidden = read_reported(kHidden, "get hidessid error\n\n");
        return hidden ? GetArguments(args).answer(*hidden == "0" ? "1" : "0") : kRefused;
    }
    return option(op, args, {.at = kHidden, .accepts = hidden_when_zero, .apply = CWMP_APPLY_WIRELESS},
                  {.unwritten = "set hidessid error\n\n"});
}
