// Device.IP.Diagnostics.: which tests there are.
#include "core/handler.h"

using namespace cwmp;

PARAMETER(IP_Diagnostics_IPv4PingSupported, constant, "1")
PARAMETER(IP_Diagnostics_IPv6PingSupported, constant, "0")
PARAMETER(IP_Diagnostics_IPv4TraceRouteSupported, constant, "1")
PARAMETER(IP_Diagnostics_IPv6TraceRouteSupported, constant, "0")
PARAMETER(IP_Diagnostics_IPv4DownloadDiagnosticsSupported, constant, "1")
PARAMETER(IP_Diagnostics_IPv6DownloadDiagnosticsSupported, constant, "0")
PARAMETER(IP_Diagnostics_IPv4UploadDiagnosticsSupported, constant, "1")
PARAMETER(IP_Diagnostics_IPv6UploadDiagnosticsSupported, constant, "0")
PARAMETER(IP_Diagnostics_IPv4UDPEchoDiagnosticsSupported, constant, "1")
PARAMETER(IP_Diagnostics_IPv6UDPEchoDiagnosticsSupported, constant, "0")
PARAMETER(IP_Diagnostics_IPv4ServerSelectionDiagnosticsSupported, constant, "0")
PARAMETER(IP_Diagnostics_IPv6ServerSelectionDiagnosticsSupported, constant, "0")
