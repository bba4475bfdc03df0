// Device.IP.Diagnostics.: which tests there are.
#include "core/handler.h"

using namespace cwmp;

HANDLER(IP_Diagnostics_IPv4PingSupported) { return constant(op, args, "1"); }
HANDLER(IP_Diagnostics_IPv6PingSupported) { return constant(op, args, "0"); }
HANDLER(IP_Diagnostics_IPv4TraceRouteSupported) { return constant(op, args, "1"); }
HANDLER(IP_Diagnostics_IPv6TraceRouteSupported) { return constant(op, args, "0"); }
HANDLER(IP_Diagnostics_IPv4DownloadDiagnosticsSupported) { return constant(op, args, "1"); }
HANDLER(IP_Diagnostics_IPv6DownloadDiagnosticsSupported) { return constant(op, args, "0"); }
HANDLER(IP_Diagnostics_IPv4UploadDiagnosticsSupported) { return constant(op, args, "1"); }
HANDLER(IP_Diagnostics_IPv6UploadDiagnosticsSupported) { return constant(op, args, "0"); }
HANDLER(IP_Diagnostics_IPv4UDPEchoDiagnosticsSupported) { return constant(op, args, "1"); }
HANDLER(IP_Diagnostics_IPv6UDPEchoDiagnosticsSupported) { return constant(op, args, "0"); }
HANDLER(IP_Diagnostics_IPv4ServerSelectionDiagnosticsSupported) { return constant(op, args, "0"); }
HANDLER(IP_Diagnostics_IPv6ServerSelectionDiagnosticsSupported) { return constant(op, args, "0"); }
