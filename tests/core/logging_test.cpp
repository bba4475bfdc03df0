#include "cwmp/logging.h"

#include <sys/socket.h>
#include <sys/un.h>
#include <syslog.h>
#include <unistd.h>

#include <cstdio>

#include "cwmp/last_refusal.h"
#include "cwmp/staged_objects.h"
#include "router_test.h"

namespace {

// What a system-log daemon would receive.
class SystemLog {
  public:
    SystemLog() : socket_(socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0)) {
        sockaddr_un address = {AF_UNIX, "/dev/log"};
        unlink(address.sun_path);
        EXPECT_EQ(bind(socket_, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    }
    ~SystemLog() {
        close(socket_);
        unlink("/dev/log");
    }
    SystemLog(const SystemLog&) = delete;
    SystemLog& operator=(const SystemLog&) = delete;

    // Entries without their time: "<11>cwmp: cwmp syslog:text".
    Texts entries() const {
        Texts texts;
        char entry[4096];
        for (ssize_t size = 0; (size = recv(socket_, entry, sizeof entry, 0)) >= 0;) {
            std::string text(entry, static_cast<std::size_t>(size));
            texts.push_back(text.erase(text.find('>') + 1, sizeof "Nov 21 12:00:00 " - 1));
        }
        return texts;
    }

  private:
    int socket_;
};

class Logging : public RouterTest {
  protected:
    static std::string console_command(const std::string& message) {
        char process[32];
        std::snprintf(process, sizeof process, "[%5d] ", getpid());
        return "echo \"" + (process + message) + "\" > /dev/console \r\n";
    }
    std::string recorded() { return text_of("/var/log/router/commands").value_or(""); }
};

TEST_F(Logging, WritesUpToTheThreshold) {
    EXPECT_EQ(FROM_LIBRARY(use_syslog), 0);
    for (const auto& [threshold, level, written] :
         {std::tuple{3, 3, true}, {3, 4, false}, {0, 3, false}, {-1, -1, true}}) {
        testing::internal::CaptureStdout();
        this->level(threshold);
        EXPECT_EQ(testing::internal::GetCapturedStdout(),
                  "l_dbglvl of debug_level:" + std::to_string(threshold) + " syslog:0\n");
        forget();
        FROM_LIBRARY(log_printf)(level, "[f 1] say \"a  b\" %s\n", "%s%n");
        EXPECT_EQ(recorded(), written ? console_command("[f 1] say \"a  b\" %s%n\n") + '\0' : "");
        EXPECT_EQ(console(), written ? Texts{"f: say a b %s%n\n"} : Texts{}) << threshold << level;
    }
}

TEST_F(Logging, CutsTheMessageButNotTheCommandAroundIt) {
    const SystemLog log;
    FROM_LIBRARY(use_syslog) = 1;
    for (const std::size_t length : {2046U, 2047U, 2048U, 5000U}) {
        SCOPED_TRACE(length);
        forget();
        const std::string message(length, 'x');
        const std::string kept(std::min<std::size_t>(length, 2047), 'x');
        FROM_LIBRARY(log_printf)(LOG_ERR, "%s", message.c_str());
        EXPECT_EQ(recorded(), console_command(kept) + '\0');
        FROM_LIBRARY(log_syslog)(LOG_ERR, "%s", message.c_str());
        EXPECT_THAT(log.entries(), ElementsAre("<11>cwmp: cwmp syslog:" + kept));
    }
}

TEST_F(Logging, WritesTheSystemLogOnlyWhenSwitchedOnWithOne) {
    const SystemLog log;
    for (const auto& [on, severity, entry] :
         {std::tuple{0, 3, ""}, {1, 7, "<15>cwmp: cwmp syslog:event 1\n"}, {2, 3, ""}}) {
        level(7, on);
        FROM_LIBRARY(log_syslog)(severity, "event %d\n", 1);
        EXPECT_EQ(log.entries(), *entry != 0 ? Texts{entry} : Texts{}) << on;
    }
    EXPECT_EQ(raw_console(), "");
}

// Whatever a value holds, it is shown and not run; the message is cut before anything is escaped.
TEST_F(Logging, TellsEachEventToBothLogsAsItIs) {
    const SystemLog log;
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
        EXPECT_THAT(log.entries(), ElementsAre("<11>cwmp: cwmp syslog:" + message.substr(0, 2047)));
        EXPECT_FALSE(exists("/tmp/a"));
    }
}

TEST_F(Logging, TellsAListenerEveryEvent) {
    static std::string heard;
    level(-1);
    const auto listen = FROM_LIBRARY(cwmp_listen);
    listen([](int, const char* line) { heard += line; });
    set("LANDevice_WLANConfiguration_X_QM_TransmitPower", {1, 1}, "7");
    listen(nullptr);
    set("LANDevice_WLANConfiguration_X_QM_TransmitPower", {1, 1}, "8");
    EXPECT_THAT(heard, testing::EndsWith("]  txpower value is not valid\n"));
    EXPECT_THAT(console(), testing::IsEmpty());
}

TEST_F(Logging, KeepsTheReasonOfARefusalAtEveryLevel) {
    level(-1);
    const auto reason = FROM_LIBRARY(cwmp_last_refusal);
    EXPECT_STREQ(reason(), "");
    EXPECT_EQ(set("LANDevice_WLANConfiguration_X_QM_TransmitPower", {1, 1}, "7").code, -1);
    EXPECT_STREQ(reason(), "txpower value is not valid");
    EXPECT_STREQ(reason(), "") << "handed out twice";

    EXPECT_EQ(get("NAT_PortMapping_Enable", {0}).code, -1);
    EXPECT_EQ(get("RootDataModelVersion").code, 0);
    EXPECT_STREQ(reason(), "") << "the call after it was done";

    FROM_LIBRARY(lan_pre)(CWMP_LAN_ADDRESS, "1.2.3");
    EXPECT_EQ(FROM_LIBRARY(lan_check)(), 0);
    EXPECT_STREQ(reason(), "!!! lan check fail 1");
}

TEST_F(Logging, TheStunPasswordIsInNoLog) {
    const SystemLog log;
    level(7, 1);
    store("cwmp.tr111.STUNPassword", "before");
    Texts all;
    for (const char* value : {"hidden", "hidden\n"}) {
        EXPECT_EQ(set("ManagementServer_STUNPassword", {}, value).code, 0);
        for (const auto& entry : log.entries()) all.push_back(entry);  // its queue is short
    }
    all.push_back(raw_console());
    EXPECT_THAT(all, Contains(HasSubstr("uci set By path cwmp.tr111.STUNPassword=***.")));
    EXPECT_THAT(all, Not(Contains(HasSubstr("hidden"))));
}

}  // namespace
