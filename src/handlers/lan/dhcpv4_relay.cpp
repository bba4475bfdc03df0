// Device.DHCPv4.Relay.: the router does not relay.
#include "core/handler.h"
#include "cwmp/interface_stack.h"

using namespace cwmp;

HANDLER(DHCPv4_Relay_Enable) { return constant(op, args, "0"); }
HANDLER(DHCPv4_Relay_Status) { return constant(op, args, "0"); }
HANDLER(DHCPv4_Relay_ForwardingNumberOfEntries) { return constant(op, args, "0"); }
HANDLER(DHCPv4_Relay_Forwarding_Enable) { return constant(op, args, "0"); }
HANDLER(DHCPv4_Relay_Forwarding_Status) { return constant(op, args, "0"); }
HANDLER(DHCPv4_Relay_Forwarding_Interface) { return constant(op, args, getFuncInterface(52)); }
HANDLER(DHCPv4_Relay_Forwarding_DHCPServerIPAddress) { return constant(op, args, ""); }
