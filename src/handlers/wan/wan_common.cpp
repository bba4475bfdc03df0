// InternetGatewayDevice.WANDevice.{i}. itself, its WANCommonInterfaceConfig. and WANEthernetInterfaceConfig.
#include "cwmp/platform.h"
#include "handlers/blocks/command_line.h"

using namespace cwmp;

namespace {

int wan_counter(int op, Arguments args, const char* counter) {
    static constexpr const char* kBridges[3] = {"br-wan", "br-mg", ""};
    return get_TotalBytesAndPackets_by_name(op, args, kBridges, counter);
}

}  // namespace

PARAMETER(WANDevice_WANConnectionNumberOfEntries, constant, "2")

PARAMETER(WANDevice_WANCommonInterfaceConfig_EnabledForInternet, constant, "1")
PARAMETER(WANDevice_WANCommonInterfaceConfig_TotalBytesSent, wan_counter, "TotalBytesSent")
PARAMETER(WANDevice_WANCommonInterfaceConfig_TotalBytesReceived, wan_counter, "TotalBytesReceived")
PARAMETER(WANDevice_WANCommonInterfaceConfig_TotalPacketsSent, wan_counter, "TotalPacketsSent")
PARAMETER(WANDevice_WANCommonInterfaceConfig_TotalPacketsReceived, wan_counter, "TotalPacketsReceived")
PARAMETER(WANDevice_WANCommonInterfaceConfig_X_QM_TotalErrorsSent, wan_counter, "TotalErrorsSent")
PARAMETER(WANDevice_WANCommonInterfaceConfig_X_QM_TotalErrorsReceived, wan_counter, "TotalErrorsReceived")

PARAMETER(WANDevice_WANEthernetInterfaceConfig_Enable, constant, "1")
READ_ONLY(WANDevice_WANEthernetInterfaceConfig_Status) {
    const auto line = first_line({"cat /tmp/wanDetection", kLongLine, "Failed to get status\n"});
    if (!line) return kRefused;
    return get.answer(*line == "1" ? "Up" : "NoLink");
}
