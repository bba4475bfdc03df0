// Device.WiFi.MultiAP.: the devices of the mesh, their radios and clients.
#include "core/refusal.h"
#include "core/text.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/option.h"
#include "handlers/wifi/mesh_table.h"
#include "handlers/wifi/selection.h"

using namespace cwmp;

namespace {

constexpr const char* kMeshClients = "hosts_client";
constexpr const char* kNoAddress = "FF:FF:FF:FF:FF:FF";

// A radio of a mesh device.
struct MeshRadio {
    int device;
    const Radio* radio;

    bool is_2g() const { return radio == &kRadio2G; }
    const char* bssid_option() const { return is_2g() ? "bssid_2g" : "bssid_5g"; }
    const char* client_band() const { return is_2g() ? "band2_4" : "band5"; }
};

// By the first two instance numbers; nothing, logged, when they mean none.
std::optional<MeshRadio> mesh_radio(Arguments args, Caller caller = Caller::here()) {
    const auto* locate = locate_of(args);
    const MeshRadio found{locate[0], radio_by_number(locate[1])};
    if (found.device >= 1 && found.radio != nullptr) return found;
    refuse(caller, kError, "locate error\n");
    return std::nullopt;
}

std::string backhaul(int device) { return read_row(kMeshDevices, device, "connection_type").value_or(""); }

bool is_master(int device) { return read_row(kMeshDevices, device, "role") == "master"; }

const char* radio_count(int device) {
    if (is_master(device)) return "2";
    const auto type = backhaul(device);
    const bool wireless = contains(type, "band2_4") || contains(type, "band5") || contains(type, "band6");
    return wireless ? "2" : "0";
}

int bssid(int op, Arguments args, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto radio = mesh_radio(args, caller);
    if (!radio) return kRefused;
    return GetArguments(args).answer(
        read_row(kMeshDevices, radio->device, radio->bssid_option()).value_or(""));
}

// The rows of a radio's clients. A device without an id has none.
std::vector<int> clients_of(const MeshRadio& radio) {
    const auto id = read_row(kMeshDevices, radio.device, "deviceid");
    if (!id) return {};
    return find_rows(kMeshClients, row_count(kMeshClients).value_or(0),
                     {{"LinkDeviceId", *id}, {"connection_type", radio.client_band()}});
}

int client_option(int op, Arguments args, const char* option, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto radio = mesh_radio(args, caller);
    if (!radio) return kRefused;
    const int index = locate_of(args)[3];
    if (index < 1) return refuse(caller, kError, "locate error\n");
    const auto clients = clients_of(*radio);
    if (static_cast<std::size_t>(index) > clients.size())
        return refuse(caller, kError, "locate[3] is wrong\n");
    const int client = clients[static_cast<std::size_t>(index) - 1];
    return GetArguments(args).answer(read_row(kMeshClients, client, option).value_or(""));
}

}  // namespace

PARAMETER(WiFi_MultiAP_APDeviceNumberOfEntries, row_total, kMeshDevices, "count")

PARAMETER(WiFi_MultiAP_APDevice_SoftwareVersion, row_option, {kMeshDevices, "fw_version"})
PARAMETER(WiFi_MultiAP_APDevice_MACAddress, row_option, {kMeshDevices, "mac", kNoAddress})

HANDLER(WiFi_MultiAP_APDevice_BackhaulLinkType) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto device = mesh_device(args);
    if (!device) return kRefused;
    const auto type = backhaul(*device);
    if (type.empty()) return GetArguments(args).answer("None");
    return GetArguments(args).answer(contains(type, "band") ? "Wi-Fi" : "Ethernet");
}

HANDLER(WiFi_MultiAP_APDevice_BackhaulMACAddress) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto device = mesh_device(args);
    if (!device) return kRefused;
    if (is_master(*device)) return GetArguments(args).answer(kNoAddress);
    return row_option(op, args, {kMeshDevices, "parent_mac", kNoAddress});
}

HANDLER(WiFi_MultiAP_APDevice_RadioNumberOfEntries) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto device = mesh_device(args);
    return device ? GetArguments(args).answer(radio_count(*device)) : kRefused;
}

// As many access points on each radio as the device has radios.
HANDLER(WiFi_MultiAP_APDevice_Radio_APNumberOfEntries) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto radio = mesh_radio(args);
    return radio ? GetArguments(args).answer(radio_count(radio->device)) : kRefused;
}

PARAMETER(WiFi_MultiAP_APDevice_Radio_MACAddress, bssid)
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_BSSID, bssid)

HANDLER(WiFi_MultiAP_APDevice_Radio_OperatingFrequencyBand) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto radio = mesh_radio(args);
    return radio ? GetArguments(args).answer(radio->radio->frequency_band) : kRefused;
}

// The channel of this router's radio: the mesh shares one.
HANDLER(WiFi_MultiAP_APDevice_Radio_Channel) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto radio = mesh_radio(args);
    if (!radio) return kRefused;
    const std::string interface = interface_word(radio->radio->main);
    const auto command =
        interface_info->cpeType == CWMP_PLATFORM_BCM
            ? " wl -i " + interface + " status | grep 'Primary channel' | awk '{ print $3}'"
            : "iwlist " + interface + " channel | grep Current | awk ' {print $5}' | sed 's/)//g'";
    return command_line(op, args, {command.c_str(), kLongLine, "Failed to get  Channel\n"});
}

HANDLER(WiFi_MultiAP_APDevice_Radio_AP_SSID) {
    if (op != CWMP_OP_GET || !mesh_radio(args)) return kRefused;
    return read_only_option(op, args, {.at = kMainNetwork / "ssid"});
}

HANDLER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDeviceNumberOfEntries) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto radio = mesh_radio(args);
    return radio ? GetArguments(args).answer(std::to_string(clients_of(*radio).size())) : kRefused;
}

PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDevice_MACAddress, client_option, "mac")
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDevice_LastDataDownlinkRate, client_option, "down_speed")
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDevice_LastDataUplinkRate, client_option, "up_speed")
