#pragma once

#include "file.h"

namespace cwmp {

// The library prints lines of its own on standard output. Takes the real one for ourselves, closed on exec so
// that no background child keeps it open, and lets everything else printed there go to standard error. Throws
// Failure.
File take_standard_output();

}  // namespace cwmp
