// Preloaded into a process: among its calls of one kind the one at FAULT_AT fails, or each from there on with
// FAULT_LASTS, or the process is killed there (kind "kill": any call that changes the file system). Counts what the
// process and the jobs that it forks call once it is armed; programs that it starts are left alone. The counts of all
// kinds lie in the file FAULT_COUNT, for who started it.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "host.h"

namespace {

using host::kKinds;

int kind = -1;  // its place in kKinds
int at = 0;
bool lasts = false;
bool armed = false;
std::atomic<int>* counts = nullptr;

int kind_of(const char* name) {
    int place = 0;
    while (std::strcmp(kKinds[place], name) != 0) ++place;
    return place;
}

__attribute__((constructor)) void read_fault() {
    const char* file = std::getenv("FAULT_COUNT");
    const int shared = file != nullptr ? open(file, O_RDWR | O_CLOEXEC) : -1;
    if (shared < 0) return;
    void* page =
        mmap(nullptr, std::size(kKinds) * sizeof *counts, PROT_READ | PROT_WRITE, MAP_SHARED, shared, 0);
    close(shared);
    if (page == MAP_FAILED) return;
    counts = static_cast<std::atomic<int>*>(page);
    kind = kind_of(std::getenv("FAULT_KIND"));
    at = std::atoi(std::getenv("FAULT_AT"));
    lasts = std::getenv("FAULT_LASTS") != nullptr;
    armed = std::getenv("FAULT_ARMED") != nullptr;
    unsetenv("LD_PRELOAD");
}

bool is_hit(const char* call) {
    if (!armed || counts == nullptr) return false;
    const int place = kind_of(call);
    const int number = ++counts[place];
    return place == kind && at > 0 && (number == at || (lasts && number > at));
}

bool fails(const char* call, int error) {
    if (!is_hit(call)) return false;
    errno = error;
    return true;
}

void changes() {
    if (is_hit("kill")) kill(getpid(), SIGKILL);
}

template <typename Function>
Function* next(Function*, const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}
#define NEXT(name) static const auto real = next(&::name, #name)

int opened(int flags, int (*open_it)(const char*, int, mode_t), const char* path, mode_t mode) {
    if ((flags & (O_CREAT | O_TRUNC)) != 0) changes();
    return fails("open", EMFILE) ? -1 : open_it(path, flags, mode);
}

}  // namespace

extern "C" {

void arm_faults() { armed = true; }

void* __libc_malloc(size_t size);
void* __libc_calloc(size_t count, size_t size);
void* __libc_realloc(void* memory, size_t size);

void* malloc(size_t size) { return fails("malloc", ENOMEM) ? nullptr : __libc_malloc(size); }
void* calloc(size_t number, size_t size) {
    return fails("malloc", ENOMEM) ? nullptr : __libc_calloc(number, size);
}
void* realloc(void* memory, size_t size) {
    return fails("malloc", ENOMEM) ? nullptr : __libc_realloc(memory, size);
}

#define OPEN(name)                                                                           \
    int name(const char* path, int flags, ...) {                                             \
        va_list list;                                                                        \
        va_start(list, flags);                                                               \
        const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(list, mode_t) : 0; \
        va_end(list);                                                                        \
        static const auto real =                                                             \
            reinterpret_cast<int (*)(const char*, int, mode_t)>(dlsym(RTLD_NEXT, #name));    \
        return opened(flags, real, path, mode);                                              \
    }
OPEN(open)
OPEN(open64)

// One function that only fails, or changes the file system and may fail.
#define CALL(result, name, parameters, arguments, call, error, failure, change) \
    result name parameters {                                                    \
        static const auto real = next(&::name, #name);                          \
        change;                                                                 \
        return fails(call, error) ? failure : real arguments;                   \
    }
CALL(FILE*, fopen, (const char* path, const char* mode), (path, mode), "open", EMFILE, nullptr,
     if (*mode != 'r') changes())
CALL(FILE*, fopen64, (const char* path, const char* mode), (path, mode), "open", EMFILE, nullptr,
     if (*mode != 'r') changes())
CALL(DIR*, opendir, (const char* path), (path), "open", EMFILE, nullptr, )
CALL(int, mkostemp, (char* path, int flags), (path, flags), "open", ENOSPC, -1, changes())
CALL(int, mkostemp64, (char* path, int flags), (path, flags), "open", ENOSPC, -1, changes())
CALL(ssize_t, write, (int file, const void* text, size_t size), (file, text, size), "write", ENOSPC, -1,
     changes())
CALL(int, ftruncate, (int file, off_t size), (file, size), "write", EIO, -1, changes())
CALL(int, rename, (const char* from, const char* to), (from, to), "rename", EIO, -1, changes())
CALL(int, fsync, (int file), (file), "sync", EIO, -1, )
CALL(int, fdatasync, (int file), (file), "sync", EIO, -1, )
CALL(pid_t, fork, (), (), "spawn", EAGAIN, -1, )
CALL(int, pipe2, (int* ends, int flags), (ends, flags), "open", EMFILE, -1, )
CALL(int, posix_spawn,
     (pid_t * process, const char* path, const posix_spawn_file_actions_t* actions,
      const posix_spawnattr_t* attributes, char* const* words, char* const* environment),
     (process, path, actions, attributes, words, environment), "spawn", EAGAIN, EAGAIN, changes())
CALL(int, unlink, (const char* path), (path), "other", EIO, -1, changes())
CALL(int, unlinkat, (int directory, const char* path, int flags), (directory, path, flags), "other", EIO, -1,
     changes())
CALL(int, mkdir, (const char* path, mode_t mode), (path, mode), "other", EIO, -1, changes())
CALL(int, fchmod, (int file, mode_t mode), (file, mode), "other", EIO, -1, changes())

// The descriptor is given back all the same, as the system does.
int close(int file) {
    NEXT(close);
    const int result = real(file);
    return fails("close", EIO) ? -1 : result;
}
}
