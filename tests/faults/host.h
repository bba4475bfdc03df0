// An agent in few lines: what the fault run lets fail.
#pragma once

#include <string>

namespace host {

// Of calls that fail.
inline constexpr const char* kKinds[] = {"open",  "write",  "close", "rename", "sync",
                                         "spawn", "malloc", "kill",  "other"};

enum Code { kDone, kUndone, kNotUndone, kBusy };

// option, add, scan, transaction, refused 2|3|1 (the pass in which the last member is refused), recover, and what the
// loops of the run repeat. kDone is also: nothing to recover; kUndone: recovered.
int run(const std::string& operation, const std::string& detail);

}  // namespace host
