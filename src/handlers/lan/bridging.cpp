// Device.Bridging. and InternetGatewayDevice.Layer2Bridging.: the LAN bridge and its one VLAN, the internet
// VLAN.
#include "config/batch.h"
#include "core/text.h"
#include "cwmp/interface_stack.h"
#include "handlers/blocks/option.h"
#include "handlers/blocks/staged.h"

using namespace cwmp;

namespace {

constexpr Section kCustom{"iptv", "Custom"};
constexpr int kPorts = 6;

struct OtherVlan {
    const char* option;
    const char* usual;
    const char* evasive;  // where the internet VLAN has taken its identifier
};

void make_room(MirroredBatch& batch, const OtherVlan& vlan, const char* taken) {
    const auto stored = batch.read(kCustom.section, vlan.option);
    const bool unset = !stored || *stored == "0";
    if (!unset && *stored != taken) return;
    batch.set(kCustom.section, vlan.option, unset ? vlan.usual : vlan.evasive);
}

// The mode is stored for an identifier that is refused, too.
int set_internet_vlan(const SetArguments& set, Caller /*caller*/) {
    MirroredBatch batch(kCustom.package);
    int result = batch.set(kCustom.section, "mode", "Custom");
    const int identifier = decimal_prefix(set.value());
    if (identifier < 2 || identifier > 4094) return finish(batch, kRefused);
    if (result == kDone) result = batch.set(kCustom.section, "internet_vid", set.value());
    if (result == kDone) {
        make_room(batch, {"ipphone_vid", "20", "21"}, set.value());
        make_room(batch, {"iptv_vid", "30", "31"}, set.value());
    }
    if (finish(batch, result) != kDone) return kRefused;
    set.raise(CWMP_APPLY_IPTV);
    return kDone;
}

}  // namespace

WRITABLE(Layer2Bridging_Bridge_VLAN_VLANID, set_internet_vlan) {
    return get.answer(read_option(kCustom / "internet_vid"));
}

PARAMETER(Layer2Bridging_Bridge_VLAN_VLANEnable, staged_option, {CWMP_STAGED_VLAN, CWMP_VLAN_ENABLE},
          {.at = {"network", "vlan", "enable"}}, {.unreadable = " get VLANEnable error\n\n"})

ALIAS(Bridging_Bridge_VLAN_VLANID, Layer2Bridging_Bridge_VLAN_VLANID)
ALIAS(Bridging_Bridge_VLAN_VLANEnable, Layer2Bridging_Bridge_VLAN_VLANEnable)

PARAMETER(Bridging_BridgeNumberOfEntries, tolerant_constant, "1")
PARAMETER(Bridging_Bridge_VLANNumberOfEntries, tolerant_constant, "1")
PARAMETER(Bridging_Bridge_PortNumberOfEntries, tolerant_constant, "6")

HANDLER(Bridging_Bridge_Port_ManagementPort) {
    if (op != CWMP_OP_GET) return kDone;
    const GetArguments get(args);
    const int port = get.locate()[1];
    if (get.locate()[0] != 1 || port < 1 || port > kPorts) return kRefused;
    return get.answer(port == 1 ? "1" : "0");
}

// Only the management port tells what lies below it.
READ_ONLY(Bridging_Bridge_Port_LowerLayers) {
    constexpr int kBridgeStack = 22;
    if (get.locate()[0] != 1 || get.locate()[1] != 1) return kDone;
    return get.answer(getLowerLayers(kBridgeStack));
}
