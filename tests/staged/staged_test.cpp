// What rows cannot say of the groups: records that an agent fills itself, strangers' files.
#include "cwmp/staged_objects.h"

#include <sys/mount.h>
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

TEST_F(Staged, AnyStagePassBeginsATransactionWhoseRevertLeavesTheOneBeforeAlone) {
    world("use accepted");
    world("mute $!");
    for (const char* pass :
         {"stage ManagementServer_PeriodicInformInterval = 60",
          "stage DHCPv4_Server_Pool_StaticAddress_Chaddr 1.1 = nonsense",
          "stage IP_Diagnostics_UDPEchoConfig_EchoPlusEnabled = 1", "stage LANDevice_WLANConfiguration_Channel 9.9 = 6",
          "stage WiFi_AccessPoint_Security_X_QM_WEPKeyIndex 1 = 2", "apply NAT_PortMapping_Enable 1 = 1"}) {
        told("group vlan 0=1 1=9 check apply");
        told(pass);
        EXPECT_EQ(told("group revert"), *pass == 's' ? "nothing" : "flags WAN") << pass;
    }
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
    told("group wan 4=DHCP check");
    ASSERT_EQ(mount("tmpfs", "/tmp", "tmpfs", 0, "size=4k"), 0);
    file("/tmp/full", std::string(4096, 'x'));
    EXPECT_EQ(exec(CWMP_STAGED_WAN, CWMP_STAGED_APPLY), 0);
    EXPECT_FALSE(exists("/tmp/tr069_json_input_file")) << "half a request, its passwords among it";
    umount("/tmp");
    file("/tmp/answer", R"({"error_code":0})");
    ASSERT_EQ(mkfifo("/tmp/pipe", 0600), 0);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/answer"), 1);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/pipe"), 0);
    ASSERT_EQ(chown("/tmp/answer", 1, 1), 0);
    EXPECT_EQ(FROM_LIBRARY(func_obj_result_ok)("/tmp/answer"), 0);
}

}  // namespace
