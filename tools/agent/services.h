#pragma once

#include <string>
#include <vector>

namespace cwmp {

// The service groups that the bits of an apply-flags word stand for.
std::vector<std::string> services_of(unsigned apply_flags);

}  // namespace cwmp
