#include "exchange.h"

#include <fstream>
#include <iostream>

#include "failure.h"
#include "text.h"
#include "transaction.h"

namespace cwmp {

namespace {

// Hands on each line that is no comment; take answers null, or what is wrong with it.
template <typename Take>
void read_lines(std::istream& input, const std::string& name, Take take) {
    std::string line;
    for (int number = 1; std::getline(input, line); ++number) {
        if (line.ends_with('\r')) line.pop_back();
        if (line.empty() || line.front() == '#') continue;
        if (const char* mistake = take(line)) {
            throw Failure{name + ":" + std::to_string(number), kNoFault, Exit::Malformed, mistake};
        }
    }
    if (!input.eof()) throw Failure{name, kNoFault, Exit::Unusable, "cannot be read"};
}

template <typename Take>
void read_file(const std::string& file, Take take) {
    if (file == "-") return read_lines(std::cin, "standard input", take);
    std::ifstream input(file);
    read_lines(input, file, take);
}

// Reads the escapes of a value. Null, or what is wrong.
const char* unescape(std::string& line) {
    const size_t equals = line.find('=');
    if (equals == std::string::npos) return "PATH=VALUE expected";
    const auto value = from_line(std::string_view(line).substr(equals));
    if (!value) return R"(a backslash begins \n, \r, \t, \\ or \x and two digits)";
    line.resize(equals);
    line += *value;
    return nullptr;
}

constexpr std::pair<std::string_view, Step::Kind> kSteps[] = {
    {"set ", Step::Kind::Set}, {"add ", Step::Kind::Add}, {"del ", Step::Kind::Delete}};

bool is_request(const std::string& path) { return path.ends_with(".DiagnosticsState"); }

}  // namespace

Words read_assignments(const std::string& file) {
    Words assignments;
    read_file(file, [&](std::string& line) {
        const char* mistake = unescape(line);
        assignments.push_back(line);
        return mistake;
    });
    return assignments;
}

std::vector<Step> read_steps(const std::string& file) {
    std::vector<Step> steps;
    read_file(file, [&](const std::string& line) {
        for (const auto& [verb, kind] : kSteps) {
            if (!line.starts_with(verb)) continue;
            steps.push_back({kind, line.substr(verb.size())});
            return kind == Step::Kind::Set ? unescape(steps.back().text) : nullptr;
        }
        return "set, add or del expected";
    });
    return steps;
}

void import_values(Session& session, const std::string& file) {
    Words changed;
    const Words all = read_assignments(file);
    for (const std::string& text : all) {
        note_failure(session.report, [&] {
            const auto [target, value] = assignment(session.model, text);
            session.agent.resolve(target);
            if (session.agent.get(*target.node, target.numbers) != value) changed.push_back(text);
        });
    }
    if (!session.report.errors.empty()) return;
    session.report.notes.push_back(std::to_string(changed.size()) + " of " + std::to_string(all.size()) +
                                   " settings differ");
    if (!changed.empty()) set_values(session, changed);
}

void export_values(Session& session, const Words& paths) {
    session.wanted = [](const Node& node) { return node.writable; };
    get_values(session, paths);
    auto& secrets = session.report.secrets.emplace();
    std::erase_if(session.report.parameters, [&](const Report::Parameter& parameter) {
        const bool secret = find_target(session.model, parameter.path).node->secret;
        if (secret) secrets.push_back(parameter.path);
        return secret || parameter.value.empty() || is_request(parameter.path);
    });
}

}  // namespace cwmp
