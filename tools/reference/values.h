#pragma once

#include <string>
#include <vector>

#include "types.h"

namespace cwmp {

// Values to try on a parameter: those of its type with its bounds, and those just outside it.
std::vector<std::string> values_to_try(const Type& type);

// Other contents of an option or of a command's answer, from which a parameter's value may be worked out.
const std::vector<std::string>& contents_to_try();

// A value as it is shown: long runs of one letter become letter*number, control characters escapes.
std::string shown(const std::string& value);

}  // namespace cwmp
