// Device.DHCPv4.Relay.: the router does not relay.
#include "core/handler.h"
#include "cwmp/interface_stack.h"

using namespace cwmp;

PARAMETER(DHCPv4_Relay_Enable, constant, "0")
PARAMETER(DHCPv4_Relay_Status, constant, "0")
PARAMETER(DHCPv4_Relay_ForwardingNumberOfEntries, constant, "0")
PARAMETER(DHCPv4_Relay_Forwarding_Enable, constant, "0")
PARAMETER(DHCPv4_Relay_Forwarding_Status, constant, "0")
PARAMETER(DHCPv4_Relay_Forwarding_Interface, constant, getFuncInterface(52))
PARAMETER(DHCPv4_Relay_Forwarding_DHCPServerIPAddress, constant, "")
