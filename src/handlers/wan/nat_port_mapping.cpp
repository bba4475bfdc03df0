// Device.NAT.PortMapping.{i}.
#include <cstdio>
#include <cstring>

#include "core/bulk_read.h"
#include "core/handler.h"
#include "core/refusal.h"
#include "core/text.h"
#include "cwmp/instances.h"
#include "cwmp/value_checks.h"
#include "handlers/wan/port_mapping.h"

using namespace cwmp;
using namespace cwmp::port_mapping;

namespace {

using Text = std::optional<std::string>;

struct Change {
    const char* value = "";
    const NumberedSection& mapping;
    Caller caller;
};

struct Field {
    const char* option = "";
    // The answer for what is stored; null: the text itself, empty without one.
    std::string (*shown)(const Text& stored, const NumberedSection& mapping) = nullptr;
    // What to store for a value, nothing to refuse it; null: the value itself.
    Text (*accepts)(const Change& change) = nullptr;
};

NumberedSection mapping_at(const int* locate) {
    return {kMappings, locate == nullptr || locate[0] > kMost ? 0 : locate[0]};
}

int refuse_path(const int* locate, Caller caller) {
    const bool beyond = locate != nullptr && locate[0] > kMost;
    return beyond ? refuse(caller, kError, "%s", kTooMany) : refuse(caller, kDebug, "%s", kNoInstance);
}

int get_field(const GetArguments& get, const Field& field, Caller caller) {
    const NumberedSection mapping = mapping_at(get.locate());
    if (!mapping) return refuse_path(get.locate(), caller);
    const Text stored = mapping.value(field.option);
    return get.answer(field.shown != nullptr ? field.shown(stored, mapping) : stored.value_or(""));
}

int set_field(const SetArguments& set, const Field& field, Caller caller) {
    const NumberedSection mapping = mapping_at(set.locate());
    if (!mapping) return refuse_path(set.locate(), caller);
    if (!mapping.value(kNumberOption)) return refuse(caller, kDebug, "%s", kNoInstance);
    const Text text = field.accepts != nullptr ? field.accepts({set.value(), mapping, caller}) : set.value();
    if (!text) return kRefused;
    if (!mapping.write(field.option, *text)) return refuse(caller, kError, "%s", kUnwritten);
    set.raise(CWMP_APPLY_NAT);
    return kDone;
}

int mapping_field(int op, Arguments args, const Field& field, Caller caller = Caller::here()) {
    if (op == CWMP_OP_GET) return get_field(GetArguments(args), field, caller);
    return change(op, args, [&](const SetArguments& set) { return set_field(set, field, caller); });
}

int read_only_field(int op, Arguments args, const Field& field, Caller caller = Caller::here()) {
    return op == CWMP_OP_GET ? get_field(GetArguments(args), field, caller) : kRefused;
}

bool is(const char* value, const char* word) { return std::strcmp(value, word) == 0; }

std::string switch_digit(const Text& stored, const NumberedSection& /*mapping*/) { return stored == "on" ? "1" : "0"; }

Text switch_word(const Change& change) {
    if (is(change.value, "1")) return "on";
    if (is(change.value, "0")) return "off";
    return std::nullopt;
}

std::string status_word(const Text& stored, const NumberedSection& /*mapping*/) {
    if (stored == "on") return "Enabled";
    return stored == "off" ? "Disabled" : "Error_Misconfigured";
}

std::string alias(const Text& stored, const NumberedSection& mapping) {
    return stored.value_or("cpe-" + mapping.name());
}

Text interface_word(const Change& change) {
    if (std::strstr(change.value, "lan") != nullptr) {
        log_event(change.caller, kError, " NAT_PortMapping_Interface  \n\n");
        return "lan";
    }
    if (std::strstr(change.value, "wan") != nullptr) return "wan";
    return std::nullopt;
}

Text address(const Change& change) {
    if (checkValidIP(change.value) == 1) return change.value;
    return no_value(refuse(change.caller, kError, "the format of ip is wrong \n"));
}

// "8080-8090", or "8080" alone.
struct PortRange {
    std::string start;
    Text end;

    explicit PortRange(const std::string& text) : start(text.substr(0, text.find('-'))) {
        if (start.size() < text.size()) end = text.substr(start.size() + 1);
    }
};

int number_of(const std::string& port) { return decimal_prefix(port.c_str()); }

std::string first_port(const Text& stored, const NumberedSection& /*mapping*/) {
    return PortRange(stored.value_or("")).start;
}
std::string last_port(const Text& stored, const NumberedSection& /*mapping*/) {
    return PortRange(stored.value_or("")).end.value_or("");
}

// A start that reaches the stored end leaves a single port.
Text from_port(const Change& change) {
    const PortRange stored(change.mapping.value("external_port").value_or(""));
    if (stored.end && decimal_prefix(change.value) < number_of(*stored.end)) return change.value + ("-" + *stored.end);
    return change.value;
}

Text to_port(const Change& change) {
    const PortRange stored(change.mapping.value("external_port").value_or(""));
    if (stored.start.empty() || number_of(stored.start) > decimal_prefix(change.value)) return std::nullopt;
    return stored.start + '-' + change.value;
}

Text protocol(const Change& change) {
    if (is(change.value, "TCP") || is(change.value, "UDP")) return change.value;
    return std::nullopt;
}

Text lan_address() { return read_option({"network", "lan", "ipaddr"}); }

// The last octet is stored alone, so that a client follows the LAN to another network.
std::string client_address(const Text& stored, const NumberedSection& /*mapping*/) {
    const Text lan = lan_address();
    int octet[3] = {};
    if (!stored || !lan) return "";
    if (std::sscanf(lan->c_str(), "%d.%d.%d", &octet[0], &octet[1], &octet[2]) != 3) return "";
    char text[64];
    std::snprintf(text, sizeof text, "%d.%d.%d.%d", octet[0], octet[1], octet[2], number_of(*stored));
    return text;
}

Text client_octet(const Change& change) {
    if (!address(change)) return std::nullopt;
    const Text lan = lan_address();
    if (!lan || check_subnet(change.value, lan->c_str()) != 1)
        return no_value(refuse(change.caller, kError, "the InternalClient'subnet is not same as lan_ip\n\n"));
    return std::strrchr(change.value, '.') + 1;
}

Text description(const Change& change) {
    constexpr std::size_t kLongest = 256;
    if (std::strlen(change.value) <= kLongest) return change.value;
    return no_value(refuse(change.caller, kError, " the length of description is too long \n\n"));
}

}  // namespace

PARAMETER(NAT_PortMapping_Enable, mapping_field, {"enable", switch_digit, switch_word})
PARAMETER(NAT_PortMapping_Status, read_only_field, {"enable", status_word})
PARAMETER(NAT_PortMapping_Alias, mapping_field, {"name", alias})
PARAMETER(NAT_PortMapping_Interface, mapping_field, {"intf", nullptr, interface_word})
PARAMETER(NAT_PortMapping_RemoteHost, mapping_field, {"external_ip", nullptr, address})
PARAMETER(NAT_PortMapping_ExternalPort, mapping_field, {"external_port", first_port, from_port})
PARAMETER(NAT_PortMapping_ExternalPortEndRange, mapping_field, {"external_port", last_port, to_port})
PARAMETER(NAT_PortMapping_InternalPort, mapping_field, {"internal_port"})
PARAMETER(NAT_PortMapping_Protocol, mapping_field, {"protocol", nullptr, protocol})
PARAMETER(NAT_PortMapping_InternalClient, mapping_field, {"ip", client_address, client_octet})
PARAMETER(NAT_PortMapping_Description, mapping_field, {"description", nullptr, description})

READ_ONLY(NAT_PortMappingNumberOfEntries) {
    const std::string count = decimal(__getInstanceMax(kMappings.package, kMappings.type));
    const KeepBulkRead ours;
    write_option({kMappings.package, "nat", "PortMappingNumberOfEntries"}, count);
    return get.answer(count);
}
