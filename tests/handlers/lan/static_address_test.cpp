// Reserved addresses of the DHCP server: object and parameters.
#include <unistd.h>

#include <climits>

#include "lan_test.h"

namespace {

#define STATIC "DHCPv4_Server_Pool_StaticAddress"

std::string section(int number, const std::string& mac, const std::string& host, const std::string& enable) {
    const std::string name = std::to_string(number);
    return "config reservation '" + name + "'\n\toption interface lan\n\toption enable '" + enable +
           "'\n\toption mac '" + mac + "'\n\toption ip '" + host + "'\n";
}

class StaticAddress : public LanTest {
  protected:
    void SetUp() override {
        LanTest::SetUp();
        lan("192.168.0.1", "255.255.255.0");
        package("dhcp_reservation", "");
    }

    static void lan(const std::string& address, const std::string& mask) {
        store("network.lan.ipaddr", address);
        store("network.lan.netmask", mask);
    }
    static void entries(const std::string& sections) { package("dhcp_reservation", sections); }
    static std::optional<std::string> stored(const std::string& place) {
        return option("dhcp_reservation." + place);
    }
    void expect_refused(const char* name, int number, const std::string& value, const Texts& events) {
        SCOPED_TRACE(value);
        forget();
        const auto before = text_of("/etc/config/dhcp_reservation");
        const auto result = set(name, {1, number}, value);
        EXPECT_EQ(result.code, -1);
        EXPECT_EQ(result.flags, 0);
        EXPECT_EQ(events_of(name), events);
        EXPECT_EQ(text_of("/etc/config/dhcp_reservation"), before);
    }
};

constexpr const char* kNoMac = "00:00:00:00:00:00";
constexpr const char* kMac = "AA:BB:CC:DD:EE:01";

TEST_F(StaticAddress, ANewEntryTakesTheLowestNumberAndIsUnset) {
    entries(section(3, kMac, "5", "on") + section(1, kNoMac, "0.0.0.0", "off"));
    const auto added = add_instance(STATIC, {1});
    EXPECT_EQ(added.code, 0);
    EXPECT_EQ(added.value, "2");
    EXPECT_EQ(added.flags, 0);
    EXPECT_EQ(section_type("dhcp_reservation.2"), "reservation");
    EXPECT_EQ(stored("2.interface"), "lan");
    EXPECT_EQ(stored("2.enable"), "off");
    EXPECT_EQ(stored("2.mac"), kNoMac);
    EXPECT_EQ(stored("2.ip"), "0.0.0.0");
    expect_answers({{STATIC "_Enable", {1, 2}, "0"},
                    {STATIC "_Chaddr", {1, 2}, ""},
                    {STATIC "_Yiaddr", {1, 2}, ""},
                    {STATIC "_Enable", {1, 3}, "1"},
                    {STATIC "NumberOfEntries", {1}, "3"}});
    EXPECT_EQ(add_instance(STATIC, {1}).value, "4");
    EXPECT_THAT(list_instances(STATIC, {1}), ::testing::Optional(ElementsAre(1, 2, 3, 4)));
}

TEST_F(StaticAddress, TheProfileLimitsTheirNumber) {
    for (const auto& [limit, most] : std::vector<std::pair<const char*, int>>{
             {"2", 2}, {"64", 64}, {"0", 64}, {"65", 64}, {"-1", 64}, {"", 64}}) {
        SCOPED_TRACE(limit);
        profile("dhcps.max_rsvd_host", limit);
        std::string sections;
        for (int number = 1; number < most; ++number) sections += section(number, kNoMac, "0.0.0.0", "off");
        entries(sections);
        EXPECT_EQ(add_instance(STATIC, {1}).value, std::to_string(most));
        forget();
        const auto refused = add_instance(STATIC, {1});
        EXPECT_EQ(refused.code, 1);
        EXPECT_EQ(refused.value, kUntouched);
        EXPECT_THAT(events_of(STATIC), ElementsAre("failed to add obj, reach max instance number\n"));
        EXPECT_EQ(list_instances(STATIC, {1}, 64)->size(), static_cast<std::size_t>(most));
    }
}

TEST_F(StaticAddress, AnInvalidSectionStopsTheObject) {
    profile("dhcps.max_rsvd_host", "7");
    for (const auto& [name, event] : std::vector<std::pair<std::string, std::string>>{
             {"0", "failed to handle unknown section -1\n"},
             {"65", "failed to handle unknown section 64\n"},
             {"8", "failed to handle unknown section 7\n"},
             {"printer", "failed to handle unknown section -1\n"}}) {
        SCOPED_TRACE(name);
        entries("config reservation '" + name + "'\nconfig other 'x'\n");
        forget();
        EXPECT_EQ(add_instance(STATIC, {1}).code, 1);
        EXPECT_EQ(delete_instance(STATIC, {1}, "1").code, 1);
        EXPECT_EQ(list_instances(STATIC, {1}), std::nullopt);
        EXPECT_THAT(events_of(STATIC),
                    ElementsAre(event, "failed to get instance mask\n", event, "failed to del obj\n", event));
    }
    unlink("/etc/config/dhcp_reservation");
    forget();
    EXPECT_EQ(list_instances(STATIC, {1}), std::nullopt);
    EXPECT_EQ(set(STATIC, {1}, "1", CWMP_OP_APPLY).code, 1);
    EXPECT_THAT(events_of(STATIC), ElementsAre("failed to uci_load\n", "unkown optFlag 1\n"));
    EXPECT_EQ(get(STATIC "NumberOfEntries", {1}).value, "0");
}

TEST_F(StaticAddress, ListingStopsAtTheCapacityWithAWarning) {
    entries(section(9, kMac, "5", "on") + section(2, kMac, "6", "on") + section(4, kMac, "7", "on"));
    level(4);
    forget();
    EXPECT_THAT(list_instances(STATIC, {1}, 4), ::testing::Optional(ElementsAre(2, 4, 9)));
    EXPECT_THAT(events_of(STATIC), IsEmpty());
    EXPECT_THAT(list_instances(STATIC, {1}, 3), ::testing::Optional(ElementsAre(2, 4, 9)));
    EXPECT_THAT(list_instances(STATIC, {1}, 2), ::testing::Optional(ElementsAre(2, 4)));
    EXPECT_THAT(events_of(STATIC), ElementsAre("maybe buffer overflow src len 64 dst len 3\n",
                                               "maybe buffer overflow src len 64 dst len 2\n"));
}

TEST_F(StaticAddress, DeletingRaisesTheFlagForAnEnabledEntry) {
    entries(section(1, kNoMac, "0.0.0.0", "on") + section(2, kMac, "5", "off") + "config reservation '3'\n");
    EXPECT_EQ(delete_instance(STATIC, {1}, "1").flags, 4);
    EXPECT_EQ(delete_instance(STATIC, {1}, "2").flags, 0);
    EXPECT_EQ(section_type("dhcp_reservation.1"), std::nullopt);
    EXPECT_EQ(section_type("dhcp_reservation.2"), std::nullopt);
    forget();
    for (const char* number : {"0", "65", "2", "-1", "x", "2147483647", "3"}) {
        EXPECT_EQ(delete_instance(STATIC, {1}, number).code, 1) << number;
    }
    EXPECT_THAT(events_of(STATIC),
                ElementsAre("failed to del instance 0\n", "failed to del instance 65\n",
                            "failed to del instance 2\n", "failed to del instance -1\n",
                            "failed to del instance 0\n", "failed to del instance 2147483647\n",
                            "failed to get section 3 option enable\n\n", "failed to del obj\n"));
    EXPECT_EQ(section_type("dhcp_reservation.3"), "reservation");
}

// Every combination of what an entry has, and the flag that each parameter raises on it.
TEST_F(StaticAddress, OnlyAChangeThatTakesEffectRaisesTheFlag) {
    const struct {
        const char* mac;
        const char* host;
        const char* enable;
        unsigned chaddr, yiaddr, enabling, disabling;
    } rows[] = {
        {kMac, "5", "on", 4, 4, 4, 4},   {kMac, "5", "off", 0, 0, 4, 4},
        {kMac, "5", "yes", 4, 4, 4, 4},  {kMac, "0.0.0.0", "on", 0, 4, 0, 0},
        {kNoMac, "5", "on", 4, 0, 0, 0}, {kNoMac, "0.0.0.0", "on", 0, 0, 0, 0},
    };
    for (const auto& row : rows) {
        const std::string entry = section(2, row.mac, row.host, row.enable);
        SCOPED_TRACE(entry);
        const auto flag = [&](const char* name, const char* value, const char* place, const char* expected) {
            entries(entry);
            const auto result = set(name, {1, 2}, value);
            EXPECT_EQ(result.code, 0);
            EXPECT_EQ(stored(place), expected);
            return result.flags;
        };
        EXPECT_EQ(flag(STATIC "_Chaddr", "aa:bb:cc:dd:ee:ff", "2.mac", "AA:BB:CC:DD:EE:FF"), row.chaddr);
        EXPECT_EQ(flag(STATIC "_Yiaddr", "192.168.0.100", "2.ip", "100"), row.yiaddr);
        EXPECT_EQ(flag(STATIC "_Enable", "1", "2.enable", "on"), row.enabling);
        EXPECT_EQ(flag(STATIC "_Enable", "true", "2.enable", "off"), row.disabling);
    }
}

TEST_F(StaticAddress, RefusesBadAndTakenMacs) {
    entries(section(1, "aa:bb:cc:dd:ee:01", "5", "on") + section(2, "AA:BB:CC:DD:EE:02", "6", "on") +
            "config other '3'\n\toption mac 'AA:BB:CC:DD:EE:03'\n");
    for (const std::string mac : {"", "aa-bb-cc-dd-ee-05", "01:00:5e:00:00:01", kNoMac, "aa:bb:cc:dd:ee:0"}) {
        expect_refused(STATIC "_Chaddr", 2, mac, {"failed to set invalid mac " + mac + "\n"});
    }
    expect_refused(
        STATIC "_Chaddr", 2, "Aa:bb:cc:dd:ee:01",
        {"failed, mac AA:BB:CC:DD:EE:01 is already in section 1\n", "failed, mac is already existed\n"});
    forget();
    EXPECT_EQ(set(STATIC "_Chaddr", {1, 2}, "aa:bb:cc:dd:ee:02").flags, 0);
    EXPECT_THAT(events_of(STATIC "_Chaddr"), ElementsAre("option mac already set\n"));
    expect_refused(
        STATIC "_Chaddr", 2, "aa:bb:cc:dd:ee:03",
        {"failed, mac AA:BB:CC:DD:EE:03 is already in section 3\n", "failed, mac is already existed\n"});
    entries(section(1, kMac, "5", "on") + "config reservation '2'\n");
    expect_refused(STATIC "_Chaddr", 1, "aa:bb:cc:dd:ee:05",
                   {"failed to find option mac in section 2\n", "failed, mac is already existed\n"});
    expect_refused(STATIC "_Chaddr", 2, "aa:bb:cc:dd:ee:05", {"failed to get option mac from section 2\n"});
}

TEST_F(StaticAddress, RefusesBadForeignAndTakenAddresses) {
    entries(section(1, kMac, "5", "on") + section(2, kMac, "6", "on"));
    for (const std::string address : {"", "127.0.0.1", "224.0.0.1", "192.168.0.010", "192.168.0.7 ", "a"}) {
        expect_refused(STATIC "_Yiaddr", 2, address, {"failed to set invalid ip " + address + "\n"});
    }
    for (const std::string address : {"192.168.0.1", "192.168.1.7", "192.168.0.255", "192.168.0.0"}) {
        expect_refused(STATIC "_Yiaddr", 2, address,
                       {"faild, " + address + " is not in lan 192.168.0.1 mask 255.255.255.0 subnet\n"});
    }
    expect_refused(STATIC "_Yiaddr", 2, "192.168.0.5",
                   {"failed, ip 192.168.0.5 is already in section 1\n", "failed, ip is already existed\n"});
    forget();
    EXPECT_EQ(set(STATIC "_Yiaddr", {1, 2}, "192.168.0.6").flags, 0);
    EXPECT_THAT(events_of(STATIC "_Yiaddr"), ElementsAre("option ip already set\n"));
    expect_refused(STATIC "_Yiaddr", 3, "192.168.0.9", {"failed to get option ip from section 3\n"});
    package("network", "config interface lan\n\toption ipaddr 192.168.0.1\n");
    expect_refused(STATIC "_Yiaddr", 2, "192.168.0.9", {"failed to get lan mask\n"});
    package("network", "config interface lan\n");
    expect_refused(STATIC "_Yiaddr", 2, "192.168.0.9", {"failed to get lan ip\n"});
    EXPECT_EQ(get(STATIC "_Yiaddr", {1, 2}).code, -1);
}

TEST_F(StaticAddress, TheHostPartFollowsTheLan) {
    const struct {
        const char* lan;
        const char* mask;
        const char* address;
        const char* host;
        const char* moved_to;
        const char* moved;
    } rows[] = {
        {"192.168.0.1", "255.255.255.0", "192.168.0.100", "100", "10.0.0.1", "10.0.0.100"},
        {"192.168.1.1", "255.255.0.0", "192.168.9.5", "9.5", "172.16.0.1", "172.16.9.5"},
        {"10.0.0.1", "255.0.0.0", "10.0.3.4", "0.3.4", "11.9.9.9", "11.0.3.4"},
        {"192.168.0.1", "255.255.255.192", "192.168.0.42", "42", "192.168.0.129", "192.168.0.170"},
        {"192.168.0.1", "255.255.254.0", "192.168.1.7", "1.7", "192.168.4.1", "192.168.5.7"},
        {"10.1.2.1", "255.0.255.0", "10.1.2.7", "1.0.7", "10.0.3.1", "10.1.3.7"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.address);
        lan(row.lan, row.mask);
        entries(section(1, kMac, "0.0.0.0", "on"));
        EXPECT_EQ(set(STATIC "_Yiaddr", {1, 1}, row.address).code, 0);
        EXPECT_EQ(stored("1.ip"), row.host);
        EXPECT_EQ(get(STATIC "_Yiaddr", {1, 1}).value, row.address);
        lan(row.moved_to, row.mask);
        EXPECT_EQ(get(STATIC "_Yiaddr", {1, 1}).value, row.moved);
    }
    lan("10.0.0.1", "255.0.0.0");
    entries(section(1, kMac, "999.-1.garbage.7.7.7.7", "on"));
    EXPECT_EQ(get(STATIC "_Yiaddr", {1, 1}).code, 0);
}

TEST_F(StaticAddress, AnEntryThatIsNotThereIsRefused) {
    entries("config reservation '1'\n" + section(2, kMac, "5", "on") +
            "config other '4'\n\toption mac 'AA:BB:CC:DD:EE:04'\n\toption ip '7'\n");
    for (const int number : {0, 3, 4, -1, INT_MAX}) {
        const std::string name = std::to_string(number);
        for (const char* parameter : {STATIC "_Enable", STATIC "_Chaddr", STATIC "_Yiaddr"}) {
            EXPECT_EQ(get(parameter, {1, number}).code, -1) << parameter << number;
            EXPECT_EQ(set_null(parameter, {1, number}), -1);
        }
        expect_refused(STATIC "_Enable", number, "1",
                       {"failed to get option mac from section " + name + "\n"});
    }
    // A section without the options is an entry with nothing set.
    expect_answers(
        {{STATIC "_Enable", {1, 1}, "0"}, {STATIC "_Chaddr", {1, 1}, ""}, {STATIC "_Yiaddr", {1, 1}, ""}});
    entries("config reservation '1'\n\toption mac 'AA:BB:CC:DD:EE:01'\n");
    expect_refused(STATIC "_Enable", 1, "1", {"failed to get option ip from section 1\n"});
    forget();
    EXPECT_EQ(set(STATIC "_Chaddr", {1, 1}, "aa:bb:cc:dd:ee:09").code, -1);
    EXPECT_THAT(events_of(STATIC "_Chaddr"), ElementsAre("failed to get option ip from section 1\n"));
    EXPECT_EQ(stored("1.mac"), "AA:BB:CC:DD:EE:09");
    entries("config reservation '1'\n\toption ip '5'\n\toption mac 'AA:BB:CC:DD:EE:01'\n");
    forget();
    EXPECT_EQ(set(STATIC "_Yiaddr", {1, 1}, "192.168.0.9").code, -1);
    EXPECT_THAT(events_of(STATIC "_Yiaddr"), ElementsAre("failed to get option enable from section 1\n"));
    EXPECT_EQ(stored("1.ip"), "9");
}

TEST_F(StaticAddress, AnyTextIsRefusedWhole) {
    entries(section(1, kMac, "5", "on"));
    for (const std::string& text :
         {std::string(65536, '1'), std::string("%s%n%n"), std::string("\xff\x80;'|")}) {
        EXPECT_EQ(set(STATIC "_Chaddr", {1, 1}, text).code, -1);
        EXPECT_EQ(set(STATIC "_Yiaddr", {1, 1}, text).code, -1);
    }
    EXPECT_EQ(stored("1.mac"), kMac);
    EXPECT_EQ(stored("1.ip"), "5");
}

TEST_F(StaticAddress, ARefusedValueRunsNothingOnTheConsole) {
    entries(section(1, kMac, "5", "on"));
    const std::string command = "\"$(touch /tmp/owned)`touch /tmp/owned`";
    expect_refused(STATIC "_Chaddr", 1, command, {"failed to set invalid mac " + command + "\n"});
    expect_refused(STATIC "_Yiaddr", 1, command, {"failed to set invalid ip " + command + "\n"});
    EXPECT_NE(access("/tmp/owned", F_OK), 0);
}

}  // namespace
