// What the interface objects have in common: each value follows from the instance's row in the table.
#pragma once

#include <initializer_list>
#include <string>

#include "core/handler.h"
#include "handlers/blocks/staged.h"
#include "handlers/interfaces/instances.h"

namespace cwmp::interfaces {

using Text = std::string (*)(const Instance& instance);

// A read-only parameter: one of the texts below.
int value(int op, Arguments args, Object object, Text text, Caller caller = Caller::here());

std::string present(const Instance& instance);  // "1" or "0"
std::string status(const Instance& instance);   // "Up", "Down" or "NotPresent"
std::string device_name(const Instance& instance);
std::string alias(const Instance& instance);
std::string lower_layers(const Instance& instance);

// Live values, with a default when the instance is absent or its tool prints nothing.
std::string mac_address(const Instance& instance);
std::string mtu(const Instance& instance);
std::string mask(const Instance& instance);
std::string address(const Instance& instance);
std::string last_change(const Instance& instance);  // seconds

// The same of a device that is no instance of the table; empty for an empty name.
std::string mac_of(const std::string& device);

// A read-only parameter: a kernel counter of the instance's device.
int counter(int op, Arguments args, Object object, const char* word, Caller caller = Caller::here());
// The same of a device; an empty name reads "0". locate is rewritten.
int device_counter(Arguments args, const char* device, const char* word);

// A read-only parameter of a dialled connection: as the PPP connection of the WAN answers. absent, where it is
// given, is the answer of an instance that is not present.
int known_to_connection(int op, Arguments args, Object object, Handler connection, const char* absent = nullptr,
                        Caller caller = Caller::here());
int connection_status(int op, Arguments args, Object object, Caller caller = Caller::here());

// SET of the instances that are a field of a group; the others refuse it, and so does an address of an
// interface that is absent.
struct InstanceField {
    int number = 0;
    StagedField field = {};
};
int staged_instance(int op, Arguments args, Object object, std::initializer_list<InstanceField> fields,
                    Caller caller = Caller::here());

}  // namespace cwmp::interfaces
