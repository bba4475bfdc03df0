#include "exchange.h"

#include <fstream>
#include <iostream>

#include "failure.h"
#include "text.h"
#include "transaction.h"

namespace cwmp {

namespace {

Words read_lines(std::istream& input, const std::string& name) {
    Words assignments;
    std::string line;
    for (int number = 1; std::getline(input, line); ++number) {
        if (line.ends_with('\r')) line.pop_back();
        if (line.empty() || line.front() == '#') continue;
        const size_t equals = line.find('=');
        const auto value =
            from_line(std::string_view(line).substr(equals == line.npos ? line.size() : equals));
        if (equals != line.npos && value) {
            assignments.push_back(line.substr(0, equals) + *value);
            continue;
        }
        throw Failure{
            name + ":" + std::to_string(number), kNoFault, Exit::Malformed,
            value ? "PATH=VALUE expected" : "a backslash begins \\n, \\r, \\t, \\\\ or \\x and two digits"};
    }
    if (!input.eof()) throw Failure{name, kNoFault, Exit::Unusable, "cannot be read"};
    return assignments;
}

bool is_request(const std::string& path) { return path.ends_with(".DiagnosticsState"); }

}  // namespace

Words read_assignments(const std::string& file) {
    if (file == "-") return read_lines(std::cin, "standard input");
    std::ifstream input(file);
    return read_lines(input, file);
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
