// Which radio and which network a parameter's instance numbers mean: the one place that knows their sections,
// options and interfaces.
#pragma once

#include "config/store.h"
#include "core/handler.h"
#include "platform/profile.h"

namespace cwmp {

struct Radio {
    const char* section;      // in package wifi; also an option of the device profile
    const char* device;       // in package wireless
    const char* band_option;  // of a network's section: whether the network is present on this band
    const char* frequency_band;
    const char* bssid_option;  // of a mesh device: its address on this band
    const char* client_band;   // of a mesh client: how it is connected
    int band;                  // as the channel list counts
    int layer_id;              // of the interface stack: the row that lies on this radio
    InterfaceField main;
    InterfaceField guest;
    InterfaceField backhaul;

    constexpr OptionPath at(const char* option) const { return {"wifi", section, option}; }
    constexpr OptionPath device_at(const char* option) const { return {"wireless", device, option}; }
};

extern const Radio kRadio2G;
extern const Radio kRadio5G;

// The main or the guest network of one radio.
struct Network {
    const Radio* radio;
    Section section;  // shared by both bands
    InterfaceField field;

    constexpr OptionPath at(const char* option) const { return section / option; }
    bool is_guest() const;
};

// The instance numbers, whatever the operation.
inline const int* locate_of(Arguments args) { return GetArguments(args).locate(); }
// The same of a writable parameter, whose stage pass begins a transaction also where they are refused.
inline const int* locate_of(int op, Arguments args) {
    enter_pass(op);
    return locate_of(args);
}

// By the first two instance numbers: (1,1) and (1,0) are 2.4 GHz, (1,2) and (2,0) are 5 GHz; null for others.
const Radio* radio_by_pair(const int* locate);
// By one number: 1 is 2.4 GHz, 2 is 5 GHz; null for others.
const Radio* radio_by_number(int number);

// A parameter of the radio that the first two instance numbers mean; refused where they mean none.
struct RadioParameter {
    int (*get)(const GetArguments& get, const Radio& radio, Caller caller) = nullptr;
    int (*set)(const SetArguments& set, const Radio& radio, Caller caller) = nullptr;  // null: read-only
};
int of_radio(int op, Arguments args, RadioParameter parameter, Caller caller = Caller::here());

// 1 is 2.4 GHz main, 2 2.4 GHz guest, 3 5 GHz main, 4 5 GHz guest; null for others.
const Network* network_by_number(int number);
// For pass phrases and security: 1, 3 and 5 are the main network, any other number is the guest network.
bool is_main_network(int number);
Section network_section(int number);

// The profile's current name of a wireless interface, valid until the next call. Brings the platform record
// up to date.
const char* current_interface(InterfaceField field);
// The same as a word of a command.
std::string interface_word(InterfaceField field);

inline constexpr Section kMainNetwork{"wifi", "ap"};
inline constexpr Section kGuestNetwork{"wifi", "guest"};

}  // namespace cwmp
