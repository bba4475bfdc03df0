// The fixture of all tests that run inside a router root: a bare router for every test, and the built library
// loaded in it as the agent loads it.
//
//     TEST_F(DeviceInfo, ModelComesFromTheFirmwareTool) {
//         answer("fwinfo MODEL", "KX-AX3000\n");
//         EXPECT_EQ(get("DeviceInfo_ModelName").value, "KX-AX3000");
//         EXPECT_THAT(commands(), ElementsAre("fwinfo MODEL"));
//     }
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cwmp/handler.h"

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;

using Texts = std::vector<std::string>;
using Locate = std::array<int, CWMP_LOCATE_SIZE>;

inline constexpr const char* kLive = "/etc/config";
inline constexpr const char* kScratch = "/tmp/tr069";
inline constexpr const char* kProfile = "/etc/profile.d";

// What an output buffer holds before a call, so that "left untouched" differs from "made empty".
inline constexpr const char* kUntouched = "(untouched)";

// A function or table of the library by its own name, with the type that the public header gives it:
// FROM_LIBRARY(getWanPort)() or FROM_LIBRARY(eth_names)[0].
#define FROM_LIBRARY(name) symbol<decltype(::name)>(#name)

class RouterTest : public ::testing::Test {
  public:
    struct Result {
        int code = 0;
        std::string value;   // GET: the buffer; SET: the text passed in, as it is afterwards
        unsigned flags = 0;  // the apply-flags word after a SET
        Locate locate{};     // as the handler left it
    };

  protected:
    void SetUp() override;
    void TearDown() override;

    // The world: what a test wants other than a bare router.

    // A package file, word for word.
    static void package(const std::string& name, const std::string& text,
                        const std::string& directory = kLive);
    // One option, "package.section.option"; a missing section gets its own name as type.
    static void store(const std::string& option, const std::string& value,
                      const std::string& directory = kLive);
    // Several of one package, written once.
    using Options = std::vector<std::pair<std::string, std::string>>;
    static void store(const std::string& directory, const Options& options);
    // One option of the device profile, "section.option".
    static void profile(const std::string& option, const std::string& value);
    // A section, "package.section"; the package is made if need be.
    static void add_section(const std::string& section, const std::string& type,
                            const std::string& directory = kLive);
    // "package.section" or "package.section.option".
    static void erase(const std::string& what, const std::string& directory = kLive);
    // What a device tool prints for a command line such as "fwinfo MODEL", and its exit status.
    static void answer(const std::string& command, const std::string& text, int status = 0);
    // Any other file, directories included; taken back after the test.
    void file(const std::string& path, const std::string& text);
    void remove_file(const std::string& path);

    // Calls, through the agent's variable-argument lists.

    Result get(const char* handler, Locate locate = {});
    Result set(const char* handler, Locate locate, const std::string& value, int op = CWMP_OP_APPLY,
               unsigned flags = 0);

    // Object handlers.
    Result add_instance(const char* handler, Locate locate = {});  // value is the new number
    Result delete_instance(const char* handler, Locate locate, const std::string& number);
    // The numbers; nothing when the handler refuses. capacity is what the agent can take.
    std::optional<std::vector<uint32_t>> list_instances(const char* handler, Locate locate = {},
                                                        uint32_t capacity = 32);

    // A row of the case language (docs/testing.md): a line of the world, and a call with all that it did, each as
    // one text. effects() tells the same of any code; its own result comes first.
    void world(const std::string& line);
    std::string told(const std::string& row);
    std::string effects(const std::function<std::string()>& call);

    // What the calls left behind.

    // A committed option, "package.section.option", read by libuci itself; nothing for a list or a missing
    // one.
    static std::optional<std::string> option(const std::string& option, const std::string& directory = kLive);
    // A section's type, "package.section".
    static std::optional<std::string> section_type(const std::string& section,
                                                   const std::string& directory = kLive);
    // A file's text; nothing when there is no such file.
    static std::optional<std::string> text_of(const std::string& path);
    static bool exists(const std::string& path);

    // The events on the console since the test began or forget() was called, each as
    // "DeviceInfo_UpTime: Failed to get  uptime\n": function name, then the text. Process id and source line
    // are left out.
    Texts console();
    // The same as the device's console shows them.
    std::string raw_console();
    // The command texts that a shell was handed, without those that write the console.
    static Texts commands();
    // The device tools' own calls, "fwinfo MODEL".
    static Texts tool_calls();
    // Forgets console, commands and tool calls so far.
    void forget();

    // Sets the log threshold and the system-log switch as the agent does.
    void level(int level, int syslog = 0);

    // The library.

    template <typename T>
    T& symbol(const char* name) {
        return *reinterpret_cast<T*>(address(name));
    }
    void* address(const char* name);  // ends the test when the library lacks the name
    // Calls a handler with any argument list of the test's own.
    static int call(cwmp_handler handler, int op, ...);
    cwmp_handler handler(const char* name) { return &symbol<int(int, va_list)>(name); }

  private:
    void change(const std::string& what);
    static Texts commands_with_requests();
    Texts told_handlers(const std::string& verb, std::string rest);
    std::string told_handler(int op, const std::string& name, const Locate& given, const std::string& word);
    std::string told_transaction(const std::string& rest);
    std::string told_function(const std::string& verb, const std::string& name, const Texts& arguments);

    void* library_ = nullptr;
    int console_ = -1;
    int descriptors_ = 0;
    std::string mute_;           // of "$!": commands and events that told() leaves out
    Texts heard_;                // words of which an event must have one, if there are any
    bool store_events_ = false;  // whether it tells those of the store's own functions
    bool agent_known_ = true;
    bool starved_ = false;  // the next call finds no free descriptor
    std::map<std::string, std::optional<std::string>> replaced_;
};
