#include "cwmp/interface_stack.h"

#include <sstream>

#include "router_test.h"

namespace {

// Id, shown at first, higher and lower layer without "Device.".
constexpr const char* kStack = R"(0 0 IP.Interface.6. X_QM_PPTP.Interface.1.
1 0 IP.Interface.7. X_QM_L2TP.Interface.1.
2 0 IP.Interface.5. PPP.Interface.1.
3 0 X_QM_PPTP.Interface.1. X_QM_FakeIntf.1.
4 0 X_QM_L2TP.Interface.1. X_QM_FakeIntf.2.
5 0 PPP.Interface.1. Ethernet.VLANTermination.1.
6 0 IP.Interface.8. Ethernet.VLANTermination.1.
11 1 IP.Interface.2. Ethernet.VLANTermination.1.
12 1 IP.Interface.1. Ethernet.Link.1.
9 0 IP.Interface.3. Ethernet.VLANTermination.1.
10 0 IP.Interface.4. Ethernet.VLANTermination.1.
13 1 Ethernet.VLANTermination.1. Ethernet.Link.2.
14 1 Ethernet.VLANTermination.3. Bridging.Bridge.3.Port.1.
15 0 Ethernet.VLANTermination.2. Bridging.Bridge.2.Port.1.
16 0 Ethernet.VLANTermination.4. Bridging.Bridge.4.Port.1.
17 1 Ethernet.Link.2. Ethernet.Interface.3.
18 1 Ethernet.Link.1. Bridging.Bridge.1.Port.1.
19 0 Bridging.Bridge.3.Port.1. Bridging.Bridge.3.Port.2.
20 0 Bridging.Bridge.2.Port.1. Bridging.Bridge.2.Port.2.
21 0 Bridging.Bridge.4.Port.1. Bridging.Bridge.4.Port.2.
22 1 Bridging.Bridge.1.Port.1. Bridging.Bridge.1.Port.2.
22 1 Bridging.Bridge.1.Port.1. Bridging.Bridge.1.Port.3.
22 1 Bridging.Bridge.1.Port.1. Bridging.Bridge.1.Port.4.
22 1 Bridging.Bridge.1.Port.1. Bridging.Bridge.1.Port.5.
22 1 Bridging.Bridge.1.Port.1. Bridging.Bridge.1.Port.6.
22 1 Bridging.Bridge.1.Port.1. Bridging.Bridge.1.Port.7.
22 1 Bridging.Bridge.1.Port.1. Bridging.Bridge.1.Port.8.
23 0 Bridging.Bridge.3.Port.2. Ethernet.Interface.3.
24 0 Bridging.Bridge.2.Port.2. Ethernet.Interface.3.
25 0 Bridging.Bridge.4.Port.2. Ethernet.Interface.3.
26 1 Bridging.Bridge.1.Port.2. WIFI.SSID.1.
26 1 Bridging.Bridge.1.Port.3. WIFI.SSID.2.
26 1 Bridging.Bridge.1.Port.4. WIFI.SSID.3.
26 1 Bridging.Bridge.1.Port.5. WIFI.SSID.4.
26 1 Bridging.Bridge.1.Port.6. Ethernet.Interface.1.
26 1 Bridging.Bridge.1.Port.7. Ethernet.Interface.2.
27 0 Ethernet.Interface.3. -
28 0 Ethernet.Interface.1. -
29 0 Ethernet.Interface.2. -
31 1 WIFI.SSID.1. WiFi.Radio.1.
32 1 WIFI.SSID.2. WiFi.Radio.1.
33 1 WIFI.SSID.3. WiFi.Radio.2.
34 1 WIFI.SSID.4. WiFi.Radio.2.
35 0 WiFi.Radio.1. -
36 0 WiFi.Radio.2. -
37 0 WiFi.AccessPoint.1. WIFI.SSID.1.
38 0 WiFi.AccessPoint.2. WIFI.SSID.2.
39 0 WiFi.AccessPoint.3. WIFI.SSID.3.
40 0 WiFi.AccessPoint.4. WIFI.SSID.4.
)";

class InterfaceStack : public RouterTest {
  protected:
    static std::string without_root(const std::string& path) { return path.empty() ? "-" : path.substr(7); }

    // What the handlers answer for every instance, "higher lower" in order.
    Texts instances() {
        const int count = std::stoi(get("InterfaceStackNumberOfEntries").value);
        Texts rows;
        for (int number = 1; number <= count; ++number) rows.push_back(instance(number));
        return rows;
    }
    std::string instance(int number) {
        return without_root(get("InterfaceStack_HigherLayer", {number}).value) + ' ' +
               without_root(get("InterfaceStack_LowerLayer", {number}).value);
    }

    // The rows of kStack whose ids are shown.
    static Texts rows_of(const std::vector<int>& wan_ids) {
        Texts rows;
        std::istringstream lines(kStack);
        for (std::string id, shown, row; lines >> id >> shown && std::getline(lines, row);) {
            const bool is_wan = std::stoi(id) < 12;
            if (is_wan ? ::testing::Value(wan_ids, Contains(std::stoi(id))) : shown == "1")
                rows.push_back(row.substr(1));
        }
        return rows;
    }

    struct WanType {
        const char* name;
        const char* interface;
        std::vector<int> shown;  // ids
    };
    static std::vector<WanType> wan_types() {
        return {
            {"l2tp", "Device.IP.Interface.7.", {1, 4, 10}},   {"pptp", "Device.IP.Interface.6.", {0, 3, 9}},
            {"pppoe", "Device.IP.Interface.5.", {2, 5}},      {"static", "Device.IP.Interface.2.", {11}},
            {"pppoeshare", "Device.IP.Interface.5.", {2, 5}}, {"dhcp", "Device.IP.Interface.2.", {11}}};
    }
};

TEST_F(InterfaceStack, StartsWithItsFixedRows) {
    std::ostringstream rows;
    for (const auto& row : FROM_LIBRARY(intfStacks)) {
        rows << row.id << ' ' << row.shown << ' ' << without_root(row.higher) << ' '
             << without_root(row.lower) << '\n';
    }
    EXPECT_EQ(rows.str(), kStack);
    static_assert(sizeof(cwmp_interface_stack_row) == 8 + 2 * sizeof(char*));
}

TEST_F(InterfaceStack, NamesTheInterfaceOfEachFunction) {
    std::ostringstream rows;
    for (const auto& row : FROM_LIBRARY(appIntf)) {
        rows << row.id << ' ' << (row.path == nullptr ? "WAN" : row.path) << ' ';
        EXPECT_EQ(row.unused, nullptr);
    }
    EXPECT_EQ(rows.str(),
              "41 WAN 42 WAN 43 WAN 44 WAN 45 WAN 46 WAN 47 Device.IP.Interface.2. 48 Device.IP.Interface.3. "
              "49 Device.IP.Interface.4. 50 WAN 51 Device.IP.Interface.1. 52 Device.IP.Interface.1. "
              "53 Device.IP.Interface.8. 7 Device.IP.Interface.3. 8 Device.IP.Interface.4. ");
    store("network.wan.wan_type", "pppoe");
    auto& interface = FROM_LIBRARY(getFuncInterface);
    for (const unsigned id : {41U, 42U, 43U, 44U, 45U, 46U, 50U})
        EXPECT_STREQ(interface(id), "Device.IP.Interface.5.") << id;
    for (const auto& row : FROM_LIBRARY(appIntf)) {
        if (row.path != nullptr) {
            EXPECT_STREQ(interface(static_cast<unsigned>(row.id)), row.path);
        }
    }
    for (const unsigned id : {0U, 6U, 40U, 54U, 99U, 0x80000000U, 0xFFFFFFFFU})
        EXPECT_STREQ(interface(id), "") << id;
}

TEST_F(InterfaceStack, FollowsTheWanType) {
    for (const auto& type : wan_types()) {
        SCOPED_TRACE(type.name);
        store("network.wan.wan_type", type.name);
        EXPECT_STREQ(FROM_LIBRARY(getWanInterface)(), type.interface);
        EXPECT_STREQ(FROM_LIBRARY(getFuncInterface)(45), type.interface);
        EXPECT_EQ(instances(), rows_of(type.shown));
    }
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(InterfaceStack, KeepsItsRowsUnderAnUnknownWanType) {
    store("network.wan.wan_type", "pppoe");
    const Texts rows = instances();
    for (const char* type : {"bridge", "PPPoE", "dhcp ", ""}) {
        SCOPED_TRACE(type);
        store("network.wan.wan_type", type);
        EXPECT_STREQ(FROM_LIBRARY(getWanInterface)(), "");
        EXPECT_STREQ(FROM_LIBRARY(getFuncInterface)(41), "");
        EXPECT_EQ(instances(), rows);
    }
}

TEST_F(InterfaceStack, AnswersTheLowerLayerOfAShownId) {
    auto& lower = FROM_LIBRARY(getLowerLayers);
    EXPECT_STREQ(lower(11), "Device.Ethernet.VLANTermination.1.");
    store("network.wan.wan_type", "pppoe");
    EXPECT_STREQ(lower(11), "Device.Ethernet.VLANTermination.1.") << "the flags were refreshed";
    FROM_LIBRARY(refreshIntfStacks)();
    EXPECT_STREQ(lower(11), "");
    EXPECT_STREQ(lower(5), "Device.Ethernet.VLANTermination.1.");
    EXPECT_STREQ(lower(26), "Device.WIFI.SSID.1.");
    for (const int id : {6, 7, 35, 99, -1}) EXPECT_STREQ(lower(id), "") << id;
    FROM_LIBRARY(setIntfStackFlag)(22, 0);
    EXPECT_STREQ(lower(22),
                 "Device.Bridging.Bridge.1.Port.2.,Device.Bridging.Bridge.1.Port.3.,"
                 "Device.Bridging.Bridge.1.Port.4.,Device.Bridging.Bridge.1.Port.5.,"
                 "Device.Bridging.Bridge.1.Port.6.,Device.Bridging.Bridge.1.Port.7.,"
                 "Device.Bridging.Bridge.1.Port.8.");
    for (const auto& row : FROM_LIBRARY(intfStacks)) EXPECT_TRUE(row.id != 22 || row.shown == 0);
}

TEST_F(InterfaceStack, AnswersNothingBeyondItsRows) {
    store("network.wan.wan_type", "dhcp");
    EXPECT_EQ(get("InterfaceStackNumberOfEntries").value, "23");
    EXPECT_EQ(instance(23), "WIFI.SSID.4. WiFi.Radio.2.");
    expect_answers({{"InterfaceStack_HigherLayer", {24}, ""},
                    {"InterfaceStack_LowerLayer", {0x7FFFFFFF}, ""},
                    {"InterfaceStack_LowerLayer", {-1}, ""}});
    EXPECT_THAT(console(), IsEmpty());
    EXPECT_EQ(get("InterfaceStack_HigherLayer", {0}).code, -1);
    EXPECT_EQ(get("InterfaceStack_LowerLayer", {0, 1}).value, kUntouched);
    EXPECT_THAT(console(), ElementsAre("InterfaceStack_HigherLayer: locate error\n",
                                       "InterfaceStack_LowerLayer: locate error\n"));
}

TEST_F(InterfaceStack, DoesNotRefreshItsRowsWithALayer) {
    EXPECT_EQ(instance(1), "IP.Interface.2. Ethernet.VLANTermination.1.");
    store("network.wan.wan_type", "l2tp");
    EXPECT_EQ(instance(1), "IP.Interface.2. Ethernet.VLANTermination.1.");
    get("InterfaceStackNumberOfEntries");
    EXPECT_EQ(instance(1), "IP.Interface.7. X_QM_L2TP.Interface.1.");
}

TEST_F(InterfaceStack, PrintsTheRowThatItFound) {
    store("network.wan.wan_type", "pppoe");
    get("InterfaceStackNumberOfEntries");
    std::fflush(stdout);
    ::testing::internal::CaptureStdout();
    get("InterfaceStack_HigherLayer", {2});
    get("InterfaceStack_LowerLayer", {99});
    std::fflush(stdout);
    EXPECT_EQ(::testing::internal::GetCapturedStdout(),
              "InterfaceStack_HigherLayer showNum=2, i=5\nInterfaceStack_LowerLayer showNum=24, i=49\n");
}

TEST_F(InterfaceStack, IsReadOnly) {
    expect_read_only(
        {"InterfaceStackNumberOfEntries", "InterfaceStack_HigherLayer", "InterfaceStack_LowerLayer"});
}

}  // namespace
