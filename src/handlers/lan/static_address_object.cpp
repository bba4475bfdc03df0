// Device.DHCPv4.Server.Pool.{i}.StaticAddress.: adding, deleting and listing static addresses.
#include <algorithm>
#include <vector>

#include "config/batch.h"
#include "config/store.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/instances.h"
#include "handlers/blocks/instance_list.h"
#include "handlers/lan/reservation.h"

using namespace cwmp;

namespace {

constexpr int kFailed = 1;

int fail(Caller caller, const char* event) {
    refuse(caller, kError, "%s", event);
    return kFailed;
}

bool create(MirroredBatch& batch, const std::string& name, Caller caller) {
    constexpr struct {
        const char* option;
        const char* value;
    } kUnset[] = {{"interface", "lan"}, {"enable", "off"}, {"mac", kNoMac}, {"ip", kNoHost}};
    batch.add_section(name.c_str(), kReservation);
    for (const auto& unset : kUnset) batch.set(name.c_str(), unset.option, unset.value);
    return batch.commit(caller);
}

int add(Arguments args, Caller caller) {
    MirroredBatch batch(kReservations);
    if (!batch.hold()) return fail(caller, "failed to add obj\n");
    const auto numbers = ReservationNumbers::read(caller);
    if (!numbers) return fail(caller, "failed to get instance mask\n");
    int number = 1;
    while (numbers->has(number)) ++number;
    if (number > numbers->most()) return fail(caller, "failed to add obj, reach max instance number\n");
    const std::string name = std::to_string(number);
    if (!create(batch, name, caller)) return fail(caller, "failed to add obj\n");
    return GetArguments(args).answer(name) == kDone ? kDone : kFailed;
}

bool erase(MirroredBatch& batch, const char* name, const SetArguments& set, Caller caller) {
    const auto enable = read_option({kReservations, name, "enable"});
    if (!enable) {
        log_event(caller, kError, "failed to get section %s option enable\n\n", name);
        return false;
    }
    batch.delete_section(name, kReservation);
    if (!batch.commit(caller)) {
        log_event(caller, kError, "failed to delete section %s\n\n", name);
        return false;
    }
    if (*enable == "on") set.raise(CWMP_APPLY_DHCP_SERVER);
    return true;
}

int remove(Arguments args, Caller caller) {
    constexpr const char* kUndeleted = "failed to del obj\n";
    const SetArguments set(CWMP_OP_APPLY, args);
    MirroredBatch batch(kReservations);
    if (!batch.hold()) return fail(caller, kUndeleted);
    const auto numbers = ReservationNumbers::read(caller);
    if (!numbers) return fail(caller, kUndeleted);
    const int number = set.value() == nullptr ? 0 : decimal_prefix(set.value());
    if (!numbers->has(number)) {
        refuse(caller, kError, "failed to del instance %d\n", number);
        return kFailed;
    }
    return erase(batch, std::to_string(number).c_str(), set, caller) ? kDone : fail(caller, kUndeleted);
}

int list(Arguments args, Caller caller) {
    const auto numbers = ReservationNumbers::read(caller);
    if (!numbers) return kFailed;
    std::vector<int32_t> used;
    for (int number = 1; number <= numbers->most(); ++number) {
        if (numbers->has(number)) used.push_back(number);
    }
    const auto capacity = answer_instances(args, used);
    if (!capacity) return kFailed;
    if (used.size() >= *capacity) {
        log_event(caller, kWarning, "maybe buffer overflow src len %d dst len %d\n", numbers->most(),
                  static_cast<int>(*capacity));
    }
    return kDone;
}

}  // namespace

HANDLER(DHCPv4_Server_Pool_StaticAddress) {
    switch (op) {
        case CWMP_OP_ADD:
            return add(args, Caller::here());
        case CWMP_OP_DELETE:
            return remove(args, Caller::here());
        case CWMP_OP_LIST:
            return list(args, Caller::here());
        default:
            REFUSE("unkown optFlag %d\n", op);
            return kFailed;
    }
}

HANDLER(DHCPv4_Server_Pool_StaticAddressNumberOfEntries) {
    if (op != CWMP_OP_GET) return kRefused;
    return GetArguments(args).answer(std::to_string(__getInstanceMax(kReservations, kReservation)));
}
