#include "cwmp/routing.h"

#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

#define FORWARDING "Routing_Router_IPv4Forwarding_"

class Routing : public RouterTest {
  protected:
    static void wan(const std::string& type, const std::string& proto) {
        store("network.wan.wan_type", type);
        store("network.wan.proto", proto);
    }
    // One record as "destination mask gateway interface origin".
    std::string route(int number) {
        std::string text;
        for (const char* name :
             {FORWARDING "DestIPAddress", FORWARDING "DestSubnetMask", FORWARDING "GatewayIPAddress",
              FORWARDING "Interface", FORWARDING "Origin"}) {
            const Result result = get(name, {1, number});
            EXPECT_EQ(result.code, 0);
            text += (text.empty() ? "" : " ") + result.value;
        }
        return text;
    }
    void rebuild() { FROM_LIBRARY(routelist)[1].destination[0] = '\0'; }
};

TEST_F(Routing, FixedAnswers) {
    expect_answers({{"Routing_RouterNumberOfEntries", {}, "1"},
                    {"Routing_Router_Enable", {1}, "1"},
                    {"Routing_Router_Status", {1}, "Enabled"},
                    {FORWARDING "Enable", {1, 1}, "1"},
                    {FORWARDING "Status", {1, 1}, "Enabled"},
                    {FORWARDING "StaticRoute", {1, 1}, "0"}});
    expect_read_only({"Routing_RouterNumberOfEntries", "Routing_Router_Enable", "Routing_Router_Status",
                      "Routing_Router_IPv4ForwardingNumberOfEntries", FORWARDING "Enable",
                      FORWARDING "Status", FORWARDING "StaticRoute", FORWARDING "DestIPAddress",
                      FORWARDING "DestSubnetMask", FORWARDING "GatewayIPAddress", FORWARDING "Interface",
                      FORWARDING "Origin"});
}

TEST_F(Routing, EveryKindOfLine) {
    wan("pppoe", "pppoe");
    answer("ip route",
           "default via 192.0.2.1 dev br-wan \n"
           "192.0.2.0/25 dev br-wan scope link \n"
           "192.168.0.0/24 dev br-lan scope link \n"
           "default via 203.0.113.1 dev pppoe-internet \n"
           "203.0.113.1 dev pppoe-internet scope link \n"
           "198.51.100.0/0 dev br-mg \n"
           "198.51.100.9 dev br-mg \n"
           "default \n"
           "1111111111111111111111111111/33 dev br-mg\n");
    EXPECT_EQ(route(1), "0.0.0.0 0.0.0.0 192.0.2.1 Device.IP.Interface.2. Static");
    EXPECT_EQ(route(2), "192.0.2.0 255.255.255.128 192.0.2.0/25 Device.IP.Interface.2. Static");
    EXPECT_EQ(route(3), "192.168.0.0 255.255.255.0 192.168.0.0/24 Device.IP.Interface.1. Static");
    EXPECT_EQ(route(4), "0.0.0.0 0.0.0.0 203.0.113.1 Device.IP.Interface.5. Static");
    EXPECT_EQ(route(5), "203.0.113.1 255.255.255.255 203.0.113.1 Device.IP.Interface.5. IPCP");
    EXPECT_EQ(route(6), "198.51.100.0 255.255.255.255 198.51.100.0/0 Device.IP.Interface.2. DHCPv4");
    EXPECT_EQ(route(7), "198.51.100.9 255.255.255.255 198.51.100.9 Device.IP.Interface.2. IPCP");
    EXPECT_EQ(route(8), "0.0.0.0 0.0.0.0  Device.IP.Interface.2. Static");
    const std::string ones(19, '1');
    EXPECT_EQ(route(9), ones + " 128.0.0.0 " + ones + " Device.IP.Interface.2. DHCPv4");
    for (const int number : {10, 32, 33, 0, -1, INT_MAX, INT_MIN}) EXPECT_EQ(route(number), "") << number;
}

TEST_F(Routing, TheWanTypeNamesTheInterfaceOfTheBridge) {
    answer("ip route", "default via 192.0.2.1 dev br-wan\n");
    struct Row {
        const char* type;
        const char* proto;
        const char* route;
    };
    const Row rows[] = {{"dhcp", "dhcp", "Device.IP.Interface.2. DHCPv4"},
                        {"static", "static", "Device.IP.Interface.2. Static"},
                        {"pptp", "dhcp", "Device.IP.Interface.3. DHCPv4"},
                        {"l2tp", "l2tp", "Device.IP.Interface.4. Static"}};
    for (const Row& row : rows) {
        wan(row.type, row.proto);
        rebuild();
        EXPECT_EQ(route(1), std::string("0.0.0.0 0.0.0.0 192.0.2.1 ") + row.route);
    }
}

TEST_F(Routing, TheTableIsBuiltOnceTheCountIsLive) {
    wan("dhcp", "dhcp");
    std::string lines;
    for (int i = 1; i <= 40; ++i) lines += "10.0." + std::to_string(i) + ".0/24 dev br-lan\n";
    answer("ip route", lines);
    EXPECT_EQ(get("Routing_Router_IPv4ForwardingNumberOfEntries").value, "32");
    EXPECT_EQ(get(FORWARDING "DestIPAddress", {1, 32}).value, "10.0.32.0");
    answer("ip route", "default via 192.0.2.1 dev br-wan\n");
    EXPECT_EQ(get("Routing_Router_IPv4ForwardingNumberOfEntries").value, "1");
    EXPECT_EQ(get(FORWARDING "DestIPAddress", {1, 1}).value, "10.0.1.0");
    EXPECT_STREQ(FROM_LIBRARY(routelist)[0].destination, "");
    rebuild();
    EXPECT_EQ(get(FORWARDING "DestIPAddress", {1, 1}).value, "0.0.0.0");
    EXPECT_EQ(get(FORWARDING "DestIPAddress", {1, 2}).value, "");
    forget();
    EXPECT_EQ(FROM_LIBRARY(genroutelist)(), 0);
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(Routing, WithoutSourcesTheTableStaysEmpty) {
    answer("ip route", "default via 192.0.2.1 dev br-wan\n");
    EXPECT_EQ(FROM_LIBRARY(genroutelist)(), -1);
    EXPECT_EQ(route(1), "");
    store("network.wan.wan_type", "dhcp");
    EXPECT_EQ(FROM_LIBRARY(genroutelist)(), -1);
    store("network.wan.proto", "dhcp");
    for (const std::string& output : {std::string(), std::string("\n \n"), std::string(100000, 'x')}) {
        answer("ip route", output);
        EXPECT_EQ(FROM_LIBRARY(genroutelist)(), 0);
        rebuild();
    }
    forget();
    const NoFreeDescriptor none;
    EXPECT_EQ(get("Routing_Router_IPv4ForwardingNumberOfEntries").code, -1);
    EXPECT_THAT(console(),
                ElementsAre("Routing_Router_IPv4ForwardingNumberOfEntries: Failed to get status\n"));
}

TEST_F(Routing, AnAccessPointAnswersItsOneGateway) {
    constexpr const char* kGateway = FORWARDING "GatewayIPAddress";
    wan("dhcp", "dhcp");
    answer("ip route", "192.168.0.0/24 dev br-lan\n");
    answer("ip route show table main", "192.168.0.0/24 dev br-lan\ndefault via 192.168.0.254 dev br-lan\n");
    store("sysmode.sysmode.mode", "Router");
    EXPECT_EQ(get(kGateway, {1, 1}).value, "192.168.0.0/24");
    store("sysmode.sysmode.mode", "AP");
    forget();
    EXPECT_EQ(get(kGateway, {1, 1}).value, "192.168.0.254");
    EXPECT_EQ(get(kGateway, {1, 9}).value, "192.168.0.254");
    EXPECT_EQ(commands().front(), "ip route show table main | grep default | awk {'print $3'}");
    answer("ip route show table main", "default dev ppp0 scope link\n");
    EXPECT_EQ(get(kGateway, {1, 1}).value, "192.168.0.0/24");
}

}  // namespace
