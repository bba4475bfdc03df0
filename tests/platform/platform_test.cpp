// Tables that an agent may read and write itself.
#include "cwmp/platform.h"

#include <cstring>

#include "router_test.h"

namespace {

class Platform : public RouterTest {};

TEST_F(Platform, InterfaceNamesComeFromTheProfile) {
    auto& info = FROM_LIBRARY(interface_data);
    EXPECT_EQ(FROM_LIBRARY(interface_info), &info);
    EXPECT_EQ(FROM_LIBRARY(_interface_info), &FROM_LIBRARY(_interface_data));
    const auto names = [&] {
        EXPECT_EQ(FROM_LIBRARY(initialize_interface_info)(&info), 0);
        return Texts{info.wifi_2_4G,     info.wifi_5G,     info.guest_2_4G, info.guest_5G,
                     info.backhaul_2_4G, info.backhaul_5G, info.unused[0]};
    };
    EXPECT_THAT(names(), ElementsAre("ath0", "ath1", "ath01", "ath11", "ath02", "ath12", ""));
    world(
        "profile.d/"
        "profile.interfaceinfo.{wifi_2_4G,wifi_5G,guest_2_4G,guest_5G,backhaul_2_4G,backhaul_5G}=@");
    EXPECT_THAT(names(), ElementsAre("wifi_2_4Ginterfacei", "wifi_5Ginterfaceinf", "guest_2_4Ginterface",
                                     "guest_5Ginterfacein", "backhaul_2_4Ginterf", "backhaul_5Ginterfac", ""));
}

TEST_F(Platform, PortNamesAreLoadedOnce) {
    auto& names = FROM_LIBRARY(eth_names);
    world("show output");
    EXPECT_EQ(told("call get_profile_eths"), "-1 | > get profile eths failed\\r");
    std::memset(names[2], 'x', 3);  // what was there is cleared
    world("profile.d/profile.ethernet.names=eth0 eth1_with_a_long_name");
    EXPECT_EQ(told("call get_profile_eths"), "0");
    EXPECT_THAT((Texts{names[0], names[1], names[2]}), ElementsAre("eth0", "eth1_with_a_lon", ""));
    world("profile.d/profile.ethernet.names=eth7 eth8 eth9 eth10");
    EXPECT_EQ(told("call get_profile_eths"), "0");
    EXPECT_STREQ(names[0], "eth0");
    names[0][0] = '\0';
    EXPECT_EQ(told("call get_profile_eths"), "0");
    EXPECT_STREQ(names[2], "eth9");
}

}  // namespace
