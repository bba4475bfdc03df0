// What the device's tools are asked of a link, for formatted(): %s is a device for ifconfig and a network interface for
// ubus. And of the device itself.
#pragma once

namespace cwmp {

inline constexpr char kFlagsOf[] = "ifconfig %s | grep MTU | awk '{print $1}'";
inline constexpr char kMaskOf[] = "ifconfig %s | grep Mask | awk -F ':' '{print $4}'";
inline constexpr char kAddressOf[] =
    "ubus call network.interface.%s status | grep '\"address' | awk -F '\"' '{print $4}'";
inline constexpr char kGatewayOf[] = "ubus call network.interface.%s status | grep nexthop | awk -F '\"' '{print $4}'";
inline constexpr char kUpOf[] =
    "ubus call network.interface.%s status | grep \"up\" | awk -F ':' '{print $2}' | awk -F ',' '{print $1}'";
inline constexpr char kStateOf[] = "ubus call network.interface.%s status | grep \"state\" | awk -F ':' '{print $2}' ";
inline constexpr char kUptimeOf[] = "ubus call network.interface.%s status | grep uptime | awk -F ':' '{print $2}' ";
inline constexpr char kUptimeOfDevice[] = "cat /proc/uptime | awk -F '.' '{print $1}' ";

}  // namespace cwmp
