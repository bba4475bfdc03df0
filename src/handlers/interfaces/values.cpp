#include "handlers/interfaces/values.h"

#include "core/command.h"
#include "core/shell.h"
#include "core/text.h"
#include "cwmp/interface_stack.h"
#include "cwmp/platform.h"
#include "handlers/blocks/numbered.h"
#include "platform/link_commands.h"

HANDLER(WANDevice_WANConnectionDevice_WANPPPConnection_ConnectionStatus);

namespace cwmp::interfaces {

namespace {

// The first line of a command; missing without one.
std::string line_of(const std::string& command, const char* missing = "") {
    auto line = Command(command).line();
    return line && !line->empty() ? *std::move(line) : missing;
}

std::string digits_or_zero(const std::string& line) {
    std::size_t position = 0;
    std::string digits = leading_digits(std::string(next_word(line, position)));
    return digits.empty() ? "0" : digits;
}

}  // namespace

int value(int op, Arguments args, Object object, Text text, Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const Instance* instance = require_instance(object, get.locate(), caller);
    return instance != nullptr ? get.answer(text(*instance)) : kRefused;
}

std::string present(const Instance& instance) { return is_present(instance) ? "1" : "0"; }

std::string status(const Instance& instance) {
    if (!is_present(instance)) return "NotPresent";
    return line_of(formatted(kFlagsOf, instance.device)) == "UP" ? "Up" : "Down";
}

std::string device_name(const Instance& instance) { return instance.device; }
std::string alias(const Instance& instance) { return formatted("cpe-%d", instance.number); }

std::string lower_layers(const Instance& instance) {
    refreshIntfStacks();
    return getLowerLayers(instance.stack);
}

std::string mac_of(const std::string& device) {
    if (device.empty()) return "";
    return line_of(formatted("ifconfig %s | grep HWaddr | awk '{print $5}'", shell_word(device).c_str()));
}

std::string mac_address(const Instance& instance) { return is_present(instance) ? mac_of(instance.device) : ""; }

std::string mtu(const Instance& instance) {
    constexpr const char* kUsual = "1500";
    if (!is_present(instance)) return kUsual;
    return line_of(formatted("ifconfig %s | grep MTU | awk -F 'MTU:' '{print $2}' | awk '{print $1}'", instance.device),
                   kUsual);
}

std::string mask(const Instance& instance) {
    if (!is_present(instance)) return "";
    return line_of(formatted(kMaskOf, instance.device));
}

std::string address(const Instance& instance) {
    if (!is_present(instance)) return "";
    return line_of(formatted(kAddressOf, instance.interface));
}

std::string last_change(const Instance& instance) {
    if (!is_present(instance)) return "0";
    return digits_or_zero(line_of(formatted(kUptimeOf, instance.interface)));
}

int device_counter(Arguments args, const char* device, const char* word) {
    int* locate = GetArguments(args).locate();
    locate[0] = 1;
    locate[1] = 0;
    const char* const names[3] = {device, "", ""};
    return get_TotalBytesAndPackets_by_name(CWMP_OP_GET, args, names, word);
}

int counter(int op, Arguments args, Object object, const char* word, Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const Instance* instance = require_instance(object, GetArguments(args).locate(), caller);
    if (instance == nullptr) return kRefused;
    return device_counter(args, is_present(*instance) ? instance->device : "", word);
}

int known_to_connection(int op, Arguments args, Object object, Handler connection, const char* absent, Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const GetArguments get(args);
    const Instance* instance = require_instance(object, get.locate(), caller);
    if (instance == nullptr) return kRefused;
    if (absent != nullptr && !is_present(*instance)) return get.answer(absent);
    return connection(op, args);
}

int connection_status(int op, Arguments args, Object object, Caller caller) {
    return known_to_connection(op, args, object, WANDevice_WANConnectionDevice_WANPPPConnection_ConnectionStatus,
                               "Unconfigured", caller);
}

int staged_instance(int op, Arguments args, Object object, std::initializer_list<InstanceField> fields, Caller caller) {
    if (!is_pass(op)) return kDone;
    const PassArguments pass(op, args);
    const Instance* instance = require_instance(object, pass.locate(), caller);
    if (instance == nullptr) return kRefused;
    for (const auto& [number, field] : fields) {
        if (number != instance->number) continue;
        // An absent interface has no address to change: the change would bring it up in place of the connection
        // in force, which the management server talks over.
        if (object == Object::IpAddress && !is_present(*instance)) break;
        return staged(pass, field, caller);
    }
    return refuse_instance(instance->number, caller);
}

}  // namespace cwmp::interfaces
