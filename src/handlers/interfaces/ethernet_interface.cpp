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

HANDLER(Ethernet_InterfaceNumberOfEntries) { return constant(op, args, "3"); }
HANDLER(Ethernet_Interface_Enable) { return constant(op, args, "1"); }
HANDLER(Ethernet_Interface_Status) { return numbered(op, args, kPorts, port_status); }
HANDLER(Ethernet_Interface_Name) { return numbered(op, args, kPorts, port_name); }
HANDLER(Ethernet_Interface_LowerLayers) { return constant(op, args, ""); }
HANDLER(Ethernet_Interface_Upstream) { return numbered(op, args, kPorts, port_is_upstream); }
HANDLER(Ethernet_Interface_MACAddress) { return numbered(op, args, kPorts, port_mac); }
HANDLER(Ethernet_Interface_MaxBitRate) { return numbered(op, args, kPorts, port_speed); }
HANDLER(Ethernet_Interface_DuplexMode) { return numbered(op, args, kPorts, port_duplex); }

HANDLER(Ethernet_Interface_Stats_BytesSent) { return port_counter(op, args, "TotalBytesSent"); }
HANDLER(Ethernet_Interface_Stats_BytesReceived) { return port_counter(op, args, "TotalBytesReceived"); }
HANDLER(Ethernet_Interface_Stats_PacketsSent) { return port_counter(op, args, "TotalPacketsSent"); }
HANDLER(Ethernet_Interface_Stats_PacketsReceived) { return port_counter(op, args, "TotalPacketsReceived"); }
HANDLER(Ethernet_Interface_Stats_ErrorsSent) { return port_counter(op, args, "TotalErrorsSent"); }
HANDLER(Ethernet_Interface_Stats_ErrorsReceived) { return port_counter(op, args, "TotalErrorsReceived"); }
