#include "handlers/diag/detached.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>

#include "core/command.h"
#include "cwmp/message_channel.h"

namespace cwmp {
namespace {

constexpr int kForked = 0;
constexpr int kNotForked = 1;

void close_inherited() {
    // Where no limit is set the kernel's is far beyond what an agent opens.
    constexpr rlim_t kMost = 65536;
    rlimit limit = {kMost, kMost};
    getrlimit(RLIMIT_NOFILE, &limit);
    const int end = static_cast<int>(std::min(limit.rlim_cur, kMost));
    for (int descriptor = STDERR_FILENO + 1; descriptor < end; ++descriptor) close(descriptor);
}

void log_process(Caller caller, const char* when) {
    log_event(caller, kError, "%s: child pid id : %d group id before:%d the session id is: %d\n\n", when,
              getpid(), getpgrp(), getsid(0));
}

void become_job(Caller caller) {
    close_inherited();
    log_process(caller, "before");
    setsid();
    log_process(caller, "after");
}

// Whether the process between could fork. An agent that ignores its children is not told; the fork is taken
// to have worked then.
bool forked_again(pid_t between) {
    int status = 0;
    pid_t ended = 0;
    do {
        ended = waitpid(between, &status, 0);
    } while (ended < 0 && errno == EINTR);
    return ended < 0 || (WIFEXITED(status) && WEXITSTATUS(status) == kForked);
}

}  // namespace

Side detach(Caller caller) {
    // What the agent has printed and not written must not be written twice.
    std::fflush(stdout);
    const pid_t between = fork();
    if (between == 0) {
        const pid_t job = fork();
        if (job != 0) _exit(job > 0 ? kForked : kNotForked);
        become_job(caller);
        return Side::kJob;
    }
    if (between > 0 && forked_again(between)) return Side::kAgent;
    log_event(caller, kError, "error fork pid\n");
    return Side::kFailed;
}

void finish_job(Caller caller) {
    cwmp_message_handle handle = {};
    const cwmp_message complete = {.type = CWMP_MESSAGE_DIAGNOSTICS_COMPLETE, .payload = {}};
    if (msg_connCliAndSend(CWMP_AGENT_IDENTIFIER, &handle, &complete) != 0) {
        log_event(caller, kError, "send Diagnostics-Complete failed\n");
    }
    std::fflush(stdout);
    // An ordinary exit would run the agent's exit handlers.
    run("kill -9 " + std::to_string(getpid()));
    _exit(0);
}

}  // namespace cwmp
