// Host and network parts of IPv4 addresses, and the one form in which MAC addresses are compared and
// answered.
#pragma once

#include <cstdint>
#include <string>

namespace cwmp {

// An address in host order; 0 for a text that is none.
uint32_t address_number(const char* address);

// The host part of an address: its bytes from the first that the mask does not wholly cover, in decimal,
// joined by dots. 192.168.1.5 under 255.255.0.0 gives "1.5".
std::string host_part(const char* address, const char* mask);

// The address of a host part in the network of an address: "1.5" beside 10.0.0.1 under 255.255.0.0 gives
// 10.0.1.5.
std::string host_address(const char* address, const char* mask, const std::string& host);

// Upper-case digits, separated by ':'.
std::string canonical_mac(std::string mac);

}  // namespace cwmp
