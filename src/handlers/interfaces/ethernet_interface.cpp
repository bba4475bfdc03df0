// Device.Ethernet.Interface.{i}.
#include "handlers/blocks/numbered.h"
#include "handlers/interfaces/ports.h"
#include "handlers/interfaces/values.h"
#include "platform/ethernet_ports.h"

using namespace cwmp;
using namespace cwmp::interfaces;

namespace {

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
