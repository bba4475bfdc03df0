// Device.WiFi.MultiAP.: the devices of the mesh, their radios and clients.
#include "core/refusal.h"
#include "core/text.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/option.h"
#include "handlers/blocks/row.h"
#include "handlers/wifi/selection.h"

using namespace cwmp;

namespace {

constexpr const char* kMeshClients = "hosts_client";
constexpr const char* kNoAddress = "FF:FF:FF:FF:FF:FF";

// A radio of a mesh device.
struct MeshRadio {
    int device;
    const Radio* radio;
};

// By the first two instance numbers; nothing, logged, when they mean none.
std::optional<MeshRadio> mesh_radio(const int* locate, Caller caller) {
    const MeshRadio found{locate[0], radio_by_number(locate[1])};
    if (found.device >= 1 && found.radio != nullptr) return found;
    return no_value(refuse(caller, kError, "locate error\n"));
}

std::string backhaul(int device) { return read_row(kMeshDevices, device, "connection_type").value_or(""); }

bool is_master(int device) { return read_row(kMeshDevices, device, "role") == "master"; }

std::string radio_count(int device) {
    if (is_master(device)) return "2";
    const auto type = backhaul(device);
    const bool wireless = contains(type, "band2_4") || contains(type, "band5") || contains(type, "band6");
    return wireless ? "2" : "0";
}

std::string link_type(int device) {
    const auto type = backhaul(device);
    if (type.empty()) return "None";
    return contains(type, "band") ? "Wi-Fi" : "Ethernet";
}

std::string parent_address(int device) {
    if (is_master(device)) return kNoAddress;
    return read_row(kMeshDevices, device, "parent_mac").value_or(kNoAddress);
}

// The rows of a radio's clients. A device without an id has none.
std::vector<int> clients_of(const MeshRadio& radio) {
    const auto id = read_row(kMeshDevices, radio.device, "deviceid");
    if (!id) return {};
    return find_rows(kMeshClients, row_count(kMeshClients).value_or(0),
                     {{"LinkDeviceId", *id}, {"connection_type", radio.radio->client_band}});
}

// A read-only text of a radio.
int radio_text(int op, Arguments args, std::string (*text)(const MeshRadio& radio), Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto radio = mesh_radio(get.locate(), caller);
    return radio ? get.answer(text(*radio)) : kRefused;
}

std::string bssid(const MeshRadio& radio) {
    return read_row(kMeshDevices, radio.device, radio.radio->bssid_option).value_or("");
}

// As many access points on each radio as the device has radios.
std::string access_points(const MeshRadio& radio) { return radio_count(radio.device); }
std::string frequency_band(const MeshRadio& radio) { return radio.radio->frequency_band; }
std::string client_count(const MeshRadio& radio) { return decimal(std::ssize(clients_of(radio))); }
std::string network_name(const MeshRadio& /*radio*/) { return read_option(kMainNetwork / "ssid").value_or(""); }

int client_option(int op, Arguments args, const char* option, Caller caller = Caller::here()) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const auto radio = mesh_radio(get.locate(), caller);
    if (!radio) return kRefused;
    const int index = get.locate()[3];
    if (index < 1) return refuse(caller, kError, "locate error\n");
    const auto client = pick_row(clients_of(*radio), index);
    if (!client) return refuse(caller, kError, "locate[3] is wrong\n");
    return get.answer(read_row(kMeshClients, *client, option).value_or(""));
}

}  // namespace

PARAMETER(WiFi_MultiAP_APDeviceNumberOfEntries, row_total, kMeshDevices, "count")

PARAMETER(WiFi_MultiAP_APDevice_SoftwareVersion, row_option, {kMeshDevices, "fw_version"})
PARAMETER(WiFi_MultiAP_APDevice_MACAddress, row_option, {kMeshDevices, "mac", kNoAddress})
PARAMETER(WiFi_MultiAP_APDevice_BackhaulLinkType, row_text, link_type)
PARAMETER(WiFi_MultiAP_APDevice_BackhaulMACAddress, row_text, parent_address)
PARAMETER(WiFi_MultiAP_APDevice_RadioNumberOfEntries, row_text, radio_count)
PARAMETER(WiFi_MultiAP_APDevice_Radio_APNumberOfEntries, radio_text, access_points)
PARAMETER(WiFi_MultiAP_APDevice_Radio_MACAddress, radio_text, bssid)
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_BSSID, radio_text, bssid)
PARAMETER(WiFi_MultiAP_APDevice_Radio_OperatingFrequencyBand, radio_text, frequency_band)

// The channel of this router's radio: the mesh shares one.
READ_ONLY(WiFi_MultiAP_APDevice_Radio_Channel) {
    const auto radio = mesh_radio(get.locate(), Caller::here());
    if (!radio) return kRefused;
    const std::string interface = interface_word(radio->radio->main);
    const auto command =
        interface_info->cpeType == CWMP_PLATFORM_BCM
            ? formatted(" wl -i %s status | grep 'Primary channel' | awk '{ print $3}'", interface.c_str())
            : formatted("iwlist %s channel | grep Current | awk ' {print $5}' | sed 's/)//g'", interface.c_str());
    return get.answer(first_line({command.c_str(), kLongLine, "Failed to get  Channel\n"}));
}

PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_SSID, radio_text, network_name)
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDeviceNumberOfEntries, radio_text, client_count)
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDevice_MACAddress, client_option, "mac")
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDevice_LastDataDownlinkRate, client_option, "down_speed")
PARAMETER(WiFi_MultiAP_APDevice_Radio_AP_AssociatedDevice_LastDataUplinkRate, client_option, "up_speed")
