/*
 * Diagnostics: what the agent calls beside the parameter handlers.
 *
 * Parameters and results live in the packages diagnostics_config and trace_route in /tmp/tr069. The agent
 * runs ping and throughput tests itself and starts the trace route; the scan for neighbouring networks starts
 * with the SET that asks for it. Trace route and scan run in processes of their own, which the agent need not
 * wait for, and end with a message of type CWMP_MESSAGE_DIAGNOSTICS_COMPLETE to the agent
 * (message_channel.h).
 */
#ifndef CWMP_DIAGNOSTICS_H
#define CWMP_DIAGNOSTICS_H

#include <stdarg.h>

#include "cwmp/export.h"

#ifdef __cplusplus
extern "C" {
#endif

/*
 * Starts the trace route that the parameters of Device.IP.Diagnostics.TraceRoute. describe; call it when a
 * transaction has raised CWMP_APPLY_TRACE_ROUTE. 0: it runs, or there is no host and the state is
 * Error_CannotResolveHostName (no message is sent then). -1: no process could be made.
 */
CWMP_EXPORT int libdiagnostics_startTraceRoute(void);

/*
 * Reads the networks that the output of command lists, as "iwlist ... scan" prints them, into the sections
 * first + 1, first + 2, ... of package diagnostics_config, at most 15. Result: the number of the last
 * section, first when there is none; -1 when the command cannot be started.
 */
CWMP_EXPORT int NeighboringWiFi_Diagnostic(const char* command, int first);

/* A GET handler's body: an option of the neighbouring network locate[0], empty when it is missing
 * ("SignalStrength": "-200"). A SET is -1. */
CWMP_EXPORT int WiFi_NeighboringWiFi_Param_Get(int op, va_list args, const char* option);

/* A GET handler's body: a response time of the ping, "0" when it is missing. A SET is -1. */
CWMP_EXPORT int TimeNomal(int op, va_list args, const char* option);

#ifdef __cplusplus
}
#endif

#endif
