// The parameters that stand directly under InternetGatewayDevice. and Device.
#include "core/handler.h"

using namespace cwmp;

PARAMETER(DeviceSummary, constant, "Device:1.1[](Baseline:1,EthernetLAN:1)")
PARAMETER(LANDeviceNumberOfEntries, constant, "1")
PARAMETER(WANDeviceNumberOfEntries, constant, "1")
PARAMETER(RootDataModelVersion, constant, "2.12")
