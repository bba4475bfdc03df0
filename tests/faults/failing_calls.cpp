// Preloaded into a process: among its calls of one kind one fails, or each from there on, or the process is killed
// there. Counts what the process and the jobs that it forks call once it has loaded the library; programs that it starts
// are left alone. FAULT is "KIND NUMBER LASTS"; the counts of all kinds are for who started it.
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

#include "host.h"

namespace {

using namespace host;

int failing = -1, at = 0, lasts = 0;
std::atomic<int>* counts = nullptr;

void read_fault() {
    std::sscanf(std::getenv("FAULT"), "%d %d %d", &failing, &at, &lasts);
    const int shared = open(kCounts, O_RDWR | O_CLOEXEC);
    void* page = mmap(nullptr, kKinds * sizeof *counts, PROT_READ | PROT_WRITE, MAP_SHARED, shared, 0);
    close(shared);
    counts = static_cast<std::atomic<int>*>(page);
    unsetenv("LD_PRELOAD");
}

bool fails(Kind kind, int error) {
    if (counts == nullptr) return false;
    const int number = ++counts[kind];
    if (kind != failing || at == 0 || (lasts != 0 ? number < at : number != at)) return false;
    errno = error;
    return true;
}

void changes(bool really = true) {
    if (really && fails(kKill, 0)) kill(getpid(), SIGKILL);
}

template <typename Function>
Function* next(const char* name) {
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

void* dlopen(const char* path, int flags) {
    void* library = next<void*(const char*, int)>("dlopen")(path, flags);
    read_fault();
    return library;
}

// clang-format off

// One function that only fails, or changes the file system and may fail. Its own name would clash with the header's.
#define CALL(result, name, parameters, arguments, kind, error, failure, ...)                                    \
    result my_##name parameters __asm__(#name);                                                                 \
    result my_##name parameters {                                                                               \
        static const auto real = next<result parameters>(#name);                                                \
        __VA_ARGS__;                                                                                            \
        return fails(kind, error) ? failure : real arguments;                                                   \
    }

#define CALL64(result, name, ...) CALL(result, name, __VA_ARGS__) CALL(result, name##64, __VA_ARGS__)

// The mode is there with some flags only; taken always, it is passed on unused.
CALL64(int, open, (const char* path, int flags, mode_t mode), (path, flags, mode), kOpen, EMFILE, -1,
       changes((flags & (O_CREAT | O_TRUNC)) != 0))
CALL64(FILE*, fopen, (const char* path, const char* mode), (path, mode), kOpen, EMFILE, nullptr, changes(*mode != 'r'))
CALL64(int, mkostemp, (char* path, int flags), (path, flags), kOpen, ENOSPC, -1, changes())
CALL(DIR*, opendir, (const char* path), (path), kOpen, EMFILE, nullptr)
CALL(int, pipe2, (int* ends, int flags), (ends, flags), kOpen, EMFILE, -1)
CALL64(ssize_t, pread, (int file, void* text, size_t size, off_t at), (file, text, size, at), kRead, EIO, -1)
CALL(ssize_t, write, (int file, const void* text, size_t size), (file, text, size), kWrite, ENOSPC, -1, changes())
CALL64(int, ftruncate, (int file, off_t size), (file, size), kWrite, EIO, -1, changes())
CALL(int, rename, (const char* from, const char* to), (from, to), kRename, EIO, -1, changes())
CALL(int, fsync, (int file), (file), kSync, EIO, -1)
CALL(pid_t, fork, (), (), kSpawn, EAGAIN, -1)
CALL(int, posix_spawn, (pid_t* process, const char* path, const void* actions, const void* attributes, char* const* words,
     char* const* environment), (process, path, actions, attributes, words, environment), kSpawn, EAGAIN, EAGAIN, changes())
CALL(int, unlink, (const char* path), (path), kOther, EIO, -1, changes())
CALL(int, unlinkat, (int directory, const char* path, int flags), (directory, path, flags), kOther, EIO, -1, changes())
CALL(int, mkdir, (const char* path, mode_t mode), (path, mode), kOther, EIO, -1, changes())
CALL(int, fchmod, (int file, mode_t mode), (file, mode), kOther, EIO, -1, changes())
// The descriptor is given back all the same, as the system does.
CALL(int, close, (int file), (file), kClose, EIO, (real(file), -1))
// dlsym would ask for memory itself.
#define MEMORY(name, parameters, arguments) \
    void* __libc_##name parameters;         \
    void* name parameters { return fails(kMalloc, ENOMEM) ? nullptr : __libc_##name arguments; }
MEMORY(malloc, (size_t size), (size))
MEMORY(calloc, (size_t number, size_t size), (number, size))
MEMORY(realloc, (void* memory, size_t size), (memory, size))
}
