// The LAN's own address and mask, which the addresses of its hosts are checked against and completed with.
#pragma once

#include <optional>
#include <string>

#include "core/log.h"

namespace cwmp {

struct Lan {
    std::string address;
    std::string mask;

    // An address of the LAN, and not the router itself.
    bool has_host(const char* host) const;
    // The address of a host part.
    std::string complete(const std::string& host) const;
};

// Nothing, logged under the caller's name, when the store lacks either.
std::optional<Lan> read_lan(Caller caller);

}  // namespace cwmp
