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

HANDLER(WANDevice_WANConnectionNumberOfEntries) { return constant(op, args, "2"); }

HANDLER(WANDevice_WANCommonInterfaceConfig_EnabledForInternet) { return constant(op, args, "1"); }
HANDLER(WANDevice_WANCommonInterfaceConfig_TotalBytesSent) { return wan_counter(op, args, "TotalBytesSent"); }
HANDLER(WANDevice_WANCommonInterfaceConfig_TotalBytesReceived) {
    return wan_counter(op, args, "TotalBytesReceived");
}
HANDLER(WANDevice_WANCommonInterfaceConfig_TotalPacketsSent) {
    return wan_counter(op, args, "TotalPacketsSent");
}
HANDLER(WANDevice_WANCommonInterfaceConfig_TotalPacketsReceived) {
    return wan_counter(op, args, "TotalPacketsReceived");
}
HANDLER(WANDevice_WANCommonInterfaceConfig_X_QM_TotalErrorsSent) {
    return wan_counter(op, args, "TotalErrorsSent");
}
HANDLER(WANDevice_WANCommonInterfaceConfig_X_QM_TotalErrorsReceived) {
    return wan_counter(op, args, "TotalErrorsReceived");
}

HANDLER(WANDevice_WANEthernetInterfaceConfig_Enable) { return constant(op, args, "1"); }
HANDLER(WANDevice_WANEthernetInterfaceConfig_Status) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto line = first_line({"cat /tmp/wanDetection", kLongLine, "Failed to get status\n"});
    if (!line) return kRefused;
    return GetArguments(args).answer(*line == "1" ? "Up" : "NoLink");
}
