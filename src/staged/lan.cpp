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

bool passes(const Check& check) {
    return check.address(CWMP_LAN_ADDRESS, "!!! lan check fail 1\n\n") &&
           check.address(CWMP_LAN_MASK, "!!! lan mask check fail 2\n\n") && check.script_accepts() &&
           check.pass("!!! lan check success\n");
}

}  // namespace

const Object cwmp::staged::kLan = {
    .name = "lan",
    .staging = &lan_obj_data,
    .revert = &lan_obj_data_revert,
    .size = sizeof(Lan),
    .apply = CWMP_APPLY_LAN,
    .count = 2,
    .fields = {{"lan_ip", offsetof(Lan, address), sizeof(Lan::address), 15},
               {"lan_mask", offsetof(Lan, mask), sizeof(Lan::mask), 15}},
    .pre_revert = lan_pre_revert,
    .passes = passes,
    .check_failed = {"!!! lan check fail\n"},
};

int lan_pre(int option, const char* value) { return stage(kLan, option, value); }
int lan_pre_revert(int option, const char* value) { return stage_revert(kLan, option, value); }
int lan_check() { return check(kLan); }
int lan_set(unsigned int* flags) { return apply(kLan, flags); }
