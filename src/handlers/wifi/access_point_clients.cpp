// Device.WiFi.AccessPoint.{i}.AssociatedDevice.{i}. and its copy for the guest networks, under
// X_QM_MultiSSID.
#include "core/refusal.h"
#include "core/text.h"
#include "handlers/wifi/client_table.h"

using namespace cwmp;

namespace {

enum class EmptyTable { answers_empty, is_traced };

// An address of a client of any of the four networks.
int client_address(int op, Arguments args, const char* option, EmptyTable empty, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    int* locate = get.locate();
    deepen(locate);
    log_event(caller, kEmergency, "locate[0] = %d,locate[1] = %d,locate[2] = %d\n\n", locate[0], locate[1], locate[2]);
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

READ_ONLY(WiFi_AccessPoint_AssociatedDeviceNumberOfEntries) {
    const auto* network = network_by_number(get.locate()[0]);
    if (network == nullptr) return kRefused;
    // Without a count the answer is left as it is.
    const auto count = row_count(kHosts);
    return count ? get.answer(decimal(std::ssize(clients_of(network->field, *count)))) : kDone;
}

PARAMETER(WiFi_AccessPoint_AssociatedDevice_MACAddress, client_address, "mac", EmptyTable::is_traced)
PARAMETER(WiFi_AccessPoint_AssociatedDevice_X_QM_IPAddress, client_address, "ip", EmptyTable::answers_empty)

// What the radio speaks, not the client.
READ_ONLY(WiFi_AccessPoint_AssociatedDevice_OperatingStandard) {
    const auto* network = network_by_number(get.locate()[0]);
    if (network == nullptr) return kRefused;
    const auto mode = read_option(network->radio->at("hwmode"));
    return get.answer(mode ? read_option(network->radio->at("ax_hwmode")).value_or(*mode) : "");
}

PARAMETER(WiFi_AccessPoint_AssociatedDevice_Retransmissions, main_client, "retransmission")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_PacketsReceived, main_client, "rx_pkt")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_PacketsSent, main_client, "tx_pkt")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_BytesReceived, main_client, "rx_byte")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_BytesSent, main_client, "tx_byte")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_ErrorsSent, main_client, "errors_sent")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_RetransCount, main_client, "retrans_count")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_FailedRetransCount, main_client, "failed_retrans_count")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_RetryCount, main_client, "retry_count")
PARAMETER(WiFi_AccessPoint_AssociatedDevice_Stats_MultipleRetryCount, main_client, "multiple_retry_count")

FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDeviceNumberOfEntries,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDeviceNumberOfEntries)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_MACAddress,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceMACAddress)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_IPAddress,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_AssociatedDeviceIPAddress)
ALIAS(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_OperatingStandard,
      WiFi_AccessPoint_AssociatedDevice_OperatingStandard)
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_AuthenticationState, guest_client, "authentication_state")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Retransmissions, guest_client, "retransmission")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_PacketsReceived, guest_client, "rx_pkt")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_PacketsSent, guest_client, "tx_pkt")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_BytesReceived, guest_client, "rx_byte")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_BytesSent, guest_client, "tx_byte")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_ErrorsSent, guest_client, "errors_sent")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_RetransCount, guest_client, "retrans_count")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_FailedRetransCount, guest_client,
          "failed_retrans_count")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_RetryCount, guest_client, "retry_count")
PARAMETER(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_Stats_MultipleRetryCount, guest_client,
          "multiple_retry_count")
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_LastDataDownlinkRate,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataDownlinkRate)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_LastDataUplinkRate,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LastDataUplinkRate)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_LinkRxRate,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkRxRate)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_LinkTxRate,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_LinkTxRate)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI_Max,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Max)
FORWARD(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI_Min,
        LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_X_QM_RSSI_Min)
ALIAS(WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_SignalStrength,
      WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_X_QM_RSSI)
