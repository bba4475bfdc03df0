#include <cstring>

#include "cwmp/agent_state.h"
#include "router_test.h"

namespace {

constexpr unsigned kServer = 0x2;
constexpr unsigned kStun = 0x800;
constexpr unsigned kXmpp = 0x100;
constexpr const char* kInUse = "http://acs.example.net/";
constexpr const char* kNew = "http://other.example.net/";

class ManagementServer : public RouterTest {
  protected:
    ManagementServer() {
        agent.port = 65535;
        std::strcpy(agent.path, "/path");
        std::strcpy(agent.acs_url, kInUse);
        std::strcpy(agent.host, "192.0.2.10");
    }
    void SetUp() override {
        RouterTest::SetUp();
        for (const char* name : {"cwmp", "cwmp_local"}) package(name, "");
        answer("saveconfig device-config", "");
    }

    // Calls of the two handlers that take the agent's record.
    Result get_with(const char* name, const cwmp_agent_state* state) {
        std::vector<char> value(CWMP_VALUE_SIZE);
        std::strcpy(value.data(), kUntouched);
        Locate locate{};
        const int code = call(handler(name), CWMP_OP_GET, locate.data(), value.data(), state);
        return {.code = code, .value = value.data()};
    }
    Result set_url(const std::string& url, const cwmp_agent_state* state) {
        forget();
        Result result{.value = url, .flags = 0x40};
        Locate locate{};
        result.code = call(handler("ManagementServer_URL"), CWMP_OP_APPLY, locate.data(), result.value.data(),
                           &result.flags, state);
        return result;
    }
    // Handler, then the event, as the console shows them.
    Texts events_of(const std::string& name) {
        Texts events;
        for (const auto& event : console()) {
            if (event.starts_with(name + ": ")) events.push_back(event.substr(name.size() + 2));
        }
        return events;
    }

    cwmp_agent_state agent{};
};

TEST_F(ManagementServer, AnswersItsDefaultsFromAnEmptyStore) {
    expect_answers({{"ManagementServer_Username", {}, ""},
                    {"ManagementServer_Password", {}, ""},
                    {"ManagementServer_PeriodicInformEnable", {}, "1"},
                    {"ManagementServer_PeriodicInformInterval", {}, ""},
                    {"ManagementServer_PeriodicInformTime", {}, ""},
                    {"ManagementServer_ParameterKey", {}, ""},
                    {"ManagementServer_ConnectionRequestUsername", {}, ""},
                    {"ManagementServer_ConnectionRequestPassword", {}, ""},
                    {"ManagementServer_KickURL", {}, ""},
                    {"ManagementServer_AliasBasedAddressing", {}, "0"},
                    {"ManagementServer_SupportedConnReqMethods", {}, "HTTP,STUN,XMPP"},
                    {"ManagementServer_UDPConnectionRequestAddress", {}, ""},
                    {"ManagementServer_UDPConnectionRequestAddressNotificationLimit", {}, "0"},
                    {"ManagementServer_STUNEnable", {}, "0"},
                    {"ManagementServer_STUNServerAddress", {}, ""},
                    {"ManagementServer_STUNServerPort", {}, "3478"},
                    {"ManagementServer_STUNUsername", {}, ""},
                    {"ManagementServer_STUNPassword", {}, ""},
                    {"ManagementServer_STUNMaximumKeepAlivePeriod", {}, "-1"},
                    {"ManagementServer_STUNMinimumKeepAlivePeriod", {}, "10"},
                    {"ManagementServer_NATDetected", {}, "0"},
                    {"ManagementServer_ConnReqXMPPConnection", {}, "Device.XMPP.Connection.1."},
                    {"ManagementServer_ConnReqAllowedJabberIDs", {}, ""},
                    {"ManagementServer_ConnReqJabberID", {}, ""}});
    forget();
    package("cwmp", "config cwmp 'info'\n");
    EXPECT_EQ(get("ManagementServer_EnableCWMP").code, -1);
    EXPECT_THAT(console(), ElementsAre("ManagementServer_EnableCWMP:  get ACS_enable error\n\n"));
}

TEST_F(ManagementServer, StoresTextsAsTheyComeAndReadsThemBack) {
    const std::string text = "any text, 300 bytes or more " + std::string(300, 'x');
    const std::vector<SetRow> rows = {
        {"ManagementServer_Username", {}, text, "cwmp.info.username", text, kServer},
        {"ManagementServer_EnableCWMP", {}, "1", "cwmp.info.enable", "1", kServer},
        {"ManagementServer_EnableCWMP", {}, "0", "cwmp.info.enable", "0", kServer},
        {"ManagementServer_PeriodicInformEnable", {}, "1", "cwmp.info.inform_enable", "1", kServer},
        {"ManagementServer_PeriodicInformEnable", {}, "0", "cwmp.info.inform_enable", "0", kServer},
        {"ManagementServer_PeriodicInformInterval", {}, text, "cwmp.info.inform_interval", text, kServer},
        {"ManagementServer_PeriodicInformTime", {}, text, "cwmp_local.cwmp_cfg.inform_time", text, kServer},
        {"ManagementServer_ConnectionRequestUsername", {}, text, "cwmp.info.conn_username", text, kServer},
        {"ManagementServer_STUNEnable", {}, text, "cwmp.tr111.Enable", text, kStun},
        {"ManagementServer_STUNServerAddress", {}, text, "cwmp.tr111.STUNSAdd", text, kStun},
        {"ManagementServer_STUNServerPort", {}, text, "cwmp.tr111.STUNSPort", text, kStun},
        {"ManagementServer_STUNUsername", {}, text, "cwmp.tr111.STUNUsername", text, kStun},
        {"ManagementServer_STUNMaximumKeepAlivePeriod", {}, "60s", "cwmp.tr111.MaxKeepPeriod", "60s", kStun},
        {"ManagementServer_STUNMinimumKeepAlivePeriod", {}, "60", "cwmp.tr111.MinKeepPeriod", "60", kStun},
        {"ManagementServer_ConnReqAllowedJabberIDs", {}, text, "cwmp.xmpp_conn.allowed_id", text, kXmpp},
    };
    expect_stored(rows);
    for (const auto& row : rows) EXPECT_EQ(get(row.handler).value, option(row.option)) << row.handler;
}

TEST_F(ManagementServer, NeverReadsAPasswordBack) {
    expect_stored(
        {{"ManagementServer_Password", {}, "one", "cwmp.info.password", "one", kServer},
         {"ManagementServer_ConnectionRequestPassword", {}, "two", "cwmp.info.conn_password", "two", kServer},
         {"ManagementServer_STUNPassword", {}, "three", "cwmp.tr111.STUNPassword", "three", kStun}});
    expect_answers({{"ManagementServer_Password", {}, ""},
                    {"ManagementServer_ConnectionRequestPassword", {}, ""},
                    {"ManagementServer_STUNPassword", {}, ""}});
}

TEST_F(ManagementServer, AnswersWhatTheAgentStoredForIt) {
    store("cwmp_local.cwmp_cfg.parameterKey", "key");
    store("cwmp_local.tr111.udpConReqAdd", "192.0.2.1:1234");
    store("cwmp_local.tr111.NATDetected", "1");
    for (const char* part : {"username", "domain", "resource"})
        store(std::string("cwmp.xmpp_conn.") + part, part);
    expect_answers({{"ManagementServer_ParameterKey", {}, "key"},
                    {"ManagementServer_UDPConnectionRequestAddress", {}, "192.0.2.1:1234"},
                    {"ManagementServer_NATDetected", {}, "1"},
                    {"ManagementServer_ConnReqJabberID", {}, "username@domain/resource"}});
    expect_read_only({"ManagementServer_ParameterKey", "ManagementServer_ConnectionRequestURL",
                      "ManagementServer_AliasBasedAddressing", "ManagementServer_SupportedConnReqMethods",
                      "ManagementServer_UDPConnectionRequestAddress", "ManagementServer_NATDetected",
                      "ManagementServer_ConnReqJabberID"});
}

TEST_F(ManagementServer, LogsNewValuesBeforeItLooksAtThem) {
    struct Row {
        const char *handler, *event;
    };
    for (const Row& row :
         {Row{"ManagementServer_Username", "cwmp, username val %%s\n\n"},
          Row{"ManagementServer_Password", "cwmp password, val %%s\n\n"},
          Row{"ManagementServer_EnableCWMP", "ENABLE cwmp, val %%s\n\n"},
          Row{"ManagementServer_PeriodicInformEnable", "cwmp, peridicInformEnable val %%s\n\n"},
          Row{"ManagementServer_PeriodicInformInterval", "cwmp, peridicInformInterval val %%s\n\n"},
          Row{"ManagementServer_PeriodicInformTime", "cwmp_local, inform_time val %%s\n\n"},
          Row{"ManagementServer_ConnectionRequestUsername", "cwmp, ConnectionRequestUsername val %%s\n\n"},
          Row{"ManagementServer_ConnectionRequestPassword", "cwmp, ConnectionRequestPassword val %%s\n\n"}}) {
        forget();
        set(row.handler, {}, "%%s");
        EXPECT_THAT(events_of(row.handler), ElementsAre(row.event));
    }
    set("ManagementServer_STUNPassword", {}, "secret");
    EXPECT_THAT(events_of("ManagementServer_STUNPassword"), IsEmpty());
}

TEST_F(ManagementServer, RefusesWhatIsNotExactlyTheValue) {
    struct Row {
        const char *handler, *value;
    };
    const std::string before = "config cwmp 'info'\n";
    package("cwmp", before);
    for (const Row& row :
         {Row{"ManagementServer_EnableCWMP", "true"}, Row{"ManagementServer_EnableCWMP", "01"},
          Row{"ManagementServer_EnableCWMP", ""}, Row{"ManagementServer_EnableCWMP", "2"},
          Row{"ManagementServer_PeriodicInformEnable", "false"},
          Row{"ManagementServer_PeriodicInformEnable", "1 "},
          Row{"ManagementServer_PeriodicInformEnable", ""},
          Row{"ManagementServer_ConnReqXMPPConnection", "Device.XMPP.Connection.1"},
          Row{"ManagementServer_ConnReqXMPPConnection", "Device.XMPP.Connection.1.x"},
          Row{"ManagementServer_ConnReqXMPPConnection", ""}}) {
        const auto result = set(row.handler, {}, row.value);
        EXPECT_EQ(result.code, -1) << row.handler << ' ' << row.value;
        EXPECT_EQ(result.flags, 0U);
    }
    EXPECT_EQ(text_of("/etc/config/cwmp"), before);
}

TEST_F(ManagementServer, LimitsTheAllowedJabberIds) {
    const auto result = set("ManagementServer_ConnReqAllowedJabberIDs", {}, std::string(513, 'x'));
    EXPECT_EQ(result.code, -1);
    EXPECT_EQ(result.flags, 0U);
    const std::string longest(512, 'x');
    expect_stored({{"ManagementServer_ConnReqAllowedJabberIDs",
                    {},
                    longest,
                    "cwmp.xmpp_conn.allowed_id",
                    longest,
                    kXmpp}});
}

TEST_F(ManagementServer, AcceptsWithoutEffect) {
    forget();
    for (const char* name :
         {"ManagementServer_KickURL", "ManagementServer_UDPConnectionRequestAddressNotificationLimit"})
        EXPECT_EQ(call(handler(name), CWMP_OP_APPLY, nullptr, nullptr, nullptr), 0) << name;
    const auto result = set("ManagementServer_ConnReqXMPPConnection", {}, "Device.XMPP.Connection.1.");
    EXPECT_EQ(result.code, 0);
    EXPECT_EQ(result.flags, 0U);
    EXPECT_EQ(text_of("/etc/config/cwmp"), "");
    EXPECT_THAT(console(), IsEmpty());
}

TEST_F(ManagementServer, KeepsTheKeepAliveBoundsInOrder) {
    struct Row {
        const char *handler, *stored, *value;
        int code;
    };
    constexpr const char* kMaximum = "ManagementServer_STUNMaximumKeepAlivePeriod";
    constexpr const char* kMinimum = "ManagementServer_STUNMinimumKeepAlivePeriod";
    // A bound that is not stored counts as 0.
    for (const Row& row :
         {Row{kMinimum, nullptr, "30", -1}, Row{kMinimum, nullptr, "0", 0}, Row{kMinimum, nullptr, "-1", 0},
          Row{kMinimum, "60", "30", 0}, Row{kMinimum, "60", "60", 0}, Row{kMinimum, "60", "61", -1},
          Row{kMinimum, "60", "4294967297", -1}, Row{kMinimum, "60s", "60 seconds", 0},
          Row{kMaximum, nullptr, "0", 0}, Row{kMaximum, nullptr, "-1", -1}, Row{kMaximum, "30", "30", 0},
          Row{kMaximum, "30", "29", -1}, Row{kMaximum, "30", "x", -1}}) {
        SCOPED_TRACE(std::string(row.handler) + " = " + row.value);
        package("cwmp", "");
        const std::string other = row.handler == kMinimum ? "MaxKeepPeriod" : "MinKeepPeriod";
        const std::string own = row.handler == kMinimum ? "MinKeepPeriod" : "MaxKeepPeriod";
        if (row.stored != nullptr) store("cwmp.tr111." + other, row.stored);
        const auto result = set(row.handler, {}, row.value);
        EXPECT_EQ(result.code, row.code);
        EXPECT_EQ(result.flags, row.code == 0 ? kStun : 0);
        EXPECT_EQ(option("cwmp.tr111." + own),
                  row.code == 0 ? std::optional<std::string>(row.value) : std::nullopt);
    }
}

TEST_F(ManagementServer, IsDoneThoughTheStoreRefuses) {
    std::remove("/etc/config/cwmp");
    std::remove("/etc/config/cwmp_local");
    for (const char* name : {"Username", "Password", "EnableCWMP", "PeriodicInformEnable",
                             "PeriodicInformInterval", "PeriodicInformTime", "ConnectionRequestUsername",
                             "ConnectionRequestPassword", "STUNEnable", "STUNServerAddress", "STUNServerPort",
                             "STUNUsername", "STUNPassword", "STUNMaximumKeepAlivePeriod"}) {
        const auto result = set((std::string("ManagementServer_") + name).c_str(), {}, "1");
        EXPECT_EQ(result.code, 0) << name;
        EXPECT_EQ(result.flags, std::strncmp(name, "STUN", 4) == 0 ? kStun : kServer) << name;
    }
    EXPECT_EQ(set("ManagementServer_ConnReqAllowedJabberIDs", {}, "x").code, -1);
    EXPECT_EQ(set_url(kNew, &agent).flags, 0x40 | kServer);
}

TEST_F(ManagementServer, SavesTheDeviceConfigurationWithTheInformTime) {
    set("ManagementServer_PeriodicInformTime", {}, "2026-01-01T00:00:00Z");
    EXPECT_THAT(commands(), ElementsAre("saveconfig device-config"));
    forget();
    get("ManagementServer_PeriodicInformTime");
    EXPECT_THAT(commands(), IsEmpty());
}

TEST_F(ManagementServer, AnswersTheAddressesOfTheAgent) {
    EXPECT_EQ(get_with("ManagementServer_URL", &agent).value, kInUse);
    EXPECT_EQ(get_with("ManagementServer_ConnectionRequestURL", &agent).value,
              "http://192.0.2.10:65535/path");
    std::memset(agent.path, 'p', sizeof agent.path);
    const std::string url = "http://192.0.2.10:65535" + std::string(CWMP_AGENT_PATH_SIZE, 'p');
    EXPECT_EQ(get_with("ManagementServer_ConnectionRequestURL", &agent).value, url.substr(0, 256));
    for (const char* name : {"ManagementServer_URL", "ManagementServer_ConnectionRequestURL"}) {
        const auto result = get_with(name, nullptr);
        EXPECT_EQ(result.code, -1) << name;
        EXPECT_EQ(result.value, kUntouched) << name;
    }
}

TEST_F(ManagementServer, MarksANewUrlOnceAndSavesTheMarks) {
    using Mark = std::optional<std::string>;
    struct Row {
        const char *description, *url;
        bool has_record;
        Mark reset, ever;  // before
        Mark reset_after, ever_after;
        bool saved;
    };
    const Row rows[] = {
        {"first write, new address", kNew, true, {}, {}, "1", "1", true},
        {"first write, address in use", kInUse, true, {}, {}, {}, "1", true},
        {"first write without record", kNew, false, {}, {}, {}, "1", true},
        {"new address", kNew, true, "0", "1", "1", "1", true},
        {"new address, already marked", kNew, true, "1", "1", "1", "1", false},
        {"new address, another mark", kNew, true, "2", "yes", "2", "yes", false},
        {"address in use", kInUse, true, "0", "1", "0", "1", false},
        {"never written", kInUse, true, "0", "0", "0", "1", true},
        {"no record", kNew, false, "0", "1", "0", "1", false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.description);
        package("cwmp", "");
        package("cwmp_local", "");
        if (row.reset) store("cwmp_local.cwmp_cfg.reset_flag", *row.reset);
        if (row.ever) store("cwmp_local.cwmp_cfg.ever_set", *row.ever);
        const auto result = set_url(row.url, row.has_record ? &agent : nullptr);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.flags, 0x40 | kServer);
        EXPECT_EQ(option("cwmp.info.url"), row.url);
        EXPECT_EQ(option("cwmp_local.cwmp_cfg.reset_flag"), row.reset_after);
        EXPECT_EQ(option("cwmp_local.cwmp_cfg.ever_set"), row.ever_after);
        EXPECT_EQ(commands(), row.saved ? Texts{"saveconfig device-config"} : Texts{});
        EXPECT_EQ(events_of("ManagementServer_URL"), Texts{std::string("cwmp, URL val ") + row.url + "\n\n"});
    }
}

}  // namespace
