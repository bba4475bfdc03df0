// Device.WiFi.AccessPoint.{i}.Security. and its copy for the guest network,
// Device.WiFi.AccessPoint.{i}.X_QM_MultiSSID.Security.
#include "cwmp/wireless.h"
#include "handlers/wifi/selection.h"
#include "handlers/wifi/settings.h"
#include "handlers/wifi/wlan_configuration.h"
#include "platform/profile.h"

using namespace cwmp;

namespace {

constexpr const char* kNoWep = " error: No support Security WEP\n\n";

// The interface under its profile name; any number that is no network's means the first.
std::string interface_of(int number) {
    const auto* network = network_by_number(number);
    if (network == nullptr) return network_by_number(1)->interface;
    return interface_name(network->profile_name, network->interface);
}

}  // namespace

HANDLER(WiFi_AccessPoint_Security_ModeEnabled) { return security_mode_operate(op, args); }

HANDLER(WiFi_AccessPoint_Security_ModesSupported) {
    if (op != CWMP_OP_GET) return kRefused;
    return constant(op, args,
                    is_main_network(locate_of(args)[0])
                        ? "None,WPA-Personal,WPA2-Personal,WPA3-Personal,WPA-WPA2-Personal,"
                          "WPA2-WPA3-Personal,WPA-Enterprise,WPA2-Enterprise,WPA-WPA2-Enterprise"
                        : "None,WPA/WPA2-Personal,WPA2/WPA3-Personal");
}

HANDLER(WiFi_AccessPoint_Security_KeyPassphrase) {
    return KeyPassphrase_operate(op, args, kMainNetwork.section);
}
HANDLER(WiFi_AccessPoint_Security_SAEPassphrase) { return WiFi_AccessPoint_Security_KeyPassphrase(op, args); }
HANDLER(WiFi_AccessPoint_Security_WEPKey) { return WEPKey_operate(op, args, kMainNetwork.section); }
HANDLER(WiFi_AccessPoint_Security_X_QM_Password) {
    return LANDevice_WLANConfiguration_X_QM_Password(op, args);
}
HANDLER(WiFi_AccessPoint_Security_PreSharedKey) {
    return LANDevice_WLANConfiguration_X_QM_Password(op, args);
}

HANDLER(WiFi_AccessPoint_Security_EncryptionMode) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto interface = interface_of(get.locate()[0]);
    const auto cipher = read_option({"wireless", interface.c_str(), "encryption"}).value_or("none");
    if (cipher == "none") return get.answer("");
    if (cipher == "psk2+ccmp") return get.answer("AES");
    if (cipher == "psk-mixed/ccmp+tkip") return get.answer("AES,TKIP");
    return get.answer(cipher);
}

HANDLER(WiFi_AccessPoint_Security_X_QM_PSKType) { return constant(op, args, "KeyPassphrase"); }

HANDLER(WiFi_AccessPoint_Security_RadiusServerIPAddr) {
    return refused_constant(op, args, "", " error: No support Security RadiusServer\n\n");
}
HANDLER(WiFi_AccessPoint_Security_RadiusServerPort) {
    return refused_constant(op, args, "1812", " error: No support Security RadiusServerPort\n\n");
}
HANDLER(WiFi_AccessPoint_Security_RadiusSecret) {
    return refused_constant(op, args, "", " error: No support Security RadiusSecret\n\n");
}
HANDLER(WiFi_AccessPoint_Security_X_QM_WEPKeyIndex) { return refused_constant(op, args, "0", kNoWep); }
HANDLER(WiFi_AccessPoint_Security_X_QM_WEPKey1) { return refused_constant(op, args, "", kNoWep); }
HANDLER(WiFi_AccessPoint_Security_X_QM_WEPKey2) { return refused_constant(op, args, "", kNoWep); }
HANDLER(WiFi_AccessPoint_Security_X_QM_WEPKey3) { return refused_constant(op, args, "", kNoWep); }
HANDLER(WiFi_AccessPoint_Security_X_QM_WEPKey4) { return refused_constant(op, args, "", kNoWep); }
HANDLER(WiFi_AccessPoint_Security_X_QM_WEPAuthenticationMode) {
    return refused_constant(op, args, "", " error: No support WEPAuthenticationMode\n\n");
}

HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_Security_ModeEnabled) { return security_mode_operate(op, args); }
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_Security_ModesSupported) {
    return WiFi_AccessPoint_Security_ModesSupported(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_Security_KeyPassphrase) {
    return KeyPassphrase_operate(op, args, kGuestNetwork.section);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_Security_WEPKey) {
    return WEPKey_operate(op, args, kGuestNetwork.section);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_Security_X_QM_Password) {
    return LANDevice_WLANConfiguration_MultiSSID_X_QM_PreSharedKey(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_Security_PreSharedKey) {
    return LANDevice_WLANConfiguration_MultiSSID_X_QM_PreSharedKey(op, args);
}
