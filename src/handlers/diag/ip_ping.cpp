// InternetGatewayDevice.IPPingDiagnostics. and Device.IP.Diagnostics.IPPing.: the settings and results of the
// ping that the agent runs.
#include <climits>

#include "core/table.h"
#include "cwmp/diagnostics.h"
#include "cwmp/interface_stack.h"
#include "handlers/diag/diagnostics.h"

using namespace cwmp;

namespace {

constexpr Section kPing{kDiagnosticsPackage, "ping"};
constexpr unsigned int kWanOfPing = 42;

struct Protocol {
    const char* name;
    const char* stored;
};

constexpr Protocol kProtocols[] = {{"Any", "Any"}, {"IPv4", "-4"}, {"IPv6", "-6"}};

std::optional<std::string> protocol_option(const char* value) {
    const auto* protocol = row_with(kProtocols, &Protocol::name, value);
    return protocol != nullptr ? std::optional<std::string>(protocol->stored) : std::nullopt;
}

// The WAN as it is now, whatever carries it.
std::optional<std::string> device(const char* value) {
    return device_of_interface(value, getFuncInterface(kWanOfPing));
}

std::optional<std::string> timeout_text(const char* value) {
    if (number_of_setting(value).value_or(0) == 0) return std::nullopt;
    return value;
}

}  // namespace

int TimeNomal(int op, va_list args, const char* option) { return test_result(op, args, kPing / option, "0"); }

HANDLER(IPPingDiagnostics_DiagnosticsState) {
    constexpr OptionPath kState = kPing / "DiagnosticsState";
    return test_state(op, args, kState, kPing / "last_ping_status",
                      {.at = kState, .accepts = requested, .apply = CWMP_APPLY_PING_TEST});
}

PARAMETER(IPPingDiagnostics_Host, test_option, {.at = kPing / "Host", .accepts = at_most<kLongestName>})

PARAMETER(IPPingDiagnostics_Interface, test_option, {.at = kPing / "Interface", .accepts = device})

HANDLER(IPPingDiagnostics_ProtocolVersion) {
    if (op != CWMP_OP_GET) {
        return test_option(op, args, {.at = kPing / "ProtocolVersion", .accepts = protocol_option});
    }
    const auto stored = read_test(kPing / "ProtocolVersion").value_or("");
    const auto* protocol = row_with(kProtocols, &Protocol::stored, stored);
    return answer(args, protocol != nullptr ? protocol->name : "");
}

PARAMETER(IPPingDiagnostics_NumberOfRepetitions, test_option,
          {.at = kPing / "NumberOfRepetitions", .missing = "3", .accepts = numeric_text<1, INT_MAX>})

PARAMETER(IPPingDiagnostics_Timeout, test_option, {.at = kPing / "Timeout", .missing = "100", .accepts = timeout_text})

PARAMETER(IPPingDiagnostics_DataBlockSize, test_option,
          {.at = kPing / "DataBlockSize", .missing = "38", .accepts = numeric_text<1, 65535>})

PARAMETER(IPPingDiagnostics_SuccessCount, test_result, kPing / "SuccessCount")
PARAMETER(IPPingDiagnostics_FailureCount, test_result, kPing / "FailureCount")

PARAMETER(IPPingDiagnostics_MinimumResponseTime, TimeNomal, "MinimumResponseTime")
PARAMETER(IPPingDiagnostics_MaximumResponseTime, TimeNomal, "MaximumResponseTime")
PARAMETER(IPPingDiagnostics_AverageResponseTime, TimeNomal, "AverageResponseTime")
PARAMETER(IPPingDiagnostics_MinimumResponseTimeDetailed, TimeNomal, "MinimumResponseTimeDetailed")
PARAMETER(IPPingDiagnostics_MaximumResponseTimeDetailed, TimeNomal, "MaximumResponseTimeDetailed")
PARAMETER(IPPingDiagnostics_AverageResponseTimeDetailed, TimeNomal, "AverageResponseTimeDetailed")

ALIAS(IP_Diagnostics_IPPing_DiagnosticsState, IPPingDiagnostics_DiagnosticsState)
ALIAS(IP_Diagnostics_IPPing_Host, IPPingDiagnostics_Host)
ALIAS(IP_Diagnostics_IPPing_Interface, IPPingDiagnostics_Interface)
ALIAS(IP_Diagnostics_IPPing_ProtocolVersion, IPPingDiagnostics_ProtocolVersion)
ALIAS(IP_Diagnostics_IPPing_NumberOfRepetitions, IPPingDiagnostics_NumberOfRepetitions)
ALIAS(IP_Diagnostics_IPPing_Timeout, IPPingDiagnostics_Timeout)
ALIAS(IP_Diagnostics_IPPing_DataBlockSize, IPPingDiagnostics_DataBlockSize)
ALIAS(IP_Diagnostics_IPPing_SuccessCount, IPPingDiagnostics_SuccessCount)
ALIAS(IP_Diagnostics_IPPing_FailureCount, IPPingDiagnostics_FailureCount)
ALIAS(IP_Diagnostics_IPPing_MinimumResponseTime, IPPingDiagnostics_MinimumResponseTime)
ALIAS(IP_Diagnostics_IPPing_MaximumResponseTime, IPPingDiagnostics_MaximumResponseTime)
ALIAS(IP_Diagnostics_IPPing_AverageResponseTime, IPPingDiagnostics_AverageResponseTime)
ALIAS(IP_Diagnostics_IPPing_MinimumResponseTimeDetailed, IPPingDiagnostics_MinimumResponseTimeDetailed)
ALIAS(IP_Diagnostics_IPPing_MaximumResponseTimeDetailed, IPPingDiagnostics_MaximumResponseTimeDetailed)
ALIAS(IP_Diagnostics_IPPing_AverageResponseTimeDetailed, IPPingDiagnostics_AverageResponseTimeDetailed)
PARAMETER(IP_Diagnostics_IPPing_DSCP, constant, "0")
