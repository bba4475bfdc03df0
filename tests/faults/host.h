// An agent in few lines: what the fault run lets fail.
#pragma once

#include <string>

namespace host {

// Of calls that fail; kKill is any that changes the file system, kRoom is a store that is full.
enum Kind { kOpen, kRead, kWrite, kClose, kRename, kSync, kSpawn, kMalloc, kKill, kOther, kRoom, kKinds };
inline constexpr const char* kNames[kKinds] = {"open",  "read",   "write", "close", "rename", "sync",
                                               "spawn", "malloc", "kill",  "other", "room"};

inline constexpr const char* kCounts = "/var/run/fault_count";  // of the calls of each kind

enum Code { kDone, kUndone, kNotUndone, kBusy };

// kDone is also: nothing to recover; kUndone: recovered.
int run(const std::string& operation, const std::string& detail, std::string name);

}  // namespace host
