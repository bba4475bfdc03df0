// The parameters that stand directly under InternetGatewayDevice. and Device.
#include "core/handler.h"

using namespace cwmp;

HANDLER(DeviceSummary) { return constant(op, args, "Device:1.1[](Baseline:1,EthernetLAN:1)"); }
HANDLER(LANDeviceNumberOfEntries) { return constant(op, args, "1"); }
HANDLER(WANDeviceNumberOfEntries) { return constant(op, args, "1"); }
HANDLER(RootDataModelVersion) { return constant(op, args, "2.12"); }
