#pragma once

#include <string>

namespace cwmp {

// Makes the directory the root of this process: directly where allowed, otherwise in a user namespace of its
// own with the caller as root. Throws Failure.
void enter_root(const std::string& directory);

}  // namespace cwmp
