#include "completion.h"

#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "failure.h"

namespace cwmp {

namespace {

constexpr const char* kSubject = "diagnostics";

[[noreturn]] void fail(Exit exit, const std::string& message) {
    throw Failure{kSubject, kNoFault, exit, message};
}

// A line that counts the seconds where somebody watches, otherwise one line alone.
class Progress {
  public:
    explicit Progress(int limit) : watched_(isatty(STDERR_FILENO) != 0) {
        if (!watched_) std::fprintf(stderr, "dm: waiting at most %d s for the test\n", limit);
    }
    ~Progress() {
        if (watched_) std::fputs("\r\x1b[K", stderr);
    }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    void show(int seconds) const {
        if (watched_) std::fprintf(stderr, "\rdm: the test runs, %d s", seconds);
    }

  private:
    bool watched_;
};

}  // namespace

Completion::Completion(const Library& library)
    : receive_(library.function<decltype(msg_recv)>("msg_recv")),
      close_(library.function<decltype(msg_cleanup)>("msg_cleanup")) {
    const auto open = library.function<decltype(msg_init)>("msg_init");
    const auto bind = library.function<decltype(msg_srvInit)>("msg_srvInit");
    if (open(&handle_) != 0) fail(Exit::NotAllowed, "no socket can be made");
    if (bind(CWMP_AGENT_IDENTIFIER, &handle_) == 0) return;
    close_(&handle_);
    fail(Exit::NotAllowed, "completion messages cannot be received");
}

Completion::~Completion() {
    close_(&handle_);
    unlink(handle_.local.sun_path);
}

bool Completion::receives_completion() {
    constexpr int kSecond = 1000;
    pollfd waiting = {.fd = handle_.descriptor, .events = POLLIN, .revents = 0};
    cwmp_message message = {};
    return poll(&waiting, 1, kSecond) > 0 && receive_(&handle_, &message) == 0 &&
           message.type == CWMP_MESSAGE_DIAGNOSTICS_COMPLETE;
}

void Completion::wait(int seconds) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const Progress progress(seconds);
    while (!receives_completion()) {
        const auto waited = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start).count();
        if (waited >= seconds) {
            fail(Exit::Refused, "no completion message within " + std::to_string(seconds) + " s");
        }
        progress.show(static_cast<int>(waited));
    }
}

}  // namespace cwmp
