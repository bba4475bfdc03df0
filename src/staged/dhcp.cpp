// The address pool of the DHCP server.
#include <cstddef>

#include "cwmp/apply_flags.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

using Pool = cwmp_dhcp_record;

Pool dhcp_obj_data;
Pool dhcp_obj_data_revert;

namespace {

constexpr std::size_t kLongestDnsServers = 50;

bool passes(const Check& check) {
    if (check.text(CWMP_DHCP_DNS_SERVERS).size() > kLongestDnsServers) {
        return check.fail("!!! dhcp check DNS fail\n\n");
    }
    return check.address(CWMP_DHCP_START_ADDRESS, "!!! dhcp check start_ip fail \n\n") &&
           check.address(CWMP_DHCP_END_ADDRESS, "!!! dhcp  end_ip check fail \n\n") &&
           check.script_accepts() && check.pass("!!! dhcp check success\n\n");
}

}  // namespace

const Object cwmp::staged::kDhcp = {
    .name = "dhcp",
    .staging = &dhcp_obj_data,
    .revert = &dhcp_obj_data_revert,
    .size = sizeof(Pool),
    .apply = CWMP_APPLY_DHCP_SERVER,
    .count = 3,
    .fields = {{"dhcp_start_ip", offsetof(Pool, start_address), sizeof(Pool::start_address), 15},
               {"dhcp_end_ip", offsetof(Pool, end_address), sizeof(Pool::end_address), 15},
               {"dhcp_dnsserver", offsetof(Pool, dns_servers), sizeof(Pool::dns_servers), 15}},
    .pre_revert = dhcp_pre_revert,
    .passes = passes,
    .restorable = false,
    .check_failed = {"!!! dhcp check fail\n\n", kError},
};

int dhcp_pre(int option, const char* value) { return stage(kDhcp, option, value); }
int dhcp_pre_revert(int option, const char* value) { return stage_revert(kDhcp, option, value); }
int dhcp_check() { return check(kDhcp); }
int dhcp_set(unsigned int* flags) { return apply(kDhcp, flags); }
