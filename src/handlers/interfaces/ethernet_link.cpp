// Device.Ethernet.Link.{i}. and Device.Ethernet.VLANTermination.{i}.
#include "handlers/blocks/accepts.h"
#include "handlers/blocks/forward.h"
#include "handlers/interfaces/values.h"

using namespace cwmp;
using namespace cwmp::interfaces;

HANDLER(Layer2Bridging_Bridge_VLAN_VLANEnable);
HANDLER(Layer2Bridging_Bridge_VLAN_VLANID);
HANDLER(WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVEnabled);
HANDLER(WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVVID);

PARAMETER(Ethernet_LinkNumberOfEntries, constant, "2")
PARAMETER(Ethernet_Link_Enable, constant, "1")
PARAMETER(Ethernet_Link_Status, value, Object::EthernetLink, status)
PARAMETER(Ethernet_Link_LowerLayers, value, Object::EthernetLink, lower_layers)
PARAMETER(Ethernet_Link_MACAddress, value, Object::EthernetLink, mac_address)

namespace {

// GET of the VLAN that the instance stands for; the unused ones answer "0".
int vlan(Arguments args, Handler internet, Handler iptv, Caller caller = Caller::here()) {
    const GetArguments get(args);
    const Instance* instance = require_instance(Object::VlanTermination, get.locate(), caller);
    if (instance == nullptr) return kRefused;
    if (instance->number == kInternetVlan) return internet(CWMP_OP_GET, args);
    return instance->number == kIptvVlan ? iptv(CWMP_OP_GET, args) : get.answer("0");
}

std::string up_when_enabled(std::string_view enable) { return enable == "1" ? "Up" : "Down"; }

}  // namespace

PARAMETER(Ethernet_VLANTerminationNumberOfEntries, constant, "4")

HANDLER(Ethernet_VLANTermination_Enable) {
    if (op == CWMP_OP_GET) {
        return vlan(args, Layer2Bridging_Bridge_VLAN_VLANEnable,
                    WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVEnabled);
    }
    return staged_instance(op, args, Object::VlanTermination,
                           {{kInternetVlan, {CWMP_STAGED_VLAN, CWMP_VLAN_ENABLE, boolean}},
                            {kIptvVlan, {CWMP_STAGED_IPTV, CWMP_IPTV_ENABLE, boolean}}});
}

// Only the internet VLAN has a device; the IPTV VLAN is up while it is enabled.
HANDLER(Ethernet_VLANTermination_Status) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const Instance* instance = require_instance(Object::VlanTermination, get.locate(), Caller::here());
    if (instance == nullptr) return kRefused;
    if (*instance->device != '\0' || !is_present(*instance)) return get.answer(status(*instance));
    if (instance->number != kIptvVlan) return get.answer("Down");
    return reword(args, WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVEnabled(op, args),
                  up_when_enabled);
}

PARAMETER(Ethernet_VLANTermination_LowerLayers, value, Object::VlanTermination, lower_layers)

HANDLER(Ethernet_VLANTermination_VLANID) {
    if (op == CWMP_OP_GET) {
        return vlan(args, Layer2Bridging_Bridge_VLAN_VLANID,
                    WANDevice_WANConnectionDevice_WANEthernetLinkConfig_X_QM_IPTVVID);
    }
    return staged_instance(op, args, Object::VlanTermination,
                           {{kInternetVlan, {CWMP_STAGED_VLAN, CWMP_VLAN_VLAN_ID, digits<1, 4094>}},
                            {kIptvVlan, {CWMP_STAGED_IPTV, CWMP_IPTV_VLAN_ID, digits<2, 4094>}}});
}
