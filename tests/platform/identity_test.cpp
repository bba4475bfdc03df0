#include "cwmp/platform.h"

#include <sys/time.h>

#include <csignal>
#include <cstring>
#include <filesystem>

#include "cwmp/logging.h"
#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

class Identity : public RouterTest {};

TEST_F(Identity, FirstLineOfACommandFitsItsBuffer) {
    struct Row {
        std::string output;
        int size, length;
        std::string text;
    };
    const std::vector<Row> rows = {
        {"one\ntwo\n", 32, 3, "one"}, {"no newline", 32, 10, "no newline"}, {"\n", 32, 0, ""},
        {"two\n\n", 32, 3, "two"},    {"abcdef\n", 7, 6, "abcdef"},         {"abcdef\n", 6, 5, "abcde"},
        {"abcdef\n", 2, 1, "a"},      {"\xff\xfe%s\n", 32, 4, "\xff\xfe%s"}};
    for (const Row& row : rows) {
        answer("fwinfo ANY", row.output);
        std::string buffer(static_cast<std::size_t>(row.size), '*');
        EXPECT_EQ(FROM_LIBRARY(util_exec)("fwinfo ANY", buffer.data(), row.size), row.length) << row.output;
        EXPECT_STREQ(buffer.c_str(), row.text.c_str());
    }
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(Identity, ASignalTakesNothingOfTheOutput) {
    struct sigaction no_restart = {};
    no_restart.sa_handler = [](int) {};
    sigaction(SIGALRM, &no_restart, nullptr);
    const itimerval often = {{0, 3000}, {0, 3000}};
    setitimer(ITIMER_REAL, &often, nullptr);
    char buffer[16] = "";
    EXPECT_EQ(FROM_LIBRARY(util_exec)("printf ab; sleep 0.03; echo c", buffer, sizeof buffer), 3);
    EXPECT_STREQ(buffer, "abc");
    const itimerval never = {};
    setitimer(ITIMER_REAL, &never, nullptr);
}

TEST_F(Identity, ACommandWithoutALineLeavesTheBuffer) {
    char buffer[] = "before";
    EXPECT_EQ(FROM_LIBRARY(util_exec)("fwinfo NOTHING", buffer, sizeof buffer), -1);
    EXPECT_THAT(console(), ElementsAre("util_exec: fgets error for fwinfo NOTHING\n\n"));
    forget();
    {
        const NoFreeDescriptor none;
        EXPECT_EQ(FROM_LIBRARY(util_exec)("fwinfo NOTHING", buffer, sizeof buffer), -1);
    }
    EXPECT_EQ(FROM_LIBRARY(util_exec)(nullptr, buffer, sizeof buffer), -1);
    EXPECT_EQ(FROM_LIBRARY(util_exec)("fwinfo NOTHING", nullptr, 8), -1);
    EXPECT_EQ(FROM_LIBRARY(util_exec)("fwinfo NOTHING", buffer, 0), -1);
    EXPECT_STREQ(buffer, "before");
    EXPECT_THAT(console(), IsEmpty());
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(Identity, AsksTheFirmwareTool) {
    answer("fwinfo MAC", "00:1A:2B:3C:4D:5E\n");
    answer("fwinfo DEV_SN", "SN-1\n");
    char text[32];
    EXPECT_EQ(FROM_LIBRARY(get_mac)(text, sizeof text), 17);
    EXPECT_STREQ(text, "00:1A:2B:3C:4D:5E");
    EXPECT_EQ(FROM_LIBRARY(get_mac)(text, 6), 5);
    EXPECT_STREQ(text, "00:1A");
    EXPECT_EQ(FROM_LIBRARY(get_cloud_sn)(text, sizeof text), 4);
    EXPECT_STREQ(text, "SN-1");
    EXPECT_THAT(commands(), ElementsAre("fwinfo MAC", "fwinfo MAC", "fwinfo DEV_SN"));
}

TEST_F(Identity, SerialNumberIsTheMacWithoutSeparators) {
    struct Row {
        const char *mac, *serial;
    };
    for (const Row& row :
         {Row{"00:1A:2b:3C:4D:5E\n", "001A2b3C4D5E"}, Row{"00-1A-2B-3C-4D-5E\n", "001A2B3C4D5E"},
          Row{"0123456789012345678901234\n", "0123456789012345678"}, Row{":-:\n", ""}, Row{"", ""}}) {
        answer("fwinfo MAC", row.mac);
        for (auto* serial : {&FROM_LIBRARY(get_sn_from_mac), &FROM_LIBRARY(get_device_sn)}) {
            char text[20] = "before";
            EXPECT_EQ(serial(text, sizeof text), std::string(row.serial).size());
            EXPECT_STREQ(text, row.serial);
        }
    }
    forget();
    char text[19] = "before";
    EXPECT_EQ(FROM_LIBRARY(get_sn_from_mac)(text, sizeof text), -1);
    EXPECT_STREQ(text, "before");
    EXPECT_THAT(commands(), ElementsAre("fwinfo MAC"));
}

TEST_F(Identity, PlatformKind) {
    struct Row {
        const char* text;
        int kind;
        const char* event;
    };
    for (const Row& row :
         {Row{"mtk", 2, "cpe_type: cpe_type is mtk\n\n"}, Row{"bcm", 1, "cpe_type: cpe_type is bcm\n\n"},
          Row{"qcas", 0, "cpe_type: cpe_type is qcas\n\n"},
          Row{"mtk2", 0, "cpe_type: cpe_type is qcas\n\n"}}) {
        profile("interfaceinfo.cpe_type", row.text);
        forget();
        EXPECT_EQ(FROM_LIBRARY(cpe_type)(), row.kind);
        EXPECT_THAT(console(), IsEmpty()) << "the default level hides it";
        FROM_LIBRARY(l_dbglvl) = 7;
        EXPECT_EQ(FROM_LIBRARY(cpe_type)(), row.kind);
        EXPECT_THAT(console(), ElementsAre(row.event));
        FROM_LIBRARY(l_dbglvl) = 3;
    }
    std::filesystem::remove("/etc/profile.d/profile");
    EXPECT_EQ(FROM_LIBRARY(cpe_type)(), 0);
}

TEST_F(Identity, InterfaceNamesComeFromTheProfile) {
    cwmp_interface_info info;
    std::memset(&info, '*', sizeof info);
    EXPECT_EQ(FROM_LIBRARY(initialize_interface_info)(&info), 0);
    EXPECT_EQ(info.cpeType, 0);
    EXPECT_STREQ(info.wifi_2_4G, "ath0");
    EXPECT_STREQ(info.wifi_5G, "ath1");
    EXPECT_STREQ(info.guest_2_4G, "ath01");
    EXPECT_STREQ(info.guest_5G, "ath11");
    EXPECT_STREQ(info.backhaul_2_4G, "ath02");
    EXPECT_STREQ(info.backhaul_5G, "ath12");
    const std::string unused(sizeof info.unused, '*');
    EXPECT_EQ(std::string(info.unused[0], sizeof info.unused), unused);

    profile("interfaceinfo.cpe_type", "mtk");
    for (const char* name :
         {"wifi_2_4G", "wifi_5G", "guest_2_4G", "guest_5G", "backhaul_2_4G", "backhaul_5G"})
        profile(std::string("interfaceinfo.") + name, std::string(name) + "_is_a_long_name");
    cwmp_interface_info& own = FROM_LIBRARY(interface_data);
    EXPECT_EQ(FROM_LIBRARY(interface_info), &own);
    EXPECT_EQ(FROM_LIBRARY(_interface_info), &FROM_LIBRARY(_interface_data));
    EXPECT_EQ(FROM_LIBRARY(initialize_interface_info)(&own), 0);
    EXPECT_EQ(own.cpeType, 2);
    EXPECT_STREQ(own.wifi_2_4G, "wifi_2_4G_is_a_long");
    EXPECT_STREQ(own.wifi_5G, "wifi_5G_is_a_long_n");
    EXPECT_STREQ(own.guest_2_4G, "guest_2_4G_is_a_lon");
    EXPECT_STREQ(own.guest_5G, "guest_5G_is_a_long_");
    EXPECT_STREQ(own.backhaul_2_4G, "backhaul_2_4G_is_a_");
    EXPECT_STREQ(own.backhaul_5G, "backhaul_5G_is_a_lo");
    EXPECT_STREQ(own.unused[0], "");
}

TEST_F(Identity, ModeTables) {
    Texts rows;
    for (const auto& mode : FROM_LIBRARY(mode_2g))
        rows.push_back(std::string(mode.hwmode) + " " + mode.standards);
    EXPECT_THAT(rows, ElementsAre("11b b", "11g g", "11bg b,g", "11ng g,n", "11ng n,g", "11ng b,g,n",
                                  "11axg ax,g", "11axg b,g,n,ax", "11beg be", "11beg b,g,n,ax,be"));
    rows.clear();
    for (const auto& mode : FROM_LIBRARY(mode_5g))
        rows.push_back(std::string(mode.hwmode) + " " + mode.standards);
    EXPECT_THAT(rows, ElementsAre("11a a", "11na a,n", "11na n,a", "11ac ac", "11ac n,ac", "11ac a,n,ac",
                                  "11axa ax", "11axa a,n,ac,ax", "11bea be", "11bea a,n,ac,ax,be"));
}

}  // namespace
