// PortMapping.{i}. below the WAN connections: the port mappings of Device.NAT. in TR-098's words. Those of
// the IP connection forward to Device.NAT., those of the PPP connection to the IP connection's.
#include "core/handler.h"

HANDLER(NAT_PortMappingNumberOfEntries);
HANDLER(NAT_PortMapping_Enable);
HANDLER(NAT_PortMapping_Description);
HANDLER(NAT_PortMapping_Alias);
HANDLER(NAT_PortMapping_RemoteHost);
HANDLER(NAT_PortMapping_ExternalPort);
HANDLER(NAT_PortMapping_ExternalPortEndRange);
HANDLER(NAT_PortMapping_InternalPort);
HANDLER(NAT_PortMapping_Protocol);
HANDLER(NAT_PortMapping_InternalClient);

HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMappingNumberOfEntries) {
    return NAT_PortMappingNumberOfEntries(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_PortMappingEnabled) {
    return NAT_PortMapping_Enable(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_PortMappingDescription) {
    return NAT_PortMapping_Description(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_Alias) {
    return NAT_PortMapping_Alias(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_RemoteHost) {
    return NAT_PortMapping_RemoteHost(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_ExternalPort) {
    return NAT_PortMapping_ExternalPort(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_ExternalPortEndRange) {
    return NAT_PortMapping_ExternalPortEndRange(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_InternalPort) {
    return NAT_PortMapping_InternalPort(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_PortMappingProtocol) {
    return NAT_PortMapping_Protocol(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_InternalClient) {
    return NAT_PortMapping_InternalClient(op, args);
}

HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMappingNumberOfEntries) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMappingNumberOfEntries(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_PortMappingEnabled) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_PortMappingEnabled(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_PortMappingDescription) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_PortMappingDescription(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_Alias) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_Alias(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_RemoteHost) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_RemoteHost(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_ExternalPort) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_ExternalPort(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_ExternalPortEndRange) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_ExternalPortEndRange(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_InternalPort) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_InternalPort(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_PortMappingProtocol) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_PortMappingProtocol(op, args);
}
HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_PortMapping_InternalClient) {
    return WANDevice_WANConnectionDevice_WANIPConnection_PortMapping_InternalClient(op, args);
}
