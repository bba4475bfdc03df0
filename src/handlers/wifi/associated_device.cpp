// InternetGatewayDevice.LANDevice.{i}.WLANConfiguration.{i}.AssociatedDevice.{i}. and its copy for the guest
// networks, under MultiSSID.
#include "handlers/wifi/associated_device.h"

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

HANDLER(LANDevice_WLANConfiguration_AssociatedDeviceNumberOfEntries) {
    return client_count(op, args, kMainPair);
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceMACAddress) {
    return Get_AssociatedDevice_Info(op, args, "mac");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceName) {
    return Get_AssociatedDevice_Info(op, args, "hostname");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceIPAddress) {
    return client_option(op, args, kMainPair, "ip");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LastDataUplinkRate) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "LastDataUplinkRate");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LastDataDownlinkRate) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "LastDataDownlinkRate");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LinkRxRate) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "rxrate");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_LinkTxRate) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "txrate");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "rssi");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI_Min) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "rssi_min");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI_Max) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "rssi_max");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_AssociatedDeviceAuthenticationState) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "authentication_state");
}
HANDLER(LANDevice_WLANConfiguration_AssociatedDevice_X_QM_SignalStrength) {
    return LANDevice_WLANConfiguration_AssociatedDevice_X_QM_RSSI(op, args);
}

HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDeviceNumberOfEntries) {
    return client_count(op, args, kGuestPair);
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceMACAddress) {
    return client_option(op, args, kGuestPair, "mac");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceIPAddress) {
    return client_option(op, args, kGuestPair, "ip");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataUplinkRate) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "LastDataUplinkRate");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataDownlinkRate) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "LastDataDownlinkRate");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkRxRate) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "rxrate");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkTxRate) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "txrate");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "rssi");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Min) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "rssi_min");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Max) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "rssi_max");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceAuthenticationState) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "authentication_state");
}
HANDLER(LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_SignalStrength) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI(op, args);
}
