#pragma once

#include <cstdio>

namespace cwmp {

// Whether this program was started as rpcd's plug-in, by its name there.
bool is_rpcd_plugin(const char* program);

// Answers `list` and `call METHOD` as rpcd asks; the exit code.
int answer_rpcd(int argc, char** argv, FILE* out);

}  // namespace cwmp
