// What rows cannot say of the groups: records that an agent fills itself, strangers' files, standard output.
#include "cwmp/staged_objects.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "router_test.h"

namespace {

class Staged : public RouterTest {
  protected:
    int exec(int object, int mode, int option = 0, const char* value = "") {
        return FROM_LIBRARY(func_obj_exec)(object, option, mode, value, &flags);
    }
    static void in_force(const std::string& name, const std::string& json) {
        answer("check_params initialize_revert_data " + name + "_revert", json);
    }
    unsigned flags = 0;
};

TEST_F(Staged, RecordsThatAnAgentWroteItselfAreMeasured) {
    level(6);
    for (const char* name : {"pppoe", "dhcp"}) in_force(name, "{}");
    auto& account = FROM_LIBRARY(pppoe_obj_data);
    std::memset(account.username, 'x', sizeof account.username);
    EXPECT_EQ(exec(CWMP_STAGED_PPPOE, CWMP_STAGED_CHECK), 0);
    EXPECT_THAT(console(), Not(Contains(HasSubstr("too long")))) << "255 characters are none too many";
    std::memset(account.username, 'x', sizeof account.username);
    account.password[0] = 'x';  // the 256th
    EXPECT_EQ(exec(CWMP_STAGED_PPPOE, CWMP_STAGED_CHECK), 0);
    EXPECT_THAT(console(), Contains("pppoe_check: !!! pppoe username or password is too long\n"));
    std::memset(FROM_LIBRARY(pppoe_obj_data).dns_servers, '1', 33);
    EXPECT_EQ(exec(CWMP_STAGED_PPPOE, CWMP_STAGED_CHECK), 0);
    EXPECT_THAT(console(), Contains("pppoe_check: !!!  pppoe check fail 1\n\n"));
    std::memset(FROM_LIBRARY(dhcp_obj_data).dns_servers, '1', sizeof dhcp_obj_data.dns_servers);
    EXPECT_EQ(exec(CWMP_STAGED_DHCP, CWMP_STAGED_CHECK), 0);
    EXPECT_THAT(console(), Contains("dhcp_check: !!! dhcp check DNS fail\n\n"));
    const cwmp_pppoe_record idle = {};
    EXPECT_EQ(std::memcmp(&account, &idle, sizeof idle), 0);
}

TEST_F(Staged, ValuesAreCutToTheirField) {
    const std::string text(300, 'x');
    for (const int object : {0, 1, 2, 3, 4, 5})
        for (const int option : {0, 1, 2, 3, 4}) exec(object, CWMP_STAGED_STAGE, option, text.c_str());
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data).username, text.substr(0, 254));
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data).password, text.substr(0, 254));
    EXPECT_EQ(FROM_LIBRARY(pppoe_obj_data).dns_servers, text.substr(0, 15));
    EXPECT_EQ(FROM_LIBRARY(dhcp_obj_data).start_address, text.substr(0, 15));
    EXPECT_EQ(FROM_LIBRARY(dhcp_obj_data).dns_servers, text.substr(0, 15));
    EXPECT_EQ(FROM_LIBRARY(wan_obj_data).dns_servers, text.substr(0, 49));
    EXPECT_EQ(FROM_LIBRARY(wan_obj_data).type, text.substr(0, 19));
    exec(CWMP_STAGED_VLAN, CWMP_STAGED_STAGE, CWMP_VLAN_VLAN_ID, "7");
    EXPECT_EQ(FROM_LIBRARY(vlan_obj_data).vlan_id, std::string("7"));
}

TEST_F(Staged, FailedIptvCheckDropsTheLanAndKeepsIptv) {
    in_force("iptv", "{}");
    exec(CWMP_STAGED_LAN, CWMP_STAGED_STAGE, CWMP_LAN_ADDRESS, "10.0.0.1");
    exec(CWMP_STAGED_IPTV, CWMP_STAGED_STAGE, CWMP_IPTV_TYPE, "wrong");
    EXPECT_EQ(exec(CWMP_STAGED_IPTV, CWMP_STAGED_CHECK), 0);
    EXPECT_STREQ(FROM_LIBRARY(lan_obj_data).address, "");
    EXPECT_STREQ(FROM_LIBRARY(iptv_obj_data).type, "wrong");
    EXPECT_EQ(FROM_LIBRARY(func_obj_table)[CWMP_STAGED_WAN].check, &FROM_LIBRARY(wan_check));
    EXPECT_EQ(FROM_LIBRARY(func_obj_table)[CWMP_STAGED_VLAN].set, &FROM_LIBRARY(vlan_set));
}

// holds P5, P6: what stands in the place of the exchange files, as a stranger may have made it, is neither used
// nor waited for, and a request that cannot be written is none.
TEST_F(Staged, StrangersFilesAreRefused) {
    in_force("wan", "{}");
    answer("check_params wan_whole", R"({"error_code":0})");
    for (const char* place : {"/tmp/tr069_json_input_file", "/tmp/tr069_json_output_file"}) {
        exec(CWMP_STAGED_WAN, CWMP_STAGED_STAGE, CWMP_WAN_TYPE, "DHCP");
        EXPECT_EQ(exec(CWMP_STAGED_WAN, CWMP_STAGED_CHECK), 1);
        std::filesystem::create_directories(std::string(place) + "/x");
        forget();
        EXPECT_EQ(exec(CWMP_STAGED_WAN, CWMP_STAGED_APPLY), 0);
        EXPECT_THAT(commands(), IsEmpty());
        std::filesystem::remove_all(place);
    }
    file("/tmp/answer", R"({"error_code":0})");
    ASSERT_EQ(mkfifo("/tmp/pipe", 0600), 0);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/answer"), 1);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/pipe"), 0);
    ASSERT_EQ(chown("/tmp/answer", 1, 1), 0);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/answer"), 0);
}

TEST_F(Staged, WanPrintsWhatItTakes) {
    testing::internal::CaptureStdout();
    exec(CWMP_STAGED_WAN, CWMP_STAGED_STAGE, CWMP_WAN_TYPE, "DHCP");
    FROM_LIBRARY(wan_pre_revert)(9, nullptr);
    exec(CWMP_STAGED_LAN, CWMP_STAGED_STAGE, CWMP_LAN_MASK, "x");
    std::fflush(nullptr);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "!!!option:4, val:DHCP\n!!!option:9, val:(null)\n");
}

}  // namespace
