#pragma once

#include "commands.h"

namespace cwmp {

// Reads the paths again and again, so many seconds apart, and prints what has changed since the last time, until
// dm is interrupted.
void watch(Session& session, const Words& paths, int seconds, Format format, FILE* out);

}  // namespace cwmp
