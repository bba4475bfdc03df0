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

// While one lives, a command that several parameters are read from runs once.
class BulkRead {
  public:
    explicit BulkRead(const Library& library) : library_(library) { tell("cwmp_bulk_read_begin"); }
    ~BulkRead() { tell("cwmp_bulk_read_end"); }
    BulkRead(const BulkRead&) = delete;
    BulkRead& operator=(const BulkRead&) = delete;

  private:
    // A library that has no bulk reads reads one by one.
    void tell(const char* name) const {
        if (const cwmp_handler found = library_.find(name)) reinterpret_cast<void (*)()>(found)();
    }

    const Library& library_;
};

// Opens the argument list that a handler reads, as the agent's dispatcher does.
int call(cwmp_handler handler, int op, ...);

}  // namespace cwmp
