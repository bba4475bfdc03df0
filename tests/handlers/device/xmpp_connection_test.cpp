#include "router_test.h"

namespace {

constexpr unsigned kXmpp = 0x100;
constexpr Locate kConnection = {1};
constexpr Locate kServer = {1, 1};

class XmppConnection : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        package("cwmp", "");
    }
};

TEST_F(XmppConnection, AnswersItsDefaultsFromAnEmptyStore) {
    expect_answers({{"XMPP_ConnectionNumberOfEntries", {}, "1"},
                    {"XMPP_Connection_ServerNumberOfEntries", kConnection, "1"},
                    {"XMPP_Connection_Enable", kConnection, "0"},
                    {"XMPP_Connection_Username", kConnection, ""},
                    {"XMPP_Connection_Password", kConnection, ""},
                    {"XMPP_Connection_Domain", kConnection, ""},
                    {"XMPP_Connection_Resource", kConnection, ""},
                    {"XMPP_Connection_JabberID", kConnection, ""},
                    {"XMPP_Connection_Status", kConnection, "Disabled"},
                    {"XMPP_Connection_TLSEstablished", kConnection, "0"},
                    {"XMPP_Connection_LastChangeDate", kConnection, "1997-07-01T00:00:00"},
                    {"XMPP_Connection_ServerConnectAlgorithm", kConnection, "DNS-SRV"},
                    {"XMPP_Connection_KeepAliveInterval", kConnection, "-1"},
                    {"XMPP_Connection_ServerConnectAttempts", kConnection, "16"},
                    {"XMPP_Connection_ServerRetryInitialInterval", kConnection, "60"},
                    {"XMPP_Connection_ServerRetryIntervalMultiplier", kConnection, "2000"},
                    {"XMPP_Connection_ServerRetryMaxInterval", kConnection, "30720"},
                    {"XMPP_Connection_UseTLS", kConnection, "0"},
                    {"XMPP_Connection_Server_Enable", kServer, "0"},
                    {"XMPP_Connection_Server_Priority", kServer, ""},
                    {"XMPP_Connection_Server_Weight", kServer, ""},
                    {"XMPP_Connection_Server_ServerAddress", kServer, ""},
                    {"XMPP_Connection_Server_Port", kServer, "5222"},
                    {"XMPP_Connection_Stats_ReceivedMessages", kConnection, ""},
                    {"XMPP_Connection_Stats_TransmittedMessages", kConnection, ""},
                    {"XMPP_Connection_Stats_ReceivedErrorMessages", kConnection, ""},
                    {"XMPP_Connection_Stats_TransmittedErrorMessages", kConnection, ""}});
}

TEST_F(XmppConnection, StoresAcceptedValuesInTheirNormalForm) {
    const std::string longest(256, 'x');
    const std::string name(64, 'x');
    const std::vector<SetRow> rows = {
        {"XMPP_Connection_Enable", kConnection, "TRUE", "cwmp.xmpp_conn.enable", "1", kXmpp},
        {"XMPP_Connection_Enable", kConnection, "False", "cwmp.xmpp_conn.enable", "0", kXmpp},
        {"XMPP_Connection_Enable", kConnection, "1", "cwmp.xmpp_conn.enable", "1", kXmpp},
        {"XMPP_Connection_UseTLS", kConnection, "true", "cwmp.xmpp_conn.use_tls", "1", kXmpp},
        {"XMPP_Connection_UseTLS", kConnection, "0", "cwmp.xmpp_conn.use_tls", "0", kXmpp},
        {"XMPP_Connection_Server_Enable", kServer, "1", "cwmp.xmpp_srv.enable", "1", kXmpp},
        {"XMPP_Connection_Username", kConnection, longest, "cwmp.xmpp_conn.username", longest, kXmpp},
        {"XMPP_Connection_Server_ServerAddress", kServer, longest, "cwmp.xmpp_srv.address", longest, kXmpp},
        {"XMPP_Connection_Domain", kConnection, name, "cwmp.xmpp_conn.domain", name, kXmpp},
        {"XMPP_Connection_Resource", kConnection, name, "cwmp.xmpp_conn.resource", name, kXmpp},
        {"XMPP_Connection_ServerConnectAlgorithm", kConnection, "ServerTable", "cwmp.xmpp_conn.conn_algo",
         "ServerTable", kXmpp},
        {"XMPP_Connection_ServerConnectAlgorithm", kConnection, "DNS-SRV", "cwmp.xmpp_conn.conn_algo",
         "DNS-SRV", kXmpp},
        {"XMPP_Connection_KeepAliveInterval", kConnection, "-1", "cwmp.xmpp_conn.keep_alive_int", "-1",
         kXmpp},
        {"XMPP_Connection_KeepAliveInterval", kConnection, "2147483647", "cwmp.xmpp_conn.keep_alive_int",
         "2147483647", kXmpp},
        {"XMPP_Connection_KeepAliveInterval", kConnection, " 0060s", "cwmp.xmpp_conn.keep_alive_int", "60",
         kXmpp},
        {"XMPP_Connection_ServerConnectAttempts", kConnection, "0007", "cwmp.xmpp_conn.conn_attempt", "7",
         kXmpp},
        {"XMPP_Connection_ServerConnectAttempts", kConnection, "-1", "cwmp.xmpp_conn.conn_attempt",
         "4294967295", kXmpp},
        {"XMPP_Connection_ServerConnectAttempts", kConnection, "many", "cwmp.xmpp_conn.conn_attempt", "0",
         kXmpp},
        {"XMPP_Connection_ServerRetryInitialInterval", kConnection, "1", "cwmp.xmpp_conn.retry_init_int", "1",
         kXmpp},
        {"XMPP_Connection_ServerRetryInitialInterval", kConnection, "65535", "cwmp.xmpp_conn.retry_init_int",
         "65535", kXmpp},
        {"XMPP_Connection_ServerRetryIntervalMultiplier", kConnection, "1000",
         "cwmp.xmpp_conn.retry_int_multi", "1000", kXmpp},
        {"XMPP_Connection_ServerRetryIntervalMultiplier", kConnection, "65535",
         "cwmp.xmpp_conn.retry_int_multi", "65535", kXmpp},
        {"XMPP_Connection_ServerRetryMaxInterval", kConnection, "1", "cwmp.xmpp_conn.retry_max_int", "1",
         kXmpp},
        {"XMPP_Connection_ServerRetryMaxInterval", kConnection, "4294967295", "cwmp.xmpp_conn.retry_max_int",
         "4294967295", kXmpp},
        {"XMPP_Connection_Server_Priority", kServer, "0", "cwmp.xmpp_srv.priority", "0", kXmpp},
        {"XMPP_Connection_Server_Priority", kServer, "65535", "cwmp.xmpp_srv.priority", "65535", kXmpp},
        {"XMPP_Connection_Server_Port", kServer, "", "cwmp.xmpp_srv.port", "0", kXmpp},
        {"XMPP_Connection_Server_Port", kServer, "65535", "cwmp.xmpp_srv.port", "65535", kXmpp},
        {"XMPP_Connection_Server_Weight", kServer, "65535", "cwmp.xmpp_srv.weight", "65535", kXmpp},
        {"XMPP_Connection_Server_Weight", kServer, "-1", "cwmp.xmpp_srv.weight", "-1", kXmpp},
    };
    expect_stored(rows);
    for (const auto& row : rows)
        EXPECT_EQ(get(row.handler, row.locate).value, option(row.option)) << row.handler;
    expect_stored(
        {{"XMPP_Connection_Password", kConnection, longest, "cwmp.xmpp_conn.password", longest, kXmpp}});
    expect_answers({{"XMPP_Connection_Password", kConnection, ""}});
}

TEST_F(XmppConnection, RefusesOtherValuesSilently) {
    struct Row {
        const char* handler;
        Texts values;
    };
    const std::string too_long(257, 'x');
    const Texts no_port = {"-1", "65536", "4294967297", "-4294967295", "99999999999999999999"};
    const Row rows[] = {
        {"XMPP_Connection_Enable", {"yes", "", "01", "true "}},
        {"XMPP_Connection_UseTLS", {"2", "on"}},
        {"XMPP_Connection_Server_Enable", {"enabled", "-1"}},
        {"XMPP_Connection_Username", {too_long}},
        {"XMPP_Connection_Password", {too_long}},
        {"XMPP_Connection_Server_ServerAddress", {too_long}},
        {"XMPP_Connection_Domain", {std::string(65, 'x')}},
        {"XMPP_Connection_Resource", {std::string(65, 'x')}},
        {"XMPP_Connection_ServerConnectAlgorithm", {"dns-srv", "ServerTable ", ""}},
        {"XMPP_Connection_KeepAliveInterval", {"-2", "2147483648", "4294967297"}},
        {"XMPP_Connection_ServerRetryInitialInterval", {"0", "65536", "-5", "", "x"}},
        {"XMPP_Connection_ServerRetryIntervalMultiplier", {"999", "65536", "-5"}},
        {"XMPP_Connection_ServerRetryMaxInterval", {"0", "-5", "4294967296"}},
        {"XMPP_Connection_Server_Priority", no_port},
        {"XMPP_Connection_Server_Port", no_port},
        {"XMPP_Connection_Server_Weight", {"-2", "65536", "4294967295"}},
    };
    for (const Row& row : rows) {
        for (const auto& value : row.values) {
            const auto result = set(row.handler, kServer, value);
            EXPECT_EQ(result.code, -1) << row.handler << " = " << value;
            EXPECT_EQ(result.flags, 0U) << row.handler << " = " << value;
        }
    }
    EXPECT_EQ(text_of("/etc/config/cwmp"), "");
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(XmppConnection, FailsWithTheStore) {
    std::remove("/etc/config/cwmp");
    package("cwmp", "not a configuration");
    for (const char* name :
         {"XMPP_Connection_Enable", "XMPP_Connection_Domain", "XMPP_Connection_Server_Port"}) {
        const auto result = set(name, kServer, "1");
        EXPECT_EQ(result.code, -1) << name;
        EXPECT_EQ(result.flags, 0U) << name;
    }
}

TEST_F(XmppConnection, JoinsTheJabberIdOfThreeParts) {
    store("cwmp.xmpp_conn.username", "user");
    store("cwmp.xmpp_conn.domain", std::string(300, 'd'));
    expect_answers({{"XMPP_Connection_JabberID", kConnection, ""}});
    store("cwmp.xmpp_conn.resource", "router");
    expect_answers({{"XMPP_Connection_JabberID", kConnection, "user@" + std::string(300, 'd') + "/router"}});
    store("cwmp.xmpp_conn.username", "");
    expect_answers({{"XMPP_Connection_JabberID", kConnection, ""}});
}

TEST_F(XmppConnection, ReadsTheFirstLineOfAStatusFile) {
    struct Row {
        std::string text, status, tls, date;
    };
    const std::string line(80, 'x');
    for (const Row& row : {Row{"Up\nDown\n", "Up", "Up", "Up"}, Row{"Up", "Up", "Up", "Up"},
                           Row{"", "Disabled", "0", "1997-07-01T00:00:00"}, Row{"\n", "", "", ""},
                           Row{line, line.substr(0, 19), line.substr(0, 19), line.substr(0, 63)}}) {
        SCOPED_TRACE(row.text);
        for (const char* name : {"Status", "TLSEstablished", "LastChangeTime"})
            file(std::string("/tmp/xmpp/") + name, row.text);
        expect_answers({{"XMPP_Connection_Status", kConnection, row.status},
                        {"XMPP_Connection_TLSEstablished", kConnection, row.tls},
                        {"XMPP_Connection_LastChangeDate", kConnection, row.date}});
    }
}

TEST_F(XmppConnection, MendsTheDateInItsFile) {
    file("/tmp/xmpp/LastChangeTime", "2026-01-10 08:15:00\n");
    expect_answers({{"XMPP_Connection_LastChangeDate", kConnection, "2026-01-10T08:15:00"}});
    EXPECT_EQ(text_of("/tmp/xmpp/LastChangeTime"), "2026-01-10T08:15:00\n");
    EXPECT_THAT(commands(), ElementsAre("sed -i 's/ /T/g' /tmp/xmpp/LastChangeTime"));
}

TEST_F(XmppConnection, HasReadOnlyParameters) {
    expect_read_only({"XMPP_ConnectionNumberOfEntries", "XMPP_Connection_ServerNumberOfEntries",
                      "XMPP_Connection_JabberID", "XMPP_Connection_Status", "XMPP_Connection_TLSEstablished",
                      "XMPP_Connection_LastChangeDate", "XMPP_Connection_Stats_ReceivedMessages",
                      "XMPP_Connection_Stats_TransmittedMessages",
                      "XMPP_Connection_Stats_ReceivedErrorMessages",
                      "XMPP_Connection_Stats_TransmittedErrorMessages"});
}

}  // namespace
