#include "handlers/interfaces/instances.h"

#include <algorithm>
#include <iterator>

#include "core/refusal.h"
#include "cwmp/interface_stack.h"
#include "cwmp/platform.h"
#include "handlers/blocks/numbered.h"

namespace cwmp::interfaces {

namespace {

constexpr Instance kInstances[] = {
    {Object::IpInterface, kLan, 12, "br-lan", "lan"},
    {Object::IpInterface, kWan, 11, "br-wan", "wan"},
    {Object::IpInterface, kPptpLeg, 9, "br-wan", "wan"},
    {Object::IpInterface, kL2tpLeg, 10, "br-wan", "wan"},
    {Object::IpInterface, kPppoe, 2, "pppoe-internet", "internet"},
    {Object::IpInterface, kPptp, 0, "pptp-internet", "internet"},
    {Object::IpInterface, kL2tp, 1, "l2tp-internet", "internet"},
    {Object::IpInterface, kMg, 6, "br-mg", "mg"},
    {Object::Ppp, 1, 5, "pppoe-internet", "internet"},
    {Object::Pptp, 1, 3, "pptp-internet", "internet"},
    {Object::L2tp, 1, 4, "l2tp-internet", "internet"},
    {Object::EthernetLink, 1, 18, "br-lan", "lan"},
    {Object::EthernetLink, 2, 17, "br-wan", "wan"},
    {Object::VlanTermination, kInternetVlan, 13, "br-wan", "wan"},
    {Object::VlanTermination, 2, 15, "", ""},
    {Object::VlanTermination, kIptvVlan, 14, "", ""},
    {Object::VlanTermination, 4, 16, "", ""},
};

// Null when there is none.
const Instance* instance_of(Object object, int number) {
    const auto* found = std::find_if(std::begin(kInstances), std::end(kInstances),
                                     [&](const auto& row) { return row.object == object && row.number == number; });
    return found != std::end(kInstances) ? found : nullptr;
}

}  // namespace

const Instance* require_instance(Object object, const int* locate, Caller caller) {
    const bool below = object == Object::IpAddress;
    const Instance* found = instance_of(below ? Object::IpInterface : object, locate[0]);
    if (found == nullptr) {
        refuse_instance(locate[0], caller);
        return nullptr;
    }
    if (below && locate[1] != 1) {
        refuse(caller, kError, "locate error\n");
        return nullptr;
    }
    return found;
}

// The stack never shows the management WAN.
bool is_present(const Instance& instance) {
    if (instance.object == Object::IpInterface && instance.number == kMg) return check_br_mg_status() == 0;
    refreshIntfStacks();
    return *getLowerLayers(instance.stack) != '\0';
}

bool has_plain_wan() { return is_present(*instance_of(Object::IpInterface, kWan)); }

}  // namespace cwmp::interfaces
