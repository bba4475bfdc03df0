// InternetGatewayDevice.IPPingDiagnostics. and Device.IP.Diagnostics.IPPing.: the settings and results of the
// ping that the agent runs.
#include <climits>
#include <cstring>

#include "cwmp/diagnostics.h"
#include "cwmp/interface_stack.h"
#include "handlers/diag/diagnostics.h"

using namespace cwmp;

namespace {

constexpr Section kPing{kDiagnosticsPackage, "ping"};
constexpr unsigned int kWanOfPing = 42;
constexpr std::size_t kLongestName = 256;

struct Protocol {
    const char* name;
    const char* stored;
};

constexpr Protocol kProtocols[] = {{"Any", "Any"}, {"IPv4", "-4"}, {"IPv6", "-6"}};

std::optional<std::string> protocol_option(const char* value) {
    for (const auto& protocol : kProtocols) {
        if (std::strcmp(value, protocol.name) == 0) return protocol.stored;
    }
    return std::nullopt;
}

// The job binds to a Linux device: the WAN's data-model path becomes one, other texts stay as they are.
std::optional<std::string> device_of_interface(const char* value) {
    const std::string wan = getFuncInterface(kWanOfPing);
    if (!wan.empty() && wan == value) return "br-wan";
    return text_within(value, kLongestName);
}

std::optional<std::string> timeout_text(const char* value) {
    if (number_of_setting(value).value_or(0) == 0) return std::nullopt;
    return value;
}

}  // namespace

int TimeNomal(int op, va_list args, const char* option) { return test_result(op, args, kPing / option, "0"); }

HANDLER(IPPingDiagnostics_DiagnosticsState) {
    if (op == CWMP_OP_GET) return test_state(args, kPing / "DiagnosticsState", kPing / "last_ping_status");
    if (!is_request(SetArguments(op, args))) return kRefused;
    return test_option(op, args, {.at = kPing / "DiagnosticsState", .apply = CWMP_APPLY_PING_TEST});
}

HANDLER(IPPingDiagnostics_Host) {
    return test_option(op, args, {.at = kPing / "Host", .accepts = at_most<kLongestName>});
}

HANDLER(IPPingDiagnostics_Interface) {
    return test_option(op, args, {.at = kPing / "Interface", .accepts = device_of_interface});
}

HANDLER(IPPingDiagnostics_ProtocolVersion) {
    if (op != CWMP_OP_GET) {
        return test_option(op, args, {.at = kPing / "ProtocolVersion", .accepts = protocol_option});
    }
    const auto stored = read_test(kPing / "ProtocolVersion");
    const char* name = "";
    for (const auto& protocol : kProtocols) {
        if (stored == protocol.stored) name = protocol.name;
    }
    return GetArguments(args).answer(name);
}

HANDLER(IPPingDiagnostics_NumberOfRepetitions) {
    return test_option(
        op, args, {.at = kPing / "NumberOfRepetitions", .missing = "3", .accepts = numeric_text<1, INT_MAX>});
}

HANDLER(IPPingDiagnostics_Timeout) {
    return test_option(op, args, {.at = kPing / "Timeout", .missing = "100", .accepts = timeout_text});
}

HANDLER(IPPingDiagnostics_DataBlockSize) {
    return test_option(op, args,
                       {.at = kPing / "DataBlockSize", .missing = "38", .accepts = numeric_text<1, 65535>});
}

HANDLER(IPPingDiagnostics_SuccessCount) { return test_result(op, args, kPing / "SuccessCount"); }
HANDLER(IPPingDiagnostics_FailureCount) { return test_result(op, args, kPing / "FailureCount"); }

HANDLER(IPPingDiagnostics_MinimumResponseTime) { return TimeNomal(op, args, "MinimumResponseTime"); }
HANDLER(IPPingDiagnostics_MaximumResponseTime) { return TimeNomal(op, args, "MaximumResponseTime"); }
HANDLER(IPPingDiagnostics_AverageResponseTime) { return TimeNomal(op, args, "AverageResponseTime"); }
HANDLER(IPPingDiagnostics_MinimumResponseTimeDetailed) {
    return TimeNomal(op, args, "MinimumResponseTimeDetailed");
}
HANDLER(IPPingDiagnostics_MaximumResponseTimeDetailed) {
    return TimeNomal(op, args, "MaximumResponseTimeDetailed");
}
HANDLER(IPPingDiagnostics_AverageResponseTimeDetailed) {
    return TimeNomal(op, args, "AverageResponseTimeDetailed");
}

HANDLER(IP_Diagnostics_IPPing_DiagnosticsState) { return IPPingDiagnostics_DiagnosticsState(op, args); }
HANDLER(IP_Diagnostics_IPPing_Host) { return IPPingDiagnostics_Host(op, args); }
HANDLER(IP_Diagnostics_IPPing_Interface) { return IPPingDiagnostics_Interface(op, args); }
HANDLER(IP_Diagnostics_IPPing_ProtocolVersion) { return IPPingDiagnostics_ProtocolVersion(op, args); }
HANDLER(IP_Diagnostics_IPPing_NumberOfRepetitions) { return IPPingDiagnostics_NumberOfRepetitions(op, args); }
HANDLER(IP_Diagnostics_IPPing_Timeout) { return IPPingDiagnostics_Timeout(op, args); }
HANDLER(IP_Diagnostics_IPPing_DataBlockSize) { return IPPingDiagnostics_DataBlockSize(op, args); }
HANDLER(IP_Diagnostics_IPPing_SuccessCount) { return IPPingDiagnostics_SuccessCount(op, args); }
HANDLER(IP_Diagnostics_IPPing_FailureCount) { return IPPingDiagnostics_FailureCount(op, args); }
HANDLER(IP_Diagnostics_IPPing_MinimumResponseTime) { return IPPingDiagnostics_MinimumResponseTime(op, args); }
HANDLER(IP_Diagnostics_IPPing_MaximumResponseTime) { return IPPingDiagnostics_MaximumResponseTime(op, args); }
HANDLER(IP_Diagnostics_IPPing_AverageResponseTime) { return IPPingDiagnostics_AverageResponseTime(op, args); }
HANDLER(IP_Diagnostics_IPPing_MinimumResponseTimeDetailed) {
    return IPPingDiagnostics_MinimumResponseTimeDetailed(op, args);
}
HANDLER(IP_Diagnostics_IPPing_MaximumResponseTimeDetailed) {
    return IPPingDiagnostics_MaximumResponseTimeDetailed(op, args);
}
HANDLER(IP_Diagnostics_IPPing_AverageResponseTimeDetailed) {
    return IPPingDiagnostics_AverageResponseTimeDetailed(op, args);
}
HANDLER(IP_Diagnostics_IPPing_DSCP) { return constant(op, args, "0"); }
