#include "diagnose.h"

#include <cwmp/apply_flags.h>
#include <cwmp/diagnostics.h>
#include <cwmp/uci_access.h>

#include <algorithm>
#include <cctype>
#include <climits>
#include <fstream>
#include <map>
#include <optional>

#include "completion.h"
#include "text.h"

namespace cwmp {

namespace {

using Setting = Test::Setting;

constexpr Setting kInterface = {"--interface", "Interface", "The interface to use"};
constexpr Setting kBytes = {"--size", "DataBlockSize", "Bytes of a packet", "38", 1, 65535};
constexpr Setting kPing[] = {
    {"HOST", "Host", "Whom to ping"},
    kInterface,
    {"--protocol", "ProtocolVersion", "Any, IPv4 or IPv6", "Any"},
    {"--count", "NumberOfRepetitions", "How often", "3", 1, INT_MAX},
    {"--timeout", "Timeout", "Milliseconds to wait for an answer", "100", 1, INT_MAX},
    kBytes,
};
constexpr Setting kTraceRoute[] = {
    {"HOST", "Host", "Where the route leads"},
    kInterface,
    {"--tries", "NumberOfTries", "Packets for each hop", "3", 1, 10},
    {"--timeout", "Timeout", "Milliseconds to wait for an answer", "5000", 1, INT_MAX},
    kBytes,
    {"--hops", "MaxHopCount", "Hops to go at most", "30", 1, 64},
};
constexpr Setting kDscp = {"--dscp", "DSCP", "Differentiated services code point", "0", 0, 63};
constexpr Setting kPriority = {"--priority", "EthernetPriority", "Ethernet priority", "0", 0, 7};
constexpr Setting kConnections = {"--connections", "NumberOfConnections", "Connections at once", "1", 1, INT_MAX};
constexpr Setting kDuration = {"--duration", "TimeBasedTestDuration", "Seconds of a test by time", "0", 0, 999};
constexpr Setting kDownload[] = {
    {"URL", "DownloadURL", "What to fetch"}, kInterface, kDscp, kPriority, kConnections, kDuration};
constexpr Setting kUpload[] = {{"URL", "UploadURL", "Where to send to"},
                               kInterface,
                               kDscp,
                               kPriority,
                               kConnections,
                               kDuration,
                               {"--length", "TestFileLength", "Bytes to send", "0", 0, INT_MAX}};
constexpr const char* kHopColumns[] = {"Host", "RTTimes"};
constexpr const char* kNetworkColumns[] = {
    "SSID",          "BSSID", "Radio", "Channel", "SignalStrength", "SupportedStandards", "SecurityModeEnabled",
    "EncryptionMode"};
constexpr const char* kTraceOutput[] = {"/tmp/tr069/trace_result"};
constexpr const char* kScanOutputs[] = {"/tmp/tr069/NeighboringWiFi_2_4G_log", "/tmp/tr069/NeighboringWiFi_5G_log"};
constexpr Test kTests[] = {
    {"traceroute", "Trace the route to a host", "Device.IP.Diagnostics.TraceRoute.", kTraceRoute, "RouteHops",
     kHopColumns, kTraceOutput},
    {"neighbours",
     "Scan for the Wi-Fi networks around",
     "Device.WiFi.NeighboringWiFiDiagnostic.",
     {},
     "Result",
     kNetworkColumns,
     kScanOutputs,
     "Cell "},
    {"ping", "Request a ping, which the agent runs", "Device.IP.Diagnostics.IPPing.", kPing},
    {"download", "Request a download test, which the agent runs", "Device.IP.Diagnostics.DownloadDiagnostics.",
     kDownload},
    {"upload", "Request an upload test, which the agent runs", "Device.IP.Diagnostics.UploadDiagnostics.", kUpload},
};

// Where it is seen that a test runs.
struct Running {
    const char* name;
    const char* package;
    const char* section;
    const char* option;
};
constexpr Running kRunning[] = {{"traceroute", "trace_route", "traceroute", "last_trace_status"},
                                {"neighbours", "diagnostics_config", "NeighboringWiFi", "last_scan_status"},
                                {"ping", "diagnostics_config", "ping", "last_ping_status"}};

std::string state_path(const Test& test) { return std::string(test.object) + "DiagnosticsState"; }

// The agent's part: the scan starts by itself.
void start(Session& session) {
    if (!(session.report.apply_flags.value_or(0) & CWMP_APPLY_TRACE_ROUTE)) return;
    const auto trace =
        session.library.function<decltype(libdiagnostics_startTraceRoute)>("libdiagnostics_startTraceRoute");
    if (trace() != 0) throw Failure{"diagnostics", kNoFault, Exit::Refused, "the test cannot be started"};
}

// A row for each instance of the results.
std::vector<std::vector<std::string>> result_rows(const Test& test, const Report& report) {
    const std::string table = std::string(test.object) + test.results + '.';
    std::map<int, std::vector<std::string>> rows;
    for (const auto& parameter : report.parameters) {
        if (!parameter.path.starts_with(table)) continue;
        const auto parts = split(std::string_view(parameter.path).substr(table.size()), '.');
        const auto column = std::find(test.columns.begin(), test.columns.end(), parts.back());
        const auto number = decimal<int>(parts.front());
        if (column == test.columns.end() || !number) continue;
        auto& row = rows[*number];
        row.resize(test.columns.size() + 1);
        row.front() = parts.front();
        row[static_cast<size_t>(column - test.columns.begin()) + 1] = parameter.value;
    }
    std::vector<std::vector<std::string>> result(1, std::vector<std::string>{"#"});
    result.front().insert(result.front().end(), test.columns.begin(), test.columns.end());
    for (auto& row : rows) result.push_back(std::move(row.second));
    return result;
}

std::string state(Session& session, const Test& test) {
    const Target target = find_target(session.model, state_path(test));
    return session.agent.get(*target.node, target.numbers);
}

void require_no_error(const Test& test, const std::string& state) {
    if (!state.starts_with("Error")) return;
    throw Failure{state_path(test), kNoFault, Exit::Refused, "the test ended in state " + state};
}

void show(Session& session, const Test& test) {
    session.report.parameters.clear();
    get_values(session, {test.object});
    if (!test.results) {
        session.report.notes.emplace_back("the test is requested: the agent runs it, dm does not");
        return;
    }
    session.report.table_of = std::string(test.object) + test.results + '.';
    session.report.table = result_rows(test, session.report);
    const std::string ended = state(session, test);
    if (ended.starts_with("Complete")) return;
    throw Failure{state_path(test), kNoFault, Exit::Refused, "the test ended in state " + ended};
}

// What the test has found so far.
std::string found_so_far(const Test& test) {
    size_t results = 0;
    for (const char* output : test.outputs) {
        std::ifstream lines(output);
        for (std::string line; std::getline(lines, line);) {
            line.erase(0, line.find_first_not_of(' '));
            const bool counts = *test.mark ? line.starts_with(test.mark) : !line.empty() && std::isdigit(line[0]);
            results += counts ? 1 : 0;
        }
    }
    return std::to_string(results) + (*test.mark ? " cells" : " hops");
}

// Those that are not given get their usual value: what an earlier test has left says nothing about this one.
Words settings(const Test& test, const TestRequest& request) {
    Words assignments;
    for (const Setting& setting : test.settings) {
        const auto given = request.values.find(&setting);
        if (given == request.values.end() && request.keep) continue;
        const std::string value = given == request.values.end() ? setting.otherwise : given->second;
        assignments.push_back(std::string(test.object) + setting.parameter + '=' + value);
    }
    assignments.push_back(state_path(test) + "=Requested");
    return assignments;
}

void run(Session& session, const Test& test, const TestRequest& request, int seconds) {
    // Listens before anything runs: a test can be quicker than dm.
    std::optional<Completion> completion;
    if (test.results) completion.emplace(session.library);
    const std::string before = test.results ? state(session, test) : "";
    set_values(session, settings(test, request));
    if (!session.report.errors.empty()) return;
    if (completion) {
        start(session);
        completion->wait(seconds, [&](int waited) {
            // For a moment the state may still be that of the test before.
            const std::string now = state(session, test);
            if (waited > 0 || now != before) require_no_error(test, now);
            // The output as well.
            return waited > 0 ? found_so_far(test) : "the test starts";
        });
        session.report.diagnostics_complete = true;
    }
    show(session, test);
}

}  // namespace

std::span<const Test> tests() { return kTests; }

void diagnose(Session& session, const Test& test, const TestRequest& request, int seconds) {
    note_failure(session.report, [&] { run(session, test, request, seconds); });
}

void wait_diagnostics(Session& session, int seconds) {
    constexpr int kSecondsToStart = 2;
    using Read = decltype(uciRawGetValue_tr069_config);
    const auto read = session.library.function<Read>("uciRawGetValue_tr069_config");
    auto running = [&]() -> std::string {
        for (const auto& [name, package, section, option] : kRunning) {
            char value[CWMP_VALUE_SIZE] = "";
            if (read(package, section, option, value) == 0 && std::string_view(value) == "1") return name;
        }
        return "";
    };
    note_failure(session.report, [&] {
        Completion(session.library).wait(seconds, [&, idle = -1](int /* waited */) mutable {
            const std::string name = running();
            idle = name.empty() ? idle + 1 : 0;
            if (idle >= kSecondsToStart) throw Failure{"diagnostics", kNoFault, Exit::Refused, "no test runs"};
            return name.empty() ? "no test runs yet" : name + " runs";
        });
        session.report.diagnostics_complete = true;
    });
}

}  // namespace cwmp
