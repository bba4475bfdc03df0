#include "cwmp/wireless.h"
#include "wireless_router.h"

namespace {

#define CLIENT(name) "LANDevice_WLANConfiguration_AssociatedDevice_" name
#define GUEST_CLIENT(name) "LANDevice_WLANConfiguration_MultiSSID_AssociatedDevice_" name
#define AP_CLIENT(name) "WiFi_AccessPoint_AssociatedDevice_" name
#define AP_GUEST_CLIENT(name) "WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDevice_" name

constexpr const char* kMainCount = "LANDevice_WLANConfiguration_AssociatedDeviceNumberOfEntries";
constexpr const char* kGuestCount = "LANDevice_WLANConfiguration_MultiSSID_AssociatedDeviceNumberOfEntries";
constexpr const char* kApCount = "WiFi_AccessPoint_AssociatedDeviceNumberOfEntries";

// Hosts 1 and 3 on 5 GHz, 2 on 2.4 GHz, 4 and 5 guests on 2.4 and 5 GHz. Each option holds its own name and
// the host's number.
class Clients : public WirelessRouter {
  protected:
    void SetUp() override {
        WirelessRouter::SetUp();
        hosts({"radio5", "radio2", "radio5", "ath01", "ath11"});
        forget();
    }
    static void hosts(const Texts& interfaces) {
        std::string text =
            "config hosts 'info'\n\toption count '" + std::to_string(interfaces.size()) + "'\n";
        for (std::size_t i = 0; i < interfaces.size(); ++i) {
            const std::string number = std::to_string(i + 1);
            text += "config host '" + number + "'\n\toption lay2if '" + interfaces[i] + "'\n";
            for (const char* name : {"mac",
                                     "ip",
                                     "hostname",
                                     "rxrate",
                                     "txrate",
                                     "rssi",
                                     "rssi_min",
                                     "rssi_max",
                                     "LastDataUplinkRate",
                                     "LastDataDownlinkRate",
                                     "authentication_state",
                                     "retransmission",
                                     "rx_pkt",
                                     "tx_pkt",
                                     "rx_byte",
                                     "tx_byte",
                                     "errors_sent",
                                     "retrans_count",
                                     "failed_retrans_count",
                                     "retry_count",
                                     "multiple_retry_count"})
                text += std::string("\toption ") + name + " '" + name + number + "'\n";
        }
        package("hosts", text, kScratch);
    }
};

TEST_F(Clients, AreFoundByNetworkAndNumber) {
    const std::vector<std::pair<const char*, const char*>> link = {
        {"X_QM_LastDataUplinkRate", "LastDataUplinkRate"},
        {"X_QM_LastDataDownlinkRate", "LastDataDownlinkRate"},
        {"X_QM_LinkRxRate", "rxrate"},
        {"X_QM_LinkTxRate", "txrate"},
        {"X_QM_RSSI", "rssi"},
        {"X_QM_RSSI_Min", "rssi_min"},
        {"X_QM_RSSI_Max", "rssi_max"},
        {"X_QM_SignalStrength", "rssi"},
        {"AssociatedDeviceAuthenticationState", "authentication_state"},
        {"AssociatedDeviceIPAddress", "ip"}};
    for (const auto& [name, field] : link) {
        const std::string main = std::string(CLIENT("")) + name, guest = std::string(GUEST_CLIENT("")) + name;
        const std::string f = field;
        expect_answers({{main.c_str(), {1, 1}, f + "2"},
                        {main.c_str(), {2, 1}, f + "1"},
                        {main.c_str(), {2, 2}, f + "3"},
                        {guest.c_str(), {1, 1}, f + "4"},
                        {guest.c_str(), {2, 1}, f + "5"}});
        expect_read_only({main.c_str(), guest.c_str()});
    }
    const std::vector<std::pair<const char*, const char*>> statistics = {
        {"Retransmissions", "retransmission"},   {"Stats_PacketsReceived", "rx_pkt"},
        {"Stats_PacketsSent", "tx_pkt"},         {"Stats_BytesReceived", "rx_byte"},
        {"Stats_BytesSent", "tx_byte"},          {"Stats_ErrorsSent", "errors_sent"},
        {"Stats_RetransCount", "retrans_count"}, {"Stats_FailedRetransCount", "failed_retrans_count"},
        {"Stats_RetryCount", "retry_count"},     {"Stats_MultipleRetryCount", "multiple_retry_count"}};
    for (const auto& [name, field] : statistics) {
        const std::string main = std::string(AP_CLIENT("")) + name,
                          guest = std::string(AP_GUEST_CLIENT("")) + name;
        const std::string f = field;
        expect_answers({{main.c_str(), {2, 2}, f + "3"}, {guest.c_str(), {1, 1}, f + "4"}});
        expect_read_only({main.c_str(), guest.c_str()});
    }
    expect_answers({{GUEST_CLIENT("AssociatedDeviceMACAddress"), {2, 1}, "mac5"},
                    {AP_GUEST_CLIENT("MACAddress"), {1, 1}, "mac4"},
                    {AP_GUEST_CLIENT("X_QM_IPAddress"), {2, 1}, "ip5"},
                    {AP_GUEST_CLIENT("AuthenticationState"), {1, 1}, "authentication_state4"},
                    {AP_GUEST_CLIENT("LastDataDownlinkRate"), {1, 1}, "LastDataDownlinkRate4"},
                    {AP_GUEST_CLIENT("LastDataUplinkRate"), {1, 1}, "LastDataUplinkRate4"},
                    {AP_GUEST_CLIENT("X_QM_LinkRxRate"), {1, 1}, "rxrate4"},
                    {AP_GUEST_CLIENT("X_QM_LinkTxRate"), {1, 1}, "txrate4"},
                    {AP_GUEST_CLIENT("X_QM_RSSI"), {1, 1}, "rssi4"},
                    {AP_GUEST_CLIENT("SignalStrength"), {1, 1}, "rssi4"},
                    {AP_GUEST_CLIENT("X_QM_RSSI_Max"), {1, 1}, "rssi_max4"},
                    {AP_GUEST_CLIENT("X_QM_RSSI_Min"), {1, 1}, "rssi_min4"},
                    {AP_CLIENT("MACAddress"), {1, 1}, "mac2"},
                    {AP_CLIENT("MACAddress"), {2, 1}, "mac4"},
                    {AP_CLIENT("MACAddress"), {3, 2}, "mac3"},
                    {AP_CLIENT("X_QM_IPAddress"), {4, 1}, "ip5"},
                    {AP_CLIENT("X_QM_IPAddress"), {4, 2}, ""},
                    {CLIENT("AssociatedDeviceMACAddress"), {2, 1}, "mac4"},
                    {CLIENT("AssociatedDeviceName"), {3, 2}, "hostname3"},
                    {CLIENT("AssociatedDeviceName"), {4, 1}, "hostname5"},
                    {CLIENT("AssociatedDeviceName"), {4, 2}, ""}});
    EXPECT_EQ(get(CLIENT("X_QM_RSSI"), {2, 2}).locate, (Locate{1, 2, 2}));
    EXPECT_EQ(get(CLIENT("AssociatedDeviceName"), {3, 2}).locate, (Locate{3, 2}));
}

TEST_F(Clients, AreRefusedWithAReason) {
    struct Row {
        const char* handler;
        Locate locate;
        Texts events;
    };
    const char* info = "Get_AssociatedDevice_Info: ";
    const char* main = "WLANConfiguration_AssociatedDevice_LinkInfo_Get: ";
    const char* guest = "MultiSSID_AssociatedDevice_LinkInfo_Get: ";
    const char* mac = AP_CLIENT("MACAddress") ": ";
    const std::string i = info;
    const std::vector<Row> rows = {
        {CLIENT("X_QM_RSSI"), {0, 1}, {main + std::string("locate error\n")}},
        {CLIENT("X_QM_RSSI"), {1, 0}, {main + std::string("locate error\n")}},
        {GUEST_CLIENT("X_QM_RSSI"), {1, 6}, {guest + std::string("locate[2] is wrong\n")}},
        {CLIENT("X_QM_RSSI"), {1, 5}, {}},
        {CLIENT("X_QM_RSSI"), {1, -1}, {}},
        {CLIENT("X_QM_RSSI"), {3, 1}, {}},
        {CLIENT("AssociatedDeviceMACAddress"),
         {1, 1},
         {i + "locate[0] == 1,locate[1] == 1\n\n", i + "total is 5\n\n"}},
        {CLIENT("AssociatedDeviceName"),
         {1, 1},
         {i + "locate[0] == 1,locate[1] == 1\n\n", i + "total is 5\n\n"}},
        {CLIENT("AssociatedDeviceName"),
         {5, 1},
         {i + "locate[0] == 5,locate[1] == 1\n\n", i + "total is 5\n\n"}},
        {CLIENT("AssociatedDeviceName"),
         {3, 6},
         {i + "locate[0] == 3,locate[1] == 6\n\n", i + "total is 5\n\n", i + "locate[2] is wrong\n"}},
        {AP_CLIENT("MACAddress"),
         {3, 6},
         {mac + std::string("locate[0] = 1,locate[1] = 3,locate[2] = 6\n\n"),
          mac + std::string("index = 6,total = 5\n\n")}},
        {AP_CLIENT("MACAddress"),
         {5, 1},
         {mac + std::string("locate[0] = 1,locate[1] = 5,locate[2] = 1\n\n")}},
        {AP_CLIENT("MACAddress"),
         {3, 0},
         {mac + std::string("locate[0] = 1,locate[1] = 3,locate[2] = 0\n\n"),
          mac + std::string("locate error\n")}},
    };
    for (const auto& row : rows) {
        forget();
        const Result result = get(row.handler, row.locate);
        EXPECT_EQ(result.code, -1) << row.handler;
        EXPECT_EQ(result.value, kUntouched) << row.handler;
        EXPECT_EQ(console(), row.events) << row.handler << row.locate[0] << row.locate[1];
    }
}

TEST_F(Clients, AreCounted) {
    expect_answers({{kMainCount, {1, 1}, "1"},
                    {kMainCount, {1, 2}, "2"},
                    {kMainCount, {1, 0}, "1"},
                    {kMainCount, {2, 0}, "2"},
                    {kMainCount, {9, 2}, "2"},
                    {kGuestCount, {1, 1}, "1"},
                    {kApCount, {1}, "1"},
                    {kApCount, {2}, "1"},
                    {kApCount, {3}, "2"},
                    {kApCount, {4}, "1"},
                    {"WiFi_AccessPoint_X_QM_MultiSSID_AssociatedDeviceNumberOfEntries", {2}, "1"}});
    for (const auto& locate : {Locate{1, 3}, Locate{3, 0}, Locate{0, 0}, Locate{5, 0}}) {
        EXPECT_NE(get(kMainCount, locate).code, 0);
        EXPECT_NE(get(kGuestCount, locate).code, 0);
    }
    EXPECT_EQ(get(kApCount, {5}).code, -1);
    store("hosts.info.count", "2000000000", kScratch);  // no walk to a count that lies
    expect_answers({{kApCount, {3}, "2"}, {CLIENT("X_QM_RSSI"), {2, 2}, "rssi3"}});
    store("hosts.info.count", "2", kScratch);
    expect_answers({{kApCount, {3}, "1"}, {kApCount, {4}, "0"}});
}

TEST_F(Clients, AreNoneInAnEmptyTable) {
    for (const bool has_count : {true, false}) {
        package("hosts", has_count ? "config hosts 'info'\n\toption count '0'\n" : "", kScratch);
        expect_answers({{CLIENT("X_QM_RSSI"), {3, 7}, ""},
                        {GUEST_CLIENT("AssociatedDeviceIPAddress"), {1, 1}, ""},
                        {CLIENT("AssociatedDeviceMACAddress"), {1, 1}, ""},
                        {CLIENT("AssociatedDeviceName"), {2, 1}, ""},
                        {AP_CLIENT("X_QM_IPAddress"), {1, 1}, ""},
                        {AP_CLIENT("MACAddress"), {1, 1}, kUntouched},
                        {kMainCount, {1, 1}, "0"},
                        {kGuestCount, {1, 2}, "0"},
                        {kApCount, {1}, has_count ? "0" : kUntouched}});
        EXPECT_THAT(events_of(AP_CLIENT("MACAddress")), Contains("get wifi host macaddress == 0\n\n"));
    }
}

TEST_F(Clients, LackOptionsOnTheirOwn) {
    package("hosts",
            "config hosts 'info'\n\toption count '2'\nconfig host '1'\n\toption lay2if 'radio2'\n"
            "\toption rssi '-40'\n\toption authentication_state '1'\n\toption mac 'm'\n"
            "config host '2'\n\toption lay2if 'radio2'\n",
            kScratch);
    expect_answers({{CLIENT("X_QM_RSSI"), {1, 1}, "-40"},
                    {CLIENT("X_QM_RSSI"), {1, 2}, ""},
                    {CLIENT("AssociatedDeviceAuthenticationState"), {1, 2}, "0"},
                    {AP_CLIENT("MACAddress"), {1, 2}, ""}});
}

TEST_F(Clients, SpeakWhatTheirRadioSpeaks) {
    expect_answers({{AP_CLIENT("OperatingStandard"), {1}, ""}});
    store("wifi.radio_2g.hwmode", "11ng");
    store("wifi.radio_5g.hwmode", "11ac");
    store("wifi.radio_5g.ax_hwmode", "");
    expect_answers({{AP_CLIENT("OperatingStandard"), {1}, "11axg"},
                    {AP_CLIENT("OperatingStandard"), {2}, "11axg"},
                    {AP_CLIENT("OperatingStandard"), {3}, "11ac"},
                    {AP_GUEST_CLIENT("OperatingStandard"), {4}, "11ac"}});
    EXPECT_EQ(get(AP_CLIENT("OperatingStandard"), {5}).code, -1);
}

}  // namespace
