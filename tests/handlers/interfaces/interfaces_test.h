// What the tests of the interface families share: WAN types, and transactions over several parameters.
#pragma once

#include "cwmp/apply_flags.h"
#include "cwmp/staged_objects.h"
#include "router_test.h"

class InterfacesTest : public RouterTest {
  protected:
    struct Change {
        const char* handler;
        Locate locate;
        std::string value;
    };
    struct Outcome {
        int code = 0;
        unsigned flags = 0;
    };

    static void wan(const std::string& type, const std::string& proto = "") {
        for (const char* package : {"network", "network_sync"}) {
            store(std::string(package) + ".wan.wan_type", type);
            store(std::string(package) + ".wan.proto", proto.empty() ? type : proto);
        }
    }

    // The three passes, reverted at the first refusal.
    Outcome transaction(const std::vector<Change>& changes) {
        Outcome outcome;
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
            for (const auto& change : changes) {
                const Result result = set(change.handler, change.locate, change.value, op, outcome.flags);
                outcome.flags = result.flags;
                if (result.code == 0) continue;
                call(handler("func_obj_revert"), CWMP_OP_APPLY, nullptr, nullptr, &outcome.flags);
                return {result.code, outcome.flags};
            }
        }
        return outcome;
    }

    // Refused in every pass with one event, without a command, with the value left alone.
    void expect_refused(const Change& change, const std::string& event) {
        SCOPED_TRACE(std::string(change.handler) + " = " + change.value);
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
            forget();
            const Result result = set(change.handler, change.locate, change.value, op);
            EXPECT_EQ(result.code, -1);
            EXPECT_EQ(result.flags, 0U);
            EXPECT_EQ(result.value, change.value);
            EXPECT_THAT(console(), ElementsAre(std::string(change.handler) + ": " + event));
            EXPECT_THAT(commands(), IsEmpty());
        }
    }

    // The check script's calls, without their requests' ends.
    static Texts script_calls() {
        Texts verbs;
        for (const auto& line : tool_calls()) {
            if (!line.starts_with("check_params ")) continue;
            const auto verb = line.substr(13, line.find_first_of(" ", 13) - 13);
            if (verb != "initialize_revert_data") verbs.push_back(verb);
        }
        return verbs;
    }

    static constexpr const char* kNotValid = "value is not valid\n";
};
