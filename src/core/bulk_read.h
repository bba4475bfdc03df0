// What a bulk read keeps.
#pragma once

#include <string>

namespace cwmp {

// Whether one is on: commands and their outputs are to be kept.
bool in_bulk_read();
// To be called before anything that may change what commands say.
void end_bulk_read();

// A GET's own write, of what no command tells, does not end it; packages are read anew.
class KeepBulkRead {
  public:
    KeepBulkRead();
    ~KeepBulkRead();
    KeepBulkRead(const KeepBulkRead&) = delete;
    KeepBulkRead& operator=(const KeepBulkRead&) = delete;
};

// What a command said; null when it has not run in this bulk read.
const std::string* kept_output(const char* command);
void keep_output(const char* command, std::string output);
// Bytes that there is still room for.
std::size_t bulk_read_room();

// The store keeps its packages itself. All that it loads while this number stays the same may be read again; 0 when
// nothing is to be kept.
unsigned packages_moment();
// Counts what it keeps. forget gives all of it back.
using ForgetPackages = void (*)();
void keep_package(std::size_t size, ForgetPackages forget);
// To be called after what may have changed a package.
void forget_packages();

}  // namespace cwmp
