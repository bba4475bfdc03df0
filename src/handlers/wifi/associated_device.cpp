// InternetGatewayDevice.LANDevice.{i}.WLANConfiguration.{i}.AssociatedDevice.{i}. and its copy for the guest
// networks, under MultiSSID.
#include "core/refusal.h"
#include "cwmp/wireless.h"
#include "handlers/wifi/client_table.h"

using namespace cwmp;

int WLANConfiguration_AssociatedDevice_LinkInfo_Get(int op, va_list args, const char* option) {
    return client_option(op, args, kMainPair, option);
}

int MultiSSID_AssociatedDevice_LinkInfo_Get(int op, va_list args, const char* option) {
    return client_option(op, args, kGuestPair, option);
}

int Get_AssociatedDevice_Info(int op, va_list args, const char* option) {
    if (op != CWMP_OP_GET || option == nullptr) return kRefused;
    const GetArguments get(args);
    const int number = get.locate()[0];
    const int index = get.locate()[1];
    LOG(kEmergency, "locate[0] == %d,locate[1] == %d\n\n", number, index);
    if (number == 0 || index == 0) return REFUSE("locate error\n");
    const int count = host_count();
    LOG(kEmergency, "total is %d\n\n", count);
    if (count == 0) return get.answer("");
    if (count < index) return REFUSE("locate[2] is wrong\n");
    const auto* network = network_by_number(number);
    // Clients of the first network are not shown here.
    if (network == nullptr || number == 1) return kRefused;
    return answer_client(get, find_client(network->field, count, index), option);
}

PARAMETER(LANDevice_WLANConfiguration_AssociatedDeviceNumberOfEntries, client_count, kMainPair)
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceMACAddress, Get_AssociatedDevice_Info, "mac")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceName, Get_AssociatedDevice_Info, "hostname")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceIPAddress, client_option, kMainPair, "ip")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LastDataUplinkRate, main_client, "LastDataUplinkRate")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LastDataDownlinkRate, main_client, "LastDataDownlinkRate")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LinkRxRate, main_client, "rxrate")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LinkTxRate, main_client, "txrate")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI, main_client, "rssi")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI_Min, main_client, "rssi_min")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI_Max, main_client, "rssi_max")
PARAMETER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceAuthenticationState, main_client,
          "authentication_state")
ALIAS(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_SignalStrength,
      LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI)

PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDeviceNumberOfEntries, client_count, kGuestPair)
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceMACAddress, client_option, kGuestPair,
          "mac")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceIPAddress, client_option, kGuestPair,
          "ip")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataUplinkRate, guest_client,
          "LastDataUplinkRate")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataDownlinkRate, guest_client,
          "LastDataDownlinkRate")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkRxRate, guest_client, "rxrate")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkTxRate, guest_client, "txrate")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI, guest_client, "rssi")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Min, guest_client, "rssi_min")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Max, guest_client, "rssi_max")
PARAMETER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceAuthenticationState, guest_client,
          "authentication_state")
ALIAS(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_SignalStrength,
      LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI)
