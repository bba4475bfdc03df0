// Device.DHCPv4.Server. and its one pool, without the static addresses.
#include "config/store.h"
#include "core/addresses.h"
#include "core/command.h"
#include "core/refusal.h"
#include "cwmp/interface_stack.h"

using namespace cwmp;

PARAMETER(DHCPv4_Server_Enable, constant, "1")
PARAMETER(DHCPv4_Server_PoolNumberOfEntries, constant, "1")

FORWARD(DHCPv4_Server_Pool_Enable, LANDevice_LANHostConfigManagement_DHCPServerEnable)
FORWARD(DHCPv4_Server_Pool_SubnetMask, LANDevice_LANHostConfigManagement_Subnetmask)
FORWARD(DHCPv4_Server_Pool_IPRouters, LANDevice_LANHostConfigManagement_IPRouters)
FORWARD(DHCPv4_Server_Pool_MinAddress, LANDevice_LANHostConfigManagement_MinAddress)
FORWARD(DHCPv4_Server_Pool_MaxAddress, LANDevice_LANHostConfigManagement_MaxAddress)
FORWARD(DHCPv4_Server_Pool_LeaseTime, LANDevice_LANHostConfigManagement_DHCPLeaseTime)
FORWARD(DHCPv4_Server_Pool_DNSServers, LANDevice_LANHostConfigManagement_DNSServers)

PARAMETER(DHCPv4_Server_Pool_Interface, constant, getFuncInterface(51))

READ_ONLY(DHCPv4_Server_Pool_Chaddr) {
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

READ_ONLY(DHCPv4_Server_Pool_Status) {
    const auto line = Command("cat /tmp/dhcps_status_lan").line();
    if (!line) return get.answer(status_without_line());
    if (*line == R"({"dhcps_status":"on"})") return get.answer("Enabled");
    if (*line == R"({"dhcps_status":"off"})") return get.answer("Disabled");
    get.answer("Error_Misconfigured");
    return kRefused;
}
