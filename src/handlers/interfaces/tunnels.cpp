// Device.X_QM_L2TP.Interface.{i}. and Device.X_QM_PPTP.Interface.{i}.: the tunnels.
#include "handlers/interfaces/account.h"
#include "handlers/interfaces/values.h"

using namespace cwmp;
using namespace cwmp::interfaces;

constexpr bool kSecret = true;

PARAMETER(X_QM_L2TP_InterfaceNumberOfEntries, constant, "1")
PARAMETER(X_QM_L2TP_Interface_Enable, value, Object::L2tp, present)
PARAMETER(X_QM_L2TP_Interface_Status, value, Object::L2tp, status)
PARAMETER(X_QM_L2TP_Interface_Name, value, Object::L2tp, device_name)
PARAMETER(X_QM_L2TP_Interface_LastChange, value, Object::L2tp, last_change)
PARAMETER(X_QM_L2TP_Interface_LowerLayers, value, Object::L2tp, lower_layers)
PARAMETER(X_QM_L2TP_Interface_ConnectionStatus, connection_status, Object::L2tp)
PARAMETER(X_QM_L2TP_Interface_Username, account, {Object::L2tp, "l2tp", "username", credential})
PARAMETER(X_QM_L2TP_Interface_Password, account, {Object::L2tp, "l2tp", "password", credential, kSecret})
PARAMETER(X_QM_L2TP_Interface_ServerAddress, account, {Object::L2tp, "l2tp", "server", host_name})
PARAMETER(X_QM_L2TP_Interface_Stats_BytesSent, counter, Object::L2tp, "TotalBytesSent")
PARAMETER(X_QM_L2TP_Interface_Stats_BytesReceived, counter, Object::L2tp, "TotalBytesReceived")
PARAMETER(X_QM_L2TP_Interface_Stats_PacketsSent, counter, Object::L2tp, "TotalPacketsSent")
PARAMETER(X_QM_L2TP_Interface_Stats_PacketsReceived, counter, Object::L2tp, "TotalPacketsReceived")
PARAMETER(X_QM_L2TP_Interface_Stats_ErrorsSent, counter, Object::L2tp, "TotalErrorsSent")
PARAMETER(X_QM_L2TP_Interface_Stats_ErrorsReceived, counter, Object::L2tp, "TotalErrorsReceived")

PARAMETER(X_QM_PPTP_InterfaceNumberOfEntries, constant, "1")
PARAMETER(X_QM_PPTP_Interface_Enable, value, Object::Pptp, present)
PARAMETER(X_QM_PPTP_Interface_Status, value, Object::Pptp, status)
PARAMETER(X_QM_PPTP_Interface_Name, value, Object::Pptp, device_name)
PARAMETER(X_QM_PPTP_Interface_LastChange, value, Object::Pptp, last_change)
PARAMETER(X_QM_PPTP_Interface_LowerLayers, value, Object::Pptp, lower_layers)
PARAMETER(X_QM_PPTP_Interface_ConnectionStatus, connection_status, Object::Pptp)
PARAMETER(X_QM_PPTP_Interface_Username, account, {Object::Pptp, "pptp", "username", credential})
PARAMETER(X_QM_PPTP_Interface_Password, account, {Object::Pptp, "pptp", "password", credential, kSecret})
PARAMETER(X_QM_PPTP_Interface_ServerAddress, account, {Object::Pptp, "pptp", "server", host_name})
PARAMETER(X_QM_PPTP_Interface_Stats_BytesSent, counter, Object::Pptp, "TotalBytesSent")
PARAMETER(X_QM_PPTP_Interface_Stats_BytesReceived, counter, Object::Pptp, "TotalBytesReceived")
PARAMETER(X_QM_PPTP_Interface_Stats_PacketsSent, counter, Object::Pptp, "TotalPacketsSent")
PARAMETER(X_QM_PPTP_Interface_Stats_PacketsReceived, counter, Object::Pptp, "TotalPacketsReceived")
PARAMETER(X_QM_PPTP_Interface_Stats_ErrorsSent, counter, Object::Pptp, "TotalErrorsSent")
PARAMETER(X_QM_PPTP_Interface_Stats_ErrorsReceived, counter, Object::Pptp, "TotalErrorsReceived")
