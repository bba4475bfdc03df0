// What a bulk read keeps of commands.
#pragma once

#include <string>

namespace cwmp {

// Whether one is on: commands and their outputs are to be kept.
bool in_bulk_read();
// To be called before anything that may change what commands say.
void end_bulk_read();

// A GET's own write, of what no command tells, does not end it.
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
// Bytes of output that there is still room for.
std::size_t bulk_read_room();

}  // namespace cwmp
