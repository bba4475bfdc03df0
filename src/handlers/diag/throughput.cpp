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

int request(int op, Arguments args, const Section& test, unsigned int apply) {
    return test_option(op, args, {.at = test / "state", .missing = kNoTest, .accepts = requested, .apply = apply});
}

// A setting: a new one makes the result of an earlier test void.
int setting(int op, Arguments args, const Section& test, const Option& parameter) {
    const int result = test_option(op, args, parameter);
    if (op == CWMP_OP_GET || result != kDone) return result;
    return write_test(test / "state", kNoTest) ? kDone : kRefused;
}

int url(int op, Arguments args, const Section& test) {
    return setting(op, args, test, {.at = test / "url", .accepts = at_most<kLongestName>});
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
        const int fits = change(op, args, [&](const SetArguments& set) {
            const long bound = most ? std::strtol(most->c_str(), nullptr, 10) : 1;
            return number_within(set.value(), 1, bound) ? kDone : kRefused;
        });
        if (fits != kDone) return fits;
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
    const PassArguments set(op, args);
    std::string device = set.text() != nullptr ? set.text() : "";
    if (device == kNoTest) device.clear();
    if (!device.empty() && device != wan_device()) return kRefused;
    return write_test(test / "interface", device) ? kDone : kRefused;
}

}  // namespace

PARAMETER(IP_Diagnostics_DownloadDiagnostics_DiagnosticsState, request, kDownload, CWMP_APPLY_DOWNLOAD_TEST)
PARAMETER(IP_Diagnostics_DownloadDiagnostics_Interface, interface, kDownload)
PARAMETER(IP_Diagnostics_DownloadDiagnostics_DownloadURL, url, kDownload)
PARAMETER(IP_Diagnostics_DownloadDiagnostics_DownloadTransports, test_result, kDownload / "transport", "HTTP,FTP")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_DSCP, dscp, kDownload)
PARAMETER(IP_Diagnostics_DownloadDiagnostics_EthernetPriority, ethernet_priority, kDownload)
PARAMETER(IP_Diagnostics_DownloadDiagnostics_DownloadDiagnosticMaxConnections, test_result, kDownload / "max_conn", "7")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_NumberOfConnections, connections, kDownload)
PARAMETER(IP_Diagnostics_DownloadDiagnostics_TimeBasedTestDuration, duration, kDownload)
PARAMETER(IP_Diagnostics_DownloadDiagnostics_ROMTime, test_result, kDownload / "rom")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_BOMTime, test_result, kDownload / "bom")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_EOMTime, test_result, kDownload / "eom")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_TCPOpenRequestTime, test_result, kDownload / "tcp_req_time")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_TCPOpenResponseTime, test_result, kDownload / "tcp_resp_time")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_TestBytesReceived, test_result, kDownload / "test_bytes_recv", "0")
PARAMETER(IP_Diagnostics_DownloadDiagnostics_TotalBytesReceived, test_result, kDownload / "total_bytes_recv", "0")

PARAMETER(IP_Diagnostics_UploadDiagnostics_DiagnosticsState, request, kUpload, CWMP_APPLY_UPLOAD_TEST)
PARAMETER(IP_Diagnostics_UploadDiagnostics_Interface, interface, kUpload)
PARAMETER(IP_Diagnostics_UploadDiagnostics_UploadURL, url, kUpload)
PARAMETER(IP_Diagnostics_UploadDiagnostics_UploadTransports, test_result, kUpload / "transport", "HTTP,FTP")
PARAMETER(IP_Diagnostics_UploadDiagnostics_DSCP, dscp, kUpload)
PARAMETER(IP_Diagnostics_UploadDiagnostics_EthernetPriority, ethernet_priority, kUpload)
PARAMETER(IP_Diagnostics_UploadDiagnostics_UploadDiagnosticsMaxConnections, test_result, kUpload / "max_conn", "7")
PARAMETER(IP_Diagnostics_UploadDiagnostics_NumberOfConnections, connections, kUpload)
PARAMETER(IP_Diagnostics_UploadDiagnostics_TimeBasedTestDuration, duration, kUpload)
PARAMETER(IP_Diagnostics_UploadDiagnostics_TestFileLength, setting, kUpload,
          {.at = kUpload / "file_len", .missing = "0", .accepts = wrapping_number})
PARAMETER(IP_Diagnostics_UploadDiagnostics_ROMTime, test_result, kUpload / "rom")
PARAMETER(IP_Diagnostics_UploadDiagnostics_BOMTime, test_result, kUpload / "bom")
PARAMETER(IP_Diagnostics_UploadDiagnostics_EOMTime, test_result, kUpload / "eom")
PARAMETER(IP_Diagnostics_UploadDiagnostics_TCPOpenRequestTime, test_result, kUpload / "tcp_req_time")
PARAMETER(IP_Diagnostics_UploadDiagnostics_TCPOpenResponseTime, test_result, kUpload / "tcp_resp_time")
PARAMETER(IP_Diagnostics_UploadDiagnostics_TestBytesSent, test_result, kUpload / "test_bytes_sent", "0")
PARAMETER(IP_Diagnostics_UploadDiagnostics_TotalBytesSent, test_result, kUpload / "total_bytes_sent", "0")
