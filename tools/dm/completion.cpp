#include "completion.h"

#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <string>

#include "failure.h"
#include "interrupt.h"

namespace cwmp {

namespace {

constexpr const char* kSubject = "diagnostics";

[[noreturn]] void fail(Exit exit, const std::string& message) { throw Failure{kSubject, kNoFault, exit, message}; }

// A line that is written anew where somebody watches.
class Progress {
  public:
    ~Progress() { show(""); }

    void show(const std::string& text) const {
        if (watched_) std::fprintf(stderr, "\r\x1b[K%s", text.c_str());
    }

  private:
    const bool watched_ = isatty(STDERR_FILENO) != 0;
};

}  // namespace

Completion::Completion(const Library& library)
    : receive_(library.function<decltype(msg_recv)>("msg_recv")),
      close_(library.function<decltype(msg_cleanup)>("msg_cleanup")) {
    catch_interrupts();
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
    cwmp_message message = {};
    return wait_for(handle_.descriptor, 1000) && receive_(&handle_, &message) == 0 &&
           message.type == CWMP_MESSAGE_DIAGNOSTICS_COMPLETE;
}

void Completion::wait(int seconds, const std::function<std::string(int)>& look) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const Progress progress;
    do {
        const auto passed = std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - start);
        const int waited = static_cast<int>(passed.count());
        if (interrupted()) fail(Exit::Refused, "interrupted; a test that runs goes on");
        if (waited >= seconds) {
            fail(Exit::Refused, "no completion message within " + std::to_string(seconds) + " s");
        }
        progress.show("dm: " + std::to_string(waited) + " s, " + look(waited));
    } while (!receives_completion());
}

}  // namespace cwmp
