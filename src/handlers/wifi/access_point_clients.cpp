// Device.WiFi.AccessPoint.{i}.AssociatedDevice.{i}. and its copy for the guest networks, under
// X_QM_MultiSSID.
#include "core/refusal.h"
#include "cwmp/wireless.h"
#include "handlers/wifi/associated_device.h"
#include "handlers/wifi/client_table.h"

using namespace cwmp;

namespace {

enum class EmptyTable { answers_empty, is_traced };

// An address of a client of any of the four networks.
int client_address(int op, Arguments args, const char* option, EmptyTable empty,
                   Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    int* locate = get.locate();
    deepen(locate);
    log_event(caller, kEmergency, "locate[0] = %d,locate[1] = %d,locate[2] = %d\n\n", locate[0], locate[1],
              locate[2]);
    if (locate[1] == 0 || locate[2] == 0) return refuse(caller, kError, "locate error\n");
    const auto* network = network_by_number(locate[1]);
    if (network == nullptr) return kRefused;
    const int count = host_count();
    if (count == 0 && empty == EmptyTable::is_traced) {
        log_event(caller, kEmergency, "get wifi host macaddress == 0\n\n");
        return kDone;
    }
    if (count == 0) return get.answer("");
    if (count < locate[2]) return refuse(caller, kEmergency, "index = %d,total = %d\n\n", locate[2], count);
    return answer_client(get, find_client(network->field, count, locate[2]), option);
}

}  // namespace

HANDLER(WiFi_AccessPoint_AssociatedDeviceNumberOfEntries) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto* network = network_by_number(get.locate()[0]);
    if (network == nullptr) return kRefused;
    // Without a count the answer is left as it is.
    const auto count = row_count(kHosts);
    return count ? get.answer(std::to_string(clients_of(network->field, *count).size())) : kDone;
}

HANDLER(WiFi_AccessPoint_AssociatedDevice_MACAddress) {
    return client_address(op, args, "mac", EmptyTable::is_traced);
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_X_QM_IPAddress) {
    return client_address(op, args, "ip", EmptyTable::answers_empty);
}

// What the radio speaks, not the client.
HANDLER(WiFi_AccessPoint_AssociatedDevice_OperatingStandard) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto* network = network_by_number(get.locate()[0]);
    if (network == nullptr) return kRefused;
    const auto mode = read_option(network->radio->at("hwmode"));
    return get.answer(mode ? read_option(network->radio->at("ax_hwmode")).value_or(*mode) : "");
}

HANDLER(WiFi_AccessPoint_AssociatedDevice_Retransmissions) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "retransmission");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_PacketsReceived) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "rx_pkt");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_PacketsSent) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "tx_pkt");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_BytesReceived) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "rx_byte");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_BytesSent) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "tx_byte");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_ErrorsSent) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "errors_sent");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_RetransCount) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "retrans_count");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_FailedRetransCount) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "failed_retrans_count");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_RetryCount) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "retry_count");
}
HANDLER(WiFi_AccessPoint_AssociatedDevice_Stats_MultipleRetryCount) {
    return WLANConfiguration_AssociatedDevice_LinkInfo_Get(op, args, "multiple_retry_count");
}

HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDeviceNumberOfEntries) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDeviceNumberOfEntries(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_MACAddress) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceMACAddress(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_IPAddress) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceIPAddress(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_OperatingStandard) {
    return WiFi_AccessPoint_AssociatedDevice_OperatingStandard(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_AuthenticationState) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "authentication_state");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Retransmissions) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "retransmission");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_PacketsReceived) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "rx_pkt");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_PacketsSent) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "tx_pkt");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_BytesReceived) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "rx_byte");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_BytesSent) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "tx_byte");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_ErrorsSent) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "errors_sent");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_RetransCount) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "retrans_count");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_FailedRetransCount) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "failed_retrans_count");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_RetryCount) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "retry_count");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_MultipleRetryCount) {
    return MultiSSID_AssociatedDevice_LinkInfo_Get(op, args, "multiple_retry_count");
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_LastDataDownlinkRate) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataDownlinkRate(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_LastDataUplinkRate) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataUplinkRate(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_LinkRxRate) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkRxRate(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_LinkTxRate) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkTxRate(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI_Max) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Max(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI_Min) {
    return LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Min(op, args);
}
HANDLER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_SignalStrength) {
    return WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI(op, args);
}
