// The interface objects of the TR-181 model: which device and network interface each instance stands for.
#pragma once

#include "core/log.h"

namespace cwmp::interfaces {

// IpAddress is the one address below each IpInterface: same instances, one number more in the path.
enum class Object { IpInterface, IpAddress, Ppp, L2tp, Pptp, EthernetLink, VlanTermination };

struct Instance {
    Object object;
    int number;
    int stack;                             // its id in the interface stack
    char device[sizeof "pppoe-internet"];  // empty: none
    char interface[sizeof "internet"];
};

enum IpInterface { kLan = 1, kWan = 2, kPptpLeg = 3, kL2tpLeg = 4, kPppoe = 5, kPptp = 6, kL2tp = 7, kMg = 8 };
enum VlanTermination { kInternetVlan = 1, kIptvVlan = 3 };

// The instance that a path names; null, logged under the caller's name, when there is none.
const Instance* require_instance(Object object, const int* locate, Caller caller);

// Whether the WAN type in force shows the instance. An absent one has no live values.
bool is_present(const Instance& instance);
// The same of the plain internet WAN, IP.Interface.2; without it the connection in force is dialled.
bool has_plain_wan();

}  // namespace cwmp::interfaces
