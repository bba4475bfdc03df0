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
    void* data(const std::string& name) const;

    // A function that is no handler. Throws Failure when the library does not export the name.
    template <typename Function>
    Function* function(const std::string& name) const {
        return reinterpret_cast<Function*>(require(name));
    }

  private:
    void* require(const std::string& name) const;

    struct Close {
        void operator()(void* handle) const;
    };
    std::unique_ptr<void, Close> handle_;
};

// Opens the argument list that a handler reads, as the agent's dispatcher does.
int call(cwmp_handler handler, int op, ...);

}  // namespace cwmp
