#include "cwmp/value_checks.h"

#include <arpa/inet.h>

#include "router_test.h"

namespace {

class ValueChecks : public RouterTest {
  protected:
    struct Check {
        std::string text;
        int result;
    };

    void expect(int(check)(const char*), const std::vector<Check>& rows) {
        for (const Check& row : rows)
            EXPECT_EQ(check(row.text.c_str()), row.result) << '"' << row.text << '"';
    }
};

TEST_F(ValueChecks, CanonicalAddress) {
    expect(FROM_LIBRARY(checkValidIP), {{"192.168.1.1", 1},
                                        {"0.0.0.0", 1},
                                        {"255.255.255.255", 1},
                                        {"192.168.01.1", 0},
                                        {"192.168.1.1 ", 0},
                                        {" 192.168.1.1", 0},
                                        {"192.168.1.256", 0},
                                        {"192.168.1.-1", 0},
                                        {"192.168.1", 0},
                                        {"192.168.1.1.1", 0},
                                        {"99999999999.1.1.1", 0},
                                        {"", 0}});
}

TEST_F(ValueChecks, DottedAddressAllowsLeadingZeros) {
    expect(FROM_LIBRARY(libutil_netChkDotIpAddr), {{"1.2.3.4", 1},
                                                   {"255.255.255.255", 1},
                                                   {"192.168.01.1", 1},
                                                   {"1.2.3.256", 0},
                                                   {"1..2.3", 0},
                                                   {"1.2.3", 0},
                                                   {"1.2.3.4.5", 0},
                                                   {"1.2.3.a", 0},
                                                   {"1.2.3.4 ", 0},
                                                   {"255.255.255.2555", 0},
                                                   {"1.2.3.65537", 0},
                                                   {"", 0}});
}

TEST_F(ValueChecks, HostAddress) {
    expect(FROM_LIBRARY(libutil_netChkLegalIpAddr), {{"1.0.0.0", 1},
                                                     {"192.0.2.1", 1},
                                                     {"223.255.255.255", 1},
                                                     {"126.1.1.1", 1},
                                                     {"128.1.1.1", 1},
                                                     {"127.0.0.1", 0},
                                                     {"224.0.0.1", 0},
                                                     {"255.255.255.255", 0},
                                                     {"0.255.255.255", 0},
                                                     {"nonsense", 0},
                                                     {"", 0}});
}

TEST_F(ValueChecks, MacAddressOfSixPairs) {
    expect(FROM_LIBRARY(CheckValidMacAddr), {{"00:11:22:33:44:5f", 1},
                                             {"AA:BB:CC:DD:EE:FF", 1},
                                             {"00:11:22:33:44:5G", 0},
                                             {"00:11:22:33:44:55:66", 0},
                                             {"00-11-22-33-44-55", -1},
                                             {"00:11:22:33:44:555", -1},
                                             {std::string(64, 'a'), -1}});
    EXPECT_THAT(console(), IsEmpty());
    expect(FROM_LIBRARY(CheckValidMacAddr), {{"00:11:22:33:44", -1}, {"00:11:22:33:44:5", -1}, {"", -1}});
    EXPECT_EQ(console(), Texts(3, "CheckValidMacAddr:  the length of MAC is too short \n"));
}

TEST_F(ValueChecks, MacAddressInStrictForm) {
    expect(FROM_LIBRARY(libutil_netChkStrMacAddr), {{"00:11:22:33:44:5f", 1},
                                                    {"AA:BB:CC:DD:EE:FF", 1},
                                                    {"00-11-22-33-44-55", 0},
                                                    {"00:11:22:33:44:5", 0},
                                                    {"00:11:22:33:44:555", 0},
                                                    {"00:11:22:33:44:5G", 0},
                                                    {"", 0}});
}

TEST_F(ValueChecks, UnicastMacAddress) {
    expect(FROM_LIBRARY(libutil_netChkLegalMacAddr), {{"00:11:22:33:44:55", 1},
                                                      {"02-11-22-33-44-55", 1},
                                                      {"001122334455", 1},
                                                      {"01:00:5e:00:00:01", 0},
                                                      {"00:00:00:00:00:00", 0}});
    EXPECT_THAT(console(), IsEmpty());
    expect(FROM_LIBRARY(libutil_netChkLegalMacAddr), {{"00:11:22:33:44:5", 0}});
    EXPECT_THAT(console(), ElementsAre("libutil_netChkLegalMacAddr: Error mac: 00:11:22:33:44:5\n"));
}

TEST_F(ValueChecks, SameFirstThreeOctets) {
    auto& check = FROM_LIBRARY(check_subnet);
    EXPECT_EQ(check("192.168.1.5", "192.168.1.200"), 1);
    EXPECT_EQ(check("192.168.1.5", "192.168.2.5"), 0);
    EXPECT_EQ(check("192.168.1.5", "192.169.1.5"), 0);
    EXPECT_EQ(check("192.168.1.5", "193.168.1.5"), 0);
}

TEST_F(ValueChecks, SameSubnetUnderEitherMask) {
    struct Row {
        const char *test, *second_mask, *address, *mask;
        int result;
    };
    for (const Row& row : {Row{"192.168.0.9", nullptr, "192.168.0.1", "255.255.255.0", 1},
                           Row{"192.168.1.9", nullptr, "192.168.0.1", "255.255.255.0", 0},
                           Row{"192.168.0.0", nullptr, "192.168.0.1", "255.255.255.0", 0},
                           Row{"192.168.0.255", nullptr, "192.168.0.1", "255.255.255.0", 0},
                           Row{"192.168.0.255", "0.0.0.0", "192.168.0.1", "255.255.255.0", 0},
                           Row{"192.168.0.255", "255.255.0.0", "192.168.0.1", "255.255.255.0", 1},
                           Row{"192.168.1.9", "255.255.0.0", "192.168.0.1", "255.255.255.0", 1},
                           Row{"192.169.1.9", "255.255.0.0", "192.168.0.1", "255.255.255.0", 0}}) {
        EXPECT_EQ(FROM_LIBRARY(libutil_netChkSameSubnet)(row.test, row.second_mask, row.address, row.mask),
                  row.result)
            << row.test << ' ' << (row.second_mask == nullptr ? "-" : row.second_mask);
    }
}

TEST_F(ValueChecks, AssertionsEndTheProcess) {
    GTEST_FLAG_SET(death_test_style, "fast");
    char text[4] = "";
    EXPECT_DEATH(FROM_LIBRARY(libutil_netChkDotIpAddr)(nullptr), "libutil");
    EXPECT_DEATH(FROM_LIBRARY(libutil_netChkStrMacAddr)(nullptr), "libutil");
    EXPECT_DEATH(FROM_LIBRARY(libutil_netChkLegalMacAddr)(nullptr), "libutil");
    EXPECT_DEATH(FROM_LIBRARY(libutil_netChkSameSubnet)("1.1.1.1", nullptr, "1.1.1.1", nullptr),
                 "\\(pStrTestIp != NULL\\) && \\(pStrIp != NULL\\) && \\(pStrMask != NULL\\)");
    EXPECT_DEATH(FROM_LIBRARY(libutil_strncpy)(nullptr, "x", 4), "\\(dst != NULL\\) && \\(src != NULL\\)");
    EXPECT_DEATH(FROM_LIBRARY(libutil_strncpy)(text, "x", 0), "n > 0");
}

TEST_F(ValueChecks, ConvertsAddresses) {
    auto& to_number = FROM_LIBRARY(libutil_addrStrToNum);
    uint32_t address = 1;
    EXPECT_EQ(to_number("192.0.2.1", &address), 0);
    EXPECT_EQ(address, htonl(0xC0000201));
    EXPECT_EQ(to_number("no address", &address), 0);
    EXPECT_EQ(address, 0U);
    EXPECT_THAT(console(), IsEmpty());
    char text[16];
    EXPECT_EQ(FROM_LIBRARY(libutil_addrNumToStr)(0xFFFEFDFC, text), 0);
    EXPECT_STREQ(text, "255.254.253.252");
    EXPECT_EQ(FROM_LIBRARY(libutil_addrNumToStr)(1, nullptr), 0);
}

TEST_F(ValueChecks, ConvertsMacAddresses) {
    auto& to_bytes = FROM_LIBRARY(libutil_macStrToEth);
    std::array<uint8_t, 6> mac{};
    EXPECT_EQ(to_bytes("0a:1B-2c3D:4e:5F and more", mac.data()), 0);
    EXPECT_THAT(mac, ElementsAre(0x0a, 0x1b, 0x2c, 0x3d, 0x4e, 0x5f));
    mac = {9, 9, 9, 9, 9, 9};
    EXPECT_EQ(to_bytes("01:02:0x:04:05:06", mac.data()), -1);
    EXPECT_THAT(mac, ElementsAre(1, 2, 9, 9, 9, 9));
    EXPECT_EQ(to_bytes("01::02:03:04:05", mac.data()), -1);
    EXPECT_EQ(to_bytes(nullptr, mac.data()), -1);
    EXPECT_EQ(to_bytes("01", nullptr), -1);
    struct Row {
        const char* text;
        int upper;
        char separator;
        const char* result;
    };
    for (const Row& row : {Row{"0a-1B:2c", 1, ':', "0A:1B:2C"}, Row{"0a-1B:2c", 0, '-', "0a-1b-2c"},
                           Row{"gG", 1, ':', "gG"}, Row{"gG", 0, ':', "gG"}, Row{"", 1, ':', ""}}) {
        std::string text = row.text;
        EXPECT_EQ(FROM_LIBRARY(adjustMacFmt)(text.data(), row.upper, row.separator), text.size());
        EXPECT_EQ(text, row.result);
    }
}

TEST_F(ValueChecks, ConvertsChannelsAndFrequencies) {
    struct Row {
        int channel, mhz;
    };
    for (const Row& row :
         {Row{1, 2412}, {13, 2472}, {14, 2484}, {15, 2512}, {26, 2732}, {36, 5180}, {165, 5825}}) {
        int mhz = 0;
        FROM_LIBRARY(channel_to_mhz)(row.channel, &mhz);
        EXPECT_EQ(mhz, row.mhz);
        EXPECT_EQ(FROM_LIBRARY(mhz_to_channel)(row.mhz), row.channel);
    }
    for (const Row& row : {Row{0, 2407},
                           {134, 4900},
                           {181, 4905},
                           {188, 4940},
                           {5, 4942},
                           {20, 4950},
                           {198, 4990},
                           {199, 4999},
                           {0, 5000},
                           {27, 5135}})
        EXPECT_EQ(FROM_LIBRARY(mhz_to_channel)(row.mhz), row.channel) << row.mhz;
    int mhz = 0;
    FROM_LIBRARY(channel_to_mhz)(27, &mhz);
    EXPECT_EQ(mhz, 5135);
}

TEST_F(ValueChecks, CopiesAndSplitsTexts) {
    char copy[6] = "*****";
    EXPECT_EQ(FROM_LIBRARY(libutil_strncpy)(copy, "abcdef", 4), copy);
    EXPECT_EQ(std::string(copy, 6), std::string("abc\0*\0", 6));
    EXPECT_STREQ(FROM_LIBRARY(libutil_strncpy)(copy, "z", 1), "");
    struct Row {
        std::string text;
        int limit, index;
        const char* token;
    };
    const std::string many = "1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16 17 18 19 20 21 22";
    for (const Row& row : {Row{",a,,b", 9, 1, "a"},
                           {",a,,b", 9, 2, "b"},
                           {"a,b", 9, 0, nullptr},
                           {"a,b", 9, -1, nullptr},
                           {"a,b", 9, 3, nullptr},
                           {"a,b", 1, 2, nullptr},
                           {many, 99, 20, "20"},
                           {many, 99, 21, nullptr},
                           {"", 9, 1, nullptr}}) {
        std::string text = row.text;
        EXPECT_STREQ(FROM_LIBRARY(string_split)(text.data(), ", ", row.limit, row.index), row.token)
            << row.text;
    }
    std::string text = "AbC-Z\xC3\x84";
    EXPECT_EQ(FROM_LIBRARY(strlowr)(text.data()), text.data());
    EXPECT_EQ(text, "abc-z\xC3\x84");
}

}  // namespace
