// While one lives, this process can open nothing, so that a pipe to a command cannot be made. Commands that
// are already written to the console still run: the programs started inherit none of the descriptors.
#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <vector>

class NoFreeDescriptor {
  public:
    NoFreeDescriptor() {
        getrlimit(RLIMIT_NOFILE, &before_);
        rlimit few = before_;
        few.rlim_cur = kEnoughForAShell;
        setrlimit(RLIMIT_NOFILE, &few);
        for (int taken = 0; (taken = open("/", O_RDONLY | O_CLOEXEC)) >= 0;) taken_.push_back(taken);
    }
    ~NoFreeDescriptor() {
        for (const int descriptor : taken_) close(descriptor);
        setrlimit(RLIMIT_NOFILE, &before_);
    }
    NoFreeDescriptor(const NoFreeDescriptor&) = delete;
    NoFreeDescriptor& operator=(const NoFreeDescriptor&) = delete;

  private:
    static constexpr rlim_t kEnoughForAShell = 24;
    rlimit before_{};
    std::vector<int> taken_;
};
