// Device.WiFi.AccessPoint.{i}. Its security and its clients are in files of their own.
#include <cstring>

#include "core/text.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/network_switch.h"

using namespace cwmp;

PARAMETER(WiFi_AccessPointNumberOfEntries, constant, "4")
FORWARD(WiFi_AccessPoint_Enable, LANDevice_WLANConfiguration_Enable)
FORWARD(WiFi_AccessPoint_WPS_Enable, LANDevice_WLANConfiguration_WPS_Enable)

READ_ONLY(WiFi_AccessPoint_SSIDReference) {
    const int number = get.locate()[0];
    const int reference = network_by_number(number) == nullptr ? 1 : number;
    return get.answer(formatted("Device.WiFi.SSID.%d.", reference));
}

READ_ONLY(WiFi_AccessPoint_X_QM_APType) {
    const int number = get.locate()[0];
    return get.answer(number == 2 || number == 4 || number == 6 ? "Guest" : "Primary");
}

PARAMETER(WiFi_AccessPoint_Status, network_status)

namespace {

std::optional<std::string> hidden_when_zero(const char* value) { return std::strcmp(value, "0") == 0 ? "1" : "0"; }

}  // namespace

// Every access point shows the main network's.
HANDLER(WiFi_AccessPoint_SSIDAdvertisementEnabled) {
    constexpr OptionPath kHidden = kMainNetwork / "hidessid";
    if (op == CWMP_OP_GET) {
        const auto hidden = read_reported(kHidden, "get hidessid error\n\n");
        return hidden ? answer(args, *hidden == "0" ? "1" : "0") : kRefused;
    }
    return option(op, args, {.at = kHidden, .accepts = hidden_when_zero, .apply = CWMP_APPLY_WIRELESS},
                  {.unwritten = "set hidessid error\n\n"});
}
