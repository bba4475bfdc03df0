// Device.IP.Interface.{i}. and its one IPv4Address.
#include <string_view>

#include "config/store.h"
#include "core/text.h"
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

PARAMETER(IP_InterfaceNumberOfEntries, constant, "8")
PARAMETER(IP_Interface_Enable, value, Object::IpInterface, present)
PARAMETER(IP_Interface_IPv4Enable, value, Object::IpInterface, present)
PARAMETER(IP_Interface_IPv6Enable, constant, "0")
PARAMETER(IP_Interface_Status, value, Object::IpInterface, status)
PARAMETER(IP_Interface_Alias, value, Object::IpInterface, alias)
PARAMETER(IP_Interface_Name, value, Object::IpInterface, device_name)
PARAMETER(IP_Interface_LastChange, value, Object::IpInterface, last_change)
PARAMETER(IP_Interface_LowerLayers, value, Object::IpInterface, lower_layers)
PARAMETER(IP_Interface_Router, constant, "Device.Routing.Router.1.")
PARAMETER(IP_Interface_MaxMTUSize, value, Object::IpInterface, mtu)
PARAMETER(IP_Interface_Type, constant, "Normal")
PARAMETER(IP_Interface_Loopback, constant, "0")
PARAMETER(IP_Interface_IPv4AddressNumberOfEntries, constant, "1")

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
                if (instance->number == kPppoe && source.pppoe != nullptr) return forward_get(args, source.pppoe, 1, 1);
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
    if (type != "DHCP"sv && type != "Static"sv) return std::nullopt;
    return value;
}

}  // namespace

PARAMETER(IP_Interface_IPv4Address_Enable, value, Object::IpAddress, present)
PARAMETER(IP_Interface_IPv4Address_Status, value, Object::IpAddress, address_status)

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
    return staged_instance(op, args, Object::IpAddress, {{kWan, {CWMP_STAGED_WAN, CWMP_WAN_TYPE, settable_type}}});
}

PARAMETER(IP_Interface_Stats_BytesSent, counter, Object::IpInterface, "TotalBytesSent")
PARAMETER(IP_Interface_Stats_BytesReceived, counter, Object::IpInterface, "TotalBytesReceived")
PARAMETER(IP_Interface_Stats_PacketsSent, counter, Object::IpInterface, "TotalPacketsSent")
PARAMETER(IP_Interface_Stats_PacketsReceived, counter, Object::IpInterface, "TotalPacketsReceived")
PARAMETER(IP_Interface_Stats_ErrorsSent, counter, Object::IpInterface, "TotalErrorsSent")
PARAMETER(IP_Interface_Stats_ErrorsReceived, counter, Object::IpInterface, "TotalErrorsReceived")
PARAMETER(IP_Interface_Stats_DiscardPacketsSent, counter, Object::IpInterface, "DiscardPacketsSent")
PARAMETER(IP_Interface_Stats_DiscardPacketsReceived, counter, Object::IpInterface, "DiscardPacketsReceived")
