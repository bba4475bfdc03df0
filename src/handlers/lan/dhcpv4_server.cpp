// Device.DHCPv4.Server. and its one pool, without the static addresses.
#include "core/addresses.h"
#include "core/command.h"
#include "core/refusal.h"
#include "cwmp/interface_stack.h"
#include "handlers/blocks/option.h"
#include "handlers/lan/lan_host_config.h"

using namespace cwmp;

HANDLER(DHCPv4_Server_Enable) { return constant(op, args, "1"); }
HANDLER(DHCPv4_Server_PoolNumberOfEntries) { return constant(op, args, "1"); }

HANDLER(DHCPv4_Server_Pool_Enable) { return LANDevice_LANHostConfigManagement_DHCPServerEnable(op, args); }
HANDLER(DHCPv4_Server_Pool_SubnetMask) { return LANDevice_LANHostConfigManagement_Subnetmask(op, args); }
HANDLER(DHCPv4_Server_Pool_IPRouters) { return LANDevice_LANHostConfigManagement_IPRouters(op, args); }
HANDLER(DHCPv4_Server_Pool_MinAddress) { return LANDevice_LANHostConfigManagement_MinAddress(op, args); }
HANDLER(DHCPv4_Server_Pool_MaxAddress) { return LANDevice_LANHostConfigManagement_MaxAddress(op, args); }
HANDLER(DHCPv4_Server_Pool_LeaseTime) { return LANDevice_LANHostConfigManagement_DHCPLeaseTime(op, args); }
HANDLER(DHCPv4_Server_Pool_DNSServers) { return LANDevice_LANHostConfigManagement_DNSServers(op, args); }

HANDLER(DHCPv4_Server_Pool_Interface) { return constant(op, args, getFuncInterface(51)); }

HANDLER(DHCPv4_Server_Pool_Chaddr) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const int pool = get.locate()[0];
    const auto mac = pool == 1 ? read_option({"network", "lan", "macaddr"}) : std::nullopt;
    if (!mac) return REFUSE("failed to get lan mac locat[0] = %d\n", pool);
    return get.answer(canonical_mac(*mac));
}

namespace {

// Without a status line: a router lacks its server, any other mode has it switched off on purpose.
const char* status_without_line() {
    if (read_option({"sysmode", "sysmode", "mode"}) == "Router") return "Error";
    return Command("cat /tmp/smartip_recv_dhcp_if").line() ? "Disabled" : "Error";
}

}  // namespace

HANDLER(DHCPv4_Server_Pool_Status) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto line = Command("cat /tmp/dhcps_status_lan").line();
    if (!line) return get.answer(status_without_line());
    if (*line == R"({"dhcps_status":"on"})") return get.answer("Enabled");
    if (*line == R"({"dhcps_status":"off"})") return get.answer("Disabled");
    get.answer("Error_Misconfigured");
    return kRefused;
}
