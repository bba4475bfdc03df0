#include "handlers/wan/connection.h"

#include "core/refusal.h"
#include "core/text.h"
#include "handlers/blocks/command_line.h"
#include "handlers/blocks/numbered.h"
#include "platform/link_commands.h"

namespace cwmp::wan {

namespace {

constexpr std::size_t kStateLimit = 29;

struct State {
    char reported[18];
    char word[15];
};

constexpr State kStates[] = {
    {"\"connecting\",", "Connecting"},
    {"\"connected\",", "Connected"},
    {"\"disconnected\",", "Disconnected"},
    {"\"disconnecting\",", "Disconnecting"},
};

const char* word_of(const std::string& line) {
    for (const auto& state : kStates) {
        if (contains(line, state.reported)) return state.word;
    }
    return "Unconfigured";
}

}  // namespace

int connection_of(const int* locate) {
    if (locate == nullptr) return 0;
    const int number = number_of_pair(locate);
    return number == 1 || number == 2 ? number : 0;
}

std::optional<int> require_connection(const int* locate, Caller caller) {
    if (const int number = connection_of(locate); number != 0) return number;
    return no_value(refuse_instance(locate != nullptr ? locate[0] : 0, caller));
}

int connection_status(int op, Arguments args, const char* interface, const char* cannot_start, Caller caller) {
    if (op != CWMP_OP_GET) return kRefused;
    const auto command = formatted(kStateOf, interface);
    const auto line = first_line({command.c_str(), kStateLimit, cannot_start}, caller);
    return line ? answer(args, word_of(*line)) : kRefused;
}

}  // namespace cwmp::wan
