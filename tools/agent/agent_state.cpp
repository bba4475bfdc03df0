#include "agent_state.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "failure.h"
#include "text.h"

namespace cwmp {

namespace {

constexpr const char* kUsualFile = "/var/lib/dm/agent";

template <size_t size>
bool set_text(char (&field)[size], const std::string& text) {
    if (text.size() >= size) return false;
    field[text.copy(field, size)] = '\0';
    return true;
}

bool set_port(uint16_t& port, const std::string& text) {
    const auto number = decimal<uint16_t>(text);
    port = number.value_or(0);
    return number.has_value();
}

bool set_field(cwmp_agent_state& state, const std::string& name, const std::string& value) {
    if (name == "acs-url") return set_text(state.acs_url, value);
    if (name == "host") return set_text(state.host, value);
    if (name == "port") return set_port(state.port, value);
    if (name == "path") return set_text(state.path, value);
    return false;
}

}  // namespace

std::optional<cwmp_agent_state> agent_state(const std::optional<std::string>& file) {
    const std::string name = file.value_or(kUsualFile);
    if (!file && !std::filesystem::exists(name)) return std::nullopt;
    std::ifstream input(name);
    if (!input) throw Failure{name, kNoFault, Exit::Unusable, "cannot be read"};
    cwmp_agent_state state{};
    std::string line;
    while (std::getline(input, line)) {
        std::istringstream words(line);
        std::string field, value, more;
        if (!(words >> field) || field.front() == '#') continue;
        words >> value;
        if (words >> more || !set_field(state, field, value)) {
            throw Failure{name, kNoFault, Exit::Unusable, "not understood: " + line};
        }
    }
    return state;
}

}  // namespace cwmp
