#include "handlers/interfaces/ports.h"

#include <strings.h>

#include <initializer_list>
#include <optional>

#include "core/command.h"
#include "core/text.h"
#include "cwmp/platform.h"
#include "platform/ethernet_ports.h"

namespace cwmp::interfaces {

namespace {

struct Word {
    const char* told;
    const char* shown;
};

// What the link tool says of a port; nothing when there is no such port.
std::optional<std::string> ask(int port, const char* query) {
    char command[CWMP_PORT_COMMAND_SIZE] = "";
    if (concatCmd(command, port, query) != 0 || command[0] == '\0') return std::nullopt;
    return Command(command).line().value_or("");
}

const char* shown(const std::string& told, std::initializer_list<Word> words, const char* otherwise) {
    for (const auto& word : words) {
        if (strcasecmp(told.c_str(), word.told) == 0) return word.shown;
    }
    return otherwise;
}

}  // namespace

std::string port_name(int port) { return ethernet_port_name(port).value_or(""); }

std::string port_status(int port) {
    const auto told = ask(port, "status");
    if (!told) return "NotPresent";
    return shown(*told, {{"up", "Up"}, {"1", "Up"}, {"down", "Down"}, {"0", "Down"}}, "Unknown");
}

std::string port_speed(int port) {
    std::string digits = leading_digits(ask(port, "speed").value_or(""));
    return digits.empty() ? "-1" : digits;
}

std::string port_duplex(int port) {
    return shown(ask(port, "duplex").value_or(""), {{"full", "Full"}, {"half", "Half"}}, "Auto");
}

}  // namespace cwmp::interfaces
