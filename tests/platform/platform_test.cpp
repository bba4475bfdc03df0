// Tables, and probes that take an argument list.
#include "cwmp/platform.h"

#include <sys/time.h>

#include <climits>
#include <csignal>
#include <cstring>

#include "cwmp/interface_stack.h"
#include "router_test.h"

namespace {

class Platform : public RouterTest {
  protected:
    // The probes of the radios: a SET asks whether the value is supported.
    std::string radio(const char* probe, int op, std::string value, Locate locate, int band) {
        return effects([&] {
            value.resize(1024);
            const int code = dispatch(symbol<decltype(::GetChannelPoll)>(probe), op, value.data(),
                                      locate.data(), band, nullptr);
            return std::to_string(code) + (op == CWMP_OP_GET ? std::string(" ") + value.c_str() : "");
        });
    }
    std::string count(const char* first, const char* second, Locate locate, const char* counter,
                      int op = CWMP_OP_GET) {
        const char* const names[3] = {first, second, ""};
        return effects([&] {
            char value[64] = "-";
            const int code = count_of(op, names, counter, locate.data(), value);
            return std::to_string(code) + " " + value;
        });
    }

  private:
    static int dispatch(decltype(::GetChannelPoll)& probe, int op, char* value, int* locate, int band, ...) {
        va_list args;
        va_start(args, band);
        const int code = probe(op, args, value, locate, band);
        va_end(args);
        return code;
    }
    int count_of(int op, const char* const (&names)[3], const char* counter, ...) {
        va_list args;
        va_start(args, counter);
        const int code = FROM_LIBRARY(get_TotalBytesAndPackets_by_name)(op, args, names, counter);
        va_end(args);
        return code;
    }
};

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
    EXPECT_THAT(names(),
                ElementsAre("wifi_2_4Ginterfacei", "wifi_5Ginterfaceinf", "guest_2_4Ginterface",
                            "guest_5Ginterfacein", "backhaul_2_4Ginterf", "backhaul_5Ginterfac", ""));
}

TEST_F(Platform, ASignalTakesNothingOfACommandsOutput) {
    struct sigaction no_restart = {};
    no_restart.sa_handler = [](int) {};
    sigaction(SIGALRM, &no_restart, nullptr);
    const itimerval often = {{0, 3000}, {0, 3000}}, never = {};
    setitimer(ITIMER_REAL, &often, nullptr);
    const std::string told_then = told("call util_exec 'printf ab; sleep 0.03; echo c' ?16 16");
    setitimer(ITIMER_REAL, &never, nullptr);
    EXPECT_TRUE(told_then.starts_with("3 abc | ")) << told_then;
}

TEST_F(Platform, PortNamesAreLoadedOnce) {
    auto& names = FROM_LIBRARY(eth_names);
    testing::internal::CaptureStdout();
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), -1);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "get profile eths failed\r");
    std::memset(names[2], 'x', 3);  // what was there is cleared
    profile("ethernet.names", "eth0 eth1_with_a_long_name");
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), 0);
    EXPECT_THAT((Texts{names[0], names[1], names[2]}), ElementsAre("eth0", "eth1_with_a_lon", ""));
    profile("ethernet.names", "eth7 eth8 eth9 eth10");
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), 0);
    EXPECT_STREQ(names[0], "eth0");
    names[0][0] = '\0';
    EXPECT_EQ(FROM_LIBRARY(get_profile_eths)(), 0);
    EXPECT_STREQ(names[2], "eth9");
}

TEST_F(Platform, RadiosAreChosenByPathThenBand) {
    answer("iwlist ath0 channel", "Channel 1 : 2.412 GHz\n Channel 06 : 2.437 GHz\n");
    answer("iwlist ath1 channel", "Channel 36 : 5.18 GHz\n");
    world("mute $");
    for (const auto& [locate, band] :
         std::vector<std::pair<Locate, int>>{{{1, 1}, 2}, {{1, 2}, 1}, {{2, 1}, 1}})
        EXPECT_EQ(radio("GetChannelPoll", CWMP_OP_GET, "", locate, band), "0 1,06");
    EXPECT_EQ(radio("GetChannelPoll", CWMP_OP_GET, "", {1, 2}, 0), "0 36");
    EXPECT_EQ(radio("GetChannelPoll", CWMP_OP_GET, "", {2, 1}, 2), "0 36");
    EXPECT_EQ(radio("GetChannelPoll", CWMP_OP_GET, "-", {2, 1}, 3), "-1 -");
    EXPECT_EQ(radio("GetFrequencyPoll", CWMP_OP_GET, "", {1, 1}, 0), "0 2412MHz,2437MHz");
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        for (const char* value : {"1", "6", "06", "6 and more"})
            EXPECT_EQ(radio("GetChannelPoll", op, value, {1, 1}, 0), std::to_string(op)) << value;
        for (const char* value : {"2", "36", "0", "", "x", "-1", "99999999999"})
            EXPECT_EQ(radio("GetChannelPoll", op, value, {1, 1}, 0), "0") << value;
        EXPECT_EQ(radio("GetFrequencyPoll", op, "2437MHz", {1, 1}, 0), std::to_string(op));
    }
}

TEST_F(Platform, ChannelListsAreOfAnyShape) {
    std::string many, list;
    for (int channel = 100; channel < 200; ++channel) {
        many += "Channel " + std::to_string(channel) + "\n";
        if (channel < 164) list += (list.empty() ? "" : ",") + std::to_string(channel);
    }
    world("mute $");
    for (const auto& [output, channels] : std::map<std::string, std::string>{
             {"", ""},
             {"Channel", ""},
             {"Channel abc : x\nChannel 7x : y\n", "7"},
             {"Channel 0 :\n", "0"},
             {"Channel \xff\xfe\nChannel 5", "5"},
             {many, list},  // a line holds 255 characters
             {"Channel " + std::string(5000, '1') + "\n", std::string(255, '1')}}) {
        answer("iwlist ath0 channel", output);
        EXPECT_EQ(radio("GetChannelPoll", CWMP_OP_GET, "", {1, 1}, 0), "0 " + channels);
        EXPECT_TRUE(radio("GetFrequencyPoll", CWMP_OP_GET, "", {1, 1}, 0).starts_with("0 "));
    }
}

TEST_F(Platform, TrafficIsAColumnOfTheInterface) {
    file("/proc/net/dev",
         "  eth0: 1 2 3 4 5 6 7 8 9 10 11 12 13 14 15 16\n  ath0: 21 22 23\nath0.1: 31 32\n"
         "  ath1: 18446744073709551 42 -3 4x4 5\n");
    world("mute $");
    const auto total = [&](const char* name, const char* counter) {
        return count(name, "", {1, 1}, counter);
    };
    EXPECT_EQ(total("ath1", "TotalErrorsReceived"), "0 0") << "anything but digits reads zero";
    EXPECT_EQ(total("ath1", "DiscardPacketsReceived"), "0 0");
    EXPECT_EQ(total("none", "TotalBytesReceived"), "0 0");
    EXPECT_EQ(total("wifi0", "TotalBytesReceived"), "0 21") << "a radio's name, not its sub-interface";
    EXPECT_EQ(total("wifi1", "TotalBytesReceived"), "0 18446744073709551");
    EXPECT_EQ(total("ath0", "TotalBytesReceived"), "0 31") << "the last line with the name counts";
    profile("interfaceinfo.wifi_2_4G", "eth0");
    EXPECT_EQ(total("wifi0", "TotalBytesReceived"), "0 1");
    for (const auto& [locate, packets] : std::vector<std::pair<Locate, const char*>>{
             {{1, 2}, "0 42"}, {{2, 0}, "0 42"}, {{2, 1}, "0 0"}, {{1, -1}, "0 0"}})
        EXPECT_EQ(count("eth0", "ath1", locate, "TotalPacketsReceived"), packets);
    file("/proc/net/dev", "eth0: " + std::string(5000, '9'));
    EXPECT_EQ(total("eth0", "TotalBytesReceived"), "0 9999999999999999999");
    EXPECT_EQ(count("eth0", "", {1, 1}, "TotalBytesReceived", CWMP_OP_APPLY),
              "-1 - | ! get_TotalBytesAndPackets_by_name: error set Bytes and Packets !");
    EXPECT_EQ(total("eth0", "TotalBytes"),
              "-1 - | ! get_TotalBytesAndPackets_by_name: error get Bytes and Packets !");
}

}  // namespace
