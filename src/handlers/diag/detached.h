// Tests that run beside the agent.
//
//   process    is                        does                                          ends
//   agent      the caller of detach      forks, waits for between, goes on             -
//   between    the agent's child         forks, tells by its status whether it could   at once
//   job        nobody's child (init's)   drops what it inherited, then the test        in finish_job
//
// What the job inherits, and what becomes of it:
//
//   descriptors above standard error     closed: a socket of the agent would stay bound
//   signal handlers, mask                as in a new program; what was ignored stays so
//   session, process group               left: a signal to the agent's does not reach it
//   text in stdout's buffer              written by the agent before the fork
//   what a bulk read keeps               dropped: a test reads live
//   exit handlers                        not run: the end is a kill of itself
//
// Two forks, because a child of the agent would need somebody to wait for it, and an agent that ignores SIGCHLD
// or collects every child is not ours to change. No thread, because a test lasts as long as its tool.
#pragma once

#include "core/handler.h"
#include "core/log.h"

namespace cwmp {

enum class Side { kFailed, kAgent, kJob };

// Splits off a process for a job: it has a session of its own and none of the agent's descriptors beyond the
// three standard ones, and is not the agent's child, so that nobody has to wait for it. The agent goes on at
// once; a failure is logged under the caller's name. The job ends with finish_job.
Side detach(Caller caller = Caller::here());

// Tells the agent that results are ready, and ends this process.
[[noreturn]] void finish_job(Caller caller = Caller::here());

// Starts a test as such a job. kRefused, logged, when it could not be split off.
template <typename Test>
int start_job(const Test& test, Caller caller) {
    const Side side = detach(caller);
    if (side == Side::kJob) {
        test();
        finish_job(caller);
    }
    return side == Side::kAgent ? kDone : kRefused;
}

}  // namespace cwmp
