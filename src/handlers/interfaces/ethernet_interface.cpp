// Device.Ethernet.Interface.{i}.: 1 and 2 of the LAN, 3 of the WAN; an access point counts them as its profile does.
#include <strings.h>

#include <initializer_list>

#include "core/command.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "handlers/blocks/numbered.h"
#include "handlers/interfaces/values.h"
#include "platform/ethernet_ports.h"

using namespace cwmp;
using namespace cwmp::interfaces;

namespace {

constexpr int kPorts = 3;

struct Word {
    const char* told;
    const char* shown;
};

const char* shown(const std::string& told, std::initializer_list<Word> words, const char* otherwise) {
    for (const auto& word : words) {
        if (strcasecmp(told.c_str(), word.told) == 0) return word.shown;
    }
    return otherwise;
}

// What the link tool says of a port; nothing when there is no such port.
std::optional<std::string> ask(int port, const char* query) {
    char command[CWMP_PORT_COMMAND_SIZE] = "";
    if (concatCmd(command, port, query) != 0 || command[0] == '\0') return std::nullopt;
    return Command(command).line().value_or("");
}

std::string port_status(int port) {
    const auto told = ask(port, "status");
    if (!told) return "NotPresent";
    return shown(*told, {{"up", "Up"}, {"1", "Up"}, {"down", "Down"}, {"0", "Down"}}, "Unknown");
}

std::string port_speed(int port) {
    std::string digits = leading_digits(ask(port, "speed").value_or(""));
    return digits.empty() ? "-1" : digits;
}

std::string port_duplex(int port) {
    return shown(ask(port, "duplex").value_or(""), {{"full", "Full"}, {"half", "Half"}}, "Auto");
}

std::string port_name(int port) { return ethernet_port_name(port).value_or(""); }
std::string port_is_upstream(int port) { return is_wan_port(port_name(port)) ? "1" : "0"; }
std::string port_mac(int port) { return mac_of(port_name(port)); }

int port_counter(int op, Arguments args, const char* word, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto port = require_number(GetArguments(args).locate()[0], kPorts, caller);
    return port ? device_counter(args, port_name(*port).c_str(), word) : kRefused;
}

}  // namespace

PARAMETER(Ethernet_InterfaceNumberOfEntries, constant, "3")
PARAMETER(Ethernet_Interface_Enable, constant, "1")
PARAMETER(Ethernet_Interface_Status, numbered, kPorts, port_status)
PARAMETER(Ethernet_Interface_Name, numbered, kPorts, port_name)
PARAMETER(Ethernet_Interface_LowerLayers, constant, "")
PARAMETER(Ethernet_Interface_Upstream, numbered, kPorts, port_is_upstream)
PARAMETER(Ethernet_Interface_MACAddress, numbered, kPorts, port_mac)
PARAMETER(Ethernet_Interface_MaxBitRate, numbered, kPorts, port_speed)
PARAMETER(Ethernet_Interface_DuplexMode, numbered, kPorts, port_duplex)

PARAMETER(Ethernet_Interface_Stats_BytesSent, port_counter, "TotalBytesSent")
PARAMETER(Ethernet_Interface_Stats_BytesReceived, port_counter, "TotalBytesReceived")
PARAMETER(Ethernet_Interface_Stats_PacketsSent, port_counter, "TotalPacketsSent")
PARAMETER(Ethernet_Interface_Stats_PacketsReceived, port_counter, "TotalPacketsReceived")
PARAMETER(Ethernet_Interface_Stats_ErrorsSent, port_counter, "TotalErrorsSent")
PARAMETER(Ethernet_Interface_Stats_ErrorsReceived, port_counter, "TotalErrorsReceived")
