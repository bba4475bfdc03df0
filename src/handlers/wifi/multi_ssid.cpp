// InternetGatewayDevice.LANDevice.{i}.WLANConfiguration.{i}.MultiSSID.: the guest network.
#include "config/batch.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/network_switch.h"
#include "handlers/wifi/settings.h"

using namespace cwmp;

HANDLER(LANDevice_WLANConfiguration_MultiSSID_Enable) {
    const auto* radio = radio_by_pair(locate_of(op, args));
    if (radio == nullptr) return kRefused;
    return network_switch(op, args,
                          {.network = kGuestNetwork,
                           .radio = *radio,
                           .can_be_all_off = true,
                           .replaces_default = false,
                           .unreadable = "can not foud wifi.guest.enable\n"});
}

READ_ONLY(LANDevice_WLANConfiguration_MultiSSID_Status) {
    return get.answer(read_option(kGuestNetwork / "enable") == "1" ? "Up" : "Disabled");
}

namespace {

int set_name(const SetArguments& set, Caller /*caller*/) {
    const auto [package, section] = kGuestNetwork;
    if (!at_most<32>(set.value())) return kRefused;
    MirroredBatch batch(package);
    batch.set(section, "ssid", set.value());
    batch.set(section, "usr_set", "1");
    if (finish(batch, kDone) != kDone) return kRefused;
    set.raise(CWMP_APPLY_WIRELESS);
    return kDone;
}

}  // namespace

WRITABLE(LANDevice_WLANConfiguration_MultiSSID_SSID, set_name) {
    return option(get, {.at = kGuestNetwork / "ssid"}, {.unreadable = "get ssid error\n\n"});
}

HANDLER(LANDevice_WLANConfiguration_MultiSSID_BeaconType) {
    if (op != CWMP_OP_GET) {
        return option(op, args,
                      {.at = kGuestNetwork / "encryption", .accepts = beacon_type, .apply = CWMP_APPLY_WIRELESS});
    }
    const auto type = stored_beacon_type(kGuestNetwork);
    return type ? answer(args, *type) : kDone;
}

PARAMETER(LANDevice_WLANConfiguration_MultiSSID_X_QM_PreSharedKey, option,
          {.at = kGuestNetwork / "password",
           .accepts = pass_phrase,
           .apply = CWMP_APPLY_WIRELESS,
           .secret = true,
           .write_failure_is_done = true},
          {.refused = kPassPhraseRefused})

ALIAS(LANDevice_WLANConfiguration_MultiSSID_X_QM_Password, LANDevice_WLANConfiguration_MultiSSID_X_QM_PreSharedKey)

PARAMETER(LANDevice_WLANConfiguration_MultiSSID_WPAEncryptionModes, accepted_constant, nullptr)
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_WPAAuthenticationMode, accepted_constant, nullptr)
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_IEEE11iEncryptionModes, accepted_constant, nullptr)
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_IEEE11iAuthenticationMode, accepted_constant, nullptr)
