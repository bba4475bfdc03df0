// Switching a network on and off on one band, and whether it is on. A network is one section of package wifi
// for both bands.
#pragma once

#include "core/handler.h"
#include "core/log.h"
#include "handlers/wifi/selection.h"

namespace cwmp {

struct NetworkSwitch {
    Section network = {};
    const Radio& radio;
    bool can_be_all_off = false;                               // its last band can be switched off
    bool replaces_default = true;                              // switching it on ends the factory's default network
    const char* unreadable = "can not foud wifi.ap.enable\n";  // logged by a SET without the section
};

int network_switch(int op, Arguments args, const NetworkSwitch& target, Caller caller = Caller::here());

// Nothing when the section cannot be read. A band that is not mentioned is on.
std::optional<bool> is_on(Section network, const Radio& radio);

// A read-only "Up" or "Down" of a band of a network, or of the network that the first instance number
// selects.
int band_status(int op, Arguments args, Section network, const Radio& radio);
int network_status(int op, Arguments args);

}  // namespace cwmp
