// The router's address and mask on the LAN.
#include <cstddef>

#include "cwmp/apply_flags.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

using Lan = cwmp_lan_record;

Lan lan_obj_data;
Lan lan_obj_data_revert;

namespace {

Refusal address(const Check& group) { return group.address(CWMP_LAN_ADDRESS, "!!! lan check fail 1\n\n"); }
Refusal mask(const Check& group) { return group.address(CWMP_LAN_MASK, "!!! lan mask check fail 2\n\n"); }

}  // namespace

const Object cwmp::staged::kLan = {
    .name = "lan",
    .records = records(lan_obj_data, lan_obj_data_revert),
    .apply = CWMP_APPLY_LAN,
    .fields = {{"lan_ip", offsetof(Lan, address), sizeof(Lan::address), 15},
               {"lan_mask", offsetof(Lan, mask), sizeof(Lan::mask), 15}},
    .pre_revert = lan_pre_revert,
    .rules = {address, mask, Check::accepted_by_script},
    .check_passed = "!!! lan check success\n",
    .check_failed = {"!!! lan check fail\n"},
};

int lan_pre(int option, const char* value) { return stage(kLan, option, value); }
int lan_pre_revert(int option, const char* value) { return stage_revert(kLan, option, value); }
int lan_check() { return check(kLan); }
int lan_set(unsigned int* flags) { return apply(kLan, flags); }
