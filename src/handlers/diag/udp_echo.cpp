// Device.IP.Diagnostics.UDPEchoConfig.: the settings and counters of the UDP echo responder. Unlike other
// handlers these take a SET in the apply pass only.
#include <cstring>

#include "core/refusal.h"
#include "handlers/diag/diagnostics.h"

using namespace cwmp;

namespace {

constexpr Section kEcho{kDiagnosticsPackage, "udpecho"};
constexpr const char* kNever = "1970-01-01T00:00:00.000Z";

// The stage pass is refused, but begins a transaction as that of any SET does.
bool is_known(int op) {
    if (op == CWMP_OP_STAGE) begin_stage_pass();
    return op == CWMP_OP_GET || op == CWMP_OP_APPLY;
}

int setting(int op, Arguments args, const Option& parameter) {
    return is_known(op) ? test_option(op, args, parameter) : kRefused;
}

// Exactly "true", "1", "false" or "0", as a digit.
std::optional<std::string> switch_digit(const char* value) {
    if (std::strcmp(value, "true") == 0 || std::strcmp(value, "1") == 0) return "1";
    if (std::strcmp(value, "false") == 0 || std::strcmp(value, "0") == 0) return "0";
    return std::nullopt;
}

int set_switch(int op, Arguments args, const char* option, unsigned int apply_when_on,
               Caller caller = Caller::here()) {
    const SetArguments set(op, args);
    if (set.value() == nullptr) return kRefused;
    const auto digit = switch_digit(set.value());
    if (!digit)
        return refuse(caller, kError, "UDPEchoConfig %s set to %s, should be true(1) or false(0).\n", option,
                      set.value());
    if (!write_test(kEcho / option, *digit)) return kRefused;
    if (*digit == "1") set.raise(apply_when_on);
    return kDone;
}

struct Interface {
    const char* path;
    const char* device;
};

// Read back by the first row of a device.
constexpr Interface kInterfaces[] = {
    {"Device.IP.Interface.1", "br-lan"},
    {"Device.IP.Interface.2", "br-wan"},
    {"Device.IP.Interface.3", "br-wan"},
};

std::optional<std::string> device_of(const std::string& path) {
    if (path.empty() || path == kNoTest) return kNoTest;
    for (const auto& interface : kInterfaces) {
        if (path == interface.path) return interface.device;
    }
    return std::nullopt;
}

}  // namespace

HANDLER(IP_Diagnostics_UDPEchoConfig_Interface) {
    constexpr std::size_t kLongest = 100;
    if (!is_known(op)) return kRefused;
    if (op == CWMP_OP_GET) {
        const auto device = read_test(kEcho / "IfName");
        for (const auto& interface : kInterfaces) {
            if (device == interface.device) return answer(args, interface.path);
        }
        return answer(args, "");
    }
    const SetArguments set(op, args);
    if (set.value() == nullptr || !text_within(set.value(), kLongest)) return kRefused;
    const auto device = device_of(set.value());
    if (!device) return REFUSE("Don't support this interface : %s now\n", set.value());
    return write_test(kEcho / "IfName", *device) ? kDone : kRefused;
}

PARAMETER(IP_Diagnostics_UDPEchoConfig_UDPPort, setting, {.at = kEcho / "UDPPort"})
PARAMETER(IP_Diagnostics_UDPEchoConfig_SourceIPAddress, setting, {.at = kEcho / "SourceIPAddress"})

HANDLER(IP_Diagnostics_UDPEchoConfig_Enable) {
    if (!is_known(op)) return kRefused;
    if (op != CWMP_OP_GET) return set_switch(op, args, "Enable", CWMP_APPLY_UDP_ECHO);
    const auto stored = read_test(kEcho / "Enable");
    if (!stored) return kRefused;
    if (*stored != "0" && *stored != "1")
        return REFUSE("Internal Error: UDPEchoConfig Enable is %s, should be 0 or 1.\n", stored->c_str());
    return answer(args, *stored);
}

HANDLER(IP_Diagnostics_UDPEchoConfig_EchoPlusEnabled) {
    if (!is_known(op)) return kRefused;
    if (op != CWMP_OP_GET) return set_switch(op, args, "EchoPlusEnabled", 0);
    return test_result(op, args, kEcho / "EchoPlusEnabled", "1");
}

PARAMETER(IP_Diagnostics_UDPEchoConfig_EchoPlusSupported, test_result, kEcho / "EchoPlusSupported", "1")
PARAMETER(IP_Diagnostics_UDPEchoConfig_PacketsReceived, test_result, kEcho / "PacketsReceived", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_PacketsResponded, test_result, kEcho / "PacketsResponded", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_BytesReceived, test_result, kEcho / "BytesReceived", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_BytesResponded, test_result, kEcho / "BytesResponded", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_TimeFirstPacketReceived, test_result,
          kEcho / "TimeFirstPacketReceived", kNever)
PARAMETER(IP_Diagnostics_UDPEchoConfig_TimeLastPacketReceived, test_result, kEcho / "TimeLastPacketReceived",
          kNever)
