// The VLAN that carries internet traffic.
#include <cstddef>

#include "cwmp/apply_flags.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

using Vlan = cwmp_vlan_record;

Vlan vlan_obj_data;
Vlan vlan_obj_data_revert;

namespace {

// A number out of range is reported as passed: kept as it is.
Refusal vlan_id(const Check& group) {
    return group.number(CWMP_VLAN_VLAN_ID, 1, 4094, "!!!  vlan check vid pass \n\n");
}

}  // namespace

const Object cwmp::staged::kVlan = {
    .name = "vlan",
    .records = records(vlan_obj_data, vlan_obj_data_revert),
    .apply = CWMP_APPLY_WAN,
    .fields = {enable_word("vlan_enable"), {"vlan_vid", offsetof(Vlan, vlan_id), sizeof(Vlan::vlan_id), 19}},
    .pre_revert = vlan_pre_revert,
    .exempted = "!!!  vlan check enable pass \n\n",
    .rules = {vlan_id},
    .check_passed = "!!! vlan check pass\n",
    .check_failed = {"!!! vlan check fail\n"},
};

int vlan_pre(int option, const char* value) { return stage(kVlan, option, value); }
int vlan_pre_revert(int option, const char* value) { return stage_revert(kVlan, option, value); }
int vlan_check() { return check(kVlan); }
int vlan_set(unsigned int* flags) { return apply(kVlan, flags); }
