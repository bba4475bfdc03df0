#include "handlers/diag/detached.h"

#include <dirent.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "core/bulk_read.h"
#include "core/command.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/message_channel.h"

namespace cwmp {
namespace {

constexpr int kForked = 0;
constexpr int kNotForked = 1;

void close_inherited() {
    constexpr int kFirst = STDERR_FILENO + 1;
    if (syscall(SYS_close_range, kFirst, ~0U, 0) == 0) return;
    // Kernels before 5.9 have no such call.
    const std::unique_ptr<DIR, int (*)(DIR*)> open_ones(opendir("/proc/self/fd"), closedir);
    while (const dirent* entry = open_ones != nullptr ? readdir(open_ones.get()) : nullptr) {
        const int descriptor = std::atoi(entry->d_name);
        if (descriptor >= kFirst && descriptor != dirfd(open_ones.get())) close(descriptor);
    }
}

// Signals come as to a new program: the agent's handlers know nothing of this process.
void forget_signals() {
    for (int number = 1; number < NSIG; ++number) {
        struct sigaction action = {};
        if (sigaction(number, nullptr, &action) != 0 || action.sa_handler == SIG_IGN) continue;
        signal(number, SIG_DFL);
    }
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
}

void log_process(Caller caller, const char* when) {
    log_event(caller, kProgress, "%s: child pid id : %d group id before:%d the session id is: %d\n\n", when, getpid(),
              getpgrp(), getsid(0));
}

void become_job(Caller caller) {
    close_inherited();
    forget_signals();
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
    end_bulk_read();
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
    refuse(caller, kError, "error fork pid\n");
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
    run(formatted("kill -9 %d", getpid()));
    _exit(0);
}

}  // namespace cwmp
