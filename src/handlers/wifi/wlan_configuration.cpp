// InternetGatewayDevice.LANDevice.{i}.WLANConfiguration.{i}.: the networks. Their radios are in
// wlan_radio.cpp.

#include "core/text.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/network_switch.h"
#include "handlers/wifi/settings.h"

using namespace cwmp;

namespace {

constexpr OptionPath kDefaultNetwork = {"wifi", "default", "enable"};

int set_default_network(const SetArguments& set, Caller /*caller*/) {
    if (read_option(kDefaultNetwork) != set.value() && !write_leniently(kDefaultNetwork, set.value())) return kRefused;
    set.raise(CWMP_APPLY_WIRELESS);
    return kDone;
}

}  // namespace

// Two, although the parameters of a network answer for four numbers: see docs/wireless.md.
PARAMETER(LANDevice_LANWLANConfigurationNumberOfEntries, constant, "2")

// Every WLANConfiguration shows the name of the main network.
PARAMETER(LANDevice_WLANConfiguration_SSID, option, {.at = kMainNetwork / "ssid", .apply = CWMP_APPLY_WIRELESS},
          {.unreadable = "get ssid error\n\n", .unwritten = "set ssid error\n\n"})

HANDLER(LANDevice_WLANConfiguration_X_QM_Password) {
    constexpr int kLastNumber = 6;
    const int number = locate_of(args)[0];
    const bool is_network = number >= 1 && number <= kLastNumber;
    return option(op, args,
                  {.at = is_network ? network_section(number) / "password" : OptionPath{},
                   .accepts = pass_phrase,
                   .apply = CWMP_APPLY_WIRELESS,
                   .secret = true},
                  {.refused = kPassPhraseRefused, .unwritten = "set password error\n\n"});
}

ALIAS(LANDevice_WLANConfiguration_X_QM_PreSharedKey, LANDevice_WLANConfiguration_X_QM_Password)

HANDLER(LANDevice_WLANConfiguration_BeaconType) {
    if (op == CWMP_OP_GET) return answer(args, stored_beacon_type(kMainNetwork).value_or(""));
    return option(op, args,
                  {.at = kMainNetwork / "encryption",
                   .accepts = beacon_type,
                   .apply = CWMP_APPLY_WIRELESS,
                   .write_failure_is_done = true});
}

FORWARD(LANDevice_WLANConfiguration_WPS_Enable, X_QM_MeshFeature_Host_WPS_Enable)

READ_ONLY(LANDevice_WLANConfiguration_BSSID) {
    const auto* network = network_by_number(get.locate()[0]);
    if (network == nullptr) return get.answer("0:0:0:0:0:0");
    const auto command =
        formatted("ifconfig %s | grep HWaddr | awk  '{print $5}'", usual_interface_name(network->field));
    return get.answer(first_line({command.c_str(), kLongLine, "Failed to popen\n"}).value_or("MAC_BLANK"));
}

HANDLER(LANDevice_WLANConfiguration_Enable) {
    const auto* network = network_by_number(locate_of(op, args)[0]);
    if (network == nullptr) return kRefused;
    return network_switch(op, args, {network->section, *network->radio, network->is_guest()});
}

HANDLER(LANDevice_WLANConfiguration_Radio_Enable) {
    const auto* radio = radio_by_number(locate_of(op, args)[0]);
    if (radio == nullptr) return kRefused;
    return network_switch(op, args, {kMainNetwork, *radio});
}

WRITABLE(LANDevice_WLANConfiguration_X_QM_default_wifi_Enable, set_default_network) {
    return option(get, {.at = kDefaultNetwork});
}

PARAMETER(LANDevice_WLANConfiguration_WPAEncryptionModes, accepted_constant, "TKIPandAESEncryption")
ALIAS(LANDevice_WLANConfiguration_IEEE11iEncryptionModes, LANDevice_WLANConfiguration_WPAEncryptionModes)
PARAMETER(LANDevice_WLANConfiguration_WPAAuthenticationMode, accepted_constant, "PSKAuthentication")
ALIAS(LANDevice_WLANConfiguration_IEEE11iAuthenticationMode, LANDevice_WLANConfiguration_WPAAuthenticationMode)
