#pragma once

#include <cwmp/message_channel.h>

#include "library.h"

namespace cwmp {

// The agent's end of the message channel, where finished tests report. While one lives, dm receives in the
// agent's place.
class Completion {
  public:
    // Throws Failure.
    explicit Completion(const Library& library);
    ~Completion();
    Completion(const Completion&) = delete;
    Completion& operator=(const Completion&) = delete;

    // Until a test is complete; shows on standard error that it takes a while. Throws Failure when no message
    // comes within so many seconds.
    void wait(int seconds);

  private:
    bool receives_completion();

    decltype(&msg_recv) receive_;
    decltype(&msg_cleanup) close_;
    cwmp_message_handle handle_ = {};
};

}  // namespace cwmp
