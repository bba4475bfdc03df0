#pragma once

#include "commands.h"

namespace cwmp {

// The PATH=VALUE lines of a file, "-" for standard input, without blank ones and comments. Throws Failure.
Words read_assignments(const std::string& file);

// The lines "set PATH=VALUE", "add OBJECT" and "del INSTANCE" of a file, likewise.
std::vector<Step> read_steps(const std::string& file);

// Sets what differs, in one transaction: what holds its value already may be fixed for the moment.
void import_values(Session& session, const std::string& file);

// Reports the writable parameters below the paths that hold a value, in lines that read_assignments() takes; those
// that cannot be written back are named alone.
void export_values(Session& session, const Words& paths);

}  // namespace cwmp
