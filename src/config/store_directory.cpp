#include "config/store_directory.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <utility>

#include "core/bulk_read.h"

namespace cwmp {
namespace {

// As libuci names its own, so that either's are swept.
constexpr const char* kTemporary = ".uci-";

// What a symbolic link in a store leads to is replaced, not the link.
std::string real_path(const std::string& path) {
    char* real = realpath(path.c_str(), nullptr);
    if (real == nullptr) return {};
    std::string text = real;
    std::free(real);
    return text;
}

bool store(int descriptor, std::string_view text, mode_t mode) {
    return write_whole(descriptor, text) && fchmod(descriptor, mode) == 0 && fsync(descriptor) == 0;
}

}  // namespace

Store store_of(const char* directory) {
    const auto is = [directory](const char* known) { return std::strcmp(directory, known) == 0; };
    if (is(kLiveStore)) return Store::kLive;
    if (is(kScratchStore)) return Store::kScratch;
    return is(kOpenCopy) || is(kProtectedCopy) ? Store::kCopy : Store::kOther;
}

bool is_trusted_directory(const char* directory) {
    const Store store = store_of(directory);
    if (store == Store::kLive || store == Store::kOther) return true;
    struct stat status = {};
    return lstat(directory, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == geteuid();
}

bool make_store_directory(const char* directory) {
    constexpr mode_t kMode = 0775;
    return mkdir(directory, kMode) == 0 && chmod(directory, kMode) == 0;
}

bool StoreLock::take(const char* directory) {
    constexpr int kPatience = 10'000;
    end_bulk_read();
    Descriptor opened(open(directory, O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (opened && lock_within(opened.get(), kPatience)) directory_ = std::move(opened);
    return static_cast<bool>(directory_);
}

std::optional<std::string> package_text(const std::string& directory, const std::string& package) {
    const Descriptor file(open((directory + '/' + package).c_str(), O_RDONLY | O_CLOEXEC));
    struct stat status = {};
    if (!file || fstat(file.get(), &status) != 0) return std::nullopt;
    auto text = read_whole(file.get());
    if (text && static_cast<off_t>(text->size()) != status.st_size) text.reset();
    return text;
}

bool replace_package_file(const std::string& directory, const std::string& package, std::string_view text) {
    const std::string path = real_path(directory + '/' + package);
    struct stat status = {};
    if (path.empty() || stat(path.c_str(), &status) != 0) return false;
    std::string temporary = directory + "/." + package + kTemporary + "XXXXXX";
    Descriptor file(mkostemp(temporary.data(), O_CLOEXEC));
    if (!file) return false;
    const bool stored = store(file.get(), text, status.st_mode & 07777);
    if (file.close() && stored && rename(temporary.c_str(), path.c_str()) == 0) return true;
    unlink(temporary.c_str());
    return false;
}

void sweep_temporary_files(const char* directory) {
    constexpr std::time_t kCommitLasts = 60;
    const std::unique_ptr<DIR, int (*)(DIR*)> entries(opendir(directory), closedir);
    if (entries == nullptr) return;
    const std::time_t now = std::time(nullptr);
    while (const dirent* entry = readdir(entries.get())) {
        if (entry->d_name[0] != '.' || std::strstr(entry->d_name, kTemporary) == nullptr) continue;
        struct stat status = {};
        const int descriptor = dirfd(entries.get());
        if (fstatat(descriptor, entry->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0) continue;
        // A clock that was set back makes a file's time lie ahead.
        if (std::labs(now - status.st_mtime) > kCommitLasts) unlinkat(descriptor, entry->d_name, 0);
    }
}

}  // namespace cwmp
