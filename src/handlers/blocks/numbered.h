// Instances that a number alone names.
#pragma once

#include <optional>
#include <string>

#include "core/handler.h"
#include "core/log.h"

namespace cwmp {

// Logs under the caller's name that a path names no such instance, or none that takes a SET.
int refuse_instance(int number, Caller caller);

// The number; nothing, logged under the caller's name, unless it lies between 1 and last.
std::optional<int> require_number(int number, int last, Caller caller);

// A read-only parameter: the text of the instance that locate[0] names.
int numbered(int op, Arguments args, int last, std::string (*text)(int number), Caller caller = Caller::here());

}  // namespace cwmp
