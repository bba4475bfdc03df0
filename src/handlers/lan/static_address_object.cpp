// Device.DHCPv4.Server.Pool.{i}.StaticAddress.: adding, deleting and listing static addresses.
#include <vector>

#include "config/batch.h"
#include "config/store.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/instances.h"
#include "handlers/blocks/object.h"
#include "handlers/lan/reservation.h"

using namespace cwmp;

namespace {

bool create(MirroredBatch& batch, const std::string& name, Caller caller) {
    constexpr struct {
        const char* option;
        const char* value;
    } kUnset[] = {{"interface", "lan"}, {"enable", "off"}, {"mac", kNoMac}, {"ip", kNoHost}};
    batch.add_section(name.c_str(), kReservations.type);
    for (const auto& unset : kUnset) batch.set(name.c_str(), unset.option, unset.value);
    return batch.commit(caller);
}

int add(const AddArguments& arguments, Caller caller) {
    MirroredBatch batch(kReservations.package);
    if (!batch.hold()) return fail(caller, kError, "failed to add obj\n");
    const auto numbers = ReservationNumbers::read(caller);
    if (!numbers) return fail(caller, kError, "failed to get instance mask\n");
    int number = 1;
    while (numbers->has(number)) ++number;
    if (number > numbers->most()) return fail(caller, kError, "failed to add obj, reach max instance number\n");
    const std::string name = decimal(number);
    return create(batch, name, caller) ? arguments.answer(name) : fail(caller, kError, "failed to add obj\n");
}

bool erase(MirroredBatch& batch, const char* name, const DeleteArguments& arguments, Caller caller) {
    const auto enable = read_option({kReservations.package, name, "enable"});
    if (!enable) {
        log_event(caller, kError, "failed to get section %s option enable\n\n", name);
        return false;
    }
    batch.delete_section(name, kReservations.type);
    if (!batch.commit(caller)) {
        log_event(caller, kError, "failed to delete section %s\n\n", name);
        return false;
    }
    if (*enable == "on") arguments.raise(CWMP_APPLY_DHCP_SERVER);
    return true;
}

int remove(const DeleteArguments& arguments, Caller caller) {
    constexpr const char* kUndeleted = "failed to del obj\n";
    MirroredBatch batch(kReservations.package);
    if (!batch.hold()) return fail(caller, kError, kUndeleted);
    const auto numbers = ReservationNumbers::read(caller);
    if (!numbers) return fail(caller, kError, kUndeleted);
    const int number = arguments.number();
    if (!numbers->has(number)) {
        refuse(caller, kError, "failed to del instance %d\n", number);
        return kFailed;
    }
    const bool erased = erase(batch, decimal(number).c_str(), arguments, caller);
    return erased ? kDone : fail(caller, kError, kUndeleted);
}

int list(const ListArguments& arguments, Caller caller) {
    const auto numbers = ReservationNumbers::read(caller);
    if (!numbers) return kFailed;
    std::vector<int32_t> used;
    for (int number = 1; number <= numbers->most(); ++number) {
        if (numbers->has(number)) used.push_back(number);
    }
    if (arguments.answer(used) != kDone) return kFailed;
    if (used.size() >= arguments.capacity()) {
        log_event(caller, kWarning, "maybe buffer overflow src len %d dst len %d\n", numbers->most(),
                  static_cast<int>(arguments.capacity()));
    }
    return kDone;
}

}  // namespace

PARAMETER(DHCPv4_Server_Pool_StaticAddress, object, {add, remove, list})

READ_ONLY(DHCPv4_Server_Pool_StaticAddressNumberOfEntries) {
    const int count = __getInstanceMax(kReservations.package, kReservations.type);
    return get.answer(decimal(count));
}
