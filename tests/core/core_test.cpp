// What rows cannot say: what the system log receives, a listener, assertions, and checks against an oracle.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <algorithm>

#include "cwmp/logging.h"
#include "cwmp/value_checks.h"
#include "router_test.h"
#include "rows.h"

namespace {

class Core : public RouterTest {
  protected:
    Core() : system_log_(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {AF_UNIX, "/dev/log"};
        unlink(address.sun_path);
        EXPECT_EQ(bind(system_log_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~Core() override {
        close(system_log_);
        unlink("/dev/log");
    }

    // What a daemon would have received, without the time: "<11>cwmp: cwmp syslog:text".
    Texts logged() const {
        Texts texts;
        char entry[4096];
        for (ssize_t size = 0; (size = recv(system_log_, entry, sizeof entry, 0)) >= 0;) {
            std::string text(entry, static_cast<std::size_t>(size));
            texts.push_back(text.erase(text.find('>') + 1, sizeof "Nov 21 12:00:00 " - 1));
        }
        return texts;
    }

  private:
    int system_log_;
};

TEST_F(Core, TheSystemLogIsOnWithOneOnly) {
    EXPECT_EQ(FROM_LIBRARY(use_syslog), 0);
    for (const auto& [on, severity, entry] :
         {std::tuple{0, 3, ""}, {1, 7, "<15>cwmp: cwmp syslog:event 1\n"}, {2, 3, ""}, {1, 8, ""}}) {
        level(7, on);
        FROM_LIBRARY(log_syslog)(severity, "event %d\n", 1);
        EXPECT_EQ(logged(), *entry != 0 ? Texts{entry} : Texts{}) << on;
    }
}

TEST_F(Core, AMessageIsCutButNotTheCommandAroundIt) {
    FROM_LIBRARY(use_syslog) = 1;
    char start[32];
    std::snprintf(start, sizeof start, "echo \"[%5d] ", getpid());
    for (const std::size_t length : {2046U, 2047U, 2048U, 5000U}) {
        forget();
        const std::string message(length, 'x'), kept(std::min<std::size_t>(length, 2047), 'x');
        FROM_LIBRARY(log_printf)(LOG_ERR, "%s", message.c_str());
        EXPECT_EQ(text_of("/var/log/router/commands"), start + kept + "\" > /dev/console \r\n" + '\0');
        FROM_LIBRARY(log_syslog)(LOG_ERR, "%s", message.c_str());
        EXPECT_THAT(logged(), ElementsAre("<11>cwmp: cwmp syslog:" + kept)) << length;
    }
}

// Whatever a value holds, it is shown and not run; the message is cut before anything is escaped.
TEST_F(Core, BothLogsAreToldAnEventAsItIs) {
    level(3, 1);
    for (const std::string& value :
         {std::string("$(touch /tmp/a)`touch /tmp/a`\";touch /tmp/a;\"\\$HOME"), std::string(3000, '`')}) {
        forget();
        const std::string message = "failed to set invalid mac " + value + "\n";
        EXPECT_EQ(set("DHCPv4_Server_Pool_StaticAddress_Chaddr", {1, 1}, value).code, -1);
        const std::string line = raw_console().substr(sizeof "[12345]");
        const std::string name = line.substr(0, line.find("] ") + 2);
        EXPECT_THAT(name, ::testing::StartsWith("[DHCPv4_Server_Pool_StaticAddress_Chaddr "));
        EXPECT_EQ(line, (name + message).substr(0, 2047) + " \r\n");
        EXPECT_THAT(logged(), ElementsAre("<11>cwmp: cwmp syslog:" + message.substr(0, 2047)));
        EXPECT_FALSE(exists("/tmp/a"));
    }
}

TEST_F(Core, AListenerIsToldEveryEvent) {
    static std::string heard;
    level(-1);
    const auto listen = FROM_LIBRARY(cwmp_listen);
    listen([](int, const char* line) { heard += line; });
    set("LANDevice_WLANConfiguration_X_QM_TransmitPower", {1, 1}, "7");
    listen(nullptr);
    set("LANDevice_WLANConfiguration_X_QM_TransmitPower", {1, 1}, "8");
    EXPECT_THAT(heard, testing::EndsWith("]  txpower value is not valid\n"));
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(Core, ACallThatChangesSomethingEndsABulkRead) {
    world("+nat. | +custom.");
    for (const char* change :
         {"set DeviceInfo_ProvisioningCode = x", "stage IP_Interface_IPv4Address_IPAddress 1.1 = 192.168.1.1",
          "check XMPP_Connection_Password 1 = x", "add NAT_PortMapping", "delete NAT_PortMapping = 1",
          "apply func_obj_revert", "call lan_check", "do libdiagnostics_startTraceRoute",
          "call uciRawSetValue 'custom' 'DeviceInfo' 'ProvisioningCode' 'y'", "call uciRevert 'custom'"}) {
        told("do cwmp_bulk_read_begin");
        told("get DeviceInfo_ModelName");
        told(change);
        EXPECT_THAT(told("get DeviceInfo_ModelName"), HasSubstr("$ fwinfo MODEL")) << change;
    }
}

// Every text of up to count tokens.
void for_each_text(const Texts& tokens, int count, const std::function<void(const std::string&)>& check,
                   const std::string& start = "") {
    check(start);
    for (const auto& token : tokens)
        if (count > 0) for_each_text(tokens, count - 1, check, start + token);
}

// The system writes a number without leading zeros and reads it so.
bool is_canonical(const std::string& text) {
    in_addr address = {};
    return inet_pton(AF_INET, text.c_str(), &address) == 1 && text == inet_ntoa(address);
}

bool is_four_small_numbers(const std::string& text) {
    const Texts parts = rows::split(text + ".", ".");
    return parts.size() == 4 && std::all_of(parts.begin(), parts.end(), [](const std::string& part) {
               return !part.empty() && part.find_first_not_of("0123456789") == part.npos &&
                      std::stol("0" + part.substr(0, 9)) <= 255;
           });
}

TEST_F(Core, AddressesAreAsTheSystemReadsThem) {
    auto& canonical = FROM_LIBRARY(checkValidIP);
    auto& dotted = FROM_LIBRARY(libutil_netChkDotIpAddr);
    const auto check = [&](const std::string& text) {
        ASSERT_EQ(canonical(text.c_str()), is_canonical(text)) << text;
        ASSERT_EQ(dotted(text.c_str()), is_four_small_numbers(text)) << text;
    };
    for_each_text({"0", "1", "255", "256", "01", ".", " "}, 7, check);
    for (const char* end : {"-1", "a", "99999999999", "4294967297", "+1"}) check(std::string("1.2.3.") + end);
}

TEST_F(Core, WhatACallerMustNotPassEndsTheProcess) {
    GTEST_FLAG_SET(death_test_style, "fast");
    for (const auto& [call, assertion] :
         {std::pair{"call libutil_netChkDotIpAddr null", "libutil"},
          {"call libutil_netChkStrMacAddr null", "libutil"},
          {"call libutil_netChkLegalMacAddr null", "libutil"},
          {"call libutil_netChkSameSubnet '1.1.1.1' null '1.1.1.1' null",
           "\\(pStrTestIp != NULL\\) && \\(pStrIp != NULL\\) && \\(pStrMask != NULL\\)"},
          {"text libutil_strncpy null 'x' 4", "\\(dst != NULL\\) && \\(src != NULL\\)"},
          {"text libutil_strncpy ?4 'x' 0", "n > 0"},
          {"call msg_init null", "os_msgLinux: .*pMsgFd != NULL"},
          {"call msg_send ?300 null", "\\(pMsgFd != NULL\\) && \\(pMsgBuff != NULL\\)"}})
        EXPECT_DEATH(told(call), assertion) << call;
}

}  // namespace
