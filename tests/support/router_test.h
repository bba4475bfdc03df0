// The fixture of all tests that run inside a router root: a bare router for every test, and the built library
// loaded in it as the agent loads it.
//
//     TEST_F(DeviceInfo, ModelComesFromTheFirmwareTool) {
//         world("answer fwinfo MODEL: KX-AX3000\\n");
//         EXPECT_EQ(told("get DeviceInfo_ModelName"), "KX-AX3000 | $ fwinfo MODEL");
//     }
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cwmp/handler.h"
#include "store.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using Texts = std::vector<std::string>;
using Locate = std::array<int, CWMP_LOCATE_SIZE>;

inline constexpr const char* kLive = "/etc/config";

// What an output buffer holds before a call, so that "left untouched" differs from "made empty".
inline constexpr const char* kUntouched = "(untouched)";

// A function or table of the library by its own name, with the type that the public header gives it:
// FROM_LIBRARY(getWanPort)() or FROM_LIBRARY(eth_names)[0].
#define FROM_LIBRARY(name) symbol<decltype(::name)>(#name)

class RouterTest : public ::testing::Test {
  public:
    struct Result {
        int code = 0;
        std::string value;              // of a GET or ADD the buffer, otherwise the text passed in, as it is afterwards
        unsigned flags = 0;             // the apply-flags word
        Locate locate{};                // as the handler left it
        std::vector<uint32_t> numbers;  // of a LIST
    };
    static constexpr const char* kOutput = "/var/log/router/output";  // of a command that the test runs
    static constexpr const char* kToOutput = ">/var/log/router/output 2>&1";

  protected:
    void SetUp() override;
    void TearDown() override;

    // Rows of the case language (docs/testing.md): a line of the world, and a call with all that it did, each as
    // one text.
    void world(const std::string& line);
    std::string told(const std::string& row);
    static bool is_call(const std::string& row);

    // The world, where a row is no good.
    void file(const std::string& path, const std::optional<std::string>& text);  // taken back after the test
    // What a device tool prints for a command line such as "fwinfo MODEL".
    static void answer(const std::string& command, const std::string& text);
    // Sets the log threshold and the system-log switch as the agent does.
    void level(int level, int syslog = 0) { set("debug_level", {level, syslog}, ""); }

    // A handler's call through the agent's variable-argument list. Without value it is a null pointer; a LIST
    // takes so many numbers.
    Result handle(int op, const std::string& handler, Locate locate = {}, const std::optional<std::string>& value = "",
                  unsigned flags = 0);
    Result get(const std::string& handler, Locate locate = {}) { return handle(CWMP_OP_GET, handler, locate); }
    Result set(const std::string& handler, Locate locate, const std::string& value, int op = CWMP_OP_APPLY) {
        return handle(op, handler, locate, value);
    }

    // What is there. A committed option, "tr069/hosts.1.mac", or a section's type.
    static std::optional<std::string> option(const std::string& name);
    static std::optional<std::string> text_of(const std::string& path);  // nothing where there is no file
    static bool exists(const std::string& path) { return std::filesystem::exists(path); }

    // The events on the console since the test began or forget() was called, each as
    // "DeviceInfo_UpTime: Failed to get  uptime\n": function name, then the text. Process id and source line
    // are left out.
    static Texts console();
    // The same as the device's console shows them.
    static std::string raw_console() { return stores::text_of("/dev/console"); }
    // The command texts that a shell was handed, without those that write the console; the check script's are told
    // by their requests, "check_params lan_check {...}".
    static Texts commands();
    // Forgets console and commands so far.
    static void forget();

    // Waits for the processes that calls left running; how many ended by their own kill.
    static int wait_for_jobs();
    // Binds the agent's end of the message channel, and the system log's; what has come to them, a message by its type,
    // "message 4207", an entry without its time, "log <11>cwmp: cwmp syslog:text".
    void listen();
    Texts messages() const;

    template <typename T>
    T& symbol(const char* name) {
        return *reinterpret_cast<T*>(address(name));
    }
    void* address(const char* name);  // ends the test when the library lacks the name
    cwmp_handler handler(const char* name) { return &symbol<int(int, va_list)>(name); }

  private:
    bool setting(const std::string& item);
    // What the call answers, then what it did; events of `name` do not name it.
    std::string effects(const std::function<std::string()>& call, const std::string& name = "");
    bool mutes(char part) const { return mute_.find(part) != std::string::npos; }
    bool is_heard(const std::string& event) const;
    std::string told_handler(int op, const std::string& name, const Locate& given, const std::string& word);
    Texts told_handlers(const std::string& verb, std::string rest);
    std::string told_transaction(const std::string& rest);
    std::string told_group(const std::string& rest);
    static std::string told_command(const std::string& command);
    std::string told_function(const std::string& verb, const std::string& name, const Texts& arguments);

    void* library_ = nullptr;
    int descriptors_ = 0;
    std::string mute_;      // of "=$!": changes, commands and events that told() leaves out
    Texts heard_;           // words of which an event must have one, if there are any
    std::string place_;     // the section that the row told last
    bool starved_ = false;  // the next call finds no free descriptor
    bool poor_ = false;     // it has no memory for a context of libuci
    bool awaited_ = false;  // the processes that it leaves running are waited for
    int agent_ = -1;        // the agent's end of the message channel, if it is bound
    bool agent_known_ = true;
    bool output_shown_ = false;  // whether it tells what the call printed
    std::map<std::string, std::optional<std::string>> replaced_;
};
