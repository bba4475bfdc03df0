// The rules of each group's check, and the entry points around them.
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>

#include "staged_test_support.h"

namespace {

struct Rule {
    const char* what;
    int object;
    std::vector<StagedField> staged;
    std::string in_force;
    int result;
    Texts events;  // of the check, between its first ones and the common failure
};

constexpr const char* kNames[] = {"pppoe", "dhcp", "lan", "wan", "iptv", "vlan"};
constexpr const char* kFailures[] = {"!!!  pppoe check fail \n\n", "!!! dhcp check fail\n\n",
                                     "!!! lan check fail\n",       "!!! wan check fail\n",
                                     "!!! iptv  check fail\n\n",   "!!! vlan check fail\n"};
constexpr const char* kNothing = "{}";
constexpr const char* kAccount = R"({"pppoe_enable":"1","pppoe_username":"u","pppoe_password":"p"})";
constexpr const char* kStaticWan =
    R"({"wan_ip":"192.0.2.7","wan_mask":"255.0.0.0","wan_gate":"192.0.2.1","wan_type":"Static"})";
constexpr const char* kDynamicWan =
    R"({"wan_ip":"192.0.2.7","wan_mask":"255.0.0.0","wan_gate":"192.0.2.1","wan_type":"DHCP"})";
constexpr const char* kIptv = R"({"iptv_enable":"1","iptv_type":"normal","iptv_vid":"20","iptv_prio":"3"})";

const Rule kRules[] = {
    {"switched off, nothing else counts", 0, {{0, "true"}}, kNothing, 1, {"!!!  pppoe check pass 1\n\n"}},
    {"account staged whole",
     0,
     {{0, "1"}, {1, "u"}, {2, "p"}},
     kNothing,
     1,
     {"!!! pppoe check success \n\n"}},
    {"password from the configuration", 0, {{1, "u"}}, kAccount, 1, {"!!! pppoe check success \n\n"}},
    {"no password anywhere", 0, {{0, "1"}, {1, "u"}}, kNothing, 0, {}},
    {"user name only in the configuration", 0, {{0, "1"}, {2, "new"}}, kAccount, 0, {}},
    {"pool staged whole", 1, {{0, "10.0.0.1"}, {1, "10.0.0.9"}}, kNothing, 1, {"!!! dhcp check success\n\n"}},
    {"start is no address", 1, {{0, "10.0.0.01"}}, kNothing, 0, {"!!! dhcp check start_ip fail \n\n"}},
    {"end is no address", 1, {{0, "10.0.0.1"}, {1, "x"}}, kNothing, 0, {"!!! dhcp  end_ip check fail \n\n"}},
    {"no end anywhere", 1, {{0, "10.0.0.1"}}, R"({"dhcp_start_ip":"10.0.0.2"})", 0, {}},
    {"LAN address is none",
     2,
     {{0, "10.0.0.256"}, {1, "255.0.0.0"}},
     kNothing,
     0,
     {"!!! lan check fail 1\n\n"}},
    {"LAN mask is none", 2, {{0, "10.0.0.1"}, {1, "255"}}, kNothing, 0, {"!!! lan mask check fail 2\n\n"}},
    {"no LAN mask anywhere", 2, {{0, "10.0.0.1"}}, kNothing, 0, {}},
    {"value of another type in force", 2, {{0, "10.0.0.1"}}, R"({"lan_mask":255})", 0, {}},
    {"DHCP, whatever the address", 3, {{4, "DHCP"}, {0, "bad"}}, kNothing, 1, {"!!! wan check success\n"}},
    {"dhcp is another word", 3, {{4, "dhcp"}, {0, "bad"}}, kStaticWan, 0, {"!!! wan ip check fail \n\n"}},
    {"address on a dynamic WAN", 3, {{0, "192.0.2.8"}}, kDynamicWan, 0, {}},
    {"mask on a dynamic WAN", 3, {{1, "255.0.0.0"}}, kDynamicWan, 0, {}},
    {"gateway on a dynamic WAN", 3, {{2, "192.0.2.8"}}, kDynamicWan, 0, {}},
    {"name servers on a dynamic WAN", 3, {{3, "9.9.9.9"}}, kDynamicWan, 1, {"!!! wan check success\n"}},
    {"address on a static WAN", 3, {{0, "192.0.2.8"}}, kStaticWan, 1, {"!!! wan check success\n"}},
    {"no type anywhere", 3, {{0, "192.0.2.8"}}, kNothing, 0, {}},
    {"WAN mask is none", 3, {{1, "x"}}, kStaticWan, 0, {"!!! wan mask check fail \n\n"}},
    {"WAN gateway is none", 3, {{2, "x"}}, kStaticWan, 0, {"!!! wan gate check fail \n\n"}},
    {"IPTV switched off", 4, {{0, "0"}, {1, "wrong"}}, kNothing, 1, {"!!!  iptv check enable pass \n\n"}},
    {"unknown type", 4, {{1, "Bridge"}}, kIptv, 0, {"!!!  iptv type check fail\n\n"}},
    {"VLAN id 1", 4, {{2, "1"}}, kIptv, 0, {"!!! iptv vid check fail \n\n"}},
    {"VLAN id 2", 4, {{2, "2"}}, kIptv, 1, {"!!! iptv  check success\n\n"}},
    {"VLAN id 4094", 4, {{2, "4094x"}}, kIptv, 1, {"!!! iptv  check success\n\n"}},
    {"VLAN id 4095", 4, {{2, "4095"}}, kIptv, 0, {"!!! iptv vid check fail \n\n"}},
    {"priority -1", 4, {{3, "-1"}}, kIptv, 0, {"!!! iptv prio fail \n\n"}},
    {"priority 0", 4, {{3, "0"}}, kIptv, 1, {"!!! iptv  check pass\n\n", "!!! iptv  check success\n\n"}},
    {"priority 7", 4, {{3, "7"}}, kIptv, 1, {"!!! iptv  check pass\n\n", "!!! iptv  check success\n\n"}},
    {"priority 8", 4, {{3, "8"}}, kIptv, 0, {"!!! iptv prio fail \n\n"}},
    {"no priority anywhere", 4, {{1, "normal"}, {2, "30"}}, kNothing, 0, {}},
    {"VLAN switched off", 5, {{0, "yes"}, {1, "0"}}, kNothing, 1, {"!!!  vlan check enable pass \n\n"}},
    {"internet VLAN 0", 5, {{0, "1"}, {1, "0"}}, kNothing, 0, {"!!!  vlan check vid pass \n\n"}},
    {"internet VLAN 1", 5, {{0, "1"}, {1, "1"}}, kNothing, 1, {"!!! vlan check pass\n"}},
    {"internet VLAN 4094", 5, {{1, "4094"}}, kNothing, 1, {"!!! vlan check pass\n"}},
    {"internet VLAN 4095", 5, {{1, "4095"}}, kNothing, 0, {"!!!  vlan check vid pass \n\n"}},
    {"no VLAN anywhere", 5, {{0, "1"}}, kNothing, 0, {}},
};

class StagedRules : public StagedTest {
  protected:
    void SetUp() override {
        StagedTest::SetUp();
        for (const char* verb : {"dhcp_check", "lan_check", "wan_check", "pppoe_whole", "dhcp_whole",
                                 "lan_whole", "wan_whole", "iptv_whole", "vlan_whole"}) {
            script(verb, kAccepted);
        }
        for (const char* name : kNames) in_force(name, kNothing);
    }

    // The check's own words: without the calls of the script.
    Texts check_events(const std::string& name) {
        Texts events;
        for (const auto& event : console()) {
            if (event.find("lua ") == std::string::npos && event.starts_with(name + "_check: "))
                events.push_back(event.substr(name.size() + 8));
        }
        return events;
    }
};

TEST_F(StagedRules, DecideAndReport) {
    level(6);
    for (const auto& rule : kRules) {
        SCOPED_TRACE(rule.what);
        const std::string name = kNames[rule.object];
        in_force(name, rule.in_force);
        stage(rule.object, rule.staged);
        forget();
        EXPECT_EQ(check(rule.object), rule.result);
        Texts expected = {"!!!  " + name + " check enter \n\n"};
        expected.insert(expected.end(), rule.events.begin(), rule.events.end());
        if (rule.result == 0) expected.emplace_back(kFailures[rule.object]);
        EXPECT_EQ(check_events(name), expected);
        expect_no_exchange_files();
        revert();
    }
}

TEST_F(StagedRules, OnlyWhatAnOperatorMustSeeIsAnError) {
    stage(CWMP_STAGED_DHCP, {{CWMP_DHCP_START_ADDRESS, "x"}});
    for (int object = 0; object < CWMP_STAGED_OBJECTS; ++object) check(object);
    auto& account = FROM_LIBRARY(pppoe_obj_data);
    std::memset(account.username, 'x', sizeof account.username);
    EXPECT_EQ(check(CWMP_STAGED_PPPOE), 0);  // for want of a password: 255 characters are none too many
    std::memset(account.username, 'x', sizeof account.username);
    account.password[0] = 'x';  // the 256th
    EXPECT_EQ(check(CWMP_STAGED_PPPOE), 0);
    EXPECT_THAT(console(), ElementsAre("dhcp_check: !!! dhcp check fail\n\n",
                                       "pppoe_check: !!! pppoe username or password is too long\n"));
}

TEST_F(StagedRules, NameServersThatAnAgentWroteItselfAreMeasured) {
    level(6);
    std::memset(FROM_LIBRARY(pppoe_obj_data).dns_servers, '1', 33);
    EXPECT_EQ(check(CWMP_STAGED_PPPOE), 0);
    EXPECT_THAT(console(), Contains("pppoe_check: !!!  pppoe check fail 1\n\n"));
    std::memset(FROM_LIBRARY(dhcp_obj_data).dns_servers, '1', sizeof dhcp_obj_data.dns_servers);
    EXPECT_EQ(check(CWMP_STAGED_DHCP), 0);
    EXPECT_THAT(console(), Contains("dhcp_check: !!! dhcp check DNS fail\n\n"));
    EXPECT_TRUE(all_idle());
}

TEST_F(StagedRules, FailedIptvCheckDropsTheLanAndKeepsIptv) {
    stage(CWMP_STAGED_LAN, {{CWMP_LAN_ADDRESS, "10.0.0.1"}});
    stage(CWMP_STAGED_IPTV, {{CWMP_IPTV_TYPE, "wrong"}});
    EXPECT_EQ(check(CWMP_STAGED_IPTV), 0);
    EXPECT_TRUE(idle(FROM_LIBRARY(lan_obj_data)));
    EXPECT_STREQ(FROM_LIBRARY(iptv_obj_data).type, "wrong");
}

TEST_F(StagedRules, ValuesAreCutToTheirField) {
    const std::string text(300, 'x');
    for (const int option : {1, 2, 3}) exec(CWMP_STAGED_PPPOE, CWMP_STAGED_STAGE, option, text.c_str());
    const auto& account = FROM_LIBRARY(pppoe_obj_data);
    EXPECT_EQ(account.username, text.substr(0, 254));
    EXPECT_EQ(account.password, text.substr(0, 254));
    EXPECT_EQ(account.dns_servers, text.substr(0, 15));
    for (const int option : {0, 2}) exec(CWMP_STAGED_DHCP, CWMP_STAGED_STAGE, option, text.c_str());
    EXPECT_EQ(FROM_LIBRARY(dhcp_obj_data).start_address, text.substr(0, 15));
    EXPECT_EQ(FROM_LIBRARY(dhcp_obj_data).dns_servers, text.substr(0, 15));
    for (const int option : {3, 4}) exec(CWMP_STAGED_WAN, CWMP_STAGED_STAGE, option, text.c_str());
    EXPECT_EQ(FROM_LIBRARY(wan_obj_data).dns_servers, text.substr(0, 49));
    EXPECT_EQ(FROM_LIBRARY(wan_obj_data).type, text.substr(0, 19));
    exec(CWMP_STAGED_VLAN, CWMP_STAGED_STAGE, CWMP_VLAN_VLAN_ID, text.c_str());
    exec(CWMP_STAGED_VLAN, CWMP_STAGED_STAGE, CWMP_VLAN_VLAN_ID, "7");
    EXPECT_EQ(FROM_LIBRARY(vlan_obj_data).vlan_id, std::string("7"));
}

TEST_F(StagedRules, TrueEnablesOnlyWhatTheScriptSaysOfPppoeAndIptv) {
    const char* answers = R"({"pppoe_enable":"true","iptv_enable":"true","vlan_enable":"true"})";
    for (const char* name : {"pppoe", "iptv", "vlan"}) {
        in_force(name, answers);
        EXPECT_EQ(FROM_LIBRARY(initialize_revert_data)((std::string(name) + "_revert").c_str()), 0);
        exec(name[0] == 'p' ? 0 : name[0] == 'i' ? 4 : 5, CWMP_STAGED_STAGE, 0, "true");
    }
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data_revert).enable, CWMP_STAGED_ENABLED);
    EXPECT_EQ(FROM_LIBRARY(iptv_obj_data_revert).enable, CWMP_STAGED_ENABLED);
    EXPECT_EQ(FROM_LIBRARY(vlan_obj_data_revert).enable, CWMP_STAGED_DISABLED);
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data).enable, CWMP_STAGED_DISABLED);
    EXPECT_EQ(FROM_LIBRARY(iptv_obj_data).enable, CWMP_STAGED_DISABLED);
}

TEST_F(StagedRules, LoadingReplacesTheRecordOnlyWhenThereIsAnAnswer) {
    auto& record = FROM_LIBRARY(lan_obj_data_revert);
    in_force("lan", R"({"lan_ip":"10.0.0.1","lan_mask":"255.0.0.0"})");
    EXPECT_EQ(FROM_LIBRARY(initialize_revert_data)("lan_revert"), 0);
    in_force("lan", "nonsense");
    EXPECT_EQ(FROM_LIBRARY(initialize_revert_data)("lan_revert"), -1);
    EXPECT_STREQ(record.mask, "255.0.0.0");
    EXPECT_EQ(text_of(kAnswerFile), "nonsense");
    in_force("lan", R"({"lan_ip":"10.0.0.2","lan_mask":true})");
    EXPECT_EQ(FROM_LIBRARY(initialize_revert_data)("lan_revert"), 0);
    EXPECT_STREQ(record.address, "10.0.0.2");
    EXPECT_STREQ(record.mask, "");
    EXPECT_EQ(FROM_LIBRARY(initialize_revert_data)("no such name"), 0);
    EXPECT_STREQ(record.address, "10.0.0.2");
    forget();
    EXPECT_EQ(FROM_LIBRARY(initialize_revert_data)(nullptr), 0);
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(StagedRules, AnswersOfAnEarlierRunDoNotCount) {
    in_force("lan", "");
    file(kAnswerFile, R"({"lan_ip":"10.9.9.9"})");
    EXPECT_EQ(FROM_LIBRARY(initialize_revert_data)("lan_revert"), -1);
    EXPECT_TRUE(idle(FROM_LIBRARY(lan_obj_data_revert)));
    stage(CWMP_STAGED_WAN, {{CWMP_WAN_TYPE, "DHCP"}});
    EXPECT_EQ(check(CWMP_STAGED_WAN), 1);
    script("wan_whole", "");
    file(kAnswerFile, kAccepted);
    EXPECT_EQ(apply(CWMP_STAGED_WAN), 0);
}

// holds P5, P6: what stands in the place of the exchange files, as a stranger may have made it, is neither used
// nor waited for, and a request that cannot be written is none.
TEST_F(StagedRules, StrangersFilesAreRefused) {
    script("wan_whole", kAccepted);
    const auto apply_beside = [&](const char* place, const auto& occupy) {
        stage(CWMP_STAGED_WAN, {{CWMP_WAN_TYPE, "DHCP"}});
        EXPECT_EQ(check(CWMP_STAGED_WAN), 1);
        occupy(place);
        forget();
        EXPECT_EQ(apply(CWMP_STAGED_WAN), 0);
        const bool asked = !commands().empty();
        std::filesystem::remove_all(place);
        return asked;
    };
    const auto directory = [](const char* place) {
        std::filesystem::create_directories(std::string(place) + "/x");
    };
    EXPECT_FALSE(apply_beside(kRequestFile, directory));
    EXPECT_FALSE(apply_beside(kAnswerFile, directory));
    file("/tmp/answer", kAccepted);
    ASSERT_EQ(mkfifo("/tmp/pipe", 0600), 0);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/answer"), 1);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/pipe"), 0);
    ASSERT_EQ(chown("/tmp/answer", 1, 1), 0);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/answer"), 0);
}

TEST_F(StagedRules, UnreadableConfigurationLeavesNothingToRestore) {
    for (const char* told : {"nonsense", "{}", "[]", R"({"error_code":1})", R"({"vlan_enable":true})"}) {
        for (const bool applied : {false, true}) {
            SCOPED_TRACE(told);
            in_force("vlan", told);
            stage(CWMP_STAGED_VLAN, {{CWMP_VLAN_ENABLE, "1"}, {CWMP_VLAN_VLAN_ID, "7"}});
            EXPECT_EQ(check(CWMP_STAGED_VLAN), 1);
            expect_no_exchange_files();
            EXPECT_EQ(applied ? apply(CWMP_STAGED_VLAN) : 1, 1);
            forget();
            revert();
            EXPECT_THAT(commands(), IsEmpty());
            EXPECT_TRUE(all_idle());
        }
    }
}

// A transaction of ordinary settings that is refused at once must not undo the one before.
TEST_F(StagedRules, AnyStagePassBeginsATransaction) {
    package("cwmp", "config info 'info'\n");
    for (const auto& [name, value] : {std::pair("ManagementServer_PeriodicInformInterval", "60"),
                                      std::pair("DHCPv4_Server_Pool_StaticAddress_Chaddr", "nonsense"),
                                      std::pair("NAT_PortMapping_Enable", "1")}) {
        SCOPED_TRACE(name);
        in_force("vlan", R"({"vlan_enable":"1","vlan_vid":"9"})");
        script("vlan_whole", kAccepted);
        stage(CWMP_STAGED_VLAN, {{CWMP_VLAN_ENABLE, "1"}, {CWMP_VLAN_VLAN_ID, "7"}});
        EXPECT_EQ(check(CWMP_STAGED_VLAN), 1);
        EXPECT_EQ(apply(CWMP_STAGED_VLAN), 1);
        set(name, {1, 1}, value, CWMP_OP_APPLY);
        EXPECT_FALSE(idle(FROM_LIBRARY(vlan_obj_data_revert)));
        set(name, {1, 1}, value, CWMP_OP_STAGE);
        EXPECT_TRUE(all_idle());
    }
}

TEST_F(StagedRules, CommandsStandAsTheShellGetsThem) {
    stage(CWMP_STAGED_WAN, {{CWMP_WAN_TYPE, "DHCP"}});
    EXPECT_EQ(check(CWMP_STAGED_WAN), 1);
    EXPECT_EQ(apply(CWMP_STAGED_WAN), 1);
    EXPECT_THAT(commands(), ElementsAre("lua /usr/bin/tr069/check_params initialize_revert_data wan_revert ",
                                        "lua /usr/bin/tr069/check_params wan_whole "));
    forget();
    FROM_LIBRARY(initialize_revert_data)(std::string(1000, 'n').c_str());
    EXPECT_EQ(commands().front().size(), 511U);
}

TEST_F(StagedRules, IptvApplyLogsItsSettings) {
    level(6);
    in_force("iptv", kIptv);
    stage(CWMP_STAGED_IPTV, {{CWMP_IPTV_ENABLE, "0"}, {CWMP_IPTV_VLAN_ID, "30"}, {CWMP_IPTV_TYPE, "bridge"}});
    EXPECT_EQ(check(CWMP_STAGED_IPTV), 1);
    EXPECT_EQ(apply(CWMP_STAGED_IPTV), 1);
    EXPECT_THAT(console(), Contains("iptv_set: enable=2, 30, bridge ,  \n\n"));
    EXPECT_THAT(
        script_calls(),
        Contains(R"(iptv_whole {"iptv_enable":0,"iptv_vid":"30","iptv_type":"bridge","iptv_prio":""})"));
}

TEST_F(StagedRules, WanPrintsWhatItTakes) {
    testing::internal::CaptureStdout();
    exec(CWMP_STAGED_WAN, CWMP_STAGED_STAGE, CWMP_WAN_TYPE, "DHCP");
    FROM_LIBRARY(wan_pre_revert)(9, nullptr);
    exec(CWMP_STAGED_LAN, CWMP_STAGED_STAGE, CWMP_LAN_MASK, "x");
    std::fflush(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "!!!option:4, val:DHCP\n!!!option:9, val:(null)\n");
}

TEST_F(StagedRules, OtherObjectsAndModesDoNothing) {
    for (const int object : {-1, 6, 7, INT32_MAX, INT32_MIN}) {
        for (const int mode : {0, 1, 2, 3}) EXPECT_EQ(exec(object, mode), -1) << object;
    }
    for (const int mode : {-1, 3, INT32_MAX}) EXPECT_EQ(exec(CWMP_STAGED_LAN, mode), 0);
    EXPECT_THAT(commands(), IsEmpty());
    const auto& table = FROM_LIBRARY(func_obj_table);
    EXPECT_EQ(table[CWMP_STAGED_WAN].check, &FROM_LIBRARY(wan_check));
    EXPECT_EQ(table[CWMP_STAGED_VLAN].set, &FROM_LIBRARY(vlan_set));
}

TEST_F(StagedRules, AnswersThatCannotBeReadAreRejections) {
    auto& accepted = FROM_LIBRARY(func_obj_result_ok);
    EXPECT_EQ(accepted(nullptr), 0);
    EXPECT_EQ(accepted("/tmp"), 0);
    EXPECT_EQ(accepted("/tmp/missing"), 0);
    file("/tmp/answer", kAccepted);
    EXPECT_EQ(accepted("/tmp/answer"), 1);
}

}  // namespace
