#include "diagnostics_test.h"

namespace {

class Throughput : public DiagnosticsSettings {
  protected:
    std::string handler_of(const char* parameter) const {
        return std::string("IP_Diagnostics_") + direction + "Diagnostics_" + parameter;
    }
    const char* direction = "";
};

TEST_F(Throughput, ANewSettingVoidsTheState) {
    struct Row {
        const char* parameter;
        std::string value;
        int code;
        const char* option;
        std::optional<std::string> stored;
    };
    const std::string longest(256, 'u');
    const std::vector<Row> rows = {
        {"URL", "http://x/y?a=b&c", 0, "url", "http://x/y?a=b&c"},
        {"URL", longest, 0, "url", longest},
        {"URL", longest + "u", -1, "url", "before"},
        {"URL", kMeta, 0, "url", kMeta},
        {"DSCP", "63", 0, "dscp", "63"},
        {"DSCP", "007", 0, "dscp", "7"},
        {"DSCP", "abc", 0, "dscp", "0"},
        {"DSCP", "64", -1, "dscp", "before"},
        {"DSCP", "-1", -1, "dscp", "before"},
        {"EthernetPriority", "7", 0, "eth_prio", "7"},
        {"EthernetPriority", "8", -1, "eth_prio", "before"},
        {"NumberOfConnections", "1", 0, "num_conn", "1"},
        {"NumberOfConnections", "2", -1, "num_conn", "before"},
        {"NumberOfConnections", "0", -1, "num_conn", "before"},
        {"TimeBasedTestDuration", "999", 0, "test_dura", "999"},
        {"TimeBasedTestDuration", "1000", -1, "test_dura", "before"},
    };
    for (const char* which : {"download", "upload"}) {
        const bool up = which[0] == 'u';
        direction = up ? "Upload" : "Download";
        const std::string section = std::string("diagnostics_config.") + which + ".";
        for (const Row& row : rows) {
            const bool is_url = std::string(row.parameter) == "URL";
            const std::string name =
                handler_of(is_url ? (std::string(direction) + "URL").c_str() : row.parameter);
            expect_settings({{name.c_str(), row.value, row.code, section + row.option, row.stored}});
            EXPECT_EQ(scratch(section + "state"),
                      row.code == 0 ? std::optional<std::string>("None") : std::nullopt);
        }
        const unsigned bit = up ? CWMP_APPLY_UPLOAD_TEST : CWMP_APPLY_DOWNLOAD_TEST;
        const std::string state = handler_of("DiagnosticsState");
        expect_settings({{state.c_str(), "Requested", 0, section + "state", "Requested", bit},
                         {state.c_str(), "None", -1, section + "state", "before"}});
        store(section + "max_conn", "4", kScratch);
        EXPECT_EQ(set(handler_of("NumberOfConnections").c_str(), {}, "4").code, 0);
        EXPECT_EQ(set(handler_of("NumberOfConnections").c_str(), {}, "5").code, -1);
        expect_null_value(handler_of("NumberOfConnections").c_str(), -1);
        expect_null_value(handler_of("DSCP").c_str(), -1);
    }
    const char* length = "IP_Diagnostics_UploadDiagnostics_TestFileLength";
    expect_settings({{length, "4294967295", 0, "diagnostics_config.upload.file_len", "4294967295"},
                     {length, "x", 0, "diagnostics_config.upload.file_len", "0"}});
    EXPECT_EQ(scratch("diagnostics_config.upload.state"), "None");
}

TEST_F(Throughput, TheInterfaceIsTheWanDeviceOrNone) {
    struct Row {
        const char* wan_type;
        const char* device;
    };
    for (const Row& row : {Row{"pppoe", "pppoe-internet"},
                           {"pptp", "pptp-internet"},
                           {"l2tp", "l2tp-internet"},
                           {"dhcp", "br-wan"},
                           {"static", "br-wan"},
                           {"dslite", "br-wan"},
                           {nullptr, "br-wan"},
                           {"bridge", ""}}) {
        std::filesystem::remove("/etc/config/network_sync");
        if (row.wan_type != nullptr) store("network_sync.wan.wan_type", row.wan_type);
        const std::string option = "diagnostics_config.download.interface";
        const char* name = "IP_Diagnostics_DownloadDiagnostics_Interface";
        for (const char* value :
             {"br-wan", "pppoe-internet", "pptp-internet", "l2tp-internet", "bridge-internet"}) {
            const bool taken = std::string(value) == row.device;
            expect_settings({{name, value, taken ? 0 : -1, option, taken ? value : "before"}});
            EXPECT_EQ(scratch("diagnostics_config.download.state"), std::nullopt);
        }
        expect_settings({{name, "None", 0, option, std::nullopt}, {name, "", 0, option, std::nullopt}});
        expect_null_value(name, 0);
    }
    expect_settings({{"IP_Diagnostics_UploadDiagnostics_Interface", "None", 0,
                      "diagnostics_config.upload.interface", std::nullopt}});
}

TEST_F(Throughput, AnswersDefaultsAndResults) {
    struct Row {
        const char* parameter;
        const char* option;
        const char* missing;
    };
    const std::vector<Row> common = {{"DiagnosticsState", "state", "None"},
                                     {"Interface", "interface", "br-wan"},
                                     {"DSCP", "dscp", "0"},
                                     {"EthernetPriority", "eth_prio", "0"},
                                     {"NumberOfConnections", "num_conn", "1"},
                                     {"TimeBasedTestDuration", "test_dura", "0"},
                                     {"ROMTime", "rom", ""},
                                     {"BOMTime", "bom", ""},
                                     {"EOMTime", "eom", ""},
                                     {"TCPOpenRequestTime", "tcp_req_time", ""},
                                     {"TCPOpenResponseTime", "tcp_resp_time", ""}};
    const std::vector<Row> down = {{"DownloadURL", "url", ""},
                                   {"DownloadTransports", "transport", "HTTP,FTP"},
                                   {"DownloadDiagnosticMaxConnections", "max_conn", "7"},
                                   {"TestBytesReceived", "test_bytes_recv", "0"},
                                   {"TotalBytesReceived", "total_bytes_recv", "0"}};
    const std::vector<Row> up = {{"UploadURL", "url", ""},
                                 {"UploadTransports", "transport", "HTTP,FTP"},
                                 {"UploadDiagnosticsMaxConnections", "max_conn", "7"},
                                 {"TestFileLength", "file_len", "0"},
                                 {"TestBytesSent", "test_bytes_sent", "0"},
                                 {"TotalBytesSent", "total_bytes_sent", "0"}};
    for (const auto& [name, section, own] :
         {std::tuple{"Download", "download", down}, std::tuple{"Upload", "upload", up}}) {
        direction = name;
        for (const auto& rows : {common, own}) {
            for (const Row& row : rows) {
                const std::string parameter = handler_of(row.parameter);
                expect_answers({{parameter.c_str(), {}, row.missing}});
                const std::string stored = std::string(section) + " " + row.option;
                store(std::string("diagnostics_config.") + section + "." + row.option, stored, kScratch);
                expect_answers({{parameter.c_str(), {}, stored}});
            }
        }
    }
}

}  // namespace
