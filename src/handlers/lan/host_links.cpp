// Device.Hosts.Host.{i}.: how a host is connected, and to which of the mesh's devices.
#include <algorithm>
#include <iterator>

#include "config/numbered_table.h"
#include "core/addresses.h"
#include "core/handler.h"
#include "core/log.h"
#include "cwmp/platform.h"

using namespace cwmp;

namespace {

struct Network {
    const char* interface;
    const char* band;
    const char* clients;  // the table that lists the network's clients
};

// The network of an interface; nothing when it is not wireless.
std::optional<Network> network_of(const std::string& interface) {
    initialize_interface_info(_interface_info);
    const Network networks[] = {
        {_interface_info->wifi_2_4G, "2.4GHz", "Device.WiFi.AccessPoint.1.AssociatedDevice."},
        {_interface_info->wifi_5G, "5GHz", "Device.WiFi.AccessPoint.3.AssociatedDevice."},
        {_interface_info->guest_2_4G, "2.4GHz", "Device.WiFi.AccessPoint.1.X_QM_MultiSSID.AssociatedDevice."},
        {_interface_info->guest_5G, "5GHz", "Device.WiFi.AccessPoint.2.X_QM_MultiSSID.AssociatedDevice."},
    };
    const auto* network = std::find_if(
        std::begin(networks), std::end(networks),
        [&](const Network& candidate) { return !interface.empty() && interface == candidate.interface; });
    if (network == std::end(networks)) return std::nullopt;
    return *network;
}

std::string associated_device(const NumberedTable& hosts, int host) {
    const std::string interface = hosts.field(host, "lay2if").value_or("");
    const auto network = network_of(interface);
    if (!network) return "";
    const auto clients = hosts.rows_with("lay2if", interface);
    const auto client = std::find(clients.begin(), clients.end(), host);
    if (client == clients.end()) return "";
    return network->clients + std::to_string(client - clients.begin() + 1);
}

std::string mesh_device_address(const NumberedTable& hosts, int host) {
    const std::string device = hosts.field(host, "LinkDeviceId").value_or("");
    if (device.empty()) return "";
    const NumberedTable mesh("meshinfo");
    const auto found = mesh.rows_with("deviceid", device);
    return found.empty() ? "" : canonical_mac(mesh.field(found.front(), "mac").value_or(""));
}

std::string connection_type(const NumberedTable& hosts, int host) {
    if (const auto network = network_of(hosts.field(host, "lay2if").value_or(""))) return network->band;
    return hosts.field(host, "iftype") == "Ethernet" ? "Ethernet" : "";
}

int host_link(int op, va_list args, std::string (*link)(const NumberedTable& hosts, int host),
              Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const int host = get.locate()[0];
    if (host == 0) {
        log_event(caller, kError, "locate error\n");
        return kRefused;
    }
    return get.answer(link(NumberedTable("hosts"), host));
}

}  // namespace

HANDLER(Hosts_Host_AssociatedDevice) { return host_link(op, args, associated_device); }
HANDLER(Hosts_Host_X_QM_DevphyAddress) { return host_link(op, args, mesh_device_address); }
HANDLER(Hosts_Host_X_QM_LanConnType) { return host_link(op, args, connection_type); }
