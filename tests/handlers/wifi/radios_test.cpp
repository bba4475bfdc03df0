#include <sys/stat.h>
#include <unistd.h>

#include "wireless_router.h"

namespace {

#define WLAN(name) "LANDevice_WLANConfiguration_" name

using Radios = WirelessRouter;

constexpr const char* kChannels2G =
    "radio2    3 channels in total; available frequencies :\n          Channel 1 : 2.412 GHz\n"
    "          Channel 6 : 2.437 GHz\n          Channel 11 : 2.462 GHz\n";
constexpr const char* kChannels5G =
    "radio5    2 channels in total; available frequencies :\n          Channel 36 : 5.18 GHz\n"
    "          Channel 44 : 5.22 GHz\n          Current Frequency:5.22 GHz (Channel 44)\n";

TEST_F(Radios, AreChosenByThePair) {
    const std::vector<std::pair<Locate, int>> pairs = {{{1, 1}, 2}, {{1, 0}, 2}, {{1, 2}, 5}, {{2, 0}, 5}};
    for (const auto& [locate, band] : pairs) {
        const bool is_2g = band == 2;
        expect_answers({{WLAN("Standard"), locate, is_2g ? "11axg" : "11axa"},
                        {WLAN("AutoChannelEnable"), locate, is_2g ? "0" : "1"},
                        {"WiFi_Radio_AutoChannelSupported", locate, is_2g ? "0" : "1"},
                        {WLAN("X_QM_Bandwidth"), locate, is_2g ? "40MHz" : "80MHz"},
                        {"WiFi_Radio_CurrentOperatingChannelBandwidth", locate, is_2g ? "HT40" : "HT80"},
                        {"WiFi_Radio_SupportedFrequencyBands", locate, is_2g ? "2.4GHz" : "5GHz"},
                        {"WiFi_Radio_OperatingFrequencyBand", locate, is_2g ? "2.4GHz" : "5GHz"},
                        {"WiFi_Radio_SupportedStandards", locate, is_2g ? "b,g,n,ax,be" : "a,n,ac,ax,be"},
                        {"WiFi_Radio_SupportedOperatingChannelBandwidths", locate,
                         is_2g ? "20MHz,40MHz" : "20MHz,40MHz,80MHz,160MHz"}});
    }
    for (const Locate& locate :
         {Locate{3, 0}, Locate{2, 1}, Locate{0, 1}, Locate{1, 3}, Locate{-1, 2147483647}}) {
        for (const char* handler :
             {WLAN("Standard"), WLAN("AutoChannelEnable"), WLAN("X_QM_Bandwidth"), WLAN("Channel"),
              WLAN("Status"), WLAN("X_QM_TransmitPower"), "WiFi_Radio_SupportedFrequencyBands",
              "WiFi_Radio_SupportedStandards", "WiFi_Radio_OperatingFrequencyBand", "WiFi_Radio_MaxBitRate",
              "WiFi_Radio_OperatingStandards"})
            EXPECT_EQ(get(handler, locate).code, -1) << handler;
        expect_answers(
            {{"WiFi_Radio_SupportedOperatingChannelBandwidths", locate, "20MHz,40MHz,80MHz,160MHZ"},
             {"WiFi_Radio_CurrentOperatingChannelBandwidth", locate, ""}});
    }
    EXPECT_THAT(commands(), IsEmpty());
    forget();
    EXPECT_EQ(get("WiFi_Radio_Status", {3}).code, -1);
    EXPECT_THAT(console(), ElementsAre("WiFi_Radio_Status: get wireless mode error\n\n"));
}

TEST_F(Radios, TakeABandwidthThatTheBandHas) {
    for (const char* unit : {"", "M", "MHz"}) {
        const std::string u = unit;
        expect_stored(
            {{WLAN("X_QM_Bandwidth"), {1, 1}, "20" + u, "wireless.wifi0.htmode", "HT20", kWirelessMode},
             {WLAN("X_QM_Bandwidth"), {1, 1}, "40" + u, "wireless.wifi0.htmode", "HT40", kWirelessMode},
             {"WiFi_Radio_OperatingChannelBandwidth",
              {2},
              "20" + u,
              "wireless.wifi1.htmode",
              "HT20",
              kWirelessMode},
             {WLAN("X_QM_Bandwidth"), {1, 2}, "40" + u, "wireless.wifi1.htmode", "HT40", kWirelessMode},
             {WLAN("X_QM_Bandwidth"), {1, 2}, "80" + u, "wireless.wifi1.htmode", "HT80", kWirelessMode},
             {WLAN("X_QM_Bandwidth"), {2, 0}, "160" + u, "wireless.wifi1.htmode", "HT160", kWirelessMode}});
        const std::string event = WLAN("X_QM_Bandwidth") ":  bandwidth is not valid\n";
        expect_refused({{WLAN("X_QM_Bandwidth"), {1, 1}, "80" + u, event},
                        {WLAN("X_QM_Bandwidth"), {1, 1}, "160" + u, event},
                        {WLAN("X_QM_Bandwidth"), {1, 2}, "40 " + u + " ", event}});
    }
    store("wireless.wifi0.htmode", "VHT80");
    EXPECT_EQ(get(WLAN("X_QM_Bandwidth"), {1, 1}).code, -1);
    EXPECT_THAT(events_of(WLAN("X_QM_Bandwidth")), Contains("sscanf wifi  bandwidth error\n"));
    package("wireless", "");
    EXPECT_EQ(get(WLAN("X_QM_Bandwidth"), {1, 1}).code, -1);
    EXPECT_THAT(events_of(WLAN("X_QM_Bandwidth")), Contains("get wifi  bandwidth error\n"));
    expect_answers({{"WiFi_Radio_CurrentOperatingChannelBandwidth", {1}, "40MHz"},
                    {"WiFi_Radio_CurrentOperatingChannelBandwidth", {2}, "160MHz"}});
}

TEST_F(Radios, StepTheirTransmitPower) {
    const std::vector<std::pair<const char*, const char*>> steps = {
        {"0", "100"}, {"1", "50"}, {"2", "50"}, {"3", "30"}, {"4", "30"}};
    expect_answers({{WLAN("X_QM_TransmitPower"), {1, 1}, "100"},
                    {"WiFi_Radio_TransmitPowerSupported", {}, "25,50,100"}});
    for (const auto& [step, percent] : steps) {
        store("wifi.radio_5g.tpscale", step);
        expect_answers(
            {{WLAN("X_QM_TransmitPower"), {1, 2}, percent}, {"WiFi_Radio_TransmitPower", {2}, percent}});
    }
    store("wifi.radio_5g.tpscale", "5");
    EXPECT_EQ(get(WLAN("X_QM_TransmitPower"), {1, 2}).code, -1);
    EXPECT_THAT(console(), ElementsAre(WLAN("X_QM_TransmitPower") ": transmit power config value invalid\n"));
    expect_stored({{WLAN("X_QM_TransmitPower"), {1, 1}, "100", "wifi.radio_2g.tpscale", "0", 0},
                   {WLAN("X_QM_TransmitPower"), {1, 2}, "50", "wifi.radio_5g.tpscale", "2", 0},
                   {"WiFi_Radio_TransmitPower", {1}, "30", "wifi.radio_2g.tpscale", "3", 0}});
    expect_refused({{WLAN("X_QM_TransmitPower"),
                     {1, 1},
                     "25",
                     WLAN("X_QM_TransmitPower") ":  txpower value is not valid\n"}});
}

TEST_F(Radios, ChangeToASupportedChannelInEveryPass) {
    answer("iwlist radio2 channel", kChannels2G);
    answer("iwlist radio5 channel", kChannels5G);
    // Another tool staged a channel beside the live one.
    const std::string staged = "/var/state/wifi";
    package("wifi", "wifi.radio_5g.channel='100'\n", "/var/state");
    EXPECT_THAT(set_in_passes("WiFi_Radio_Channel", {2}, "44"), ElementsAre(0, 0, 0));
    EXPECT_THAT(text_of(staged).value_or(""), Not(HasSubstr("radio_5g.channel")));
    expect_stored({{WLAN("Channel"), {1, 1}, "11", "wifi.radio_2g.channel", "11", kWireless},
                   {WLAN("Channel"), {1, 2}, "36", "wifi.radio_5g.channel", "36", kWireless}});
    const std::string event = WLAN("Channel") ": invalid channel number\n\n";
    expect_refused({{WLAN("Channel"), {1, 1}, "36", event},
                    {WLAN("Channel"), {1, 2}, "1", event},
                    {WLAN("Channel"), {1, 1}, "6x", event},
                    {WLAN("Channel"), {1, 1}, " 6", event},
                    {WLAN("Channel"), {1, 1}, "-6", event},
                    {WLAN("Channel"), {1, 1}, "", event},
                    {WLAN("Channel"), {1, 1}, "$(touch /tmp/owned)", event}});
    EXPECT_FALSE(exists("/tmp/owned"));
}

TEST_F(Radios, LeaveTheChannelToTheDriverOnDemand) {
    package("wifi", "wifi.radio_2g.channel='100'\n", "/var/state");
    expect_no_effect(WLAN("AutoChannelEnable"), {1, 1}, "0", 0);
    expect_no_effect(WLAN("AutoChannelEnable"), {1, 2}, "0", 0);
    expect_no_effect(WLAN("AutoChannelEnable"), {1, 1}, "true", 0);
    EXPECT_THAT(text_of("/var/state/wifi").value_or(""), HasSubstr("100"));
    expect_stored({{"WiFi_Radio_AutoChannelSupported", {1}, "1", "wifi.radio_2g.channel", "0", kWireless}});
    EXPECT_THAT(text_of("/var/state/wifi").value_or(""), Not(HasSubstr("100")));
}

TEST_F(Radios, TellTheCurrentChannelAndThePossibleOnes) {
    // Tools that print "Channel=6" are the ones that this parameter understands.
    answer("iwlist radio2 channel", std::string(kChannels2G) + "          Current Channel=11\n");
    answer("iwlist radio5 channel", kChannels5G);
    expect_answers({{WLAN("Channel"), {1, 1}, "11"},
                    {"WiFi_Radio_ChannelsInUse", {1}, "11"},
                    {"WiFi_Radio_Channel", {2}, "0"}});
    EXPECT_THAT(commands(), Contains("iwlist radio5 channel | grep Current | awk -F '=' '{print $2}'"));
    store("wifi.radio_5g.channel", "");
    EXPECT_EQ(get(WLAN("Channel"), {1, 2}).code, -1);
    EXPECT_THAT(events_of(WLAN("Channel")), ElementsAre("Failed to get  ChannelInConfig\n"));

    const Result list = get(WLAN("ChannelsInUse"), {2});
    EXPECT_EQ(list.value, "36,44");
    EXPECT_EQ(list.locate, (Locate{1, 2}));
    expect_answers({{"WiFi_Radio_PossibleChannels", {1}, "1,6,11"}});
    EXPECT_EQ(get(WLAN("ChannelsInUse"), {3}).code, -1);
    answer("iwlist radio2 channel", "garbage\n Channel\n Channel x : 1\n");
    expect_answers({{WLAN("ChannelsInUse"), {1}, ""}});
    profile("interfaceinfo.cpe_type", "mtk");
    expect_answers({{WLAN("ChannelsInUse"), {2}, "36,44"}});
    profile("interfaceinfo.cpe_type", "bcm");
    expect_answers({{WLAN("ChannelsInUse"), {2}, kUntouched}});
}

TEST_F(Radios, TellNineTimesTheWholeGigahertz) {
    answer("iwlist radio2 channel", "          Current Frequency:2.412 GHz (Channel 1)\n");
    answer("iwlist radio5 channel", kChannels5G);
    const Result result = get(WLAN("X_QM_FrequencyInuse"), {1});
    EXPECT_EQ(result.value, "18MHz");
    EXPECT_EQ(result.locate, (Locate{1, 1}));
    expect_answers({{"WiFi_Radio_X_QM_FrequencyInuse", {2}, "45MHz"}});
    EXPECT_THAT(
        commands(),
        ElementsAre(
            "iwlist radio2 channel | grep 'Current Frequency' | awk '{print $2}' | awk -F ':' '{print $2}'",
            "iwlist radio5 channel | grep \"Current Frequency\" | awk '{print $2}' | awk -F \":\" '{print "
            "$2}'"));
    answer("iwlist radio2 channel", "Current Frequency:99999999999999999999 GHz\n");
    expect_answers({{WLAN("X_QM_FrequencyInuse"), {1}, "19327352823MHz"}});
    answer("iwlist radio2 channel", "Current");
    expect_answers({{WLAN("X_QM_FrequencyInuse"), {1}, ""}});
    EXPECT_EQ(get(WLAN("X_QM_FrequencyInuse"), {3}).code, -1);
    for (const char* kind : {"bcm", "mtk"}) {
        profile("interfaceinfo.cpe_type", kind);
        expect_answers(
            {{WLAN("X_QM_FrequencyInuse"), {1}, "2.4Ghz"}, {WLAN("X_QM_FrequencyInuse"), {2}, "5Ghz"}});
    }
}

TEST_F(Radios, AskTheirMainInterface) {
    answer("ifconfig radio2", "radio2  Link encap:Ethernet\n          UP BROADCAST RUNNING\n");
    answer("ifconfig radio5", "radio5  UP Link\n          BROADCAST\n");
    expect_answers({{WLAN("Status"), {1, 1}, "Up"}, {WLAN("Status"), {1, 2}, "Disabled"}});
    EXPECT_THAT(commands(), Contains("ifconfig radio2 | sed '1d' | grep UP | awk '{print $1}'"));
    for (const Locate& locate : {Locate{1, 0}, Locate{2, 0}}) EXPECT_EQ(get(WLAN("Status"), locate).code, -1);

    answer("iwconfig radio5", "radio5  ESSID:\"x\"\n          Bit Rate=2402 Mb/s   Tx-Power=20 dBm\n");
    forget();
    expect_answers({{"WiFi_Radio_MaxBitRate", {2}, "2402"}, {"WiFi_Radio_MaxBitRate", {1}, ""}});
    EXPECT_THAT(
        commands(),
        Contains("iwconfig     radio5 | grep 'Bit Rate' | awk '{print $2}' | awk -F '=' '{print $2}'"));
    profile("interfaceinfo.wifi_5G", "a-long-interface");
    get("WiFi_Radio_MaxBitRate", {2});
    EXPECT_THAT(tool_calls(), Contains("iwconfig a-long-interface"));
}

TEST_F(Radios, CountTheTrafficOfTheirInterface) {
    file("/proc/net/dev",
         "Inter-|   Receive | Transmit\n face |bytes packets\n"
         "radio2: 1 2 3 4 0 0 0 0 5 6 7 8 0 0 0 0\nradio5: 11 12 13 14 0 0 0 0 15 16 17 18 0 0 0 0\n");
    const std::vector<std::array<const char*, 3>> counters = {
        {"TotalBytesReceived", "Stats_BytesReceived", "1"},
        {"TotalPacketsReceived", "Stats_PacketsReceived", "2"},
        {"X_QM_TotalErrorsReceived", "Stats_ErrorsReceived", "3"},
        {"TotalBytesSent", "Stats_BytesSent", "5"},
        {"TotalPacketsSent", "Stats_PacketsSent", "6"},
        {"X_QM_TotalErrorsSent", "Stats_ErrorsSent", "7"}};
    for (const auto& [tr098, tr181, value] : counters) {
        const std::string wlan = std::string(WLAN("")) + tr098, radio = std::string("WiFi_Radio_") + tr181;
        expect_answers({{wlan.c_str(), {1, 1}, value},
                        {wlan.c_str(), {1, 2}, std::string("1") + value},
                        {radio.c_str(), {1}, value},
                        {radio.c_str(), {2}, std::string("1") + value}});
        EXPECT_EQ(set(radio.c_str(), {1}, "0").code, -1);
    }
    expect_answers({{"WiFi_Radio_Stats_DiscardPacketsReceived", {2}, "14"},
                    {"WiFi_Radio_Stats_DiscardPacketsSent", {1}, "8"}});
}

TEST_F(Radios, AppendTheIndoorLetterToTheCountry) {
    answer("fwinfo COUNTRY", "DE\n");
    expect_answers({{"WiFi_Radio_RegulatoryDomain", {}, "DEI"}});
    answer("fwinfo COUNTRY", std::string(30, 'X'));
    expect_answers({{"WiFi_Radio_RegulatoryDomain", {}, std::string(19, 'X') + "I"}});
    answer("fwinfo COUNTRY", "");
    expect_answers({{"WiFi_Radio_RegulatoryDomain", {}, ""}});
    store("wifi.ap.RegulatoryDomain", "FRO");
    forget();
    expect_answers({{"WiFi_Radio_RegulatoryDomain", {}, "FRO"}});
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(Radios, TranslateTheirStandards) {
    const char* handler = "WiFi_Radio_OperatingStandards";
    expect_answers({{handler, {1, 1}, "g,n"}, {handler, {2}, "ac"}});
    store("wireless.wifi1.hwmode", "11axa");
    expect_answers({{handler, {2}, "a,n,ac,ax"}});
    EXPECT_EQ(get(handler, {1, 2}).code, -1);  // wifi1's mode, looked up among those of 2.4 GHz
    store("wireless.wifi1.hwmode", "11axg");
    expect_answers({{handler, {1, 2}, "ax,g"}});
    EXPECT_EQ(get(handler, {2}).code, -1);
    expect_stored({{handler, {1}, "b,g,n,ax", "wifi.radio_2g.ax_hwmode", "11axg", kWireless},
                   {handler, {1, 1}, "b,g,n,ax,be", "wifi.radio_2g.ax_hwmode", "11beg", kWireless},
                   {handler, {2}, "ax", "wireless.wifi1.hwmode", "11axa", kWirelessMode},
                   {handler, {1, 2}, "n,a", "wireless.wifi1.hwmode", "11na", kWirelessMode}});
    expect_refused({{handler, {1}, "ac", ""},
                    {handler, {2}, "b,g", ""},
                    {handler, {1}, "11ng", ""},
                    {handler, {3}, "ax", ""}});
    profile("interfaceinfo.radio_5g", "1");
    expect_refused({{handler, {2}, "ac", ""}});
    expect_stored({{handler, {1}, "b", "wifi.radio_2g.ax_hwmode", "11b", kWireless}});
    package("wireless", "");
    expect_answers({{handler, {1}, ""}});
}

// The section stays empty: whoever fills in wifi0 or wifi1 changes what the field sees.
TEST_F(Radios, TuneNoRadio) {
    const std::vector<std::array<const char*, 3>> values = {
        {"WiFi_Radio_DTIMPeriod", "dtim_period", "set dtim_period error\n\n"},
        {"WiFi_Radio_BeaconPeriod", "beacon_int", "set beacon_int error\n\n"},
        {"WiFi_Radio_RTSThreshold", "rts", "set rts error\n\n"},
        {"WiFi_Radio_FragmentationThreshold", "frag", "set frag error\n\n"}};
    for (const auto& [handler, name, unwritten] : values) {
        store(std::string("wireless.wifi0.") + name, "7");
        forget();
        expect_answers({{handler, {1}, "0"}});
        EXPECT_THAT(events_of(handler), ElementsAre("get airtime_fairness error\n\n"));
        forget();
        EXPECT_EQ(set(handler, {1}, "9").code, -1);
        EXPECT_THAT(events_of(handler), ElementsAre(unwritten));
    }
    store("wireless.wifi0.airtime_fairness", "on");
    expect_answers({{"WiFi_Radio_X_QM_ATFEnable", {1}, "0"}});
    EXPECT_THAT(events_of("WiFi_Radio_X_QM_ATFEnable"), ElementsAre("get airtime_fairness error\n\n"));
    expect_no_effect("WiFi_Radio_X_QM_ATFEnable", {1}, "0", kWireless);
}

TEST_F(Radios, HaveFixedParameters) {
    expect_answers({{"WiFi_Radio_MaxSupportedSSIDs", {1}, "2"},
                    {"WiFi_Radio_Upstream", {1}, "0"},
                    {"WiFi_Radio_AutoChannelRefreshPeriod", {1}, ""}});
    expect_no_effect("WiFi_Radio_OperatingFrequencyBand", {1}, "2.4GHz", 0);
    expect_no_effect("WiFi_Radio_OperatingFrequencyBand", {2}, "5GHz", 0);
    expect_refused({{"WiFi_Radio_OperatingFrequencyBand", {1}, "5GHz", ""}});
    expect_read_only({WLAN("Standard"), WLAN("Status"), WLAN("ChannelsInUse"), WLAN("X_QM_FrequencyInuse"),
                      WLAN("X_QM_TransmitPowerSupported"), "WiFi_Radio_TransmitPowerSupported",
                      "WiFi_Radio_ChannelsInUse", "WiFi_Radio_PossibleChannels",
                      "WiFi_Radio_X_QM_FrequencyInuse", "WiFi_Radio_MaxSupportedSSIDs", "WiFi_Radio_Upstream",
                      "WiFi_Radio_AutoChannelRefreshPeriod", "WiFi_Radio_SupportedFrequencyBands",
                      "WiFi_Radio_SupportedStandards", "WiFi_Radio_SupportedOperatingChannelBandwidths",
                      "WiFi_Radio_CurrentOperatingChannelBandwidth", "WiFi_Radio_RegulatoryDomain",
                      "WiFi_Radio_MaxBitRate", "WiFi_Radio_Status"});
    package("wifi", "");
    EXPECT_EQ(get(WLAN("Standard"), {1, 2}).code, -1);
    EXPECT_THAT(events_of(WLAN("Standard")), ElementsAre("get radio_5g ax_hwmode error\n"));
}

}  // namespace
