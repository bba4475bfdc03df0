// What the tests of the grouped settings share: the check script's answers and the events of its calls.
#pragma once

#include <cstring>

#include "cwmp/staged_objects.h"
#include "router_test.h"

struct StagedField {
    int option;
    std::string value;
};

class StagedTest : public RouterTest {
  protected:
    static constexpr const char* kRequestFile = "/tmp/tr069_json_input_file";
    static constexpr const char* kAnswerFile = "/tmp/tr069_json_output_file";
    static constexpr const char* kAccepted = R"({"error_code":0})";

    int exec(int object, int mode, int option = 0, const char* value = "") {
        return FROM_LIBRARY(func_obj_exec)(object, option, mode, value, &flags);
    }
    void stage(int object, const std::vector<StagedField>& fields) {
        for (const auto& field : fields) {
            EXPECT_EQ(exec(object, CWMP_STAGED_STAGE, field.option, field.value.c_str()), 1) << field.value;
        }
    }
    int check(int object) { return exec(object, CWMP_STAGED_CHECK); }
    int apply(int object) { return exec(object, CWMP_STAGED_APPLY); }
    int revert() { return call(handler("func_obj_revert"), CWMP_OP_APPLY, nullptr, nullptr, &flags); }

    // What the script says of a verb, and what it says is in force for a group.
    static void script(const std::string& verb, const std::string& text, int status = 0) {
        answer("check_params " + verb, text, status);
    }
    static void in_force(const std::string& name, const std::string& json) {
        script("initialize_revert_data " + name + "_revert", json);
    }

    // The script's calls with their requests, since the last time.
    Texts script_calls() {
        Texts calls = tool_calls();
        for (auto& line : calls) line.erase(0, std::strlen("check_params "));
        forget();
        return calls;
    }

    void expect_no_exchange_files() {
        EXPECT_FALSE(exists(kRequestFile));
        EXPECT_FALSE(exists(kAnswerFile));
    }

    template <typename Record>
    static bool idle(const Record& record) {
        const Record zero{};
        return std::memcmp(&record, &zero, sizeof zero) == 0;
    }
    bool all_idle() {
        return idle(FROM_LIBRARY(pppoe_obj_data)) && idle(FROM_LIBRARY(pppoe_obj_data_revert)) &&
               idle(FROM_LIBRARY(dhcp_obj_data)) && idle(FROM_LIBRARY(dhcp_obj_data_revert)) &&
               idle(FROM_LIBRARY(lan_obj_data)) && idle(FROM_LIBRARY(lan_obj_data_revert)) &&
               idle(FROM_LIBRARY(wan_obj_data)) && idle(FROM_LIBRARY(wan_obj_data_revert)) &&
               idle(FROM_LIBRARY(iptv_obj_data)) && idle(FROM_LIBRARY(iptv_obj_data_revert)) &&
               idle(FROM_LIBRARY(vlan_obj_data)) && idle(FROM_LIBRARY(vlan_obj_data_revert));
    }

    unsigned flags = 0;
};
