#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

#include "core/console.h"

namespace cwmp {

void write_console(const std::string& line) {
    const int console = open("/dev/console", O_WRONLY | O_APPEND | O_NOCTTY | O_CLOEXEC);
    if (console < 0) return;
    dprintf(console, "%s \r\n", line.c_str());
    close(console);
}

}  // namespace cwmp
