#include <climits>

#include "cwmp/interface_stack.h"
#include "diagnostics_test.h"

namespace {

TEST_F(DiagnosticsSettings, PingKeepsWhatItCanUse) {
    store("network.wan.wan_type", "pppoe");
    const std::string long_name(256, 'h');
    const std::string state = "diagnostics_config.ping.DiagnosticsState";
    const std::string protocol = "diagnostics_config.ping.ProtocolVersion";
    const std::string interface = "diagnostics_config.ping.Interface";
    const std::string count = "diagnostics_config.ping.NumberOfRepetitions";
    const std::string timeout = "diagnostics_config.ping.Timeout";
    const std::string size = "diagnostics_config.ping.DataBlockSize";
    const std::string host = "diagnostics_config.ping.Host";
    const std::vector<SettingRow> rows = {
        {"IPPingDiagnostics_DiagnosticsState", "Requested", 0, state, "Requested", CWMP_APPLY_PING_TEST},
        {"IP_Diagnostics_IPPing_DiagnosticsState", "Requested", 0, state, "Requested", CWMP_APPLY_PING_TEST},
        {"IPPingDiagnostics_DiagnosticsState", "None", -1, state, "before"},
        {"IPPingDiagnostics_DiagnosticsState", "requested", -1, state, "before"},
        {"IPPingDiagnostics_DiagnosticsState", "", -1, state, "before"},
        {"IPPingDiagnostics_Host", long_name, 0, host, long_name},
        {"IPPingDiagnostics_Host", long_name + "h", -1, host, "before"},
        {"IPPingDiagnostics_Host", kMeta, 0, host, kMeta},
        {"IPPingDiagnostics_Host", "%s%n \xff\xfe", 0, host, "%s%n \xff\xfe"},
        {"IPPingDiagnostics_Host", "", 0, host, std::nullopt},
        {"IPPingDiagnostics_Interface", "Device.IP.Interface.5.", 0, interface, "br-wan"},
        {"IPPingDiagnostics_Interface", "Device.IP.Interface.2.", 0, interface, "Device.IP.Interface.2."},
        {"IPPingDiagnostics_Interface", "None", 0, interface, "None"},
        {"IPPingDiagnostics_Interface", long_name, 0, interface, long_name},
        {"IPPingDiagnostics_Interface", long_name + "h", -1, interface, "before"},
        {"IPPingDiagnostics_ProtocolVersion", "Any", 0, protocol, "Any"},
        {"IPPingDiagnostics_ProtocolVersion", "IPv4", 0, protocol, "-4"},
        {"IPPingDiagnostics_ProtocolVersion", "IPv6", 0, protocol, "-6"},
        {"IPPingDiagnostics_ProtocolVersion", "-4", -1, protocol, "before"},
        {"IPPingDiagnostics_NumberOfRepetitions", "1", 0, count, "1"},
        {"IPPingDiagnostics_NumberOfRepetitions", "007x", 0, count, "007x"},
        {"IPPingDiagnostics_NumberOfRepetitions", "0", -1, count, "before"},
        {"IPPingDiagnostics_NumberOfRepetitions", "2147483647", 0, count, "2147483647"},
        {"IPPingDiagnostics_NumberOfRepetitions", "2147483648", -1, count, "before"},
        {"IPPingDiagnostics_Timeout", "4294967296", -1, "diagnostics_config.ping.Timeout", "before"},
        {"IPPingDiagnostics_Timeout", "-1", 0, timeout, "-1"},
        {"IPPingDiagnostics_Timeout", "0", -1, timeout, "before"},
        {"IPPingDiagnostics_Timeout", "abc", -1, timeout, "before"},
        {"IPPingDiagnostics_DataBlockSize", "1", 0, size, "1"},
        {"IPPingDiagnostics_DataBlockSize", "65535", 0, size, "65535"},
        {"IPPingDiagnostics_DataBlockSize", "65536", -1, size, "before"},
        {"IPPingDiagnostics_DataBlockSize", "0", -1, size, "before"},
    };
    expect_settings(rows);
    expect_null_value("IPPingDiagnostics_Host", -1);
    expect_null_value("IPPingDiagnostics_Interface", -1);
    expect_null_value("IPPingDiagnostics_DiagnosticsState", -1);
}

TEST_F(DiagnosticsSettings, AWanTypeWithoutInterfaceMatchesNoPath) {
    store("network.wan.wan_type", "unheard-of");
    expect_settings(
        {{"IPPingDiagnostics_Interface", "", 0, "diagnostics_config.ping.Interface", std::nullopt}});
}

TEST_F(DiagnosticsSettings, PingAnswersItsDefaultsAndResults) {
    const std::vector<GetRow> defaults = {
        {"IPPingDiagnostics_DiagnosticsState", {}, ""},
        {"IPPingDiagnostics_Host", {}, ""},
        {"IPPingDiagnostics_Interface", {}, ""},
        {"IPPingDiagnostics_ProtocolVersion", {}, ""},
        {"IPPingDiagnostics_NumberOfRepetitions", {}, "3"},
        {"IPPingDiagnostics_Timeout", {}, "100"},
        {"IPPingDiagnostics_DataBlockSize", {}, "38"},
        {"IPPingDiagnostics_SuccessCount", {}, ""},
        {"IPPingDiagnostics_FailureCount", {}, ""},
        {"IP_Diagnostics_IPPing_DSCP", {}, "0"},
    };
    expect_answers(defaults);
    const Texts settings = {"DiagnosticsState", "Host",          "Interface",    "NumberOfRepetitions",
                            "Timeout",          "DataBlockSize", "SuccessCount", "FailureCount"};
    Texts times;
    for (const char* which : {"Minimum", "Maximum", "Average"}) {
        for (const char* detail : {"", "Detailed"})
            times.push_back(std::string(which) + "ResponseTime" + detail);
    }
    for (const auto& name : times) expect_answers({{("IPPingDiagnostics_" + name).c_str(), {}, "0"}});
    Texts all = settings;
    all.insert(all.end(), times.begin(), times.end());
    for (const auto& name : all) store("diagnostics_config.ping." + name, "value of " + name, kScratch);
    for (const auto& name : all) {
        expect_answers({{("IPPingDiagnostics_" + name).c_str(), {}, "value of " + name},
                        {("IP_Diagnostics_IPPing_" + name).c_str(), {}, "value of " + name}});
    }
    for (const auto& [stored, answer] :
         {std::pair{"-4", "IPv4"}, {"-6", "IPv6"}, {"Any", "Any"}, {"x", ""}}) {
        store("diagnostics_config.ping.ProtocolVersion", stored, kScratch);
        expect_answers({{"IP_Diagnostics_IPPing_ProtocolVersion", {}, answer}});
    }
    store("diagnostics_config.ping.last_ping_status", "1", kScratch);
    expect_answers({{"IPPingDiagnostics_DiagnosticsState", {}, "None"}});
}

TEST_F(DiagnosticsSettings, TraceRouteKeepsWhatItCanUse) {
    const std::string long_name(256, 'h');
    const std::string section = "trace_route.traceroute.";
    const std::string out_of_range = "Out of range \n\n";
    const std::vector<SettingRow> rows = {
        {"IP_Diagnostics_TraceRoute_DiagnosticsState", "Requested", 0, section + "DiagnosticsState", "before",
         CWMP_APPLY_TRACE_ROUTE},
        {"IP_Diagnostics_TraceRoute_DiagnosticsState", "Complete", -1, section + "DiagnosticsState",
         "before"},
        {"IP_Diagnostics_TraceRoute_Interface", "Device.IP.Interface.1", 0, section + "Interface", "br-wan"},
        {"IP_Diagnostics_TraceRoute_Interface", "Device.IP.Interface.2", 0, section + "Interface",
         "Device.IP.Interface.2"},
        {"IP_Diagnostics_TraceRoute_Interface", long_name + "h", -1, section + "Interface", "before"},
        {"IP_Diagnostics_TraceRoute_Host", long_name, 0, section + "Host", long_name},
        {"IP_Diagnostics_TraceRoute_Host", kMeta, 0, section + "Host", kMeta},
        {"IP_Diagnostics_TraceRoute_Host", long_name + "h", -1, section + "Host", "before", 0,
         "Out of Range\n\n"},
        {"IP_Diagnostics_TraceRoute_NumberOfTries", "10", 0, section + "NumberOfTries", "10"},
        {"IP_Diagnostics_TraceRoute_NumberOfTries", "0", 0, section + "NumberOfTries", "0"},
        {"IP_Diagnostics_TraceRoute_NumberOfTries", "-3", 0, section + "NumberOfTries", "-3"},
        {"IP_Diagnostics_TraceRoute_NumberOfTries", "11", -1, section + "NumberOfTries", "before"},
        {"IP_Diagnostics_TraceRoute_NumberOfTries", "-9999999999", -1, section + "NumberOfTries", "before"},
        {"IP_Diagnostics_TraceRoute_Timeout", "1", 0, section + "Timeout", "1"},
        {"IP_Diagnostics_TraceRoute_Timeout", "0", -1, section + "Timeout", "before", 0, out_of_range},
        {"IP_Diagnostics_TraceRoute_DataBlockSize", "65535", 0, section + "DataBlockSize", "65535"},
        {"IP_Diagnostics_TraceRoute_DataBlockSize", "65536", -1, section + "DataBlockSize", "before", 0,
         out_of_range},
        {"IP_Diagnostics_TraceRoute_DataBlockSize", "0", -1, section + "DataBlockSize", "before", 0,
         out_of_range},
        {"IP_Diagnostics_TraceRoute_MaxHopCount", "64", 0, section + "MaxHopCount", "64"},
        {"IP_Diagnostics_TraceRoute_MaxHopCount", "65", -1, section + "MaxHopCount", "before", 0,
         out_of_range},
        {"IP_Diagnostics_TraceRoute_MaxHopCount", "0", -1, section + "MaxHopCount", "before", 0,
         out_of_range},
    };
    expect_settings(rows);
    expect_null_value("IP_Diagnostics_TraceRoute_DiagnosticsState", -1);
}

TEST_F(DiagnosticsSettings, TraceRouteAnswersItsDefaultsAndHops) {
    const std::vector<GetRow> defaults = {
        {"IP_Diagnostics_TraceRoute_DiagnosticsState", {}, ""},
        {"IP_Diagnostics_TraceRoute_Interface", {}, ""},
        {"IP_Diagnostics_TraceRoute_ProtocolVersion", {}, "IPv4"},
        {"IP_Diagnostics_TraceRoute_Host", {}, ""},
        {"IP_Diagnostics_TraceRoute_NumberOfTries", {}, ""},
        {"IP_Diagnostics_TraceRoute_Timeout", {}, ""},
        {"IP_Diagnostics_TraceRoute_DataBlockSize", {}, ""},
        {"IP_Diagnostics_TraceRoute_MaxHopCount", {}, ""},
        {"IP_Diagnostics_TraceRoute_DSCP", {}, "0"},
        {"IP_Diagnostics_TraceRoute_ResponseTime", {}, "0"},
        {"IP_Diagnostics_TraceRoute_RouteHopsNumberOfEntries", {}, ""},
        {"IP_Diagnostics_TraceRoute_RouteHops_Host", {1}, ""},
        {"IP_Diagnostics_TraceRoute_RouteHops_RTTimes", {1}, ""},
        {"IP_Diagnostics_TraceRoute_RouteHops_ErrorCode", {1}, "0"},
    };
    expect_answers(defaults);
    package("trace_route",
            "config traceroute 'traceroute'\n\toption DiagnosticsState 'Complete'\n\toption time '9'\n"
            "\toption RouteHopsNumberOfEntries '2'\n\nconfig RouteHop '1'\n\toption Host 'a'\n"
            "\nconfig RouteHop '2'\n\toption Host 'b'\n\toption RTTimes '1,2'\n",
            kScratch);
    const std::vector<GetRow> results = {
        {"IP_Diagnostics_TraceRoute_DiagnosticsState", {}, "Complete"},
        {"IP_Diagnostics_TraceRoute_ResponseTime", {}, "9"},
        {"IP_Diagnostics_TraceRoute_RouteHopsNumberOfEntries", {}, "2"},
        {"IP_Diagnostics_TraceRoute_RouteHops_Host", {1}, "a"},
        {"IP_Diagnostics_TraceRoute_RouteHops_HostAddress", {2}, "b"},
        {"IP_Diagnostics_TraceRoute_RouteHops_RTTimes", {2}, "1,2"},
        {"IP_Diagnostics_TraceRoute_RouteHops_RTTimes", {1}, ""},
        {"IP_Diagnostics_TraceRoute_RouteHops_Host", {INT_MAX}, ""},
    };
    expect_answers(results);
}

TEST_F(DiagnosticsSettings, TheEchoResponderTakesTheApplyPassAlone) {
    const std::string section = "diagnostics_config.udpecho.";
    const std::string name = "IP_Diagnostics_UDPEchoConfig_";
    const std::string interface = name + "Interface";
    const std::string enable = name + "Enable";
    const std::string plus = name + "EchoPlusEnabled";
    const std::string port = name + "UDPPort";
    const std::string source = name + "SourceIPAddress";
    const std::string hundred(100, 'i');
    const auto no_interface = [](const std::string& value) {
        return "Don't support this interface : " + value + " now\n";
    };
    const auto no_switch = [](const std::string& option, const std::string& value) {
        return "UDPEchoConfig " + option + " set to " + value + ", should be true(1) or false(0).\n";
    };
    const std::vector<SettingRow> rows = {
        {interface.c_str(), "Device.IP.Interface.1", 0, section + "IfName", "br-lan"},
        {interface.c_str(), "Device.IP.Interface.2", 0, section + "IfName", "br-wan"},
        {interface.c_str(), "Device.IP.Interface.3", 0, section + "IfName", "br-wan"},
        {interface.c_str(), "None", 0, section + "IfName", "None"},
        {interface.c_str(), "", 0, section + "IfName", "None"},
        {interface.c_str(), hundred, -1, section + "IfName", "before", 0, no_interface(hundred)},
        {interface.c_str(), hundred + "i", -1, section + "IfName", "before"},
        {interface.c_str(), "$(touch /tmp/started)", -1, section + "IfName", "before", 0,
         no_interface("$(touch /tmp/started)")},
        {enable.c_str(), "true", 0, section + "Enable", "1", CWMP_APPLY_UDP_ECHO},
        {enable.c_str(), "1", 0, section + "Enable", "1", CWMP_APPLY_UDP_ECHO},
        {enable.c_str(), "false", 0, section + "Enable", "0"},
        {enable.c_str(), "0", 0, section + "Enable", "0"},
        {enable.c_str(), "TRUE", -1, section + "Enable", "before", 0, no_switch("Enable", "TRUE")},
        {enable.c_str(), "`touch /tmp/started`\"", -1, section + "Enable", "before", 0,
         no_switch("Enable", "`touch /tmp/started`\"")},
        {plus.c_str(), "true", 0, section + "EchoPlusEnabled", "1"},
        {plus.c_str(), "0", 0, section + "EchoPlusEnabled", "0"},
        {plus.c_str(), "", -1, section + "EchoPlusEnabled", "before", 0, no_switch("EchoPlusEnabled", "")},
        {port.c_str(), "anything", 0, section + "UDPPort", "anything"},
        {source.c_str(), kMeta, 0, section + "SourceIPAddress", kMeta},
    };
    expect_settings(rows);
    for (const SettingRow& row : rows) {
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK}) {
            expect_settings({{row.handler, row.value, -1, row.option, "before"}}, op);
        }
        expect_null_value(row.handler, -1);
    }
}

TEST_F(DiagnosticsSettings, TheEchoRespondersSettingsAndCounters) {
    EXPECT_EQ(get("IP_Diagnostics_UDPEchoConfig_Enable").code, -1);
    const std::string name = "IP_Diagnostics_UDPEchoConfig_";
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"UDPPort", ""},
        {"SourceIPAddress", ""},
        {"EchoPlusEnabled", "1"},
        {"EchoPlusSupported", "1"},
        {"PacketsReceived", "0"},
        {"PacketsResponded", "0"},
        {"BytesReceived", "0"},
        {"BytesResponded", "0"},
        {"TimeFirstPacketReceived", "1970-01-01T00:00:00.000Z"},
        {"TimeLastPacketReceived", "1970-01-01T00:00:00.000Z"},
    };
    for (const auto& [parameter, missing] : rows) {
        expect_answers({{(name + parameter).c_str(), {}, missing}});
        store(std::string("diagnostics_config.udpecho.") + parameter, parameter, kScratch);
        expect_answers({{(name + parameter).c_str(), {}, parameter}});
    }
    expect_answers({{"IP_Diagnostics_UDPEchoConfig_Interface", {}, ""}});
    for (const auto& [stored, answer] : {std::pair{"br-lan", "Device.IP.Interface.1"},
                                         {"br-wan", "Device.IP.Interface.2"},
                                         {"None", ""},
                                         {"eth0", ""}}) {
        store("diagnostics_config.udpecho.IfName", stored, kScratch);
        expect_answers({{"IP_Diagnostics_UDPEchoConfig_Interface", {}, answer}});
    }
    for (const char* stored : {"1", "0"}) {
        store("diagnostics_config.udpecho.Enable", stored, kScratch);
        expect_answers({{"IP_Diagnostics_UDPEchoConfig_Enable", {}, stored}});
    }
    store("diagnostics_config.udpecho.Enable", "yes", kScratch);
    forget();
    EXPECT_EQ(get("IP_Diagnostics_UDPEchoConfig_Enable").code, -1);
    EXPECT_THAT(console(), ElementsAre("IP_Diagnostics_UDPEchoConfig_Enable: Internal Error: UDPEchoConfig "
                                       "Enable is yes, should be 0 or 1.\n"));
}

TEST_F(DiagnosticsSettings, CapabilitiesAreFixed) {
    for (const char* test : {"Ping", "TraceRoute", "DownloadDiagnostics", "UploadDiagnostics",
                             "UDPEchoDiagnostics", "ServerSelectionDiagnostics"}) {
        const std::string first = std::string("IP_Diagnostics_IPv4") + test + "Supported";
        const std::string second = std::string("IP_Diagnostics_IPv6") + test + "Supported";
        const bool offered = std::string(test) != "ServerSelectionDiagnostics";
        expect_answers({{first.c_str(), {}, offered ? "1" : "0"}, {second.c_str(), {}, "0"}});
        expect_read_only({first.c_str(), second.c_str()});
    }
}

TEST_F(DiagnosticsSettings, ResultsAreReadOnly) {
    expect_read_only({"IPPingDiagnostics_SuccessCount",
                      "IPPingDiagnostics_AverageResponseTime",
                      "IP_Diagnostics_IPPing_FailureCount",
                      "IP_Diagnostics_IPPing_DSCP",
                      "IP_Diagnostics_IPPing_MinimumResponseTimeDetailed",
                      "IP_Diagnostics_TraceRoute_ProtocolVersion",
                      "IP_Diagnostics_TraceRoute_DSCP",
                      "IP_Diagnostics_TraceRoute_ResponseTime",
                      "IP_Diagnostics_TraceRoute_RouteHopsNumberOfEntries",
                      "IP_Diagnostics_TraceRoute_RouteHops_Host",
                      "IP_Diagnostics_TraceRoute_RouteHops_HostAddress",
                      "IP_Diagnostics_TraceRoute_RouteHops_RTTimes",
                      "IP_Diagnostics_TraceRoute_RouteHops_ErrorCode",
                      "IP_Diagnostics_DownloadDiagnostics_ROMTime",
                      "IP_Diagnostics_DownloadDiagnostics_DownloadTransports",
                      "IP_Diagnostics_DownloadDiagnostics_DownloadDiagnosticMaxConnections",
                      "IP_Diagnostics_UploadDiagnostics_TotalBytesSent",
                      "IP_Diagnostics_UDPEchoConfig_EchoPlusSupported",
                      "IP_Diagnostics_UDPEchoConfig_PacketsReceived",
                      "WiFi_NeighboringWiFiDiagnostic_ResultNumberOfEntries",
                      "WiFi_NeighboringWiFiDiagnostic_Result_Radio",
                      "WiFi_NeighboringWiFiDiagnostic_Result_Mode",
                      "WiFi_NeighboringWiFiDiagnostic_Result_SSID",
                      "WiFi_NeighboringWiFiDiagnostic_Result_SupportedStandards",
                      "X_QM_NeighboringWiFiDiagnostic_Result_X_QM_ExtensionChannel"});
}

TEST_F(DiagnosticsSettings, AStoreThatCannotBeWrittenRefusesASet) {
    std::filesystem::remove_all(kScratch);
    file(kScratch, "no directory\n");
    for (const auto& [name, value] : {std::pair{"IPPingDiagnostics_DiagnosticsState", "Requested"},
                                      {"IPPingDiagnostics_Host", "h"},
                                      {"IP_Diagnostics_TraceRoute_Host", "h"},
                                      {"IP_Diagnostics_DownloadDiagnostics_DSCP", "1"},
                                      {"IP_Diagnostics_UploadDiagnostics_Interface", "None"},
                                      {"IP_Diagnostics_UploadDiagnostics_DiagnosticsState", "Requested"},
                                      {"IP_Diagnostics_UDPEchoConfig_UDPPort", "7"},
                                      {"IP_Diagnostics_UDPEchoConfig_Enable", "1"},
                                      {"IP_Diagnostics_UDPEchoConfig_Interface", "None"}}) {
        const Result result = set(name, {}, value);
        EXPECT_EQ(result.code, -1) << name;
        EXPECT_EQ(result.flags, 0U) << name;
    }
}

}  // namespace
