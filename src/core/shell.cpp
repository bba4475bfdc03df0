#include "core/shell.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>

namespace cwmp {

pid_t start_shell(const char* text, int output) {
    char name[] = "sh";
    char option[] = "-c";
    char* const words[] = {name, option, const_cast<char*>(text), nullptr};
    posix_spawn_file_actions_t actions;
    if (posix_spawn_file_actions_init(&actions) != 0) return kNoProcess;
    if (output >= 0) posix_spawn_file_actions_adddup2(&actions, output, STDOUT_FILENO);
    pid_t process = kNoProcess;
    if (posix_spawn(&process, "/bin/sh", &actions, nullptr, words, environ) != 0) process = kNoProcess;
    posix_spawn_file_actions_destroy(&actions);
    return process;
}

void wait_for(pid_t process) {
    // Where the agent collects its children itself, or ignores them, this ends all the same when they do.
    while (process > 0 && waitpid(process, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void run_shell(const char* text) { wait_for(start_shell(text, -1)); }

std::string shell_word(const std::string& text) {
    constexpr const char* kPlain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789.:-_";
    if (text.find_first_not_of(kPlain) == std::string::npos) return text;
    std::string word = "'";
    for (const char letter : text) {
        if (letter == '\'') word += "'\\'";
        word += letter;
    }
    return word + "'";
}

}  // namespace cwmp
