// The life of a group: staged, checked, applied, reverted.
#include "staged_test_support.h"

namespace {

struct Group {
    int id;
    std::string name;
    std::vector<StagedField> staged;
    std::string in_force;  // the script's account of the configuration
    std::string check;     // the request of the check, for groups that the script checks
    std::string passed;    // the messages of the passed check
    std::string apply;     // the request of the apply
    std::string revert;    // the request of the revert; empty: never restored
    unsigned flag;
};

void PrintTo(const Group& group, std::ostream* out) { *out << group.name; }

const Group kGroups[] = {
    {CWMP_STAGED_PPPOE,
     "pppoe",
     {{CWMP_PPPOE_USERNAME, "me@isp"}, {CWMP_PPPOE_ENABLE, "1"}, {CWMP_PPPOE_DNS_SERVERS, "192.0.2.53"}},
     R"({"pppoe_enable":"true","pppoe_username":"old","pppoe_password":"secret","pppoe_dnsserver":"0.0.0.0"})",
     "",
     "!!! pppoe check success \n\n",
     R"({"pppoe_enable":1,"pppoe_username":"me@isp","pppoe_password":"secret","pppoe_dnsserver":"192.0.2.53"})",
     R"({"pppoe_enable":1,"pppoe_username":"old","pppoe_password":"secret","pppoe_dnsserver":"0.0.0.0"})",
     16},
    {CWMP_STAGED_DHCP,
     "dhcp",
     {{CWMP_DHCP_START_ADDRESS, "10.0.0.9"}},
     R"({"dhcp_start_ip":"10.0.0.1","dhcp_end_ip":"10.0.0.99","dhcp_dnsserver":"192.0.2.1"})",
     R"({"dhcp_start_ip":"10.0.0.9","dhcp_end_ip":"10.0.0.99","dhcp_dnsserver":""})",
     "!!! dhcp check success\n\n",
     R"({"dhcp_start_ip":"10.0.0.9","dhcp_end_ip":"10.0.0.99","dhcp_dnsserver":""})",
     "",
     4},
    {CWMP_STAGED_LAN,
     "lan",
     {{CWMP_LAN_ADDRESS, "10.1.1.1"}},
     R"({"lan_ip":"10.0.0.1","lan_mask":"255.0.0.0"})",
     R"({"lan_ip":"10.1.1.1","lan_mask":"255.0.0.0"})",
     "!!! lan check success\n",
     R"({"lan_ip":"10.1.1.1","lan_mask":"255.0.0.0"})",
     R"({"lan_ip":"10.0.0.1","lan_mask":"255.0.0.0"})",
     32},
    {CWMP_STAGED_WAN,
     "wan",
     {{CWMP_WAN_TYPE, "Static"}, {CWMP_WAN_GATEWAY, "192.0.2.2"}, {CWMP_WAN_MASK, "255.255.255.0"}},
     R"({"wan_ip":"192.0.2.7","wan_mask":"255.0.0.0","wan_gate":"192.0.2.1","wan_dnsserver":"9.9.9.9","wan_type":"DHCP"})",
     R"({"wan_ip":"192.0.2.7","wan_mask":"255.255.255.0","wan_gate":"192.0.2.2","wan_dnsserver":"","wan_type":"Static"})",
     "!!! wan check success\n",
     R"({"wan_ip":"192.0.2.7","wan_mask":"255.255.255.0","wan_gate":"192.0.2.2","wan_dnsserver":"","wan_type":"Static"})",
     R"({"wan_ip":"192.0.2.7","wan_mask":"255.0.0.0","wan_gate":"192.0.2.1","wan_dnsserver":"9.9.9.9","wan_type":"DHCP"})",
     16},
    {CWMP_STAGED_IPTV,
     "iptv",
     {{CWMP_IPTV_TYPE, "bridge"}, {CWMP_IPTV_VLAN_ID, "30"}},
     R"({"iptv_enable":"1","iptv_type":"normal","iptv_vid":"20","iptv_prio":"3"})",
     "",
     "!!! iptv  check success\n\n",
     R"({"iptv_enable":1,"iptv_vid":"30","iptv_type":"bridge","iptv_prio":"3"})",
     R"({"iptv_enable":1,"iptv_vid":"20","iptv_type":"normal","iptv_prio":"3"})",
     64},
    {CWMP_STAGED_VLAN,
     "vlan",
     {{CWMP_VLAN_ENABLE, "1"}},
     R"({"vlan_enable":"true","vlan_vid":"7"})",
     "",
     "!!! vlan check pass\n",
     R"({"vlan_enable":1,"vlan_vid":"7"})",
     R"({"vlan_enable":0,"vlan_vid":"7"})",
     16},
};

class StagedTransaction : public StagedTest, public ::testing::WithParamInterface<Group> {
  protected:
    void SetUp() override {
        StagedTest::SetUp();
        in_force(group.name, group.in_force);
        script(group.name + "_check", kAccepted);
        script(group.name + "_whole", kAccepted);
        level(6);
    }

    std::string event(const std::string& operation, const std::string& text) const {
        return group.name + operation + ": " + text;
    }
    // The library's own event of a script call.
    static std::string command(const std::string& function, const std::string& arguments) {
        return function + ": !!!!!!!!!!!!!!!lua /usr/bin/tr069/check_params " + arguments + "  \n\n";
    }
    Texts load_call() const { return {"initialize_revert_data " + group.name + "_revert"}; }
    Texts apply_call(const std::string& request) const { return {group.name + "_whole " + request}; }

    const Group& group = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Groups, StagedTransaction, ::testing::ValuesIn(kGroups),
                         [](const auto& test) { return test.param.name; });

TEST_P(StagedTransaction, ChecksAndAppliesOnce) {
    const auto& first = group.staged.front();
    stage(group.id, {first});
    EXPECT_THAT(console(), ElementsAre(event("_pre", "!!!option:" + std::to_string(first.option) +
                                                         ", val:" + first.value + "\n\n")));
    stage(group.id, group.staged);
    EXPECT_THAT(script_calls(), IsEmpty());

    EXPECT_EQ(check(group.id), 1);
    Texts events = console();
    EXPECT_EQ(events.front(), event("_check", "!!!  " + group.name + " check enter \n\n"));
    EXPECT_EQ(events[1], command("initialize_revert_data", load_call().front()));
    EXPECT_EQ(events.back(), event("_check", group.passed));
    Texts calls = load_call();
    if (!group.check.empty()) {
        calls.push_back(group.name + "_check " + group.check);
        EXPECT_EQ(events[events.size() - 2], command(group.name + "_check", group.name + "_check"));
    }
    EXPECT_EQ(script_calls(), calls);

    EXPECT_EQ(check(group.id), 1);
    EXPECT_THAT(console(),
                ElementsAre(event("_check", "!!!  " + group.name + " check ever exec, return \n\n")));
    EXPECT_THAT(script_calls(), IsEmpty());

    flags = 0x100;
    EXPECT_EQ(apply(group.id), 1);
    events = console();
    EXPECT_EQ(events.front(), event("_set", "!!!  " + group.name + " set enter \n\n"));
    EXPECT_EQ(events[events.size() - 2], command(group.name + "_set", group.name + "_whole"));
    EXPECT_EQ(events.back(), event("_set", "!!!  " + group.name + " set success \n\n"));
    EXPECT_EQ(script_calls(), apply_call(group.apply));
    EXPECT_EQ(flags, 0x100 | group.flag);
    expect_no_exchange_files();

    EXPECT_EQ(apply(group.id), 1);
    EXPECT_THAT(console(), ElementsAre(event("_set", "!!!  " + group.name + " set enter \n\n"),
                                       event("_set", "!!!  " + group.name + " set ever exec, return \n\n")));
    EXPECT_THAT(script_calls(), IsEmpty());
}

TEST_P(StagedTransaction, AppliesNothingThatWasNotChecked) {
    stage(group.id, group.staged);
    EXPECT_EQ(apply(group.id), 1);
    EXPECT_EQ(flags, 0U);
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_P(StagedTransaction, AFieldStagedAfterTheCheckIsCheckedToo) {
    stage(group.id, group.staged);
    EXPECT_EQ(check(group.id), 1);
    EXPECT_EQ(exec(group.id, CWMP_STAGED_STAGE, 9, "x"), 0);
    forget();
    EXPECT_EQ(check(group.id), 1);
    EXPECT_THAT(commands(), IsEmpty()) << "nothing was taken, so nothing is new";
    stage(group.id, {group.staged.front()});
    forget();
    EXPECT_EQ(apply(group.id), 1);
    EXPECT_THAT(commands(), IsEmpty()) << "applied unchecked";
    EXPECT_EQ(check(group.id), 1);
    EXPECT_THAT(script_calls(), Contains(load_call().front()));
    EXPECT_EQ(apply(group.id), 1);
    EXPECT_EQ(flags, group.flag);
}

TEST_P(StagedTransaction, RejectedApplyIsAFailureAndLeavesTheGroupIdle) {
    script(group.name + "_whole", R"({"error_code":7})");
    stage(group.id, group.staged);
    EXPECT_EQ(check(group.id), 1);
    forget();
    EXPECT_EQ(apply(group.id), 0);
    EXPECT_EQ(flags, 0U);
    EXPECT_EQ(console().back(), event("_set", "!!!  " + group.name + " set fail \n\n"));
    if (group.id == CWMP_STAGED_PPPOE) {
        EXPECT_THAT(console(), Contains("pppoe_set: !!!!!!!! set pppoe fail\n"));
    }
    forget();
    EXPECT_EQ(apply(group.id), 1);
    EXPECT_THAT(script_calls(), IsEmpty());
}

TEST_P(StagedTransaction, RevertAppliesWhatWasInForceBefore) {
    stage(group.id, group.staged);
    EXPECT_EQ(check(group.id), 1);
    EXPECT_EQ(apply(group.id), 1);
    script_calls();
    flags = 0;
    EXPECT_EQ(revert(), 0);
    EXPECT_EQ(script_calls(), group.revert.empty() ? Texts{} : apply_call(group.revert));
    EXPECT_EQ(flags, group.revert.empty() ? 0 : group.flag);
    EXPECT_TRUE(all_idle());
    EXPECT_EQ(revert(), 0);
    EXPECT_THAT(script_calls(), IsEmpty());
}

TEST_P(StagedTransaction, RevertBeforeTheApplyRestoresTooButLetsANewPoolThrough) {
    stage(group.id, group.staged);
    EXPECT_EQ(check(group.id), 1);
    script_calls();
    EXPECT_EQ(revert(), 0);
    EXPECT_EQ(script_calls(), apply_call(group.revert.empty() ? group.apply : group.revert));
    EXPECT_TRUE(all_idle());
}

TEST_P(StagedTransaction, RevertOfWhatWasNeverCheckedOnlyForgetsIt) {
    stage(group.id, group.staged);
    EXPECT_EQ(revert(), 0);
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_TRUE(all_idle());
}

TEST_P(StagedTransaction, TheNextTransactionCannotRevertThisOne) {
    stage(group.id, group.staged);
    EXPECT_EQ(check(group.id), 1);
    EXPECT_EQ(apply(group.id), 1);
    script_calls();
    stage(group.id, group.staged);
    EXPECT_EQ(revert(), 0);
    EXPECT_THAT(script_calls(), IsEmpty());
}

TEST_P(StagedTransaction, ChecksWhatIsInForceWhenNothingWasStaged) {
    const bool passes = group.id != CWMP_STAGED_PPPOE;  // a user name must be staged
    EXPECT_EQ(check(group.id), passes ? 1 : 0);
}

TEST_P(StagedTransaction, AnUnreadableConfigurationFillsNothingAndLeavesNoFile) {
    in_force(group.name, "{\"broken");
    stage(group.id, group.staged);
    EXPECT_EQ(check(group.id), 0);
    expect_no_exchange_files();
}

// What a script may answer instead of an acceptance.
TEST_P(StagedTransaction, OnlyTheIntegerZeroIsAnAcceptance) {
    const bool scripted = !group.check.empty();
    for (const char* text : {R"({"error_code":false})", R"({"error_code":"0"})", R"({"error_code":0.0})",
                             R"({"error_code":null})", R"({"error_code":1})", R"({"error_code":4294967296})",
                             R"({"code":0})", R"([0])", "0", "nonsense", "{\"error_code\":0", ""}) {
        SCOPED_TRACE(text);
        script(group.name + (scripted ? "_check" : "_whole"), text);
        file(kAnswerFile, kAccepted);
        stage(group.id, group.staged);
        EXPECT_EQ(check(group.id), scripted ? 0 : 1);
        EXPECT_EQ(apply(group.id), scripted ? 1 : 0);
        EXPECT_EQ(flags, 0U);
        expect_no_exchange_files();
    }
}

TEST_P(StagedTransaction, ScriptThatCrashesRejects) {
    script(group.name + "_whole", "", 139);
    stage(group.id, group.staged);
    EXPECT_EQ(check(group.id), 1);
    EXPECT_EQ(apply(group.id), 0);
    expect_no_exchange_files();
}

TEST_P(StagedTransaction, TakesValuesOfAnySizeAndOptionsOfAnyNumber) {
    level(3);
    testing::internal::CaptureStdout();  // wan prints every value
    const std::string huge(65536, 'x');
    for (const int option : {-1, 0, 1, 2, 3, 4, 5, 6, INT32_MAX, INT32_MIN}) {
        const bool known = option >= 0 && option < 5;
        for (const char* value : {huge.c_str(), "", "%s%n$(true)\"'`;\xff"}) {
            const int taken = exec(group.id, CWMP_STAGED_STAGE, option, value);
            if (!known) {
                EXPECT_EQ(taken, 0);
            }
        }
        EXPECT_EQ(exec(group.id, CWMP_STAGED_STAGE, option, huge.c_str()),
                  exec(group.id, CWMP_STAGED_STAGE, option));
        EXPECT_EQ(exec(group.id, CWMP_STAGED_STAGE, option, nullptr), 0);
    }
    check(group.id);
    EXPECT_EQ(FROM_LIBRARY(func_obj_exec)(group.id, 0, CWMP_STAGED_APPLY, nullptr, nullptr), 1);
    EXPECT_EQ(exec(group.id, 3), 0);
    std::fflush(nullptr);
    testing::internal::GetCapturedStdout();
    expect_no_exchange_files();
}

}  // namespace
