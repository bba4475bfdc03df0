// Device.Hosts.Host.{i}.: how a host is connected, and to which of the mesh's devices.
#include <algorithm>

#include "config/numbered_rows.h"
#include "core/addresses.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/platform.h"

using namespace cwmp;

namespace {

struct WirelessNetwork {
    const char* interface;
    const char* band;
    const char* clients;  // the table that lists the network's clients
};

// The network of an interface; nothing when it is not wireless.
std::optional<WirelessNetwork> network_of(const std::string& interface) {
    initialize_interface_info(_interface_info);
    const WirelessNetwork networks[] = {
        {_interface_info->wifi_2_4G, "2.4GHz", "Device.WiFi.AccessPoint.1.AssociatedDevice."},
        {_interface_info->wifi_5G, "5GHz", "Device.WiFi.AccessPoint.3.AssociatedDevice."},
        {_interface_info->guest_2_4G, "2.4GHz", "Device.WiFi.AccessPoint.1.X_QM_MultiSSID.AssociatedDevice."},
        {_interface_info->guest_5G, "5GHz", "Device.WiFi.AccessPoint.2.X_QM_MultiSSID.AssociatedDevice."},
    };
    for (const auto& network : networks) {
        if (!interface.empty() && interface == network.interface) return network;
    }
    return std::nullopt;
}

std::string host_option(int host, const char* option) { return read_row(kHosts, host, option).value_or(""); }

std::string associated_device(int host) {
    const std::string interface = host_option(host, "lay2if");
    const auto network = network_of(interface);
    if (!network) return "";
    const auto clients = find_rows(kHosts, row_count(kHosts).value_or(0), {{"lay2if", interface}});
    const auto client = std::find(clients.begin(), clients.end(), host);
    if (client == clients.end()) return "";
    return network->clients + decimal(client - clients.begin() + 1);
}

std::string mesh_device_address(int host) {
    const std::string device = host_option(host, "LinkDeviceId");
    if (device.empty()) return "";
    const auto found = find_rows(kMeshDevices, row_count(kMeshDevices).value_or(0), {{"deviceid", device}});
    return found.empty() ? "" : canonical_mac(read_row(kMeshDevices, found.front(), "mac").value_or(""));
}

std::string connection_type(int host) {
    if (const auto network = network_of(host_option(host, "lay2if"))) return network->band;
    return host_option(host, "iftype") == "Ethernet" ? "Ethernet" : "";
}

int host_link(int op, Arguments args, std::string (*link)(int host), Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const int host = get.locate()[0];
    if (host == 0) return refuse(caller, kError, "locate error\n");
    return get.answer(link(host));
}

}  // namespace

PARAMETER(Hosts_Host_AssociatedDevice, host_link, associated_device)
PARAMETER(Hosts_Host_X_QM_DevphyAddress, host_link, mesh_device_address)
PARAMETER(Hosts_Host_X_QM_LanConnType, host_link, connection_type)
