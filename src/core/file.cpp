#include "core/file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace cwmp {

bool Lines::read_more() {
    char piece[1024];
    ssize_t count = 0;
    do {
        count = read(descriptor_.get(), piece, sizeof piece);
    } while (count < 0 && errno == EINTR);
    if (count <= 0) return false;
    text_.append(piece, static_cast<std::size_t>(count));
    return true;
}

std::optional<std::string> Lines::next(std::size_t limit) {
    std::size_t end = 0;
    while ((end = text_.find('\n')) >= limit && text_.size() < limit && read_more()) {
    }
    if (text_.empty() && limit > 0) return std::nullopt;
    const bool whole = end < limit;
    std::string line = text_.substr(0, std::min(end, limit));
    text_.erase(0, line.size() + (whole ? 1 : 0));
    // Nobody looks behind a NUL byte.
    line.resize(std::strlen(line.c_str()));
    return line;
}

bool Lines::read_all(std::size_t most) {
    while (text_.size() <= most && read_more()) {
    }
    return text_.size() <= most;
}

std::optional<std::string> first_line_of_file(const char* path, std::size_t limit) {
    Descriptor file(open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    struct stat status = {};
    if (!file || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return std::nullopt;
    return Lines(std::move(file)).next(limit);
}

}  // namespace cwmp
