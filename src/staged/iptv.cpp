// The VLAN that carries IPTV.
#include <cstddef>

#include "cwmp/apply_flags.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

using Iptv = cwmp_iptv_record;

Iptv iptv_obj_data;
Iptv iptv_obj_data_revert;

namespace {

void log_settings(Caller caller) {
    log_event(caller, kProgress, "enable=%d, %.*s, %.*s , %.*s \n\n", iptv_obj_data.enable, 19, iptv_obj_data.vlan_id,
              19, iptv_obj_data.type, 19, iptv_obj_data.priority);
}

Refusal type(const Check& group) {
    if (!group.staged(CWMP_IPTV_TYPE)) return group.filled(CWMP_IPTV_TYPE);
    const auto type = group.text(CWMP_IPTV_TYPE);
    return unless(type == "normal" || type == "bridge", {"!!!  iptv type check fail\n\n"});
}

Refusal vlan_id(const Check& group) { return group.number(CWMP_IPTV_VLAN_ID, 2, 4094, "!!! iptv vid check fail \n\n"); }

Refusal priority(const Check& group) {
    const bool staged = group.staged(CWMP_IPTV_PRIORITY);
    const auto refusal = group.number(CWMP_IPTV_PRIORITY, 0, 7, "!!! iptv prio fail \n\n");
    if (staged && !refusal) group.tell("!!! iptv  check pass\n\n");
    return refusal;
}

}  // namespace

const Object cwmp::staged::kIptv = {
    .name = "iptv",
    .records = records(iptv_obj_data, iptv_obj_data_revert),
    .apply = CWMP_APPLY_IPTV,
    .fields = {enable_word("iptv_enable"),
               {"iptv_type", offsetof(Iptv, type), sizeof(Iptv::type), 19},
               {"iptv_vid", offsetof(Iptv, vlan_id), sizeof(Iptv::vlan_id), 19},
               {"iptv_prio", offsetof(Iptv, priority), sizeof(Iptv::priority), 19}},
    .json_order = {CWMP_IPTV_ENABLE, CWMP_IPTV_VLAN_ID, CWMP_IPTV_TYPE, CWMP_IPTV_PRIORITY},
    .pre_revert = iptv_pre_revert,
    .true_enables_revert = true,
    .exempted = "!!!  iptv check enable pass \n\n",
    .rules = {type, vlan_id, priority},
    .check_passed = "!!! iptv  check success\n\n",
    .check_failed = {"!!! iptv  check fail\n\n"},
    // What was staged for IPTV stays: kept as it is.
    .check_failure_clears = &kLan,
    .before_apply = log_settings,
};

int iptv_pre(int option, const char* value) { return stage(kIptv, option, value); }
int iptv_pre_revert(int option, const char* value) { return stage_revert(kIptv, option, value); }
int iptv_check() { return check(kIptv); }
int iptv_set(unsigned int* flags) { return apply(kIptv, flags); }
