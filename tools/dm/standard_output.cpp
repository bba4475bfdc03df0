#include "standard_output.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "failure.h"

namespace cwmp {

File take_standard_output() {
    std::fflush(stdout);
    const int own = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    File out(own < 0 ? nullptr : fdopen(own, "w"));
    if (!out || dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
        throw Failure{"standard output", kNoFault, Exit::NotAllowed, std::strerror(errno)};
    }
    return out;
}

}  // namespace cwmp
