// Adding, deleting and listing port mappings. Both data models share one object.
#include <algorithm>
#include <vector>

#include "config/batch.h"
#include "config/instance_numbers.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/instances.h"
#include "handlers/blocks/instance_list.h"
#include "handlers/wan/port_mapping.h"

using namespace cwmp;
using namespace cwmp::port_mapping;

namespace {

constexpr int kFailed = 1;
constexpr int kInvalidName = 9005;  // the TR-069 fault
constexpr const char* kCounter = "nat";
constexpr const char* kCount = "PortMappingNumberOfEntries";

bool exists(const std::string& name) {
    UciContext context(kLiveStore);
    return context && context.load(kPackage) && find_mapping(context, name) != nullptr;
}

// Sections without a number, and those of another type, spoil the numbering: what it gives may be taken.
int free_number() {
    int number = __getInstanceNext(kPackage, kType, kNumberOption, kMost);
    UciContext context(kLiveStore);
    if (!context || !context.load(kPackage)) return number;
    while (number <= kMost && context.section(std::to_string(number).c_str()) != nullptr) ++number;
    return number;
}

void change_count(MirroredBatch& batch, int by) {
    const int count = decimal_prefix(batch.value(kCounter, kCount).value_or("").c_str());
    const std::string changed = std::to_string(std::max<int64_t>(0, static_cast<int64_t>(count) + by));
    batch.set(kCounter, kCount, changed.c_str());
}

void set_defaults(MirroredBatch& batch, const std::string& name) {
    const struct {
        const char* option;
        std::string value;
    } defaults[] = {
        {kNumberOption, name},
        {"intf", "lan"},
        {"protocol", "all"},
        {"service_type", "custom"},
        {"internal_port", "65531"},
        {"external_port", "65531"},
        {"ip", "253"},
        {"enable", "off"},
        {"name", "cpe-" + name},
    };
    for (const auto& entry : defaults) batch.set(name.c_str(), entry.option, entry.value.c_str());
}

int fail(Caller caller, int level, const char* event) {
    refuse(caller, level, "%s", event);
    return kFailed;
}

int add(Arguments args, Caller caller) {
    const GetArguments out(args);
    const SetArguments set(CWMP_OP_APPLY, args);
    if (set.locate() == nullptr || set.locate()[0] != 0) {
        refuse(caller, kDebug, "can't set Device.NATPortmapping with exact locate\n\n");
        return kInvalidName;
    }
    MirroredBatch batch(kPackage);
    if (!batch.hold()) return fail(caller, kError, kUnwritten);
    const int number = free_number();
    if (number > kMost) return fail(caller, kError, kTooMany);
    const std::string name = std::to_string(number);
    if (batch.add_section(name.c_str(), kType) != 0) return fail(caller, kDebug, "Add section error\n\n");
    change_count(batch, 1);
    set_defaults(batch, name);
    if (!batch.commit(caller)) return fail(caller, kError, kUnwritten);
    if (out.answer(name) != kDone) return kFailed;
    set.raise(CWMP_APPLY_NAT);
    return kDone;
}

int remove(Arguments args, Caller caller) {
    const SetArguments set(CWMP_OP_APPLY, args);
    const int number = set.value() == nullptr ? 0 : decimal_prefix(set.value());
    if (number > kMost) return fail(caller, kError, kTooMany);
    const std::string name = std::to_string(number);
    MirroredBatch batch(kPackage);
    if (!batch.hold()) return fail(caller, kError, kUnwritten);
    if (number < 1 || !exists(name)) return fail(caller, kDebug, kNoInstance);
    if (batch.delete_section(name.c_str(), kType) != 0) return fail(caller, kDebug, "Del section error\n\n");
    change_count(batch, -1);
    if (!batch.commit(caller)) return fail(caller, kDebug, "Del section error\n\n");
    set.raise(CWMP_APPLY_NAT);
    return kDone;
}

// A section without a usable number cannot be reached by one.
int list(Arguments args) {
    auto numbers = instance_numbers(kPackage, kType, kNumberOption);
    std::erase_if(numbers, [](int32_t number) { return number < 1 || number > kMost; });
    return answer_instances(args, numbers) ? kDone : kFailed;
}

}  // namespace

HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping) {
    const Caller caller = Caller::here();
    switch (op) {
        case CWMP_OP_ADD:
            return add(args, caller);
        case CWMP_OP_DELETE:
            return remove(args, caller);
        case CWMP_OP_LIST:
            return list(args);
        default:
            REFUSE("unkown optFlag %d\n", op);
            return kFailed;
    }
}

HANDLER(NAT_PortMapping) { return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping(op, args); }
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping(op, args);
}
