// Device.X_QM_L2TP.Interface.{i}. and Device.X_QM_PPTP.Interface.{i}.: the tunnels.
#include "handlers/interfaces/account.h"
#include "handlers/interfaces/dialled.h"
#include "handlers/interfaces/values.h"

using namespace cwmp;
using namespace cwmp::interfaces;

namespace {

constexpr bool kSecret = true;

}  // namespace

HANDLER(X_QM_L2TP_InterfaceNumberOfEntries) { return constant(op, args, "1"); }
HANDLER(X_QM_L2TP_Interface_Enable) { return value(op, args, Object::L2tp, present); }
HANDLER(X_QM_L2TP_Interface_Status) { return value(op, args, Object::L2tp, status); }
HANDLER(X_QM_L2TP_Interface_Name) { return value(op, args, Object::L2tp, device_name); }
HANDLER(X_QM_L2TP_Interface_LastChange) { return value(op, args, Object::L2tp, last_change); }
HANDLER(X_QM_L2TP_Interface_LowerLayers) { return value(op, args, Object::L2tp, lower_layers); }
HANDLER(X_QM_L2TP_Interface_ConnectionStatus) { return connection_status(op, args, Object::L2tp); }
HANDLER(X_QM_L2TP_Interface_Username) {
    return account(op, args, {Object::L2tp, "l2tp", "username", credential});
}
HANDLER(X_QM_L2TP_Interface_Password) {
    return account(op, args, {Object::L2tp, "l2tp", "password", credential, kSecret});
}
HANDLER(X_QM_L2TP_Interface_ServerAddress) {
    return account(op, args, {Object::L2tp, "l2tp", "server", host_name});
}
HANDLER(X_QM_L2TP_Interface_Stats_BytesSent) { return counter(op, args, Object::L2tp, "TotalBytesSent"); }
HANDLER(X_QM_L2TP_Interface_Stats_BytesReceived) {
    return counter(op, args, Object::L2tp, "TotalBytesReceived");
}
HANDLER(X_QM_L2TP_Interface_Stats_PacketsSent) { return counter(op, args, Object::L2tp, "TotalPacketsSent"); }
HANDLER(X_QM_L2TP_Interface_Stats_PacketsReceived) {
    return counter(op, args, Object::L2tp, "TotalPacketsReceived");
}
HANDLER(X_QM_L2TP_Interface_Stats_ErrorsSent) { return counter(op, args, Object::L2tp, "TotalErrorsSent"); }
HANDLER(X_QM_L2TP_Interface_Stats_ErrorsReceived) {
    return counter(op, args, Object::L2tp, "TotalErrorsReceived");
}

HANDLER(X_QM_PPTP_InterfaceNumberOfEntries) { return constant(op, args, "1"); }
HANDLER(X_QM_PPTP_Interface_Enable) { return value(op, args, Object::Pptp, present); }
HANDLER(X_QM_PPTP_Interface_Status) { return value(op, args, Object::Pptp, status); }
HANDLER(X_QM_PPTP_Interface_Name) { return value(op, args, Object::Pptp, device_name); }
HANDLER(X_QM_PPTP_Interface_LastChange) { return value(op, args, Object::Pptp, last_change); }
HANDLER(X_QM_PPTP_Interface_LowerLayers) { return value(op, args, Object::Pptp, lower_layers); }
HANDLER(X_QM_PPTP_Interface_ConnectionStatus) { return connection_status(op, args, Object::Pptp); }
HANDLER(X_QM_PPTP_Interface_Username) {
    return account(op, args, {Object::Pptp, "pptp", "username", credential});
}
HANDLER(X_QM_PPTP_Interface_Password) {
    return account(op, args, {Object::Pptp, "pptp", "password", credential, kSecret});
}
HANDLER(X_QM_PPTP_Interface_ServerAddress) {
    return account(op, args, {Object::Pptp, "pptp", "server", host_name});
}
HANDLER(X_QM_PPTP_Interface_Stats_BytesSent) { return counter(op, args, Object::Pptp, "TotalBytesSent"); }
HANDLER(X_QM_PPTP_Interface_Stats_BytesReceived) {
    return counter(op, args, Object::Pptp, "TotalBytesReceived");
}
HANDLER(X_QM_PPTP_Interface_Stats_PacketsSent) { return counter(op, args, Object::Pptp, "TotalPacketsSent"); }
HANDLER(X_QM_PPTP_Interface_Stats_PacketsReceived) {
    return counter(op, args, Object::Pptp, "TotalPacketsReceived");
}
HANDLER(X_QM_PPTP_Interface_Stats_ErrorsSent) { return counter(op, args, Object::Pptp, "TotalErrorsSent"); }
HANDLER(X_QM_PPTP_Interface_Stats_ErrorsReceived) {
    return counter(op, args, Object::Pptp, "TotalErrorsReceived");
}
