// Device.IP.Interface.{i}. and its one IPv4Address.
#include <string_view>

#include "config/store.h"
#include "cwmp/wan.h"
#include "handlers/blocks/accepts.h"
#include "handlers/blocks/forward.h"
#include "handlers/interfaces/values.h"

using namespace cwmp;
using namespace cwmp::interfaces;

HANDLER(LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceIPAddress);
HANDLER(LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceSubnetMask);
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_ExternalIPAddress);
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_SubnetMask);
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress);

HANDLER(IP_InterfaceNumberOfEntries) { return constant(op, args, "8"); }
HANDLER(IP_Interface_Enable) { return value(op, args, Object::IpInterface, present); }
HANDLER(IP_Interface_IPv4Enable) { return value(op, args, Object::IpInterface, present); }
HANDLER(IP_Interface_IPv6Enable) { return constant(op, args, "0"); }
HANDLER(IP_Interface_Status) { return value(op, args, Object::IpInterface, status); }
HANDLER(IP_Interface_Alias) { return value(op, args, Object::IpInterface, alias); }
HANDLER(IP_Interface_Name) { return value(op, args, Object::IpInterface, device_name); }
HANDLER(IP_Interface_LastChange) { return value(op, args, Object::IpInterface, last_change); }
HANDLER(IP_Interface_LowerLayers) { return value(op, args, Object::IpInterface, lower_layers); }
HANDLER(IP_Interface_Router) { return constant(op, args, "Device.Routing.Router.1."); }
HANDLER(IP_Interface_MaxMTUSize) { return value(op, args, Object::IpInterface, mtu); }
HANDLER(IP_Interface_Type) { return constant(op, args, "Normal"); }
HANDLER(IP_Interface_Loopback) { return constant(op, args, "0"); }
HANDLER(IP_Interface_IPv4AddressNumberOfEntries) { return constant(op, args, "1"); }

namespace {

std::string address_status(const Instance& instance) { return is_present(instance) ? "Enabled" : "Disabled"; }

// Who knows an address or a mask, by the kind of interface.
struct Source {
    Handler lan;
    Handler wan;
    Handler pppoe;  // null: asked for like a tunnel's
    Text tunnel;
};

int known_to(Arguments args, const Source& source, Caller caller = Caller::here()) {
    const GetArguments get(args);
    const Instance* instance = require_instance(Object::IpAddress, get.locate(), caller);
    if (instance == nullptr) return kRefused;
    if (!is_present(*instance)) return get.answer("");
    const auto ask = [&] {
        switch (instance->number) {
            case kLan:
                return source.lan(CWMP_OP_GET, args);
            case kWan:
            case kPptpLeg:
            case kL2tpLeg:
                return forward_get(args, source.wan, 1, 1);
            case kMg:
                return forward_get(args, source.wan, 1, 2);
            default:
                if (instance->number == kPppoe && source.pppoe != nullptr)
                    return forward_get(args, source.pppoe, 1, 1);
                return get.answer(source.tunnel(*instance));
        }
    };
    return reword(args, ask(), without_blanks);
}

std::string addressing_type(const Instance& instance) {
    switch (instance.number) {
        case kLan:
            return read_option({"network", "lan", "proto"}) == "dhcp" ? "DHCP" : "Static";
        case kWan:
        case kPptpLeg:
        case kL2tpLeg:
            return getclientstatus() == 1 ? "DHCP" : "Static";
        case kMg:
            return "DHCP";
        default:
            return "IPCP";
    }
}

std::optional<std::string> settable_type(const char* value) {
    const std::string_view type = value;
    if (type != "DHCP" && type != "Static") return std::nullopt;
    return value;
}

}  // namespace

HANDLER(IP_Interface_IPv4Address_Enable) { return value(op, args, Object::IpAddress, present); }
HANDLER(IP_Interface_IPv4Address_Status) { return value(op, args, Object::IpAddress, address_status); }

HANDLER(IP_Interface_IPv4Address_IPAddress) {
    if (op == CWMP_OP_GET) {
        return known_to(args, {LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceIPAddress,
                               WANDevice_WANConnectionDevice_WANIPConnection_ExternalIPAddress,
                               WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress, address});
    }
    return staged_instance(op, args, Object::IpAddress,
                           {{kLan, {CWMP_STAGED_LAN, CWMP_LAN_ADDRESS, ipv4_address}},
                            {kWan, {CWMP_STAGED_WAN, CWMP_WAN_ADDRESS, ipv4_address}}});
}

HANDLER(IP_Interface_IPv4Address_SubnetMask) {
    if (op == CWMP_OP_GET) {
        return known_to(args, {LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceSubnetMask,
                               WANDevice_WANConnectionDevice_WANIPConnection_SubnetMask, nullptr, mask});
    }
    return staged_instance(op, args, Object::IpAddress,
                           {{kLan, {CWMP_STAGED_LAN, CWMP_LAN_MASK, ipv4_address}},
                            {kWan, {CWMP_STAGED_WAN, CWMP_WAN_MASK, ipv4_address}}});
}

HANDLER(IP_Interface_IPv4Address_AddressingType) {
    if (op == CWMP_OP_GET) return value(op, args, Object::IpAddress, addressing_type);
    return staged_instance(op, args, Object::IpAddress,
                           {{kWan, {CWMP_STAGED_WAN, CWMP_WAN_TYPE, settable_type}}});
}

HANDLER(IP_Interface_Stats_BytesSent) { return counter(op, args, Object::IpInterface, "TotalBytesSent"); }
HANDLER(IP_Interface_Stats_BytesReceived) {
    return counter(op, args, Object::IpInterface, "TotalBytesReceived");
}
HANDLER(IP_Interface_Stats_PacketsSent) { return counter(op, args, Object::IpInterface, "TotalPacketsSent"); }
HANDLER(IP_Interface_Stats_PacketsReceived) {
    return counter(op, args, Object::IpInterface, "TotalPacketsReceived");
}
HANDLER(IP_Interface_Stats_ErrorsSent) { return counter(op, args, Object::IpInterface, "TotalErrorsSent"); }
HANDLER(IP_Interface_Stats_ErrorsReceived) {
    return counter(op, args, Object::IpInterface, "TotalErrorsReceived");
}
HANDLER(IP_Interface_Stats_DiscardPacketsSent) {
    return counter(op, args, Object::IpInterface, "DiscardPacketsSent");
}
HANDLER(IP_Interface_Stats_DiscardPacketsReceived) {
    return counter(op, args, Object::IpInterface, "DiscardPacketsReceived");
}
