#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <map>
#include <set>
#include <string_view>

#include "agent_state.h"
#include "change.h"
#include "command_line.h"
#include "complete.h"
#include "exchange.h"
#include "interrupt.h"
#include "library.h"
#include "router_root.h"
#include "rpcd.h"
#include "standard_output.h"
#include "text.h"
#include "watch.h"

namespace cwmp {

namespace {

constexpr size_t kUsualColumns = 80;
constexpr int kProgressMessages = 6;

// Of the terminal on standard output, 0 when it is none and no one asks for a width.
size_t columns_of(int descriptor, bool asked) {
    winsize size = {};
    if (ioctl(descriptor, TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
    const char* columns = std::getenv("COLUMNS");
    return asked ? decimal<size_t>(columns ? columns : "").value_or(kUsualColumns) : 0;
}

// The command's arguments, with the lines of standard input in place of "-".
Words assignments(const Words& words) {
    Words all;
    for (const std::string& word : words) {
        const Words more = word == "-" ? read_assignments(word) : Words{word};
        all.insert(all.end(), more.begin(), more.end());
    }
    return all;
}

void print_lines(const Words& lines, FILE* out) {
    for (const std::string& line : lines) std::fprintf(out, "%s\n", line.c_str());
}

bool takes_paths(const std::string& command) {
    static const std::set<std::string_view> known = {"get", "watch", "set", "add", "del", "list", "names", "export"};
    return known.contains(command);
}

void run_command(CommandLine& line, Session& session, FILE* out) {
    Options& options = line.options;
    const Words& words = options.words;
    const std::map<std::string_view, std::function<void()>> commands = {
        {"get", [&] { get_values(session, words); }},
        {"watch", [&] { watch(session, words, options.interval, options.format, out); }},
        {"set", [&] { set_values(session, assignments(words)); }},
        {"add",
         [&] {
             add_instance(session, words.front(), {words.begin() + 1, words.end()});
         }},
        {"del", [&] { delete_instances(session, words); }},
        {"transaction", [&] { make_changes(session, read_steps(words.front())); }},
        {"list", [&] { list_instances(session, words); }},
        {"recover", [&] { recover(session.library, session.report); }},
        {"export", [&] { export_values(session, words.empty() ? Words{"Device."} : words); }},
        {"import", [&] { import_values(session, words.front()); }},
        {"diagnose", [&] { diagnose(session, *options.test, options.request, options.seconds); }},
        {"wait-diagnostics", [&] { wait_diagnostics(session, options.seconds); }},
    };
    commands.at(line.command)();
}

void run(CommandLine& line, Report& report, FILE* out) {
    const Options& options = line.options;
    note_failure(report, [&] {
        line.completes = line.command == "complete";
        if (line.completes) print_lines(line.completions(options.words), out);
        if (line.completes && !takes_paths(line.command)) return;
        if (!options.root.empty()) enter_root(options.root);
        const Model model(options.model);
        if (line.command == "names" && !line.completes) return list_names(model, options.words, options.levels, report);
        if (line.command == "find") return find_names(model, options.words, report);
        const Library library(options.library);
        const auto state = agent_state(options.agent);
        Agent agent(library, state ? &*state : nullptr);
        if (options.why) {
            agent.show_messages(options.log_level.value_or(kProgressMessages));
        } else if (options.log_level) {
            agent.set_log_level(*options.log_level);
        }
        Session session{library, model, agent, report, options.dry_run, options.live};
        if (!line.completes) return run_command(line, session, out);
        for (std::string path : completions(session, options.words.back())) {
            if (line.command == "set" && !path.ends_with('.')) path += '=';
            print_lines({path}, out);
        }
    });
}

int finish(Report& report, Format format, size_t columns, FILE* out) {
    if (format == Format::Json) print_json(report, out);
    if (format == Format::Plain) print_plain(report, out);
    if (format == Format::Table) print_text(report, columns, out);
    if (std::fflush(out) != 0) {
        report.errors.push_back({"standard output", kNoFault, Exit::NotAllowed, "cannot be written"});
    }
    print_errors(report, stderr);
    return interrupted() && !report.errors.empty() ? 128 + interrupted() : static_cast<int>(report.exit());
}

int dm(int argc, char** argv) {
    CommandLine line;
    Report report;
    note_failure(report, [&] {
        if (const auto code = line.parse(argc, argv)) std::exit(*code);
    });
    Options& options = line.options;
    const size_t columns = columns_of(STDOUT_FILENO, options.tables);
    const File out = take_standard_output();
    if (report.errors.empty()) run(line, report, out.get());
    if (line.command == "export" && options.format == Format::Table) options.format = Format::Plain;
    const bool printed = line.command == "watch" || line.completes;
    if (printed && report.errors.empty()) return 0;
    return finish(report, options.format, columns, out.get());
}

}  // namespace

}  // namespace cwmp

int main(int argc, char** argv) {
    try {
        if (cwmp::is_rpcd_plugin(argv[0])) {
            return cwmp::answer_rpcd(argc, argv, cwmp::take_standard_output().get());
        }
        return cwmp::dm(argc, argv);
    } catch (const cwmp::Failure& failure) {
        std::fprintf(stderr, "dm: %s: %s\n", failure.subject.c_str(), failure.message.c_str());
        return static_cast<int>(failure.exit);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dm: %s\n", error.what());
        return static_cast<int>(cwmp::Exit::Unusable);
    }
}
