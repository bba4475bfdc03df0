#pragma once

#include <map>
#include <span>
#include <string>
#include <vector>

#include "commands.h"

namespace cwmp {

// A diagnostic test as `dm diagnose` offers it.
struct Test {
    struct Setting {
        const char* option = "";  // "--tries"; a name without dashes is required and stands first
        const char* parameter = "";
        const char* help = "";
        const char* otherwise = "";  // its value when it is not given
        int least = 0;               // of a number
        int most = 0;
    };

    const char* name;
    const char* help;
    const char* object;
    std::span<const Setting> settings;
    // The table that holds the results and the parameters shown of it. Without one the agent runs the test
    // itself: the stored request is shown.
    const char* results = nullptr;
    std::span<const char* const> columns = {};
    // What the test writes while it runs; a line that begins with the mark, or with a number when it is empty,
    // is one more result.
    std::span<const char* const> outputs = {};
    const char* mark = "";
};

struct TestRequest {
    bool keep = false;  // the stored settings that are not given here
    std::map<const Test::Setting*, std::string> values = {};
};

std::span<const Test> tests();

// Sets the parameters, requests the test as an ACS does, and waits for its end where the library runs it.
void diagnose(Session& session, const Test& test, const TestRequest& request, int seconds);

// Waits for the end of a test that was requested elsewhere.
void wait_diagnostics(Session& session, int seconds);

}  // namespace cwmp
