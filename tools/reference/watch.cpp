#include "watch.h"

#include "store.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <spawn.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <uci.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <utility>

namespace cwmp::watch {

namespace {

// Where the numbers of processes begin that there are only for the library.
constexpr pid_t kNoRealProcess = 0x70000000;
constexpr int kMostAnswer = 1 << 20;

Seen noted;
bool remembering = false;
bool quiet = false;
bool affected = false;
std::map<std::string, std::string> remembered;
int output_of_shell = -1;
pid_t last_process = kNoRealProcess;
MadeUp made_up;
std::string not_started;
bool in_child = false;

template <typename Function>
Function* next(const char* name) {
    void* found = dlsym(RTLD_NEXT, name);
    if (!found) std::abort();
    return reinterpret_cast<Function*>(found);
}

void note(std::vector<std::string>& list, std::string text) {
    if (std::find(list.begin(), list.end(), text) == list.end()) list.push_back(std::move(text));
}

// echo "[  123] [SomeHandler 45] the message" > /dev/console
std::optional<std::string> console_message(const std::string& command) {
    constexpr const char* kBegin = "echo \"[";
    const std::size_t end = command.rfind("\" > /dev/console");
    if (!command.starts_with(kBegin) || end == std::string::npos) return std::nullopt;
    std::size_t begin = command.find("] ") + 2;
    if (command[begin] == '[') begin = std::min(command.find("] ", begin) + 2, end);
    std::string message = command.substr(begin, end - begin);
    // What the layer below says of each write is the same for all.
    if (command.find("] [uci") != std::string::npos) return "";
    while (message.ends_with('\n')) message.pop_back();
    return message;
}

std::string run(const char* command) {
    std::string answer;
    FILE* pipe = popen(command, "re");
    if (!pipe) return answer;
    char block[4096];
    while (const std::size_t size = std::fread(block, 1, sizeof block, pipe)) answer.append(block, size);
    pclose(pipe);
    return answer;
}

std::string answer_of(const char* command) {
    if (made_up) {
        if (const auto text = made_up(command)) return *text;
    }
    if (!remembering) return run(command);
    if (quiet && !remembered.contains(command)) return "";
    const auto [entry, is_new] = remembered.try_emplace(command);
    if (is_new) entry->second = run(command);
    return entry->second;
}

// What a command does to a router is worked out once.
void run_for_effect(const std::string& command) {
    static std::map<std::pair<std::string, Files>, Files> effects;
    Files before = read_files();
    const auto known = effects.find({command, before});
    if (known != effects.end()) return restore_files(known->second, before);
    if (std::system(command.c_str()) < 0) std::abort();
    effects.insert({{command, std::move(before)}, read_files()});
}

void answer_shell(const char* command, int output) {
    noted.commands.emplace_back(command);
    const std::string answer = answer_of(command);
    // All of it goes in before anybody reads.
    if (fcntl(output, F_SETPIPE_SZ, kMostAnswer) < 0) std::abort();
    if (write(output, answer.data(), answer.size()) != static_cast<ssize_t>(answer.size())) std::abort();
}

void run_shell(const char* command) {
    if (auto message = console_message(command)) {
        if (!message->empty()) noted.logged.push_back(std::move(*message));
        return;
    }
    noted.commands.emplace_back(command);
    if (quiet) return;
    remembering = false;
    affected = true;
    run_for_effect(command);
}

std::string package_name(const uci_package* package) {
    const std::string directory = package->ctx->confdir ? package->ctx->confdir : "";
    return (directory.empty() || directory == "/etc/config" ? "" : directory + "/") + package->e.name;
}

}  // namespace

void begin() {
    noted = {};
    in_child = false;
    affected = false;
}
Seen seen() { return noted; }
bool ran_for_effect() { return affected; }
void remember_answers(bool on) { remembering = on; }
void forget_answers() { remembered.clear(); }
void silence_unknown(bool on) { quiet = on; }
void make_up_answers(MadeUp answers) { made_up = std::move(answers); }
void keep_from_starting(const std::string& command) { not_started = command; }

}  // namespace cwmp::watch

using namespace cwmp::watch;

extern "C" {

int posix_spawn_file_actions_adddup2(posix_spawn_file_actions_t* actions, int descriptor, int as) {
    if (as == STDOUT_FILENO) output_of_shell = descriptor;
    return next<int(posix_spawn_file_actions_t*, int, int)>("posix_spawn_file_actions_adddup2")(actions, descriptor,
                                                                                                as);
}

// The library starts nothing but shells: sh -c TEXT, some with an output that is read.
int posix_spawn(pid_t* process, const char* /*path*/, const posix_spawn_file_actions_t* /*actions*/,
                const posix_spawnattr_t* /*attributes*/, char* const words[], char* const /*environment*/[]) {
    const int output = std::exchange(output_of_shell, -1);
    if (not_started == words[2]) return EAGAIN;
    *process = ++last_process;
    if (output < 0) {
        run_shell(words[2]);
    } else {
        answer_shell(words[2], output);
    }
    return 0;
}

pid_t waitpid(pid_t process, int* status, int options) {
    if (process <= kNoRealProcess) return next<pid_t(pid_t, int*, int)>("waitpid")(process, status, options);
    if (status) *status = 0;
    return process;
}

// A job that the library detaches has ended before the call that began it returns.
pid_t fork() {
    const pid_t child = next<pid_t()>("fork")();
    if (child > 0 && in_child) waitpid(child, nullptr, 0);
    if (child == 0) in_child = true;
    return child;
}

int usleep(useconds_t /*time*/) { return 0; }
unsigned sleep(unsigned /*seconds*/) { return 0; }

// Nothing here outlives the program.
int fsync(int /*descriptor*/) { return 0; }

int uci_load(uci_context* context, const char* name, uci_package** package) {
    const int result = next<int(uci_context*, const char*, uci_package**)>("uci_load")(context, name, package);
    if (result != UCI_OK) note(noted.options, std::string(name ? name : "") + ".");
    return result;
}

int uci_lookup_next(uci_context* context, uci_element** element, uci_list* list, const char* name) {
    const int result =
        next<int(uci_context*, uci_element**, uci_list*, const char*)>("uci_lookup_next")(context, element, list, name);
    uci_element* one = nullptr;
    uci_foreach_element(&context->root, one) {
        uci_package* package = uci_to_package(one);
        if (list == &package->sections && result != UCI_OK) {
            note(noted.options, package_name(package) + "." + name + ".");
        }
        uci_element* other = nullptr;
        uci_foreach_element(&package->sections, other) {
            if (list != &uci_to_section(other)->options) continue;
            note(noted.options, package_name(package) + "." + other->name + "." + name);
        }
    }
    return result;
}

}  // extern "C"
