// Device.WiFi.AccessPoint.{i}.Security. and its copy for the guest network,
// Device.WiFi.AccessPoint.{i}.X_QM_MultiSSID.Security.
#include "cwmp/wireless.h"
#include "handlers/wifi/selection.h"
#include "handlers/wifi/settings.h"
#include "platform/profile.h"

using namespace cwmp;

namespace {

constexpr const char* kNoWep = " error: No support Security WEP\n\n";

// The interface under its profile name; any number that is no network's means the first.
std::string interface_of(int number) {
    const auto* network = network_by_number(number);
    return network != nullptr ? interface_name(network->field) : usual_interface_name(kRadio2G.main);
}

}  // namespace

PARAMETER(WiFi_AccessPoint_Security_ModeEnabled, security_mode_operate)

READ_ONLY(WiFi_AccessPoint_Security_ModesSupported) {
    return get.answer(is_main_network(get.locate()[0])
                          ? "None,WPA-Personal,WPA2-Personal,WPA3-Personal,WPA-WPA2-Personal,"
                            "WPA2-WPA3-Personal,WPA-Enterprise,WPA2-Enterprise,WPA-WPA2-Enterprise"
                          : "None,WPA/WPA2-Personal,WPA2/WPA3-Personal");
}

PARAMETER(WiFi_AccessPoint_Security_KeyPassphrase, KeyPassphrase_operate, kMainNetwork.section)
ALIAS(WiFi_AccessPoint_Security_SAEPassphrase, WiFi_AccessPoint_Security_KeyPassphrase)
PARAMETER(WiFi_AccessPoint_Security_WEPKey, WEPKey_operate, kMainNetwork.section)
FORWARD(WiFi_AccessPoint_Security_X_QM_Password, LANDevice_WLANConfiguration_X_QM_Password)
FORWARD(WiFi_AccessPoint_Security_PreSharedKey, LANDevice_WLANConfiguration_X_QM_Password)

READ_ONLY(WiFi_AccessPoint_Security_EncryptionMode) {
    const auto interface = interface_of(get.locate()[0]);
    const auto cipher = read_option({"wireless", interface.c_str(), "encryption"}).value_or("none");
    if (cipher == "none") return get.answer("");
    if (cipher == "psk2+ccmp") return get.answer("AES");
    if (cipher == "psk-mixed/ccmp+tkip") return get.answer("AES,TKIP");
    return get.answer(cipher);
}

PARAMETER(WiFi_AccessPoint_Security_X_QM_PSKType, constant, "KeyPassphrase")

PARAMETER(WiFi_AccessPoint_Security_RadiusServerIPAddr, refused_constant, "",
          " error: No support Security RadiusServer\n\n")
PARAMETER(WiFi_AccessPoint_Security_RadiusServerPort, refused_constant, "1812",
          " error: No support Security RadiusServerPort\n\n")
PARAMETER(WiFi_AccessPoint_Security_RadiusSecret, refused_constant, "", " error: No support Security RadiusSecret\n\n")
PARAMETER(WiFi_AccessPoint_Security_X_QM_WEPKeyIndex, refused_constant, "0", kNoWep)
PARAMETER(WiFi_AccessPoint_Security_X_QM_WEPKey1, refused_constant, "", kNoWep)
PARAMETER(WiFi_AccessPoint_Security_X_QM_WEPKey2, refused_constant, "", kNoWep)
PARAMETER(WiFi_AccessPoint_Security_X_QM_WEPKey3, refused_constant, "", kNoWep)
PARAMETER(WiFi_AccessPoint_Security_X_QM_WEPKey4, refused_constant, "", kNoWep)
PARAMETER(WiFi_AccessPoint_Security_X_QM_WEPAuthenticationMode, refused_constant, "",
          " error: No support WEPAuthenticationMode\n\n")

PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_Security_ModeEnabled, security_mode_operate)
ALIAS(WiFi_AccessPoint_X_QM_MultiSSID_Security_ModesSupported, WiFi_AccessPoint_Security_ModesSupported)
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_Security_KeyPassphrase, KeyPassphrase_operate, kGuestNetwork.section)
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_Security_WEPKey, WEPKey_operate, kGuestNetwork.section)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_Security_X_QM_Password, LANDevice_WLANConfiguration_MultiSSID_X_QM_PreSharedKey)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_Security_PreSharedKey, LANDevice_WLANConfiguration_MultiSSID_X_QM_PreSharedKey)
