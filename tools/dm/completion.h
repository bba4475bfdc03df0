#pragma once

#include <cwmp/message_channel.h>

#include <functional>
#include <string>

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

    // Until a test is complete; a terminal shows that it takes a while. Each second `look` is told how many have
    // passed: it says what is to be seen, or throws Failure to end the wait. Throws Failure when no message comes
    // within so many seconds, or when dm is interrupted.
    void wait(int seconds, const std::function<std::string(int)>& look);

  private:
    bool receives_completion();

    decltype(&msg_recv) receive_;
    decltype(&msg_cleanup) close_;
    cwmp_message_handle handle_ = {};
};

}  // namespace cwmp
