#include "interrupt.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace cwmp {

namespace {

volatile std::sig_atomic_t last_signal = 0;
// Is readable from the interrupt on: one that comes just before a poll still ends it.
int wake[2] = {-1, -1};

void note(int signal) {
    last_signal = signal;
    [[maybe_unused]] const auto written = write(wake[1], "", 1);
}

}  // namespace

void catch_interrupts() {
    if (wake[0] >= 0 || pipe2(wake, O_CLOEXEC | O_NONBLOCK) != 0) return;
    struct sigaction action = {};
    action.sa_handler = note;
    // A test that the library starts may be ended by a signal as ever.
    pthread_atfork(nullptr, nullptr, [] { std::signal(SIGTERM, SIG_DFL); });
    for (int signal : {SIGINT, SIGTERM, SIGHUP}) sigaction(signal, &action, nullptr);
}

int interrupted() { return last_signal; }

bool wait_for(int descriptor, int milliseconds) {
    pollfd waiting[] = {{.fd = descriptor, .events = POLLIN, .revents = 0},
                        {.fd = wake[0], .events = POLLIN, .revents = 0}};
    return poll(waiting, 2, milliseconds) > 0 && waiting[0].revents != 0 && last_signal == 0;
}

}  // namespace cwmp
