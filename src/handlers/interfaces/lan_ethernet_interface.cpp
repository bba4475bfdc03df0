// InternetGatewayDevice.LANDevice.{i}.LANEthernetInterfaceConfig.{i}.: the LAN ports of Device.Ethernet. in
// TR-098's words.
#include "handlers/blocks/forward.h"
#include "handlers/blocks/numbered.h"

using namespace cwmp;

HANDLER(Ethernet_Interface_Status);
HANDLER(Ethernet_Interface_MaxBitRate);

namespace {

constexpr int kLanPorts = 2;

int lan_port(int op, Arguments args, Handler handler, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const int* locate = GetArguments(args).locate();
    if (!require_number(locate[0], 1, caller)) return kRefused;
    const auto port = require_number(locate[1], kLanPorts, caller);
    return port ? forward_get(args, handler, *port, 0) : kRefused;
}

std::string up_or_no_link(std::string_view status) { return status == "Up" ? "Up" : "NoLink"; }
std::string rate_or_auto(std::string_view rate) { return rate == "-1" ? "Auto" : std::string(rate); }

}  // namespace

PARAMETER(LANDevice_LANEthernetInterfaceNumberOfEntries, constant, "2")
THROUGH(LANDevice_LANEthernetInterfaceConfig_Enable, lan_port, Ethernet_Interface_Enable)
HANDLER(LANDevice_LANEthernetInterfaceConfig_Status) {
    return reword(args, lan_port(op, args, Ethernet_Interface_Status), up_or_no_link);
}
THROUGH(LANDevice_LANEthernetInterfaceConfig_Name, lan_port, Ethernet_Interface_Name)
THROUGH(LANDevice_LANEthernetInterfaceConfig_MACAddress, lan_port, Ethernet_Interface_MACAddress)
HANDLER(LANDevice_LANEthernetInterfaceConfig_MaxBitRate) {
    return reword(args, lan_port(op, args, Ethernet_Interface_MaxBitRate), rate_or_auto);
}
THROUGH(LANDevice_LANEthernetInterfaceConfig_DuplexMode, lan_port, Ethernet_Interface_DuplexMode)
THROUGH(LANDevice_LANEthernetInterfaceConfig_Stats_BytesSent, lan_port, Ethernet_Interface_Stats_BytesSent)
THROUGH(LANDevice_LANEthernetInterfaceConfig_Stats_BytesReceived, lan_port, Ethernet_Interface_Stats_BytesReceived)
THROUGH(LANDevice_LANEthernetInterfaceConfig_Stats_PacketsSent, lan_port, Ethernet_Interface_Stats_PacketsSent)
THROUGH(LANDevice_LANEthernetInterfaceConfig_Stats_PacketsReceived, lan_port, Ethernet_Interface_Stats_PacketsReceived)
