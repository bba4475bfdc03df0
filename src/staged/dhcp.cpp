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

Refusal dns_servers(const Check& group) {
    const bool fit = group.text(CWMP_DHCP_DNS_SERVERS).size() <= kLongestDnsServers;
    return unless(fit, {"!!! dhcp check DNS fail\n\n"});
}

Refusal start_address(const Check& group) {
    return group.address(CWMP_DHCP_START_ADDRESS, "!!! dhcp check start_ip fail \n\n");
}

Refusal end_address(const Check& group) {
    return group.address(CWMP_DHCP_END_ADDRESS, "!!! dhcp  end_ip check fail \n\n");
}

}  // namespace

const Object cwmp::staged::kDhcp = {
    .name = "dhcp",
    .records = records(dhcp_obj_data, dhcp_obj_data_revert),
    .apply = CWMP_APPLY_DHCP_SERVER,
    .fields = {{"dhcp_start_ip", offsetof(Pool, start_address), sizeof(Pool::start_address), 15},
               {"dhcp_end_ip", offsetof(Pool, end_address), sizeof(Pool::end_address), 15},
               {"dhcp_dnsserver", offsetof(Pool, dns_servers), sizeof(Pool::dns_servers), 15}},
    .pre_revert = dhcp_pre_revert,
    .restorable = false,
    .rules = {dns_servers, start_address, end_address, Check::accepted_by_script},
    .check_passed = "!!! dhcp check success\n\n",
    .check_failed = {"!!! dhcp check fail\n\n", kError},
};

int dhcp_pre(int option, const char* value) { return stage(kDhcp, option, value); }
int dhcp_pre_revert(int option, const char* value) { return stage_revert(kDhcp, option, value); }
int dhcp_check() { return check(kDhcp); }
int dhcp_set(unsigned int* flags) { return apply(kDhcp, flags); }
