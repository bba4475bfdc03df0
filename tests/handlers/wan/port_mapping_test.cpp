#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

#include <numeric>

#include "cwmp/apply_flags.h"
#include "router_test.h"

namespace {

#define WANIP "WANDevice_WANConnectionDevice_WANIPConnection_PortMapping"
#define WANPPP "WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping"
#define MAPPING "NAT_PortMapping_"

constexpr const char* kParameters[] = {MAPPING "Enable",         MAPPING "Alias",
                                       MAPPING "Interface",      MAPPING "RemoteHost",
                                       MAPPING "ExternalPort",   MAPPING "ExternalPortEndRange",
                                       MAPPING "InternalPort",   MAPPING "Protocol",
                                       MAPPING "InternalClient", MAPPING "Description"};

class PortMapping : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        package("nat",
                "config nat 'nat'\n\n"
                "config rule_dmz '9'\n\toption port_forwarding_id '9'\n\n"
                "config rule_vs '3'\n"
                "\toption port_forwarding_id '3'\n\toption name 'web'\n\toption enable 'on'\n"
                "\toption intf 'wan'\n\toption external_ip '198.51.100.4'\n"
                "\toption external_port '8080-8090'\n\toption internal_port '80'\n"
                "\toption protocol 'UDP'\n\toption ip '25'\n\toption description 'a web server'\n");
        store("network.lan.ipaddr", "192.168.7.1");
        forget();
    }

    std::optional<std::string> stored(const std::string& name) { return option("nat.3." + name); }
    Texts set_events(const char* handler, const std::string& value, int code = -1) {
        forget();
        const Result result = set(handler, {3}, value);
        EXPECT_EQ(result.code, code) << value;
        EXPECT_EQ(result.flags, code == 0 ? 0x80U : 0U);
        Texts events = console();
        std::erase_if(events, [&](const auto& event) { return !event.starts_with(handler); });
        return events;
    }
    std::string store_text() { return text_of("/etc/config/nat").value_or(""); }
};

TEST_F(PortMapping, AnswersInBothDataModels) {
    expect_answers({{MAPPING "Enable", {3}, "1"},
                    {MAPPING "Status", {3}, "Enabled"},
                    {MAPPING "Alias", {3}, "web"},
                    {MAPPING "Interface", {3}, "wan"},
                    {MAPPING "RemoteHost", {3}, "198.51.100.4"},
                    {MAPPING "ExternalPort", {3}, "8080"},
                    {MAPPING "ExternalPortEndRange", {3}, "8090"},
                    {MAPPING "InternalPort", {3}, "80"},
                    {MAPPING "Protocol", {3}, "UDP"},
                    {MAPPING "InternalClient", {3}, "192.168.7.25"},
                    {MAPPING "Description", {3}, "a web server"},
                    {"NAT_PortMappingNumberOfEntries", {}, "1"}});
    for (const std::string object : {WANIP, WANPPP}) {
        const std::pair<const char*, const char*> rows[] = {{"_PortMappingEnabled", "1"},
                                                            {"_PortMappingDescription", "a web server"},
                                                            {"_Alias", "web"},
                                                            {"_RemoteHost", "198.51.100.4"},
                                                            {"_ExternalPort", "8080"},
                                                            {"_ExternalPortEndRange", "8090"},
                                                            {"_InternalPort", "80"},
                                                            {"_PortMappingProtocol", "UDP"},
                                                            {"_InternalClient", "192.168.7.25"},
                                                            {"NumberOfEntries", "1"}};
        for (const auto& [name, value] : rows)
            EXPECT_EQ(get((object + name).c_str(), {3}).value, value) << name;
    }
    expect_stored({{WANIP "_PortMappingEnabled", {3}, "0", "nat.3.enable", "off", CWMP_APPLY_NAT},
                   {WANPPP "_InternalPort", {3}, "81", "nat.3.internal_port", "81", CWMP_APPLY_NAT}});
}

TEST_F(PortMapping, AnswersOfASparseMapping) {
    package("nat", "config rule_vs '3'\n\toption external_port '70'\n\toption enable 'maybe'\n");
    expect_answers({{MAPPING "Enable", {3}, "0"},
                    {MAPPING "Status", {3}, "Error_Misconfigured"},
                    {MAPPING "Alias", {3}, "cpe-3"},
                    {MAPPING "Interface", {3}, ""},
                    {MAPPING "ExternalPort", {3}, "70"},
                    {MAPPING "ExternalPortEndRange", {3}, ""},
                    {MAPPING "InternalClient", {3}, ""}});
    store("nat.3.enable", "off");
    EXPECT_EQ(get(MAPPING "Status", {3}).value, "Disabled");
    store("nat.3.ip", "9");
    for (const char* lan : {"", "garbage", "10.0"}) {
        package("network", "config interface 'lan'\n\toption ipaddr '" + std::string(lan) + "'\n");
        EXPECT_EQ(get(MAPPING "InternalClient", {3}).value, "") << lan;
    }
}

TEST_F(PortMapping, Writes) {
    expect_stored(
        {{MAPPING "Enable", {3}, "0", "nat.3.enable", "off", CWMP_APPLY_NAT},
         {MAPPING "Enable", {3}, "1", "nat.3.enable", "on", CWMP_APPLY_NAT},
         {MAPPING "Alias", {3}, "my web", "nat.3.name", "my web", CWMP_APPLY_NAT},
         {MAPPING "Interface", {3}, "wan.lan", "nat.3.intf", "lan", CWMP_APPLY_NAT},
         {MAPPING "Interface", {3}, "br-wan", "nat.3.intf", "wan", CWMP_APPLY_NAT},
         {MAPPING "RemoteHost", {3}, "192.0.2.1", "nat.3.external_ip", "192.0.2.1", CWMP_APPLY_NAT},
         {MAPPING "InternalPort", {3}, "443", "nat.3.internal_port", "443", CWMP_APPLY_NAT},
         {MAPPING "Protocol", {3}, "TCP", "nat.3.protocol", "TCP", CWMP_APPLY_NAT},
         {MAPPING "InternalClient", {3}, "192.168.7.200", "nat.3.ip", "200", CWMP_APPLY_NAT},
         {MAPPING "Description",
          {3},
          std::string(256, 'd'),
          "nat.3.description",
          std::string(256, 'd'),
          CWMP_APPLY_NAT},
         // The start stays below a stored end, or leaves a single port.
         {MAPPING "ExternalPort", {3}, "8089", "nat.3.external_port", "8089-8090", CWMP_APPLY_NAT},
         {MAPPING "ExternalPortEndRange", {3}, "8089", "nat.3.external_port", "8089-8089", CWMP_APPLY_NAT},
         {MAPPING "ExternalPort", {3}, "8089", "nat.3.external_port", "8089", CWMP_APPLY_NAT},
         {MAPPING "ExternalPort", {3}, "22", "nat.3.external_port", "22", CWMP_APPLY_NAT},
         {MAPPING "ExternalPortEndRange", {3}, "30", "nat.3.external_port", "22-30", CWMP_APPLY_NAT}});
}

TEST_F(PortMapping, RefusedValuesLeaveTheStoreAlone) {
    const std::string before = store_text();
    const std::string format = "the format of ip is wrong \n";
    const std::string subnet = "the InternalClient'subnet is not same as lan_ip\n\n";
    struct Row {
        const char* handler;
        std::string value;
        const char* event;
    };
    const Row rows[] = {
        {MAPPING "Enable", "true", nullptr},
        {MAPPING "Enable", "", nullptr},
        {MAPPING "Interface", "WAN", nullptr},
        {MAPPING "RemoteHost", "192.0.2.01", format.c_str()},
        {MAPPING "RemoteHost", "$(reboot)", format.c_str()},
        {MAPPING "ExternalPortEndRange", "8079", nullptr},
        {MAPPING "Protocol", "tcp", nullptr},
        {MAPPING "Protocol", "all", nullptr},
        {MAPPING "InternalClient", "192.168.7", format.c_str()},
        {MAPPING "InternalClient", "192.168.8.20", subnet.c_str()},
        {MAPPING "Description", std::string(257, 'd'), " the length of description is too long \n\n"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.handler);
        const Texts events = set_events(row.handler, row.value);
        if (row.event == nullptr) {
            EXPECT_THAT(events, IsEmpty());
        } else {
            EXPECT_THAT(events, ElementsAre(std::string(row.handler) + ": " + row.event));
        }
    }
    EXPECT_EQ(store_text(), before);
    package("network", "");
    EXPECT_EQ(set(MAPPING "InternalClient", {3}, "192.168.7.9").code, -1);
    EXPECT_THAT(set_events(MAPPING "Interface", "lan", 0),
                ElementsAre(MAPPING "Interface:  NAT_PortMapping_Interface  \n\n"));
}

TEST_F(PortMapping, InstancesOutsideTheTable) {
    const std::string before = store_text();
    level(7);
    for (const char* handler : kParameters) {
        for (const auto& [number, event] : {std::pair(65, " nat portmapping rule num exceeds \n\n"),
                                            {INT_MAX, " nat portmapping rule num exceeds \n\n"},
                                            {0, " Index is error\n"},
                                            {-1, " Index is error\n"},
                                            {9, " Index is error\n"},
                                            {64, " Index is error\n"}}) {
            SCOPED_TRACE(handler);
            forget();
            EXPECT_EQ(get(handler, {number}).code, -1);
            EXPECT_EQ(set(handler, {number}, "1").code, -1);
            const std::string line = std::string(handler) + ": " + event;
            EXPECT_THAT(console(), ElementsAre(line, line));
        }
    }
    EXPECT_EQ(store_text(), before);
    package("nat", "config rule_vs '3'\n");  // without its number
    EXPECT_EQ(set(MAPPING "Alias", {3}, "x").code, -1);
    EXPECT_EQ(get(MAPPING "Status", {65}).code, -1);
}

TEST_F(PortMapping, AddsWithDefaultsAtTheLowestFreeNumber) {
    for (const char* object : {WANIP, WANPPP, "NAT_PortMapping"}) {
        const Result result = add_instance(object);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.flags, CWMP_APPLY_NAT);
    }
    EXPECT_THAT(list_instances("NAT_PortMapping"), ::testing::Optional(ElementsAre(1, 2, 3, 4)));
    EXPECT_EQ(option("nat.nat.PortMappingNumberOfEntries"), "3");
    EXPECT_EQ(section_type("nat.2"), "rule_vs");
    const std::pair<const char*, const char*> defaults[] = {{"port_forwarding_id", "2"},
                                                            {"intf", "lan"},
                                                            {"protocol", "all"},
                                                            {"service_type", "custom"},
                                                            {"internal_port", "65531"},
                                                            {"external_port", "65531"},
                                                            {"ip", "253"},
                                                            {"enable", "off"},
                                                            {"name", "cpe-2"}};
    for (const auto& [name, value] : defaults) EXPECT_EQ(option(std::string("nat.2.") + name), value) << name;

    EXPECT_EQ(get("NAT_PortMappingNumberOfEntries").value, "4");
    EXPECT_EQ(option("nat.nat.PortMappingNumberOfEntries"), "4");
    const Result result = delete_instance(WANPPP, {1, 1, 1}, "2");
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.flags, CWMP_APPLY_NAT);
    EXPECT_EQ(section_type("nat.2"), std::nullopt);
    EXPECT_EQ(option("nat.nat.PortMappingNumberOfEntries"), "3");
    EXPECT_EQ(add_instance("NAT_PortMapping").value, "2");

    package("nat", "config rule_vs '1'\n");  // never counted
    EXPECT_EQ(delete_instance("NAT_PortMapping", {}, "1").code, 0);
    EXPECT_EQ(option("nat.nat.PortMappingNumberOfEntries"), "0");
}

TEST_F(PortMapping, NoMoreThan64) {
    std::string mappings;
    for (int number = 1; number <= 63; ++number) {
        if (number == 40) continue;
        const std::string name = std::to_string(number);
        mappings += "config rule_vs '" + name + "'\n\toption port_forwarding_id '" + name + "'\n";
    }
    package("nat", mappings);
    EXPECT_EQ(add_instance("NAT_PortMapping").value, "40");
    EXPECT_EQ(add_instance("NAT_PortMapping").value, "64");
    const std::string before = store_text();
    forget();
    const Result result = add_instance("NAT_PortMapping");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.value, kUntouched);
    EXPECT_EQ(result.flags, 0U);
    EXPECT_THAT(console(), ElementsAre(WANIP ":  nat portmapping rule num exceeds \n\n"));
    EXPECT_EQ(store_text(), before);

    std::vector<uint32_t> all(64);
    std::iota(all.begin(), all.end(), 1U);
    EXPECT_EQ(list_instances("NAT_PortMapping", {}, 100), all);
    all.resize(10);
    EXPECT_EQ(list_instances(WANIP, {}, 10), all);
    EXPECT_EQ(set(MAPPING "Alias", {64}, "last").code, 0);
}

TEST_F(PortMapping, ObjectCallsThatFail) {
    level(7);
    const std::string before = store_text();
    EXPECT_EQ(add_instance("NAT_PortMapping", {1}).code, 9005);
    EXPECT_THAT(console(), ElementsAre(WANIP ": can't set Device.NATPortmapping with exact locate\n\n"));
    forget();
    for (const char* number : {"", "0", "-3", "1", "9", "x", "nat"}) {
        const Result result = delete_instance("NAT_PortMapping", {}, number);
        EXPECT_EQ(result.code, 1) << number;
        EXPECT_EQ(result.flags, 0U);
    }
    EXPECT_THAT(console(),
                ::testing::AllOf(::testing::SizeIs(7), ::testing::Each(WANIP ":  Index is error\n")));
    EXPECT_EQ(delete_instance("NAT_PortMapping", {}, "65").code, 1);
    forget();
    for (const int op : {0, 1, 7}) EXPECT_EQ(set("NAT_PortMapping", {}, "3", op).code, 1);
    EXPECT_THAT(console(), ElementsAre(WANIP ": unkown optFlag 0\n", WANIP ": unkown optFlag 1\n",
                                       WANIP ": unkown optFlag 7\n"));
    EXPECT_EQ(store_text(), before);
    ::unlink("/etc/config/nat");
    ::mkdir("/etc/config/nat", 0755);  // a package that cannot be loaded
    forget();
    EXPECT_EQ(add_instance("NAT_PortMapping").code, 1);
    EXPECT_THAT(console(), Contains(WANIP ": Add section error\n\n"));
    ::rmdir("/etc/config/nat");
}

TEST_F(PortMapping, SectionsWithoutNumberOrOfAnotherTypeAreNeitherListedNorOverwritten) {
    package("nat",
            "config rule_vs '1'\n\toption name 'mine'\n\n"
            "config rule_vs '2'\n\toption port_forwarding_id '2'\n\n"
            "config rule_dmz '4'\n");
    EXPECT_THAT(list_instances("NAT_PortMapping"), ::testing::Optional(ElementsAre(2)));
    EXPECT_EQ(add_instance("NAT_PortMapping").value, "3");
    EXPECT_EQ(add_instance("NAT_PortMapping").value, "5");
    EXPECT_EQ(option("nat.1.name"), "mine");
    EXPECT_EQ(section_type("nat.4"), "rule_dmz");
}

// A table that somebody writes between two looks has another size in the second.
TEST_F(PortMapping, AListIsOneLookAtThePackage) {
    const int watch = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
    ASSERT_GE(inotify_add_watch(watch, "/etc/config/nat", IN_OPEN | IN_CLOSE), 0);
    EXPECT_THAT(list_instances("NAT_PortMapping"), ::testing::Optional(ElementsAre(3)));
    alignas(inotify_event) char events[1024];
    EXPECT_EQ(::read(watch, events, sizeof events), ssize_t{2 * sizeof(inotify_event)});
    ::close(watch);
}

TEST_F(PortMapping, ReadOnly) { expect_read_only({MAPPING "Status", "NAT_PortMappingNumberOfEntries"}); }

}  // namespace
