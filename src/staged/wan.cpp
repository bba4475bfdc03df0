// How the internet WAN gets its address: by DHCP, or a static one with mask, gateway and name servers.
#include <cstddef>

#include "cwmp/apply_flags.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

using Wan = cwmp_wan_record;

Wan wan_obj_data;
Wan wan_obj_data_revert;

namespace {

constexpr const char* kSuccess = "!!! wan check success\n";

bool is_dynamic(const Check& group) { return group.text(CWMP_WAN_TYPE) == "DHCP"; }

bool address_staged(const Check& group) {
    return group.staged(CWMP_WAN_ADDRESS) || group.staged(CWMP_WAN_MASK) || group.staged(CWMP_WAN_GATEWAY);
}

// A connection that is dynamic and stays so takes no address.
Refusal type(const Check& group) {
    if (group.staged(CWMP_WAN_TYPE)) return {};
    const auto missing = group.filled(CWMP_WAN_TYPE);
    return is_dynamic(group) && address_staged(group) ? kSilent : missing;
}

Refusal address(const Check& group) { return group.address(CWMP_WAN_ADDRESS, "!!! wan ip check fail \n\n"); }
Refusal mask(const Check& group) { return group.address(CWMP_WAN_MASK, "!!! wan mask check fail \n\n"); }
Refusal gateway(const Check& group) { return group.address(CWMP_WAN_GATEWAY, "!!! wan gate check fail \n\n"); }

}  // namespace

const Object cwmp::staged::kWan = {
    .name = "wan",
    .records = records(wan_obj_data, wan_obj_data_revert),
    .apply = CWMP_APPLY_WAN,
    .fields = {{"wan_ip", offsetof(Wan, address), sizeof(Wan::address), 15},
               {"wan_mask", offsetof(Wan, mask), sizeof(Wan::mask), 15},
               {"wan_gate", offsetof(Wan, gateway), sizeof(Wan::gateway), 15},
               {"wan_dnsserver", offsetof(Wan, dns_servers), sizeof(Wan::dns_servers), 49},
               {"wan_type", offsetof(Wan, type), sizeof(Wan::type), 19}},
    .pre_revert = wan_pre_revert,
    .prints = true,
    .exempt = is_dynamic,
    .exempted = kSuccess,
    .rules = {type, address, mask, gateway, Check::accepted_by_script},
    .check_passed = kSuccess,
    .check_failed = {"!!! wan check fail\n"},
};

int wan_pre(int option, const char* value) { return stage(kWan, option, value); }
int wan_pre_revert(int option, const char* value) { return stage_revert(kWan, option, value); }
int wan_check() { return check(kWan); }
int wan_set(unsigned int* flags) { return apply(kWan, flags); }
