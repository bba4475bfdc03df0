// InternetGatewayDevice.LANDevice.{i}.Hosts. and Device.Hosts.: the clients of the LAN, as another process of
// the device keeps them in package hosts of the scratch store.
#include "config/numbered_rows.h"
#include "config/store.h"
#include "core/addresses.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/lan.h"
#include "cwmp/platform.h"

using namespace cwmp;

namespace {

// The host of a path with or without the LANDevice number before it.
std::optional<int> host_number(const int* locate) {
    if (locate[0] == 0) return std::nullopt;
    return locate[1] == 0 ? locate[0] : locate[1];
}

const char* missing(std::string_view field) {
    if (field == "hostname"sv || field == "active"sv) return "unkown";
    if (field == "addresssource"sv) return "None";
    if (field == "iftype"sv) return "Other";
    return "";
}

std::string presented(std::string_view field, const std::string& stored) {
    if (field == "mac"sv) return canonical_mac(stored);
    if (field != "iftype"sv) return stored;
    if (stored == "802.11") return "Wi-Fi";
    return stored == "Ethernet" ? stored : "Other";
}

}  // namespace

int LANDevice_Hosts_Host_InfoGet(int op, va_list args, const char* field) {
    const GetArguments get(args);
    if (op != CWMP_OP_GET || field == nullptr) return kRefused;
    const auto host = host_number(get.locate());
    if (!host) return kRefused;
    const auto stored = read_row(kHosts, *host, field);
    if (stored) return get.answer(presented(field, *stored));
    get.answer(missing(field));
    LOG_ERROR("uci get %s error \n\n", field);
    return kDone;
}

READ_ONLY(LANDevice_Hosts_HostNumberOfEntries) {
    return get.answer(read_option({kHosts, "info", "count"}, kScratchStore).value_or("0"));
}

PARAMETER(LANDevice_Hosts_Host_IPAddress, LANDevice_Hosts_Host_InfoGet, "ip")
PARAMETER(LANDevice_Hosts_Host_AddressSource, LANDevice_Hosts_Host_InfoGet, "addresssource")
PARAMETER(LANDevice_Hosts_Host_LeaseTimeRemaining, LANDevice_Hosts_Host_InfoGet, "lease_time")
PARAMETER(LANDevice_Hosts_Host_MACAddress, LANDevice_Hosts_Host_InfoGet, "mac")
PARAMETER(LANDevice_Hosts_Host_HostName, LANDevice_Hosts_Host_InfoGet, "hostname")
PARAMETER(LANDevice_Hosts_Host_InterfaceType, LANDevice_Hosts_Host_InfoGet, "iftype")
PARAMETER(LANDevice_Hosts_Host_Active, LANDevice_Hosts_Host_InfoGet, "active")

ALIAS(Hosts_HostNumberOfEntries, LANDevice_Hosts_HostNumberOfEntries)
ALIAS(Hosts_Host_IPAddress, LANDevice_Hosts_Host_IPAddress)
ALIAS(Hosts_Host_AddressSource, LANDevice_Hosts_Host_AddressSource)
ALIAS(Hosts_Host_LeaseTimeRemaining, LANDevice_Hosts_Host_LeaseTimeRemaining)
ALIAS(Hosts_Host_HostName, LANDevice_Hosts_Host_HostName)
ALIAS(Hosts_Host_InterfaceType, LANDevice_Hosts_Host_InterfaceType)
ALIAS(Hosts_Host_Active, LANDevice_Hosts_Host_Active)
ALIAS(Hosts_Host_PhysAddress, LANDevice_Hosts_Host_MACAddress)

namespace {

// The interface handlers take the first number of the path as the host's, whatever follows it.
int interface_of_host(int op, Arguments args, const char* field, const char* (*name)(const std::string& stored),
                      Caller caller = Caller::here()) {
    const GetArguments get(args);
    int* locate = get.locate();
    locate[1] = locate[0];
    locate[0] = 1;
    if (locate[1] == 0) return refuse(caller, kError, "locate error\n");
    if (op != CWMP_OP_GET) return kRefused;
    const auto stored = read_row(kHosts, locate[1], field);
    return get.answer(stored ? name(*stored) : "");
}

const char* link_name(const std::string& interface) {
    initialize_interface_info(_interface_info);
    if (interface == _interface_info->wifi_5G) return "WIFI 5G";
    if (interface == _interface_info->wifi_2_4G) return "WIFI 2.4G";
    return "Enthernet.Interface.1";
}

const char* medium_name(const std::string& type) {
    for (const char* medium : {"Ethernet", "802.11", "USB"}) {
        if (type == medium) return medium;
    }
    return "";
}

}  // namespace

PARAMETER(LANDevice_Hosts_Host_Layer2Interface, interface_of_host, "lay2if", link_name)
PARAMETER(Hosts_Host_Layer1Interface, interface_of_host, "iftype", medium_name)
