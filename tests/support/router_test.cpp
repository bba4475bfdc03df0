// Calls of the library and what they left behind.
#include "router_test.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <stdexcept>

#include "cwmp/agent_state.h"
#include "cwmp/message_channel.h"
#include "library.h"
#include "rows.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* kLibrary = "/usr/lib/libcwmp-datamodel.so";
constexpr const char* kConsole = "/dev/console";
constexpr const char* kCommands = "/var/log/router/commands";
constexpr const char* kToolCalls = "/var/log/router/tools";
constexpr const char* kAnswers = "/var/lib/router/answers/";
constexpr cwmp_agent_state kAgent = {.port = 65535, .path = "/path", .acs_url = "http://acs/", .host = "192.0.2.10"};

// Writes the console, or is the test's own.
bool is_no_call(const std::string& command) {
    return (command.starts_with("echo \"[") && command.ends_with("\" > /dev/console \r\n")) ||
           command.ends_with(RouterTest::kToOutput);
}

// "[  123] [name 45] text" without the numbers.
std::string event_of(std::string line) {
    if (!line.starts_with('[') || line.find(']') < sizeof "[  12") return line;
    rows::take_until(line, "] [");
    const std::string function = rows::take_until(line, " ");
    rows::take_until(line, "] ");
    return function + ": " + line;
}

int open_descriptors() {
    constexpr int kMost = 1024;
    int count = 0;
    for (int descriptor = 0; descriptor < kMost; ++descriptor) count += fcntl(descriptor, F_GETFD) >= 0;
    return count;
}

// A text that begins with "#!" is a program, no text is no file.
void put_file(const std::string& path, const std::optional<std::string>& text) {
    std::error_code none;
    fs::remove_all(path, none);
    if (!text) return;
    stores::write_file(path, *text);
    if (text->starts_with("#!")) fs::permissions(path, fs::perms(0755));
}

}  // namespace

void RouterTest::SetUp() {
    umask(022);
    stores::reset();
    world("later 0");
    library_ = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) throw std::runtime_error(dlerror());
    descriptors_ = open_descriptors();
    // The processes of a test that runs beside the agent are handed to this one.
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    // A program of a sanitizer build cannot look for leaks beside this one.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
}

void RouterTest::TearDown() {
    if (agent_ >= 0) close(agent_);
    EXPECT_EQ(open_descriptors(), descriptors_) << "a call left a file or a pipe open";
    if (library_ != nullptr) dlclose(library_);
    // Process-wide state has to start anew with the next test.
    EXPECT_EQ(dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library cannot be unloaded";
    for (const auto& [path, text] : replaced_) put_file(path, text);
}

void* RouterTest::address(const char* name) {
    void* found = dlsym(library_, name);
    if (found == nullptr) throw std::runtime_error(std::string("the library does not export ") + name);
    return found;
}

std::optional<std::string> RouterTest::option(const std::string& name) {
    const auto all = stores::snapshot();
    return all.contains(name) ? std::optional(all.at(name)) : std::nullopt;
}

void RouterTest::file(const std::string& path, const std::optional<std::string>& text) {
    replaced_.try_emplace(path, text_of(path));
    put_file(path, text);
}

void RouterTest::answer(const std::string& command, const std::string& text) {
    std::string name = command;
    std::replace(name.begin(), name.end(), '/', '%');
    stores::write_file(kAnswers + name, text);
}

std::optional<std::string> RouterTest::text_of(const std::string& path) {
    return fs::is_regular_file(path) ? std::optional(stores::text_of(path)) : std::nullopt;
}

RouterTest::Result RouterTest::handle(int op, const std::string& name, Locate locate,
                                      const std::optional<std::string>& value, unsigned flags) {
    const bool answers = op == CWMP_OP_GET || op == CWMP_OP_ADD, lists = op == CWMP_OP_LIST;
    auto capacity = static_cast<uint32_t>(lists && !value->empty() ? std::stoul(*value) : 32);
    std::string text = answers ? kUntouched : value.value_or("");
    if (answers) text.resize(CWMP_VALUE_SIZE - 1);  // and a last zero
    Result result;
    result.flags = flags;
    result.locate = locate;
    if (lists) result.numbers.resize(capacity);
    const cwmp_handler function = handler(name.c_str());
    char* const data = value ? text.data() : nullptr;
    const cwmp_agent_state* record = agent_known_ ? &kAgent : nullptr;
    if (op == CWMP_OP_GET)
        result.code = cwmp::call(function, op, result.locate.data(), data, record);
    else if (lists)
        result.code = cwmp::call(function, op, result.locate.data(), result.numbers.data(), &capacity);
    else
        result.code = cwmp::call(function, op, result.locate.data(), data, &result.flags, record);
    result.value = text.c_str();
    EXPECT_TRUE(answers || lists || !value || result.value == value) << name << " changed the caller's text";
    while (!result.numbers.empty() && result.numbers.back() == 0) result.numbers.pop_back();
    return result;
}

Texts RouterTest::console() {
    Texts events;
    for (const auto& line : rows::split(raw_console(), " \r\n")) events.push_back(event_of(line));
    return events;
}

Texts RouterTest::commands() {
    Texts texts = rows::split(stores::text_of(kCommands), std::string(1, '\0'));
    std::erase_if(texts, is_no_call);
    const Texts calls = rows::split(stores::text_of(kToolCalls), "\n");
    auto call = calls.begin();
    for (auto& text : texts) {
        if (!text.starts_with("lua /usr/bin/tr069/check_params ")) continue;
        const std::string verb = "check_params " + rows::words(text)[2];
        call = std::find_if(call, calls.end(), [&](const auto& each) { return each.starts_with(verb); });
        if (call == calls.end()) break;
        text = *call++;
    }
    return texts;
}

int RouterTest::wait_for_jobs() {
    int killed = 0;
    alarm(60);
    for (int status = 0; wait(&status) > 0;) killed += WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL ? 1 : 0;
    alarm(0);
    return killed;
}

void RouterTest::listen() {
    cwmp_message_handle handle = {};
    ASSERT_EQ(FROM_LIBRARY(msg_init)(&handle), 0);
    ASSERT_EQ(FROM_LIBRARY(msg_srvInit)(CWMP_AGENT_IDENTIFIER, &handle), 0);
    agent_ = handle.descriptor;
    fs::remove("/dev/log");
    fs::create_symlink(handle.local.sun_path, "/dev/log");
}

Texts RouterTest::messages() const {
    Texts texts;
    char bytes[4096];
    for (ssize_t size = 0; (size = recv(agent_, bytes, sizeof bytes, MSG_DONTWAIT)) > 0;) {
        std::string entry(bytes, static_cast<std::size_t>(size));
        if (entry[0] == '<')
            texts.push_back("log " + entry.erase(entry.find('>') + 1, sizeof "Nov 21 12:00:00 " - 1));
        else if (size == sizeof(cwmp_message))
            texts.push_back("message " + std::to_string(reinterpret_cast<cwmp_message*>(bytes)->type));
    }
    return texts;
}

void RouterTest::forget() {
    fs::resize_file(kConsole, 0);
    for (const char* log : {kCommands, kToolCalls}) fs::remove(log);
}
