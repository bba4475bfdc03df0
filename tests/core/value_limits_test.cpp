// Where the value checks end: odd separators, the ends of the number range, tokens beyond the limit.
#include <climits>
#include <cstring>

#include "cwmp/value_checks.h"
#include "router_test.h"

namespace {

class ValueLimits : public RouterTest {};

TEST_F(ValueLimits, AddressesAndMacAddressesHaveNoEmptyPart) {
    for (const char* text :
         {".1.2.3.4", "1.2.3.4.", "1.2.3.", "1.2.34.", ".1.2.34", "...1.2.3", "1.2.3.0256"})
        EXPECT_EQ(FROM_LIBRARY(libutil_netChkDotIpAddr)(text), 0) << text;
    for (const char* text :
         {"00:11:22::33:44:55", ":00:11:22:33:44:55", "00:11:22:33:44:55:", "00:11:22:33:44::"})
        EXPECT_EQ(FROM_LIBRARY(CheckValidMacAddr)(text), -1) << text;
    // Only 32 characters count: what follows is not looked at.
    EXPECT_EQ(FROM_LIBRARY(CheckValidMacAddr)("00:11:22:33:44:55:66:77:88:99:aa?"), 0);
}

TEST_F(ValueLimits, ASecondMaskThatIsNoAddressIsNone) {
    auto& same = FROM_LIBRARY(libutil_netChkSameSubnet);
    EXPECT_EQ(same("192.168.0.255", "none", "192.168.0.1", "255.255.255.0"), 0);
    EXPECT_EQ(same("10.0.0.1", "0.0.0.0", "192.168.0.1", "255.255.255.0"), 0);
    EXPECT_EQ(FROM_LIBRARY(libutil_netChkLegalIpAddr)(nullptr), 0);
}

TEST_F(ValueLimits, ChannelsOfAnyNumberAreComputed) {
    for (const int number : {INT_MIN, -1, 0, INT_MAX}) {
        int mhz = 1;
        FROM_LIBRARY(channel_to_mhz)(number, &mhz);
        EXPECT_EQ(mhz, static_cast<int>(5LL * number + (number > 0 ? 5000 : 2407)));
        EXPECT_EQ(FROM_LIBRARY(mhz_to_channel)(number),
                  static_cast<int>((static_cast<long long>(number) - (number > 0 ? 5000 : 2407)) / 5));
    }
}

TEST_F(ValueLimits, SplitsNoFurtherThanTheLimit) {
    char text[] = "a,b,c,d";
    EXPECT_STREQ(FROM_LIBRARY(string_split)(text, ",", 2, 2), "b");
    EXPECT_EQ(std::memcmp(text, "a\0b\0c,d", sizeof text), 0);
    EXPECT_EQ(FROM_LIBRARY(string_split)(text + 4, ",", 0, 1), nullptr);
    EXPECT_STREQ(text + 4, "c,d");
}

}  // namespace
