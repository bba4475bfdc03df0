// Device.PPP.Interface.{i}.: the PPPoE connection. Its account is a group of settings.
#include "handlers/blocks/accepts.h"
#include "handlers/blocks/forward.h"
#include "handlers/interfaces/account.h"
#include "handlers/interfaces/values.h"

using namespace cwmp;
using namespace cwmp::interfaces;

HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_Enable);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_CurrentMRUSize);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_DNSServers);

namespace {

// As the PPP connection of the WAN answers; a SET goes to the field of the group.
int ppp_field(int op, Arguments args, Handler connection, StagedField field, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return staged_instance(op, args, Object::Ppp, {{1, field}}, caller);
    return known_to_connection(op, args, Object::Ppp, connection, nullptr, caller);
}

int ipcp_address(int op, Arguments args, Handler connection, Caller caller = Caller::here()) {
    return reword(args, known_to_connection(op, args, Object::Ppp, connection, "", caller), without_blanks);
}

std::optional<std::string> address_or_none(const char* value) {
    return *value != '\0' ? ipv4_address(value) : std::optional<std::string>("");
}

}  // namespace

PARAMETER(PPP_InterfaceNumberOfEntries, constant, "1")

PARAMETER(PPP_Interface_Enable, ppp_field, WANDevice_WANConnectionDevice_WANPPPConnection_Enable,
          {CWMP_STAGED_PPPOE, CWMP_PPPOE_ENABLE, boolean})
PARAMETER(PPP_Interface_Status, value, Object::Ppp, status)
PARAMETER(PPP_Interface_Alias, value, Object::Ppp, alias)
PARAMETER(PPP_Interface_Name, value, Object::Ppp, device_name)
PARAMETER(PPP_Interface_LastChange, value, Object::Ppp, last_change)
PARAMETER(PPP_Interface_LowerLayers, value, Object::Ppp, lower_layers)
PARAMETER(PPP_Interface_ConnectionStatus, connection_status, Object::Ppp)

HANDLER(PPP_Interface_Username) {
    if (op == CWMP_OP_GET) return account(op, args, {Object::Ppp, "pppoe", "username"});
    return staged_instance(op, args, Object::Ppp, {{1, {CWMP_STAGED_PPPOE, CWMP_PPPOE_USERNAME, credential}}});
}
HANDLER(PPP_Interface_Password) {
    if (op == CWMP_OP_GET) return constant(op, args, "");
    return staged_instance(op, args, Object::Ppp, {{1, {CWMP_STAGED_PPPOE, CWMP_PPPOE_PASSWORD, credential}}});
}
PARAMETER(PPP_Interface_CurrentMRUSize, known_to_connection, Object::Ppp,
          WANDevice_WANConnectionDevice_WANPPPConnection_CurrentMRUSize)
PARAMETER(PPP_Interface_ConnectionTrigger, constant, "AlwaysOn")
PARAMETER(PPP_Interface_IPv6CPEnable, constant, "0")
PARAMETER(PPP_Interface_PPPoE_ACName, account, {Object::Ppp, "pppoe", "ac", service_name})
PARAMETER(PPP_Interface_PPPoE_ServiceName, account, {Object::Ppp, "pppoe", "service", service_name})

THROUGH(PPP_Interface_IPCP_LocalIPAddress, ipcp_address,
        WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress)
THROUGH(PPP_Interface_IPCP_RemoteIPAddress, ipcp_address, WANDevice_WANConnectionDevice_WANPPPConnection_DefaultGateway)
HANDLER(PPP_Interface_IPCP_DNSServers) {
    const int code = ppp_field(op, args, WANDevice_WANConnectionDevice_WANPPPConnection_DNSServers,
                               {CWMP_STAGED_PPPOE, CWMP_PPPOE_DNS_SERVERS, address_or_none});
    return op == CWMP_OP_GET ? reword(args, code, without_blanks) : code;
}

PARAMETER(PPP_Interface_Stats_BytesSent, counter, Object::Ppp, "TotalBytesSent")
PARAMETER(PPP_Interface_Stats_BytesReceived, counter, Object::Ppp, "TotalBytesReceived")
PARAMETER(PPP_Interface_Stats_PacketsSent, counter, Object::Ppp, "TotalPacketsSent")
PARAMETER(PPP_Interface_Stats_PacketsReceived, counter, Object::Ppp, "TotalPacketsReceived")
PARAMETER(PPP_Interface_Stats_ErrorsSent, counter, Object::Ppp, "TotalErrorsSent")
PARAMETER(PPP_Interface_Stats_ErrorsReceived, counter, Object::Ppp, "TotalErrorsReceived")
PARAMETER(PPP_Interface_Stats_DiscardPacketsSent, counter, Object::Ppp, "DiscardPacketsSent")
PARAMETER(PPP_Interface_Stats_DiscardPacketsReceived, counter, Object::Ppp, "DiscardPacketsReceived")
