#include "watch.h"

#include <ctime>
#include <map>

#include "interrupt.h"
#include "text.h"

namespace cwmp {

namespace {

using Values = std::map<std::string, std::string>;

Values read(Session& session, const Words& paths) {
    session.agent.forget_instances();
    session.report = {};
    get_values(session, paths);
    Values values;
    for (auto& parameter : session.report.parameters) values[parameter.path] = std::move(parameter.value);
    session.report.parameters.clear();
    return values;
}

std::string now() {
    const std::time_t time = std::time(nullptr);
    std::tm parts = {};
    char text[32];
    std::strftime(text, sizeof text, "%FT%T%z", localtime_r(&time, &parts));
    return text;
}

void print_change(const std::string& path, const std::string* before, const std::string* after, Format format,
                  FILE* out) {
    if (format == Format::Json) return print_change_json(now(), path, before, after, out);
    if (format == Format::Plain) {
        std::fprintf(out, "%s=%s\n", path.c_str(), after ? as_line(*after).c_str() : "");
        return;
    }
    auto shown = [](const std::string* value) { return value ? "'" + printable(*value) + "'" : "none"; };
    std::fprintf(out, "%s  %s  %s -> %s\n", now().substr(11, 8).c_str(), path.c_str(), shown(before).c_str(),
                 shown(after).c_str());
}

void print_changes(const Values& before, const Values& after, Format format, FILE* out) {
    for (const auto& [path, value] : before) {
        if (!after.contains(path)) print_change(path, &value, nullptr, format, out);
    }
    for (const auto& [path, value] : after) {
        const auto old = before.find(path);
        if (old != before.end() && old->second == value) continue;
        print_change(path, old == before.end() ? nullptr : &old->second, &value, format, out);
    }
    std::fflush(out);
}

}  // namespace

void watch(Session& session, const Words& paths, int seconds, Format format, FILE* out) {
    catch_interrupts();
    Values values = read(session, paths);
    // A mistyped path is told at once; what cannot be read for a while is not worth an end.
    if (!session.report.errors.empty()) return;
    while (!interrupted() && !std::ferror(out)) {
        wait_for(-1, seconds * 1000);
        if (interrupted()) break;
        Values next = read(session, paths);
        print_changes(values, next, format, out);
        values = std::move(next);
    }
    session.report = {};
}

}  // namespace cwmp
