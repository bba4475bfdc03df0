#include "cwmp/platform.h"

#include <cstring>

#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

class Ports : public RouterTest {
  protected:
    static void wan_member(const std::string& name) {
        answer("brctl show br-wan",
               "bridge name\tbridge id\t\tSTP enabled\tinterfaces\nbr-wan\t\t8000.020000000001\tno\t\t" +
                   name + "\n\t\t\t\t\t\t\tath9\n");
    }
    static void ports(const std::string& names) {
        profile("ethernet.names", names);
        profile("ethernet.eth0_port", "4");
        profile("ethernet.eth1_port", "1");
        profile("ethernet.eth2_port", "2");
    }
};

TEST_F(Ports, WanIsTheFirstMemberOfItsBridge) {
    struct Row {
        const char *member, *name;
        int port;
    };
    for (const Row& row :
         {Row{"eth0", "eth0", 1}, Row{"eth1", "eth1", 2}, Row{"eth2", "eth2", 3}, Row{"eth3", "eth3", -1},
          Row{"eth10", "eth1", 2}, Row{"lan", "lan", -1}, Row{"", "", -1}}) {
        wan_member(row.member);
        char name[5] = "****";
        EXPECT_EQ(FROM_LIBRARY(getWanIfname)(name), 0);
        EXPECT_STREQ(name, row.name);
        EXPECT_EQ(FROM_LIBRARY(getWanPort)(), row.port) << row.member;
    }
    forget();
    for (const char* text : {"", "bridge br-wan does not exist!\n", "br-wan", "\n\n\n"}) {
        answer("brctl show br-wan", text);
        char name[5] = "****";
        EXPECT_EQ(FROM_LIBRARY(getWanIfname)(name), 0);
        EXPECT_EQ(FROM_LIBRARY(getWanPort)(), -1) << text;
    }
    EXPECT_EQ(commands(), Texts(8, "brctl show br-wan | grep br-wan | awk '{print $4}'"));
    const NoFreeDescriptor none;
    char name[5] = "****";
    EXPECT_EQ(FROM_LIBRARY(getWanIfname)(name), -1);
    EXPECT_STREQ(name, "****");
    EXPECT_EQ(FROM_LIBRARY(getWanPort)(), -1);
}

TEST_F(Ports, NamesAreLoadedOnce) {
    auto& names = FROM_LIBRARY(eth_names);
    testing::internal::CaptureStdout();
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "get profile eths failed\r");
    EXPECT_STREQ(names[0], "");
    ports("eth0 eth1_with_a_long_name");
    std::memset(names[2], 'x', 3);  // what was there is cleared
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), 0);
    EXPECT_STREQ(names[0], "eth0");
    EXPECT_STREQ(names[1], "eth1_with_a_lon");
    EXPECT_STREQ(names[2], "");
    ports("eth7 eth8 eth9 eth10");
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), 0);
    EXPECT_STREQ(names[0], "eth0");
    names[0][0] = '\0';
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), 0);
    EXPECT_STREQ(names[2], "eth9");
}

TEST_F(Ports, QueriesCountThePortsOfTheMode) {
    ports("eth0 eth1 eth2");
    struct Row {
        const char *mode, *wan;
        int index;
        const char* command;
    };
    const std::vector<Row> rows = {{"Router", "eth0", 1, "eth_link_status_get speed eth1 1"},
                                   {"Router", "eth0", 2, "eth_link_status_get speed eth2 2"},
                                   {"Router", "eth0", 3, "eth_link_status_get speed eth0 4"},
                                   {"Router", "eth1", 1, "eth_link_status_get speed eth0 4"},
                                   {"Router", "eth1", 2, "eth_link_status_get speed eth2 2"},
                                   {"Router", "eth1", 3, "eth_link_status_get speed eth1 1"},
                                   {"ap", "eth2", 2, "eth_link_status_get speed eth1 1"},
                                   {"AP", "eth0", 1, "eth_link_status_get speed eth0 4"},
                                   {"AP", "eth1", 2, "eth_link_status_get speed eth1 1"},
                                   {"AP", "eth1", 3, "eth_link_status_get speed eth2 2"},
                                   {"Router", "eth0", 0, kUntouched},
                                   {"Router", "eth0", 4, kUntouched},
                                   {"Router", "eth0", -1, kUntouched},
                                   {"AP", "eth0", 0, kUntouched},
                                   {"AP", "eth0", 4, kUntouched},
                                   {"Router", "", 3, kUntouched},
                                   {"Router", "eth9", 3, "eth_link_status_get speed eth9 -1"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(std::string(row.mode) + " " + row.wan + " " + std::to_string(row.index));
        store("sysmode.sysmode.mode", row.mode);
        wan_member(row.wan);
        char command[CWMP_PORT_COMMAND_SIZE] = {};
        std::strcpy(command, kUntouched);
        EXPECT_EQ(FROM_LIBRARY(concatCmd)(command, row.index, "speed"), 0);
        EXPECT_STREQ(command, row.command);
    }
    forget();
    char command[CWMP_PORT_COMMAND_SIZE] = "";
    EXPECT_EQ(FROM_LIBRARY(concatCmd)(command, 1, "macaddress"), 0);
    EXPECT_THAT(command,
                ::testing::MatchesRegex("ifconfig eth-?[0-9]+ \\| grep HWaddr \\| awk '\\{print \\$5\\}'"));
    EXPECT_THAT(command, Not(::testing::ContainsRegex("eth[0-9] ")));
    EXPECT_EQ(FROM_LIBRARY(concatCmd)(command, 1, std::string(5000, 'w').c_str()), 0);
    EXPECT_LT(std::strlen(command), sizeof command);
}

TEST_F(Ports, QueriesNeedNamesAndMode) {
    char command[CWMP_PORT_COMMAND_SIZE] = "before";
    store("sysmode.sysmode.mode", "Router");
    EXPECT_EQ(FROM_LIBRARY(concatCmd)(command, 1, "speed"), -1);
    ports("eth0 eth1");
    store("sysmode.sysmode.mode", "");
    EXPECT_EQ(FROM_LIBRARY(concatCmd)(command, 1, "speed"), -1);
    EXPECT_STREQ(command, "before");
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(Ports, NetworkIsUpWhenItsStatusSaysTrue) {
    struct Row {
        std::string status;
        int result;
    };
    const std::vector<Row> rows = {
        {"{\n\t\"up\": true,\n\t\"pending\": false,\n\t\"available\": true,\n\t\"uptime\": 812\n}\n", 0},
        {"{\n\t\"up\": false,\n\t\"pending\": true\n}\n", -1},
        {"{ \"up\":true }\n", 0},
        {"{\n\t\"up\": tr", -1},
        {"Command failed: Not found\n", -1},
        {"\"up\":" + std::string(30, ' ') + "true\n", -1},
        {"", -1}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.status);
        answer("ubus call network.interface.mg status", row.status);
        answer("ubus call network.interface.wan status", "{\n\t\"up\": false\n}\n");
        EXPECT_EQ(FROM_LIBRARY(check_br_mg_status)(), row.result);
        EXPECT_EQ(FROM_LIBRARY(check_br_wan_status)(), -1);
        answer("ubus call network.interface.wan status", row.status);
        EXPECT_EQ(FROM_LIBRARY(check_br_wan_status)(), row.result);
    }
    forget();
    FROM_LIBRARY(check_br_mg_status)();
    FROM_LIBRARY(check_br_wan_status)();
    const std::string filter = " status | grep \"up\" | awk -F ':' '{print $2}' | awk -F ',' '{print $1}'";
    EXPECT_THAT(commands(), ElementsAre("ubus call network.interface.mg" + filter,
                                        "ubus call network.interface.wan" + filter));
    {
        const NoFreeDescriptor none;
        EXPECT_EQ(FROM_LIBRARY(check_br_mg_status)(), -1);
        EXPECT_EQ(FROM_LIBRARY(check_br_wan_status)(), -1);
    }
    EXPECT_THAT(console(), ElementsAre("check_br_mg_status: Failed to get mg status\n\n",
                                       "check_br_wan_status: Failed to get wan status\n\n"));
}

}  // namespace
