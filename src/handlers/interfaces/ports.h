// The Ethernet ports: 1 and 2 of the LAN, 3 of the WAN; an access point counts them as its profile does.
#pragma once

#include <string>

namespace cwmp::interfaces {

inline constexpr int kPorts = 3;

std::string port_name(int port);  // empty: there is no such port
std::string port_status(int port);
std::string port_speed(int port);
std::string port_duplex(int port);

}  // namespace cwmp::interfaces
