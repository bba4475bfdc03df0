// Saying no: one event, and its text kept for the agent's fault string.
#pragma once

#include "core/handler.h"
#include "core/log.h"

namespace cwmp {

// Logs the event and keeps its text as the reason: return refuse(...).
int refuse(Caller caller, int level, const char* format, ...) __attribute__((format(printf, 3, 4)));

// Keeps a reason that is no event.
void keep_refusal(const char* text);
// What was refused on the way to an answer, or by an earlier call, is no reason any more.
void forget_refusal();

}  // namespace cwmp

#define REFUSE(...) ::cwmp::refuse(::cwmp::Caller::here(), ::cwmp::kError, __VA_ARGS__)
