// What wireless parameters are made of besides the general blocks. Failures are logged under the caller's
// name.
#pragma once

#include "config/store.h"
#include "core/handler.h"
#include "core/log.h"

namespace cwmp {

// A fixed value; a SET is accepted and has no effect. A null text leaves the answer as it is.
int accepted_constant(int op, Arguments args, const char* text);

// A fixed value of a feature that the device lacks; a SET is refused and logged.
int refused_constant(int op, Arguments args, const char* text, const char* refusal, Caller caller = Caller::here());

// A kernel counter of a radio's main network.
int radio_counter(int op, Arguments args, const char* counter);

// Checks of what a SET takes (blocks/accepts.h): a pass phrase of 8 to 64 bytes; a beacon type, stored as the
// network's encryption.
std::optional<std::string> pass_phrase(const char* value);
std::optional<std::string> beacon_type(const char* value);
// The beacon type of a network; nothing when its encryption cannot be read.
std::optional<std::string> stored_beacon_type(Section network);

inline constexpr const char* kPassPhraseRefused = "the length of password is too long or too short\n";

}  // namespace cwmp
