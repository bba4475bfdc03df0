// Adding, deleting and listing port mappings. Both data models share one object.
#include <algorithm>

#include "config/batch.h"
#include "config/instance_numbers.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/instances.h"
#include "handlers/blocks/object.h"
#include "handlers/wan/port_mapping.h"

using namespace cwmp;
using namespace cwmp::port_mapping;

namespace {

constexpr int kInvalidName = 9005;  // the TR-069 fault
constexpr const char* kCounter = "nat";
constexpr const char* kCount = "PortMappingNumberOfEntries";

// Sections without a number, and those of another type, spoil the numbering: what it gives may be taken.
int free_number() {
    int number = __getInstanceNext(kMappings.package, kMappings.type, kNumberOption, kMost);
    UciContext context(kLiveStore);
    if (!context || !context.load(kMappings.package)) return number;
    while (number <= kMost && context.section(decimal(number).c_str()) != nullptr) ++number;
    return number;
}

void change_count(MirroredBatch& batch, int by) {
    const int count = decimal_prefix(batch.value(kCounter, kCount).value_or("").c_str());
    const std::string changed = decimal(std::max<int64_t>(0, static_cast<int64_t>(count) + by));
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

int add(const AddArguments& arguments, Caller caller) {
    if (arguments.locate() == nullptr || arguments.locate()[0] != 0) {
        refuse(caller, kDebug, "can't set Device.NATPortmapping with exact locate\n\n");
        return kInvalidName;
    }
    MirroredBatch batch(kMappings.package);
    if (!batch.hold()) return fail(caller, kError, kUnwritten);
    const int number = free_number();
    if (number > kMost) return fail(caller, kError, kTooMany);
    const std::string name = decimal(number);
    if (batch.add_section(name.c_str(), kMappings.type) != 0) return fail(caller, kDebug, "Add section error\n\n");
    change_count(batch, 1);
    set_defaults(batch, name);
    if (!batch.commit(caller)) return fail(caller, kError, kUnwritten);
    if (arguments.answer(name) != kDone) return kFailed;
    arguments.raise(CWMP_APPLY_NAT);
    return kDone;
}

int remove(const DeleteArguments& arguments, Caller caller) {
    const int number = arguments.number();
    if (number > kMost) return fail(caller, kError, kTooMany);
    MirroredBatch batch(kMappings.package);
    if (!batch.hold()) return fail(caller, kError, kUnwritten);
    const NumberedSection mapping(kMappings, number);
    if (!mapping) return fail(caller, kDebug, kNoInstance);
    batch.delete_section(mapping.name().c_str(), kMappings.type);
    change_count(batch, -1);
    if (!batch.commit(caller)) return fail(caller, kDebug, "Del section error\n\n");
    arguments.raise(CWMP_APPLY_NAT);
    return kDone;
}

// A section without a usable number cannot be reached by one.
int list(const ListArguments& arguments, Caller /*caller*/) {
    auto numbers = instance_numbers(kMappings.package, kMappings.type, kNumberOption);
    std::erase_if(numbers, [](int32_t number) { return number < 1 || number > kMost; });
    return arguments.answer(numbers);
}

}  // namespace

PARAMETER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping, object, {add, remove, list})

ALIAS(NAT_PortMapping, WANDevice_WANConnectionDevice_WANIPConnection_PortMapping)
ALIAS(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping,
      WANDevice_WANConnectionDevice_WANIPConnection_PortMapping)
