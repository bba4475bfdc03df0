// Tests that run beside the agent.
#pragma once

#include "core/log.h"

namespace cwmp {

enum class Side { kFailed, kAgent, kJob };

// Splits off a process for a job: it has a session of its own and none of the agent's descriptors beyond the
// three standard ones, and is not the agent's child, so that nobody has to wait for it. The agent goes on at
// once; a failure is logged under the caller's name. The job ends with finish_job.
Side detach(Caller caller = Caller::here());

// Tells the agent that results are ready, and ends this process.
[[noreturn]] void finish_job(Caller caller = Caller::here());

}  // namespace cwmp
