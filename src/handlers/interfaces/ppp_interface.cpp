// Device.PPP.Interface.{i}.: the PPPoE connection. Its account is a group of settings.
#include "handlers/blocks/accepts.h"
#include "handlers/blocks/forward.h"
#include "handlers/interfaces/account.h"
#include "handlers/interfaces/dialled.h"
#include "handlers/interfaces/values.h"

using namespace cwmp;
using namespace cwmp::interfaces;

HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_Enable);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_CurrentMRUSize);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_DefaultGateway);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_DNSServers);

namespace {

// As the PPP connection of the WAN answers; a SET goes to the field of the group.
int ppp_field(int op, Arguments args, Handler connection, const StagedField& field,
              Caller caller = Caller::here()) {
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

HANDLER(PPP_InterfaceNumberOfEntries) { return constant(op, args, "1"); }

HANDLER(PPP_Interface_Enable) {
    return ppp_field(op, args, WANDevice_WANConnectionDevice_WANPPPConnection_Enable,
                     {CWMP_STAGED_PPPOE, CWMP_PPPOE_ENABLE, boolean});
}
HANDLER(PPP_Interface_Status) { return value(op, args, Object::Ppp, status); }
HANDLER(PPP_Interface_Alias) { return value(op, args, Object::Ppp, alias); }
HANDLER(PPP_Interface_Name) { return value(op, args, Object::Ppp, device_name); }
HANDLER(PPP_Interface_LastChange) { return value(op, args, Object::Ppp, last_change); }
HANDLER(PPP_Interface_LowerLayers) { return value(op, args, Object::Ppp, lower_layers); }
HANDLER(PPP_Interface_ConnectionStatus) { return connection_status(op, args, Object::Ppp); }

HANDLER(PPP_Interface_Username) {
    if (op == CWMP_OP_GET) return account(op, args, {Object::Ppp, "pppoe", "username"});
    return staged_instance(op, args, Object::Ppp,
                           {{1, {CWMP_STAGED_PPPOE, CWMP_PPPOE_USERNAME, credential}}});
}
HANDLER(PPP_Interface_Password) {
    if (op == CWMP_OP_GET) return constant(op, args, "");
    return staged_instance(op, args, Object::Ppp,
                           {{1, {CWMP_STAGED_PPPOE, CWMP_PPPOE_PASSWORD, credential}}});
}
HANDLER(PPP_Interface_CurrentMRUSize) {
    return known_to_connection(op, args, Object::Ppp,
                               WANDevice_WANConnectionDevice_WANPPPConnection_CurrentMRUSize);
}
HANDLER(PPP_Interface_ConnectionTrigger) { return constant(op, args, "AlwaysOn"); }
HANDLER(PPP_Interface_IPv6CPEnable) { return constant(op, args, "0"); }
HANDLER(PPP_Interface_PPPoE_ACName) { return account(op, args, {Object::Ppp, "pppoe", "ac", service_name}); }
HANDLER(PPP_Interface_PPPoE_ServiceName) {
    return account(op, args, {Object::Ppp, "pppoe", "service", service_name});
}

HANDLER(PPP_Interface_IPCP_LocalIPAddress) {
    return ipcp_address(op, args, WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress);
}
HANDLER(PPP_Interface_IPCP_RemoteIPAddress) {
    return ipcp_address(op, args, WANDevice_WANConnectionDevice_WANPPPConnection_DefaultGateway);
}
HANDLER(PPP_Interface_IPCP_DNSServers) {
    const int code = ppp_field(op, args, WANDevice_WANConnectionDevice_WANPPPConnection_DNSServers,
                               {CWMP_STAGED_PPPOE, CWMP_PPPOE_DNS_SERVERS, address_or_none});
    return op == CWMP_OP_GET ? reword(args, code, without_blanks) : code;
}

HANDLER(PPP_Interface_Stats_BytesSent) { return counter(op, args, Object::Ppp, "TotalBytesSent"); }
HANDLER(PPP_Interface_Stats_BytesReceived) { return counter(op, args, Object::Ppp, "TotalBytesReceived"); }
HANDLER(PPP_Interface_Stats_PacketsSent) { return counter(op, args, Object::Ppp, "TotalPacketsSent"); }
HANDLER(PPP_Interface_Stats_PacketsReceived) {
    return counter(op, args, Object::Ppp, "TotalPacketsReceived");
}
HANDLER(PPP_Interface_Stats_ErrorsSent) { return counter(op, args, Object::Ppp, "TotalErrorsSent"); }
HANDLER(PPP_Interface_Stats_ErrorsReceived) { return counter(op, args, Object::Ppp, "TotalErrorsReceived"); }
HANDLER(PPP_Interface_Stats_DiscardPacketsSent) {
    return counter(op, args, Object::Ppp, "DiscardPacketsSent");
}
HANDLER(PPP_Interface_Stats_DiscardPacketsReceived) {
    return counter(op, args, Object::Ppp, "DiscardPacketsReceived");
}
