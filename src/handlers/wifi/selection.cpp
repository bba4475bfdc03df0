#include "handlers/wifi/selection.h"

#include "core/shell.h"

namespace cwmp {

constexpr Radio kRadio2G = {.section = "radio_2g",
                            .device = "wifi0",
                            .band_option = "enable_2g",
                            .frequency_band = "2.4GHz",
                            .bssid_option = "bssid_2g",
                            .client_band = "band2_4",
                            .band = 1,
                            .layer_id = 31,
                            .main = &cwmp_interface_info::wifi_2_4G,
                            .guest = &cwmp_interface_info::guest_2_4G,
                            .backhaul = &cwmp_interface_info::backhaul_2_4G};
constexpr Radio kRadio5G = {.section = "radio_5g",
                            .device = "wifi1",
                            .band_option = "enable_5g",
                            .frequency_band = "5GHz",
                            .bssid_option = "bssid_5g",
                            .client_band = "band5",
                            .band = 2,
                            .layer_id = 33,
                            .main = &cwmp_interface_info::wifi_5G,
                            .guest = &cwmp_interface_info::guest_5G,
                            .backhaul = &cwmp_interface_info::backhaul_5G};

namespace {

constexpr Network kNetworks[] = {
    {&kRadio2G, kMainNetwork, kRadio2G.main},
    {&kRadio2G, kGuestNetwork, kRadio2G.guest},
    {&kRadio5G, kMainNetwork, kRadio5G.main},
    {&kRadio5G, kGuestNetwork, kRadio5G.guest},
};

}  // namespace

bool Network::is_guest() const { return field == radio->guest; }

const Radio* radio_by_number(int number) {
    if (number == 1) return &kRadio2G;
    if (number == 2) return &kRadio5G;
    return nullptr;
}

const Radio* radio_by_pair(const int* locate) { return radio_by_number(number_of_pair(locate)); }

int of_radio(int op, Arguments args, RadioParameter parameter, Caller caller) {
    if (op == CWMP_OP_GET) {
        const GetArguments get(args);
        const auto* radio = radio_by_pair(get.locate());
        return radio != nullptr ? parameter.get(get, *radio, caller) : kRefused;
    }
    if (parameter.set == nullptr) return kRefused;
    return change(op, args, [&](const SetArguments& set) {
        const auto* radio = radio_by_pair(set.locate());
        return radio != nullptr ? parameter.set(set, *radio, caller) : kRefused;
    });
}

const Network* network_by_number(int number) { return number >= 1 && number <= 4 ? &kNetworks[number - 1] : nullptr; }

bool is_main_network(int number) { return number == 1 || number == 3 || number == 5; }

Section network_section(int number) { return is_main_network(number) ? kMainNetwork : kGuestNetwork; }

const char* current_interface(InterfaceField field) {
    initialize_interface_info(interface_info);
    return interface_info->*field;
}

std::string interface_word(InterfaceField field) { return shell_word(current_interface(field)); }

}  // namespace cwmp
