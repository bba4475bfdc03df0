#include "watch.h"

#include "store.h"

#include <dlfcn.h>
#include <sys/mman.h>
#include <sys/types.h>
#include <sys/wait.h>
#include <uci.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <map>
#include <set>

namespace cwmp::watch {

namespace {

struct Answer {
    std::string text;
    int status = 0;
};

Seen noted;
bool remembering = false;
bool quiet = false;
bool affected = false;
std::map<std::string, Answer> remembered;
std::map<FILE*, int> open_answers;  // and the status with which each closes
MadeUp made_up;
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

Answer run(const char* command) {
    Answer answer;
    FILE* pipe = next<FILE*(const char*, const char*)>("popen")(command, "re");
    if (!pipe) return answer;
    char block[4096];
    while (const std::size_t size = std::fread(block, 1, sizeof block, pipe)) answer.text.append(block, size);
    answer.status = next<int(FILE*)>("pclose")(pipe);
    return answer;
}

Answer answer_of(const char* command) {
    if (made_up) {
        if (const auto text = made_up(command)) return {*text, 0};
    }
    if (!remembering) return run(command);
    if (quiet && !remembered.contains(command)) return {};
    const auto [entry, is_new] = remembered.try_emplace(command);
    if (is_new) entry->second = run(command);
    return entry->second;
}

// What a command does to a router is worked out once.
int run_for_effect(const std::string& command) {
    struct Effect {
        int status;
        Files after;
    };
    static std::map<std::pair<std::string, Files>, Effect> effects;
    Files before = read_files();
    const auto known = effects.find({command, before});
    if (known != effects.end()) {
        restore_files(known->second.after, before);
        return known->second.status;
    }
    const int status = next<int(const char*)>("system")(command.c_str());
    effects.insert({{command, std::move(before)}, {status, read_files()}});
    return status;
}

FILE* file_of(const std::string& text) {
    const int descriptor = memfd_create("answer", MFD_CLOEXEC);
    if (descriptor < 0) return nullptr;
    const bool written = write(descriptor, text.data(), text.size()) == static_cast<ssize_t>(text.size());
    if (!written || lseek(descriptor, 0, SEEK_SET) != 0) std::abort();
    return fdopen(descriptor, "r");
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

}  // namespace cwmp::watch

using namespace cwmp::watch;

extern "C" {

FILE* popen(const char* command, const char* /*mode*/) {
    noted.commands.emplace_back(command);
    const Answer answer = answer_of(command);
    FILE* file = file_of(answer.text);
    if (file) open_answers[file] = answer.status;
    return file;
}

int pclose(FILE* file) {
    const auto entry = open_answers.find(file);
    if (entry == open_answers.end()) return next<int(FILE*)>("pclose")(file);
    const int status = entry->second;
    open_answers.erase(entry);
    std::fclose(file);
    return status;
}

int system(const char* command) {
    if (!command) return 1;
    if (auto message = console_message(command)) {
        if (!message->empty()) noted.logged.push_back(std::move(*message));
        return 0;
    }
    noted.commands.emplace_back(command);
    if (quiet) return 0;
    remembering = false;
    affected = true;
    return run_for_effect(command);
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
    const int result =
        next<int(uci_context*, const char*, uci_package**)>("uci_load")(context, name, package);
    if (result != UCI_OK) note(noted.options, std::string(name ? name : "") + ".");
    return result;
}

int uci_lookup_next(uci_context* context, uci_element** element, uci_list* list, const char* name) {
    const int result = next<int(uci_context*, uci_element**, uci_list*, const char*)>("uci_lookup_next")(
        context, element, list, name);
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
