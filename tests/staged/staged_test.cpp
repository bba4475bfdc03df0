// What rows cannot say of the groups: records that an agent fills itself.
#include "cwmp/staged_objects.h"

#include <cstring>

#include "router_test.h"

namespace {

class Staged : public RouterTest {};

TEST_F(Staged, RecordsThatAnAgentWroteItselfAreMeasured) {
    world("level 6 | mute $ | hear long fail");
    world("% {pppoe,dhcp}_revert: {}");
    auto& account = FROM_LIBRARY(pppoe_obj_data);
    std::memset(account.username, 'x', sizeof account.username);
    EXPECT_EQ(told("group pppoe check"), "0 | ! pppoe_check: !!!  pppoe check fail\\x20")
        << "255 characters are none too many";
    std::memset(account.username, 'x', sizeof account.username);
    account.password[0] = 'x';  // the 256th
    EXPECT_EQ(told("group pppoe check"),
              "0 | ! pppoe_check: !!! pppoe username or password is too long | ! !!!  pppoe check fail\\x20");
    std::memset(account.dns_servers, '1', 33);
    EXPECT_EQ(told("group pppoe check"), "0 | ! pppoe_check: !!!  pppoe check fail 1 | ! !!!  pppoe check fail\\x20");
    std::memset(FROM_LIBRARY(dhcp_obj_data).dns_servers, '1', sizeof dhcp_obj_data.dns_servers);
    EXPECT_EQ(told("group dhcp check"), "0 | ! dhcp_check: !!! dhcp check DNS fail | ! !!! dhcp check fail");
    const cwmp_pppoe_record idle = {};
    EXPECT_EQ(std::memcmp(&account, &idle, sizeof idle), 0);
}

}  // namespace
