// The entry points over all six groups.
#include "core/handler.h"
#include "cwmp/uci_access.h"
#include "staged/engine.h"

using namespace cwmp;
using namespace cwmp::staged;

const cwmp_staged_object func_obj_table[CWMP_STAGED_OBJECTS] = {
    {pppoe_pre, pppoe_check, pppoe_set}, {dhcp_pre, dhcp_check, dhcp_set}, {lan_pre, lan_check, lan_set},
    {wan_pre, wan_check, wan_set},       {iptv_pre, iptv_check, iptv_set}, {vlan_pre, vlan_check, vlan_set},
};

const Object* const cwmp::staged::kObjects[CWMP_STAGED_OBJECTS] = {&kPppoe, &kDhcp, &kLan, &kWan, &kIptv, &kVlan};

int func_obj_exec(int object, int option, int mode, const char* value, unsigned int* flags) {
    if (object < 0 || object >= CWMP_STAGED_OBJECTS) return -1;
    const cwmp_staged_object& operations = func_obj_table[object];
    switch (mode) {
        case CWMP_STAGED_STAGE:
            return operations.pre(option, value);
        case CWMP_STAGED_CHECK:
            return operations.check();
        case CWMP_STAGED_APPLY: {
            const int result = operations.set(flags);
            save_to_cwmp_config();
            return result;
        }
        default:
            return 0;
    }
}

void func_obj_restore() {
    for (const Object* object : kObjects) {
        const auto revert = Record::revert(*object);
        if (!object->restorable || revert.checked() != 1) continue;
        const auto staging = Record::staging(*object);
        for (int option = 0; option < object->count(); ++option) staging.put(option, revert.value(option));
        staging.checked() = 1;
    }
}

bool cwmp::staged::apply_all(unsigned int* flags) {
    bool accepted = true;
    for (const cwmp_staged_object& operations : func_obj_table) accepted = operations.set(flags) != 0 && accepted;
    forget_groups();
    return accepted;
}

int func_obj_revert(int /*op*/, va_list args) {
    const PassArguments set(CWMP_OP_APPLY, args);
    for (const Object* object : kObjects) {
        // Without values to go back to, what was refused must not be applied now.
        const auto staging = Record::staging(*object);
        if (object->restorable && Record::revert(*object).checked() != 1) staging.clear();
    }
    func_obj_restore();
    apply_all(set.flags());
    return 0;
}
