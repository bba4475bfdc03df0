// Device.IP.Diagnostics.TraceRoute.: settings, results and the run itself.
#include <climits>

#include "core/command.h"
#include "core/shell.h"
#include "core/text.h"
#include "cwmp/diagnostics.h"
#include "handlers/blocks/row.h"
#include "handlers/diag/detached.h"
#include "handlers/diag/diagnostics.h"
#include "handlers/diag/process_list.h"

using namespace cwmp;

namespace {

constexpr const char* kPackage = "trace_route";
constexpr Section kTrace{kPackage, "traceroute"};
constexpr const char* kUnresolved = "Error_CannotResolveHostName";

// Unlike the ping's a fixed path, and not the WAN's: kept as it is.
std::optional<std::string> device(const char* value) { return device_of_interface(value, "Device.IP.Interface.1"); }

void set_state(const char* state) { write_test(kTrace / "DiagnosticsState", state); }
void set_running(bool running) { write_test(kTrace / "last_trace_status", running ? "1" : "0"); }

struct Run {
    std::string command;
    std::string host;
};

// The words come from the ACS; the numbers among them are stored as it wrote them.
Run configured_run() {
    std::string command = "traceroute";
    if (const auto interface = read_test(kTrace / "Interface")) command += " -i " + shell_word(*interface);
    command += " -q " + shell_word(read_test(kTrace / "NumberOfTries").value_or("3"));
    const auto timeout = read_test(kTrace / "Timeout");
    command += timeout ? formatted(" -w %d", decimal_prefix(timeout->c_str()) / 1000) : " -w 5 ";
    command += " -m " + shell_word(read_test(kTrace / "MaxHopCount").value_or("30"));
    const std::string host = read_test(kTrace / "Host").value_or("");
    return {command + " " + shell_word(host) + " > /tmp/tr069/trace_result 2>&1 &", host};
}

void trace(const Run& test, Caller caller) {
    run(test.command);
    set_running(true);
    set_state(kNoTest);
    if (wait_for_tool({.command = "ps | grep traceroute",
                       .name = "traceroute",
                       .argument = test.host.c_str(),
                       .limit = 4095,
                       .pause = "sleep 1",
                       .cannot_start = "Failed to exec cat ps | grep traceroute\n"},
                      caller))
        set_running(false);
    run("/usr/bin/tr069/get_trace_result");
    const bool no_hops = read_test(kTrace / "RouteHopsNumberOfEntries") == "0";
    set_state(no_hops ? kUnresolved : "Complete");
}

}  // namespace

int libdiagnostics_startTraceRoute() {
    const Caller caller = {__func__, __LINE__};
    const Run run = configured_run();
    if (run.host.empty()) {
        set_state(kUnresolved);
        return kDone;
    }
    return start_job([&] { trace(run, caller); }, caller);
}

// The state stays as it is until the run begins.
PARAMETER(IP_Diagnostics_TraceRoute_DiagnosticsState, test_state, kTrace / "DiagnosticsState",
          kTrace / "last_trace_status", {.accepts = requested, .apply = CWMP_APPLY_TRACE_ROUTE})

PARAMETER(IP_Diagnostics_TraceRoute_Interface, test_option, {.at = kTrace / "Interface", .accepts = device})

PARAMETER(IP_Diagnostics_TraceRoute_ProtocolVersion, constant, "IPv4")

PARAMETER(IP_Diagnostics_TraceRoute_Host, test_option, {.at = kTrace / "Host", .accepts = at_most<kLongestName>},
          {.refused = "Out of Range\n\n"})

PARAMETER(IP_Diagnostics_TraceRoute_NumberOfTries, test_option,
          {.at = kTrace / "NumberOfTries", .accepts = numeric_text<INT_MIN, 10>})

PARAMETER(IP_Diagnostics_TraceRoute_Timeout, test_option,
          {.at = kTrace / "Timeout", .accepts = numeric_text<1, INT_MAX>}, {.refused = "Out of range \n\n"})

PARAMETER(IP_Diagnostics_TraceRoute_DataBlockSize, test_option,
          {.at = kTrace / "DataBlockSize", .accepts = numeric_text<1, 65535>}, {.refused = "Out of range \n\n"})

PARAMETER(IP_Diagnostics_TraceRoute_MaxHopCount, test_option,
          {.at = kTrace / "MaxHopCount", .accepts = numeric_text<1, 64>}, {.refused = "Out of range \n\n"})

PARAMETER(IP_Diagnostics_TraceRoute_DSCP, constant, "0")
PARAMETER(IP_Diagnostics_TraceRoute_ResponseTime, test_result, kTrace / "time", "0")
PARAMETER(IP_Diagnostics_TraceRoute_RouteHopsNumberOfEntries, test_result, kTrace / "RouteHopsNumberOfEntries")

PARAMETER(IP_Diagnostics_TraceRoute_RouteHops_Host, row_option, {kPackage, "Host"})
ALIAS(IP_Diagnostics_TraceRoute_RouteHops_HostAddress, IP_Diagnostics_TraceRoute_RouteHops_Host)
PARAMETER(IP_Diagnostics_TraceRoute_RouteHops_RTTimes, row_option, {kPackage, "RTTimes"})
PARAMETER(IP_Diagnostics_TraceRoute_RouteHops_ErrorCode, constant, "0")
