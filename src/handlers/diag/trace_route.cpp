// Device.IP.Diagnostics.TraceRoute.: settings, results and the run itself.
#include <climits>
#include <cstring>

#include "core/command.h"
#include "core/shell.h"
#include "cwmp/diagnostics.h"
#include "handlers/diag/detached.h"
#include "handlers/diag/diagnostics.h"
#include "handlers/diag/process_list.h"

using namespace cwmp;

namespace {

constexpr const char* kPackage = "trace_route";
constexpr Section kTrace{kPackage, "traceroute"};
constexpr const char* kUnresolved = "Error_CannotResolveHostName";
constexpr std::size_t kLongestName = 256;

std::optional<std::string> device_of_interface(const char* value) {
    if (std::strcmp(value, "Device.IP.Interface.1") == 0) return "br-wan";
    return text_within(value, kLongestName);
}

// An option of the hop that locate names.
int hop(int op, Arguments args, const char* option, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto number = result_number(GetArguments(args).locate(), caller);
    if (!number) return kRefused;
    return test_result(op, args, {kPackage, std::to_string(*number).c_str(), option});
}

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
    command += timeout ? " -w " + std::to_string(decimal_prefix(timeout->c_str()) / 1000) : " -w 5 ";
    command += " -m " + shell_word(read_test(kTrace / "MaxHopCount").value_or("30"));
    const std::string host = read_test(kTrace / "Host").value_or("");
    return {command + " " + shell_word(host) + " > /tmp/tr069/trace_result 2>&1 &", host};
}

// Whether the process list shows a traceroute to the host; nothing when it cannot be asked for.
std::optional<bool> is_running(const std::string& host, Caller caller) {
    constexpr std::size_t kProcessLine = 4095;
    Command processes("ps | grep traceroute");
    if (!processes) {
        log_event(caller, kError, "Failed to exec cat ps | grep traceroute\n");
        return std::nullopt;
    }
    bool found = false;
    while (const auto line = processes.line(kProcessLine)) {
        if (shows_run_of("traceroute", *line) && contains(*line, host.c_str())) found = true;
    }
    return found;
}

void wait_for_end(const std::string& host, Caller caller) {
    std::optional<bool> running;
    while ((running = is_running(host, caller)) == true) run("sleep 1");
    if (running) set_running(false);
}

[[noreturn]] void trace(const Run& test, Caller caller) {
    run(test.command);
    set_running(true);
    set_state(kNoTest);
    wait_for_end(test.host, caller);
    run("/usr/bin/tr069/get_trace_result");
    const bool no_hops = read_test(kTrace / "RouteHopsNumberOfEntries") == "0";
    set_state(no_hops ? kUnresolved : "Complete");
    finish_job(caller);
}

}  // namespace

int libdiagnostics_startTraceRoute() {
    const Caller caller = {__func__, __LINE__};
    const Run run = configured_run();
    if (run.host.empty()) {
        set_state(kUnresolved);
        return kDone;
    }
    switch (detach(caller)) {
        case Side::kAgent:
            return kDone;
        case Side::kJob:
            trace(run, caller);
        case Side::kFailed:
            break;
    }
    return kRefused;
}

// The state stays as it is until the run begins.
HANDLER(IP_Diagnostics_TraceRoute_DiagnosticsState) {
    if (op == CWMP_OP_GET) return test_state(args, kTrace / "DiagnosticsState", kTrace / "last_trace_status");
    const SetArguments set(op, args);
    if (!is_request(set)) return kRefused;
    set.raise(CWMP_APPLY_TRACE_ROUTE);
    return kDone;
}

PARAMETER(IP_Diagnostics_TraceRoute_Interface, test_option,
          {.at = kTrace / "Interface", .accepts = device_of_interface})

PARAMETER(IP_Diagnostics_TraceRoute_ProtocolVersion, constant, "IPv4")

HANDLER(IP_Diagnostics_TraceRoute_Host) {
    return test_option(op, args, {.at = kTrace / "Host", .accepts = at_most<kLongestName>},
                       {.refused = "Out of Range\n\n"});
}

PARAMETER(IP_Diagnostics_TraceRoute_NumberOfTries, test_option,
          {.at = kTrace / "NumberOfTries", .accepts = numeric_text<INT_MIN, 10>})

HANDLER(IP_Diagnostics_TraceRoute_Timeout) {
    return test_option(op, args, {.at = kTrace / "Timeout", .accepts = numeric_text<1, INT_MAX>},
                       {.refused = "Out of range \n\n"});
}

HANDLER(IP_Diagnostics_TraceRoute_DataBlockSize) {
    return test_option(op, args, {.at = kTrace / "DataBlockSize", .accepts = numeric_text<1, 65535>},
                       {.refused = "Out of range \n\n"});
}

HANDLER(IP_Diagnostics_TraceRoute_MaxHopCount) {
    return test_option(op, args, {.at = kTrace / "MaxHopCount", .accepts = numeric_text<1, 64>},
                       {.refused = "Out of range \n\n"});
}

PARAMETER(IP_Diagnostics_TraceRoute_DSCP, constant, "0")
PARAMETER(IP_Diagnostics_TraceRoute_ResponseTime, test_result, kTrace / "time", "0")
PARAMETER(IP_Diagnostics_TraceRoute_RouteHopsNumberOfEntries, test_result,
          kTrace / "RouteHopsNumberOfEntries")

PARAMETER(IP_Diagnostics_TraceRoute_RouteHops_Host, hop, "Host")
ALIAS(IP_Diagnostics_TraceRoute_RouteHops_HostAddress, IP_Diagnostics_TraceRoute_RouteHops_Host)
PARAMETER(IP_Diagnostics_TraceRoute_RouteHops_RTTimes, hop, "RTTimes")
PARAMETER(IP_Diagnostics_TraceRoute_RouteHops_ErrorCode, constant, "0")
