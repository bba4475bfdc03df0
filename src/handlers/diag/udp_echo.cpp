// Device.IP.Diagnostics.UDPEchoConfig.: the settings and counters of the UDP echo responder. Unlike other
// handlers these take a SET in the apply pass only.
#include <cstring>

#include "core/refusal.h"
#include "core/table.h"
#include "handlers/diag/diagnostics.h"

using namespace cwmp;

namespace {

constexpr Section kEcho{kDiagnosticsPackage, "udpecho"};
constexpr const char* kNever = "1970-01-01T00:00:00.000Z";

// The stage pass is refused, but begins a transaction as that of any SET does.
int setting(int op, Arguments args, const Option& parameter) {
    enter_pass(op);
    return op == CWMP_OP_GET || op == CWMP_OP_APPLY ? test_option(op, args, parameter) : kRefused;
}

// Exactly "true", "1", "false" or "0", as a digit.
std::optional<std::string> switch_digit(const char* value) {
    if (std::strcmp(value, "true") == 0 || std::strcmp(value, "1") == 0) return "1";
    if (std::strcmp(value, "false") == 0 || std::strcmp(value, "0") == 0) return "0";
    return std::nullopt;
}

int set_switch(const SetArguments& set, const char* option, unsigned int apply_when_on, Caller caller) {
    if (set.op() != CWMP_OP_APPLY) return kRefused;
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
    const auto* interface = row_with(kInterfaces, &Interface::path, path);
    return interface != nullptr ? std::optional<std::string>(interface->device) : std::nullopt;
}

int set_interface(const SetArguments& set, Caller caller) {
    constexpr std::size_t kLongest = 100;
    if (set.op() != CWMP_OP_APPLY || !text_within(set.value(), kLongest)) return kRefused;
    const auto device = device_of(set.value());
    if (!device) return refuse(caller, kError, "Don't support this interface : %s now\n", set.value());
    return write_test(kEcho / "IfName", *device) ? kDone : kRefused;
}

int set_enable(const SetArguments& set, Caller caller) {
    return set_switch(set, "Enable", CWMP_APPLY_UDP_ECHO, caller);
}

int set_echo_plus(const SetArguments& set, Caller caller) { return set_switch(set, "EchoPlusEnabled", 0, caller); }

}  // namespace

WRITABLE(IP_Diagnostics_UDPEchoConfig_Interface, set_interface) {
    const auto device = read_test(kEcho / "IfName").value_or("");
    const auto* interface = row_with(kInterfaces, &Interface::device, device);
    return get.answer(interface != nullptr ? interface->path : "");
}

PARAMETER(IP_Diagnostics_UDPEchoConfig_UDPPort, setting, {.at = kEcho / "UDPPort"})
PARAMETER(IP_Diagnostics_UDPEchoConfig_SourceIPAddress, setting, {.at = kEcho / "SourceIPAddress"})

WRITABLE(IP_Diagnostics_UDPEchoConfig_Enable, set_enable) {
    const auto stored = read_test(kEcho / "Enable");
    if (!stored || *stored == "0" || *stored == "1") return get.answer(stored);
    return REFUSE("Internal Error: UDPEchoConfig Enable is %s, should be 0 or 1.\n", stored->c_str());
}

WRITABLE(IP_Diagnostics_UDPEchoConfig_EchoPlusEnabled, set_echo_plus) {
    return get.answer(read_test(kEcho / "EchoPlusEnabled").value_or("1"));
}

PARAMETER(IP_Diagnostics_UDPEchoConfig_EchoPlusSupported, test_result, kEcho / "EchoPlusSupported", "1")
PARAMETER(IP_Diagnostics_UDPEchoConfig_PacketsReceived, test_result, kEcho / "PacketsReceived", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_PacketsResponded, test_result, kEcho / "PacketsResponded", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_BytesReceived, test_result, kEcho / "BytesReceived", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_BytesResponded, test_result, kEcho / "BytesResponded", "0")
PARAMETER(IP_Diagnostics_UDPEchoConfig_TimeFirstPacketReceived, test_result, kEcho / "TimeFirstPacketReceived", kNever)
PARAMETER(IP_Diagnostics_UDPEchoConfig_TimeLastPacketReceived, test_result, kEcho / "TimeLastPacketReceived", kNever)
