// Calls of the library and what they left behind.
#include "router_test.h"
#include "rows.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

namespace {

constexpr const char* kLibrary = "/usr/lib/libcwmp-datamodel.so";
constexpr const char* kConsole = "/dev/console";
constexpr const char* kCommands = "/var/log/router/commands";
constexpr const char* kToolCalls = "/var/log/router/tools";

bool writes_console(const std::string& command) {
    return command.starts_with("echo \"[") && command.ends_with("\" > /dev/console \r\n");
}

// "[  123] [name 45] text" without the numbers.
std::string event_of(const std::string& line) {
    const auto name = line.find("] [");
    const auto number = line.find(' ', name + 3);
    const auto text = line.find("] ", number);
    if (name == std::string::npos || number == std::string::npos || text == std::string::npos) return line;
    return line.substr(name + 3, number - name - 3) + ": " + line.substr(text + 2);
}

int open_descriptors() {
    constexpr int kMost = 1024;
    int count = 0;
    for (int descriptor = 0; descriptor < kMost; ++descriptor) {
        if (fcntl(descriptor, F_GETFD) >= 0) ++count;
    }
    return count;
}

std::vector<char> output_buffer() {
    std::vector<char> buffer(CWMP_VALUE_SIZE);
    std::string(kUntouched).copy(buffer.data(), buffer.size());
    return buffer;
}

}  // namespace

void empty_router();  // world.cpp

void RouterTest::SetUp() {
    empty_router();
    // Kept open, so that it can be read while a test leaves no free descriptor.
    console_ = open(kConsole, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    library_ = dlopen(kLibrary, RTLD_NOW | RTLD_LOCAL);
    if (library_ == nullptr) throw std::runtime_error(dlerror());
    descriptors_ = open_descriptors();
}

void RouterTest::TearDown() {
    EXPECT_EQ(open_descriptors(), descriptors_) << "a call left a file or a pipe open";
    close(console_);
    if (library_ != nullptr) dlclose(library_);
    // Process-wide state has to start anew with the next test.
    EXPECT_EQ(dlopen(kLibrary, RTLD_NOW | RTLD_NOLOAD), nullptr) << "the library cannot be unloaded";
    for (const auto& [path, text] : replaced_) {
        if (text) {
            file(path, *text);
        } else {
            std::filesystem::remove(path);
        }
    }
}

void* RouterTest::address(const char* name) {
    void* found = dlsym(library_, name);
    if (found == nullptr) throw std::runtime_error(std::string("the library does not export ") + name);
    return found;
}

int RouterTest::call(cwmp_handler handler, int op, ...) {
    va_list args;
    va_start(args, op);
    const int code = handler(op, args);
    va_end(args);
    return code;
}

RouterTest::Result RouterTest::get(const char* name, Locate locate) {
    auto buffer = output_buffer();
    Result result;
    result.code = call(handler(name), CWMP_OP_GET, locate.data(), buffer.data(), nullptr);  // no agent record
    result.value = buffer.data();
    result.locate = locate;
    return result;
}

RouterTest::Result RouterTest::set(const char* name, Locate locate, const std::string& value, int op,
                                   unsigned flags) {
    Result result{.value = value, .flags = flags};
    result.code = call(handler(name), op, locate.data(), result.value.data(), &result.flags, nullptr);
    result.locate = locate;
    EXPECT_EQ(result.value, value) << name << " changed the caller's text";
    return result;
}

RouterTest::Result RouterTest::add_instance(const char* name, Locate locate) {
    auto buffer = output_buffer();
    Result result;
    result.code = call(handler(name), CWMP_OP_ADD, locate.data(), buffer.data(), &result.flags);
    result.value = buffer.data();
    result.locate = locate;
    return result;
}

RouterTest::Result RouterTest::delete_instance(const char* name, Locate locate, const std::string& number) {
    return set(name, locate, number, CWMP_OP_DELETE);
}

std::optional<std::vector<uint32_t>> RouterTest::list_instances(const char* name, Locate locate,
                                                                uint32_t capacity) {
    std::vector<uint32_t> numbers(capacity);
    const int code = call(handler(name), CWMP_OP_LIST, locate.data(), numbers.data(), &capacity);
    if (code != 0) return std::nullopt;
    while (!numbers.empty() && numbers.back() == 0) numbers.pop_back();
    return numbers;
}

void RouterTest::level(int level, int syslog) {
    const int32_t switches[] = {level, syslog};
    call(handler("debug_level"), CWMP_OP_APPLY, switches, nullptr);
}

std::string RouterTest::raw_console() {
    std::string text;
    char piece[4096];
    lseek(console_, 0, SEEK_SET);
    for (ssize_t count = 0; (count = read(console_, piece, sizeof piece)) > 0;)
        text.append(piece, static_cast<std::size_t>(count));
    return text;
}

Texts RouterTest::console() {
    Texts events;
    for (const auto& line : rows::split(raw_console(), " \r\n")) events.push_back(event_of(line));
    return events;
}

Texts RouterTest::commands() {
    Texts texts = rows::split(text_of(kCommands).value_or(""), std::string(1, '\0'));
    std::erase_if(texts, writes_console);
    return texts;
}

Texts RouterTest::tool_calls() { return rows::split(text_of(kToolCalls).value_or(""), "\n"); }

void RouterTest::forget() {
    EXPECT_EQ(ftruncate(console_, 0), 0) << "no console";
    unlink(kCommands);
    unlink(kToolCalls);
}
