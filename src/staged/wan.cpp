// How the internet WAN gets its address: by DHCP, or a static one with mask, gateway and name servers.
#include <cstddef>
#include <cstdio>
#include <string_view>

#include "cwmp/apply_flags.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

using Wan = cwmp_wan_record;

Wan wan_obj_data;
Wan wan_obj_data_revert;

namespace {

constexpr const char* kSuccess = "!!! wan check success\n";
constexpr std::string_view kDynamic = "DHCP";

void print(int option, const char* value) {
    std::printf("!!!option:%d, val:%s\n", option, value != nullptr ? value : "(null)");
}

bool address_staged(const Check& check) {
    return check.staged(CWMP_WAN_ADDRESS) || check.staged(CWMP_WAN_MASK) || check.staged(CWMP_WAN_GATEWAY);
}

// A connection that is dynamic and stays so takes no address.
bool type_passes(const Check& check) {
    if (check.staged(CWMP_WAN_TYPE)) return true;
    return check.fill(CWMP_WAN_TYPE) && !(check.text(CWMP_WAN_TYPE) == kDynamic && address_staged(check));
}

bool passes(const Check& check) {
    if (check.text(CWMP_WAN_TYPE) == kDynamic) return check.pass(kSuccess);
    return type_passes(check) && check.address(CWMP_WAN_ADDRESS, "!!! wan ip check fail \n\n") &&
           check.address(CWMP_WAN_MASK, "!!! wan mask check fail \n\n") &&
           check.address(CWMP_WAN_GATEWAY, "!!! wan gate check fail \n\n") && check.script_accepts() &&
           check.pass(kSuccess);
}

}  // namespace

const Object cwmp::staged::kWan = {
    .name = "wan",
    .staging = &wan_obj_data,
    .revert = &wan_obj_data_revert,
    .size = sizeof(Wan),
    .apply = CWMP_APPLY_WAN,
    .count = 5,
    .fields = {{"wan_ip", offsetof(Wan, address), sizeof(Wan::address), 15},
               {"wan_mask", offsetof(Wan, mask), sizeof(Wan::mask), 15},
               {"wan_gate", offsetof(Wan, gateway), sizeof(Wan::gateway), 15},
               {"wan_dnsserver", offsetof(Wan, dns_servers), sizeof(Wan::dns_servers), 49},
               {"wan_type", offsetof(Wan, type), sizeof(Wan::type), 19}},
    .pre_revert = wan_pre_revert,
    .passes = passes,
    .check_failed = {"!!! wan check fail\n"},
};

int wan_pre(int option, const char* value) {
    print(option, value);
    return stage(kWan, option, value);
}

int wan_pre_revert(int option, const char* value) {
    print(option, value);
    return stage_revert(kWan, option, value);
}

int wan_check() { return check(kWan); }
int wan_set(unsigned int* flags) { return apply(kWan, flags); }
