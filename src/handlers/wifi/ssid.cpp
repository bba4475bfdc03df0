// Device.WiFi.SSID.{i}.
#include "core/refusal.h"
#include "cwmp/interface_stack.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/network_switch.h"

using namespace cwmp;

PARAMETER(WiFi_SSIDNumberOfEntries, constant, "4")
FORWARD(WiFi_SSID_Enable, LANDevice_WLANConfiguration_Enable)
FORWARD(WiFi_SSID_BSSID, LANDevice_WLANConfiguration_BSSID)
PARAMETER(WiFi_SSID_Upstream, constant, "0")
FORWARD(WiFi_SSID_X_QM_MultiSSID_SSID, LANDevice_WLANConfiguration_MultiSSID_SSID)

namespace {

constexpr const char* kNameUnwritten = "set ssid error\n\n";

// With the mark that the user chose it.
int set_guest_name(const SetArguments& set, Caller caller) {
    const auto [package, section] = kGuestNetwork;
    if (!write_together(package, {{section, "ssid", set.value()}, {section, "usr_set", "1"}}))
        return refuse(caller, kError, kNameUnwritten);
    set.raise(CWMP_APPLY_WIRELESS);
    return kDone;
}

}  // namespace

// A number that is no network's has no name, and takes any.
HANDLER(WiFi_SSID_SSID) {
    const auto* network = network_by_number(locate_of(args)[0]);
    if (network == nullptr) return option(op, args, {.at = {}, .apply = CWMP_APPLY_WIRELESS});
    if (op != CWMP_OP_GET && network->is_guest()) {
        return change(op, args, [caller = Caller::here()](const auto& set) { return set_guest_name(set, caller); });
    }
    return option(op, args, {.at = network->at("ssid"), .apply = CWMP_APPLY_WIRELESS},
                  {.unreadable = "get ssid error\n\n", .unwritten = kNameUnwritten});
}

PARAMETER(WiFi_SSID_Status, network_status)

READ_ONLY(WiFi_SSID_LowerLayers) {
    const auto* network = network_by_number(get.locate()[0]);
    return network == nullptr ? kDone : get.answer(getLowerLayers(network->radio->layer_id));
}
