#pragma once

#include <cwmp/handler.h>

#include <memory>
#include <string>

namespace cwmp {

// The loaded data-model library.
class Library {
  public:
    // Throws Failure when the file is not a loadable library.
    explicit Library(const std::string& file);

    // nullptr when the library does not export the name.
    cwmp_handler find(const std::string& name) const;
    const void* data(const std::string& name) const;

  private:
    struct Close {
        void operator()(void* handle) const;
    };
    std::unique_ptr<void, Close> handle_;
};

// Opens the argument list that a handler reads, as the agent's dispatcher does.
int call(cwmp_handler handler, int op, ...);

}  // namespace cwmp
