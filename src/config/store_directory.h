// What keeps the files of a store directory whole, whoever is killed and whatever fails.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/descriptor.h"

namespace cwmp {

inline constexpr const char* kLiveStore = "/etc/config";
inline constexpr const char* kScratchStore = "/tmp/tr069";
inline constexpr const char* kProfileStore = "/etc/profile.d";
// The side copies of the mirrored package.
inline constexpr const char* kOpenCopy = "/tmp/cwmp-config";
inline constexpr const char* kProtectedCopy = "/tmp/cwmp-config-force";

// What a directory is, compared by its text in one place. kOther: the profile, or an agent's own.
enum class Store { kLive, kScratch, kCopy, kOther };
Store store_of(const char* directory);
constexpr const char* directory_of(Store live_or_scratch) {
    return live_or_scratch == Store::kScratch ? kScratchStore : kLiveStore;
}

// Whether a directory may be used: the scratch store and the side copies lie in /tmp, where anybody can make a
// name, so they must be real directories of our own user's.
bool is_trusted_directory(const char* directory);
// False when it cannot be made, or is there already.
bool make_store_directory(const char* directory);

// The right to change the packages of a directory, against every other writer that asks for it: other calls of
// this library, in this process or another. Held until the end of the object. Taken on the directory itself,
// because a package file is replaced by every commit.
class StoreLock {
  public:
    // False when another holds it for longer than any write takes, or when there is no such directory.
    bool take(const char* directory);
    explicit operator bool() const { return static_cast<bool>(directory_); }

  private:
    Descriptor directory_;
};

// A package file's text; nothing when it cannot be read whole.
std::optional<std::string> package_text(const std::string& directory, const std::string& package);

// Replaces a package file of a locked directory: it is the old text or the whole new one, also for who is
// killed in between. False when it is the old one.
bool replace_package_file(const std::string& directory, const std::string& package, std::string_view text);

// Takes the temporary files of commits away that were killed: those older than any commit lasts.
void sweep_temporary_files(const char* directory);

}  // namespace cwmp
