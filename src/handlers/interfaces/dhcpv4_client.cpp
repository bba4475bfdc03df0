// Device.DHCPv4.Client.{i}.: 1 of the internet WAN, 2 of the management WAN.
#include "config/store.h"
#include "core/text.h"
#include "cwmp/interface_stack.h"
#include "cwmp/platform.h"
#include "cwmp/wan.h"
#include "handlers/blocks/accepts.h"
#include "handlers/blocks/forward.h"
#include "handlers/blocks/numbered.h"
#include "handlers/blocks/staged.h"
#include "handlers/interfaces/instances.h"

using namespace cwmp;

namespace {

constexpr int kClients = 2;
constexpr int kInternet = 1;

// The management WAN is always dynamic.
bool is_on(int client) { return client != kInternet || getclientstatus() == 1; }

std::string wan_type() { return read_option({"network", "wan", "wan_type"}).value_or(""); }

std::string enable(int client) { return is_on(client) ? "1" : "0"; }
std::string client_status(int client) { return is_on(client) ? "Enabled" : "Disabled"; }
std::string alias(int client) { return formatted("cpe-%d", client); }

std::string ip_interface(int client) {
    constexpr unsigned int kPlain = 47, kUnderPptp = 48, kUnderL2tp = 49, kManagement = 53;
    if (client != kInternet) return getFuncInterface(kManagement);
    const std::string type = wan_type();
    return getFuncInterface(type == "pptp" ? kUnderPptp : type == "l2tp" ? kUnderL2tp : kPlain);
}

std::string dhcp_status(int client) {
    if (!is_on(client)) return "Init";
    const int down = client == kInternet ? check_br_wan_status() : check_br_mg_status();
    return down == 0 ? "Bound" : "Selecting";
}

std::optional<std::string> type_of_wan(const char* value) {
    const auto enabled = boolean(value);
    if (!enabled) return std::nullopt;
    return *enabled == "1" ? "DHCP" : "Static";
}

// Under a connection that is dialled the client belongs to that: a SET, even of the value that GET shows, would
// put another connection in its place.
bool has_switch(int client) { return client == kInternet && interfaces::has_plain_wan(); }

int set_enable(int op, Arguments args, Caller caller = Caller::here()) {
    if (!is_pass(op)) return kDone;
    const PassArguments pass(op, args);
    const auto client = require_number(pass.locate()[0], kClients, caller);
    if (!client) return kRefused;
    if (!has_switch(*client)) return refuse_instance(*client, caller);
    return staged(pass, {CWMP_STAGED_WAN, CWMP_WAN_TYPE, type_of_wan}, caller);
}

// What the client has learned, told by the WAN connection of the same number.
int lease(int op, Arguments args, Handler connection, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto client = require_number(get.locate()[0], kClients, caller);
    if (!client) return kRefused;
    if (!is_on(*client)) return get.answer("");
    return reword(args, forward_get(args, connection, 1, *client), without_blanks);
}

}  // namespace

PARAMETER(DHCPv4_ClientNumberOfEntries, constant, "2")
HANDLER(DHCPv4_Client_Enable) {
    return op == CWMP_OP_GET ? numbered(op, args, kClients, enable) : set_enable(op, args);
}
PARAMETER(DHCPv4_Client_Alias, numbered, kClients, alias)
PARAMETER(DHCPv4_Client_Interface, numbered, kClients, ip_interface)
PARAMETER(DHCPv4_Client_Status, numbered, kClients, client_status)
PARAMETER(DHCPv4_Client_DHCPStatus, numbered, kClients, dhcp_status)
THROUGH(DHCPv4_Client_IPAddress, lease, WANDevice_WANConnectionDevice_WANIPConnection_ExternalIPAddress)
THROUGH(DHCPv4_Client_SubnetMask, lease, WANDevice_WANConnectionDevice_WANIPConnection_SubnetMask)
THROUGH(DHCPv4_Client_IPRouters, lease, WANDevice_WANConnectionDevice_WANIPConnection_DefaultGateway)
THROUGH(DHCPv4_Client_DNSServers, lease, WANDevice_WANConnectionDevice_WANIPConnection_DNSServers)
PARAMETER(DHCPv4_Client_PassthroughEnable, constant, "0")
