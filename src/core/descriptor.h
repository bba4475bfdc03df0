// File descriptors that close themselves, and what files of ours are opened and written with.
#pragma once

#include <sys/types.h>

#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace cwmp {

class Descriptor {
  public:
    explicit Descriptor(int number = -1) : number_(number) {}
    Descriptor(Descriptor&& other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    explicit operator bool() const { return number_ >= 0; }
    int get() const { return number_; }
    // False when the system could not keep what was written.
    bool close();

  private:
    int number_;
};

// A regular file of our own user's, for names in /tmp that anybody could have made before: no link is followed,
// and what is a pipe, a directory or another user's is refused without waiting for it. flags as for open; a file
// that is created is ours alone to read.
Descriptor open_own_file(const char* path, int flags);

// Everything, whatever signals arrive; false when it did not fit.
bool write_whole(int descriptor, std::string_view text);

// The whole file from a position on; nothing when it cannot be read to its end.
std::optional<std::string> read_whole(int descriptor, off_t position = 0);

// Takes the lock of an open file (flock), waiting at most so many milliseconds for who has it.
bool lock_within(int descriptor, int milliseconds);

}  // namespace cwmp
