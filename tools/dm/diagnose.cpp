#include "diagnose.h"

#include <cwmp/apply_flags.h>
#include <cwmp/diagnostics.h>

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>

#include "completion.h"
#include "text.h"

namespace cwmp {

namespace {

using Setting = Test::Setting;

constexpr Setting kPing[] = {
    {"HOST", "Host", "Whom to ping"},
    {"--interface", "Interface", "The interface to use"},
    {"--protocol", "ProtocolVersion", "Any, IPv4 or IPv6"},
    {"--count", "NumberOfRepetitions", "How often"},
    {"--timeout", "Timeout", "Milliseconds to wait for an answer"},
    {"--size", "DataBlockSize", "Bytes of a packet"},
};
constexpr Setting kTraceRoute[] = {
    {"HOST", "Host", "Where the route leads"},
    {"--interface", "Interface", "The interface to use"},
    {"--tries", "NumberOfTries", "Packets for each hop"},
    {"--timeout", "Timeout", "Milliseconds to wait for an answer"},
    {"--size", "DataBlockSize", "Bytes of a packet"},
    {"--hops", "MaxHopCount", "Hops to go at most"},
};
constexpr Setting kDownload[] = {
    {"URL", "DownloadURL", "What to fetch"},
    {"--interface", "Interface", "The interface to use"},
    {"--dscp", "DSCP", "Differentiated services code point"},
    {"--priority", "EthernetPriority", "Ethernet priority"},
    {"--connections", "NumberOfConnections", "Connections at once"},
    {"--duration", "TimeBasedTestDuration", "Seconds of a test by time"},
};
constexpr Setting kUpload[] = {
    {"URL", "UploadURL", "Where to send to"},
    {"--interface", "Interface", "The interface to use"},
    {"--dscp", "DSCP", "Differentiated services code point"},
    {"--priority", "EthernetPriority", "Ethernet priority"},
    {"--connections", "NumberOfConnections", "Connections at once"},
    {"--duration", "TimeBasedTestDuration", "Seconds of a test by time"},
    {"--length", "TestFileLength", "Bytes to send"},
};
constexpr const char* kHopColumns[] = {"Host", "RTTimes"};
constexpr const char* kNetworkColumns[] = {"SSID",
                                           "BSSID",
                                           "Radio",
                                           "Channel",
                                           "SignalStrength",
                                           "SupportedStandards",
                                           "SecurityModeEnabled",
                                           "EncryptionMode"};
constexpr Test kTests[] = {
    {"traceroute", "Trace the route to a host", "Device.IP.Diagnostics.TraceRoute.", kTraceRoute, "RouteHops",
     kHopColumns},
    {"neighbours",
     "Scan for the Wi-Fi networks around",
     "Device.WiFi.NeighboringWiFiDiagnostic.",
     {},
     "Result",
     kNetworkColumns},
    {"ping", "Request a ping, which the agent runs", "Device.IP.Diagnostics.IPPing.", kPing},
    {"download", "Request a download test, which the agent runs",
     "Device.IP.Diagnostics.DownloadDiagnostics.", kDownload},
    {"upload", "Request an upload test, which the agent runs", "Device.IP.Diagnostics.UploadDiagnostics.",
     kUpload},
};

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

void show(Session& session, const Test& test) {
    session.report.parameters.clear();
    get_values(session, {test.object});
    if (!test.results) return;
    session.report.table = result_rows(test, session.report);
    for (const auto& parameter : session.report.parameters) {
        const bool failed = parameter.path == state_path(test) && !parameter.value.starts_with("Complete");
        if (!failed) continue;
        throw Failure{parameter.path, kNoFault, Exit::Refused, "the test ended in state " + parameter.value};
    }
}

void run(Session& session, const Test& test, std::vector<std::string> assignments, int seconds) {
    // Listens before anything runs: a test can be quicker than dm.
    std::optional<Completion> completion;
    if (test.results) completion.emplace(session.library);
    assignments.push_back(state_path(test) + "=Requested");
    set_values(session, assignments);
    if (!session.report.errors.empty()) return;
    if (completion) {
        start(session);
        completion->wait(seconds);
        session.report.diagnostics_complete = true;
    }
    show(session, test);
}

template <typename Action>
void note_failure(Report& report, Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        report.errors.push_back(failure);
    }
}

}  // namespace

std::span<const Test> tests() { return kTests; }

void diagnose(Session& session, const Test& test, const std::vector<std::string>& assignments, int seconds) {
    note_failure(session.report, [&] { run(session, test, assignments, seconds); });
}

void wait_diagnostics(Session& session, int seconds) {
    note_failure(session.report, [&] {
        Completion(session.library).wait(seconds);
        session.report.diagnostics_complete = true;
    });
}

void hide_arguments(int argc, char** argv) {
    for (int i = 1; i < argc; ++i) std::memset(argv[i], 0, std::strlen(argv[i]));
}

}  // namespace cwmp
