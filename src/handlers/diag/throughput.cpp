// Device.IP.Diagnostics.DownloadDiagnostics. and UploadDiagnostics.: the settings and results of the
// transfers that the agent runs.
#include <climits>
#include <cstdlib>
#include <cstring>

#include "handlers/diag/diagnostics.h"

using namespace cwmp;

namespace {

constexpr Section kDownload{kDiagnosticsPackage, "download"};
constexpr Section kUpload{kDiagnosticsPackage, "upload"};
constexpr std::size_t kLongestUrl = 256;

int request(int op, Arguments args, const Section& test, unsigned int apply) {
    if (op == CWMP_OP_GET) return test_result(op, args, test / "state", kNoTest);
    if (!is_request(SetArguments(op, args))) return kRefused;
    return test_option(op, args, {.at = test / "state", .apply = apply});
}

// A setting: a new one makes the result of an earlier test void.
int setting(int op, Arguments args, const Section& test, const Option& parameter) {
    const int result = test_option(op, args, parameter);
    if (op == CWMP_OP_GET || result != kDone) return result;
    return write_test(test / "state", kNoTest) ? kDone : kRefused;
}

int url(int op, Arguments args, const Section& test) {
    return setting(op, args, test, {.at = test / "url", .accepts = at_most<kLongestUrl>});
}

int dscp(int op, Arguments args, const Section& test) {
    return setting(op, args, test, {.at = test / "dscp", .missing = "0", .accepts = number<0, 63>});
}

int ethernet_priority(int op, Arguments args, const Section& test) {
    return setting(op, args, test, {.at = test / "eth_prio", .missing = "0", .accepts = number<0, 7>});
}

int duration(int op, Arguments args, const Section& test) {
    return setting(op, args, test, {.at = test / "test_dura", .missing = "0", .accepts = number<0, 999>});
}

int connections(int op, Arguments args, const Section& test) {
    if (op != CWMP_OP_GET) {
        const auto most = read_test(test / "max_conn");
        const SetArguments set(op, args);
        if (set.value() == nullptr) return kRefused;
        if (!number_within(set.value(), 1, most ? std::strtol(most->c_str(), nullptr, 10) : 1))
            return kRefused;
    }
    return setting(op, args, test, {.at = test / "num_conn", .missing = "1", .accepts = number<1, UINT_MAX>});
}

// The Linux device of the WAN, empty for a WAN type without one.
std::string wan_device() {
    const auto type = read_option({"network_sync", "wan", "wan_type"});
    if (!type) return "br-wan";
    for (const char* tunnel : {"pppoe", "pptp", "l2tp"}) {
        if (*type == tunnel) return *type + "-internet";
    }
    for (const char* plain : {"dhcp", "static", "dslite"}) {
        if (*type == plain) return "br-wan";
    }
    return "";
}

int interface(int op, Arguments args, const Section& test) {
    if (op == CWMP_OP_GET) return test_result(op, args, test / "interface", "br-wan");
    const SetArguments set(op, args);
    std::string device = set.value() != nullptr ? set.value() : "";
    if (device == kNoTest) device.clear();
    if (!device.empty() && device != wan_device()) return kRefused;
    return write_test(test / "interface", device) ? kDone : kRefused;
}

}  // namespace

HANDLER(IP_Diagnostics_DownloadDiagnostics_DiagnosticsState) {
    return request(op, args, kDownload, CWMP_APPLY_DOWNLOAD_TEST);
}
HANDLER(IP_Diagnostics_DownloadDiagnostics_Interface) { return interface(op, args, kDownload); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_DownloadURL) { return url(op, args, kDownload); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_DownloadTransports) {
    return test_result(op, args, kDownload / "transport", "HTTP,FTP");
}
HANDLER(IP_Diagnostics_DownloadDiagnostics_DSCP) { return dscp(op, args, kDownload); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_EthernetPriority) {
    return ethernet_priority(op, args, kDownload);
}
HANDLER(IP_Diagnostics_DownloadDiagnostics_DownloadDiagnosticMaxConnections) {
    return test_result(op, args, kDownload / "max_conn", "7");
}
HANDLER(IP_Diagnostics_DownloadDiagnostics_NumberOfConnections) { return connections(op, args, kDownload); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_TimeBasedTestDuration) { return duration(op, args, kDownload); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_ROMTime) { return test_result(op, args, kDownload / "rom"); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_BOMTime) { return test_result(op, args, kDownload / "bom"); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_EOMTime) { return test_result(op, args, kDownload / "eom"); }
HANDLER(IP_Diagnostics_DownloadDiagnostics_TCPOpenRequestTime) {
    return test_result(op, args, kDownload / "tcp_req_time");
}
HANDLER(IP_Diagnostics_DownloadDiagnostics_TCPOpenResponseTime) {
    return test_result(op, args, kDownload / "tcp_resp_time");
}
HANDLER(IP_Diagnostics_DownloadDiagnostics_TestBytesReceived) {
    return test_result(op, args, kDownload / "test_bytes_recv", "0");
}
HANDLER(IP_Diagnostics_DownloadDiagnostics_TotalBytesReceived) {
    return test_result(op, args, kDownload / "total_bytes_recv", "0");
}

HANDLER(IP_Diagnostics_UploadDiagnostics_DiagnosticsState) {
    return request(op, args, kUpload, CWMP_APPLY_UPLOAD_TEST);
}
HANDLER(IP_Diagnostics_UploadDiagnostics_Interface) { return interface(op, args, kUpload); }
HANDLER(IP_Diagnostics_UploadDiagnostics_UploadURL) { return url(op, args, kUpload); }
HANDLER(IP_Diagnostics_UploadDiagnostics_UploadTransports) {
    return test_result(op, args, kUpload / "transport", "HTTP,FTP");
}
HANDLER(IP_Diagnostics_UploadDiagnostics_DSCP) { return dscp(op, args, kUpload); }
HANDLER(IP_Diagnostics_UploadDiagnostics_EthernetPriority) { return ethernet_priority(op, args, kUpload); }
HANDLER(IP_Diagnostics_UploadDiagnostics_UploadDiagnosticsMaxConnections) {
    return test_result(op, args, kUpload / "max_conn", "7");
}
HANDLER(IP_Diagnostics_UploadDiagnostics_NumberOfConnections) { return connections(op, args, kUpload); }
HANDLER(IP_Diagnostics_UploadDiagnostics_TimeBasedTestDuration) { return duration(op, args, kUpload); }
HANDLER(IP_Diagnostics_UploadDiagnostics_TestFileLength) {
    return setting(op, args, kUpload,
                   {.at = kUpload / "file_len", .missing = "0", .accepts = wrapping_number});
}
HANDLER(IP_Diagnostics_UploadDiagnostics_ROMTime) { return test_result(op, args, kUpload / "rom"); }
HANDLER(IP_Diagnostics_UploadDiagnostics_BOMTime) { return test_result(op, args, kUpload / "bom"); }
HANDLER(IP_Diagnostics_UploadDiagnostics_EOMTime) { return test_result(op, args, kUpload / "eom"); }
HANDLER(IP_Diagnostics_UploadDiagnostics_TCPOpenRequestTime) {
    return test_result(op, args, kUpload / "tcp_req_time");
}
HANDLER(IP_Diagnostics_UploadDiagnostics_TCPOpenResponseTime) {
    return test_result(op, args, kUpload / "tcp_resp_time");
}
HANDLER(IP_Diagnostics_UploadDiagnostics_TestBytesSent) {
    return test_result(op, args, kUpload / "test_bytes_sent", "0");
}
HANDLER(IP_Diagnostics_UploadDiagnostics_TotalBytesSent) {
    return test_result(op, args, kUpload / "total_bytes_sent", "0");
}
