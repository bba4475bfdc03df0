#include "router_root.h"

#include <sched.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>

#include "failure.h"
#include "file.h"

namespace cwmp {

namespace {

constexpr const char* kSearchPath = "/usr/lib/router/tools:/usr/sbin:/usr/bin:/sbin:/bin";

bool write_file(const char* path, const std::string& text) {
    const File file(std::fopen(path, "we"));
    return file && std::fputs(text.c_str(), file.get()) >= 0 && std::fflush(file.get()) == 0;
}

bool become_namespace_root() {
    const std::string uid = std::to_string(geteuid());
    const std::string gid = std::to_string(getegid());
    if (unshare(CLONE_NEWUSER) != 0) return false;
    // The kernel lets an unprivileged caller map a group only after this.
    return write_file("/proc/self/setgroups", "deny") && write_file("/proc/self/uid_map", "0 " + uid + " 1") &&
           write_file("/proc/self/gid_map", "0 " + gid + " 1");
}

}  // namespace

void enter_root(const std::string& directory) {
    bool entered = chroot(directory.c_str()) == 0;
    if (!entered && errno == EPERM) entered = become_namespace_root() && chroot(directory.c_str()) == 0;
    // The caller's search path belongs to the host; commands are the root's own from here on.
    if (entered && chdir("/") == 0 && setenv("PATH", kSearchPath, 1) == 0) return;
    throw Failure{directory, kNoFault, Exit::NotAllowed,
                  std::string("the root cannot be entered: ") + std::strerror(errno)};
}

}  // namespace cwmp
