// Device.DNS.: the servers that the router asks, and those that an operator fixes.
#include "config/store.h"
#include "core/refusal.h"
#include "cwmp/interface_stack.h"
#include "cwmp/value_checks.h"
#include "handlers/blocks/forward.h"
#include "handlers/blocks/numbered.h"

using namespace cwmp;

HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_DNSServers);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_DNSServers);

namespace {

constexpr int kServers = 2;  // primary and secondary
constexpr const char* kNone = "0.0.0.0";

std::string wan_type() { return read_option({"network_sync", "wan", "wan_type"}).value_or(""); }

bool is_dialled(const std::string& type) { return type == "pppoe" || type == "l2tp" || type == "pptp"; }
// Other connections have no place for servers of their own.
bool can_be_fixed(const std::string& type) { return type == "static" || is_dialled(type); }

const char* option_of(int server) { return server == 1 ? "pri_dns" : "snd_dns"; }

// The fixed server; empty for none.
std::string fixed(const std::string& type, int server) {
    if (!can_be_fixed(type)) return "";
    return without_blanks(read_option({"protocol", type.c_str(), option_of(server)}).value_or(""));
}

// An entry of a comma-separated pair.
std::string_view entry(std::string_view list, int number) {
    const std::size_t comma = list.find(',');
    if (number == 1) return list.substr(0, comma);
    return comma == std::string_view::npos ? "" : list.substr(comma + 1);
}

// Answers the server that the connection in force uses; empty for none.
int answer_learned(Arguments args, const std::string& type, int server) {
    const Handler connection = type == "pppoe" ? WANDevice_WANConnectionDevice_WANPPPConnection_DNSServers
                                               : WANDevice_WANConnectionDevice_WANIPConnection_DNSServers;
    const bool known = forward_get(args, connection, 1, 1) == kDone;
    const GetArguments get(args);
    return get.answer(known ? without_blanks(entry(get.answered(), server)) : "");
}

std::string learned_type(const std::string& type) {
    return type == "static" ? "Static" : is_dialled(type) ? "IPCP" : "DHCPv4";
}

std::string server_type(int /*server*/) { return learned_type(wan_type()); }
std::string forwarding_interface(int /*server*/) { return getWanInterface(); }
std::string forwarding_type(int server) {
    const std::string type = wan_type();
    return fixed(type, server).empty() ? learned_type(type) : "Static";
}

std::optional<std::string> server_to_store(const char* value) {
    if (*value == '\0' || std::string_view(value) == kNone) return kNone;
    if (checkValidIP(value) != 1 || libutil_netChkLegalIpAddr(value) != 1) return std::nullopt;
    return value;
}

int set_fixed(const SetArguments& set, Caller caller) {
    const auto server = require_number(set.locate()[0], kServers, caller);
    if (!server) return kRefused;
    const std::string type = wan_type();
    if (!can_be_fixed(type)) return refuse_instance(*server, caller);
    const auto address = server_to_store(set.value());
    if (!address) return refuse(caller, kError, "value is not valid\n");
    if (!write_option({"protocol", type.c_str(), option_of(*server)}, *address))
        return refuse(caller, kError, "UCI set params error\n");
    set.raise(CWMP_APPLY_WAN);
    return kDone;
}

}  // namespace

PARAMETER(DNS_Client_Enable, constant, "1")
PARAMETER(DNS_Client_ServerNumberOfEntries, constant, "2")
PARAMETER(DNS_Client_Server_Type, numbered, kServers, server_type)
HANDLER(DNS_Client_Server_DNSServer) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto server = require_number(GetArguments(args).locate()[0], kServers, Caller::here());
    return server ? answer_learned(args, wan_type(), *server) : kRefused;
}

PARAMETER(DNS_Relay_Enable, constant, "1")
PARAMETER(DNS_Relay_ForwardNumberOfEntries, constant, "2")
PARAMETER(DNS_Relay_Forwarding_Interface, numbered, kServers, forwarding_interface)
PARAMETER(DNS_Relay_Forwarding_Type, numbered, kServers, forwarding_type)
HANDLER(DNS_Relay_Forwarding_DNSServer) {
    const Caller caller = Caller::here();
    if (op != CWMP_OP_GET) {
        return change(op, args, [&](const SetArguments& set) { return set_fixed(set, caller); });
    }
    const GetArguments get(args);
    const auto server = require_number(get.locate()[0], kServers, caller);
    if (!server) return kRefused;
    const std::string type = wan_type();
    const std::string address = fixed(type, *server);
    return address.empty() ? answer_learned(args, type, *server) : get.answer(address);
}
