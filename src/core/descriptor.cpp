#include "core/descriptor.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>

namespace cwmp {

bool Descriptor::close() {
    const int number = std::exchange(number_, -1);
    return number < 0 || ::close(number) == 0;
}

Descriptor open_own_file(const char* path, int flags) {
    constexpr mode_t kOursAlone = 0600;
    Descriptor file(open(path, flags | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC, kOursAlone));
    struct stat status = {};
    const bool ours = file && fstat(file.get(), &status) == 0 && S_ISREG(status.st_mode) &&
                      status.st_uid == geteuid() && status.st_nlink == 1;
    return ours ? std::move(file) : Descriptor();
}

bool write_whole(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t count = write(descriptor, text.data(), text.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        text.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

std::optional<std::string> read_whole(int descriptor, off_t position) {
    std::string text;
    char piece[4096];
    ssize_t count = 0;
    while ((count = pread(descriptor, piece, sizeof piece, position)) != 0) {
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return std::nullopt;
        text.append(piece, static_cast<std::size_t>(count));
        position += count;
    }
    return text;
}

bool lock_within(int descriptor, int milliseconds) {
    constexpr timespec kPause = {.tv_sec = 0, .tv_nsec = 1'000'000};
    timespec now = {};
    clock_gettime(CLOCK_MONOTONIC, &now);
    const auto moment = [&now] { return now.tv_sec * 1000 + now.tv_nsec / 1'000'000; };
    const auto end = moment() + milliseconds;
    while (flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) return false;
        clock_gettime(CLOCK_MONOTONIC, &now);
        if (moment() >= end) return false;
        nanosleep(&kPause, nullptr);
    }
    return true;
}

}  // namespace cwmp
