#include "command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "failure.h"
#include "text.h"

namespace cwmp {

namespace {

constexpr const char* kExitCodes =
    "Exit codes, of several the highest:\n"
    "  0  all done\n"
    "  1  a handler refused: a fault was answered\n"
    "  2  wrong command line, malformed path or value\n"
    "  3  unknown path or missing instance\n"
    "  4  the library or the model cannot be used\n"
    "  5  not allowed: the root cannot be entered or the output cannot be written\n"
    "  6  a read-only parameter, or an object whose instances are fixed\n"
    "  130, 143  ended by Ctrl-C or SIGTERM";

}  // namespace

CommandLine::CommandLine()
    : app_(std::make_unique<CLI::App>("Plays the TR-069 agent: calls the parameter handlers of the data-model library.",
                                      "dm")) {
    app_->allow_extras()->fallthrough();
    app_->set_version_flag("--version", "dm " DM_VERSION);
    const std::pair<const char*, const char*> formats[] = {
        {"--table", "Print tables, the usual form, to fit a terminal"},
        {"--plain", "Print PATH=VALUE lines or paths alone"},
        {"--json", "Print JSON"}};
    for (int i = 0; i < 3; ++i) {
        app_->add_flag_callback(
            formats[i].first,
            [this, i] {
                options.format = static_cast<Format>(i);
                options.tables = i == 0;
            },
            formats[i].second);
    }
    auto add_file = [this](const char* name, auto& variable, const char* help) {
        return app_->add_option(name, variable, help)->take_last();
    };
    add_file("--library", options.library, "The data-model library")->capture_default_str();
    add_file("--model", options.model, "The directory of the model files")->capture_default_str();
    add_file("--root", options.root, "Enter this router root first; other paths are inside it");
    add_file("--agent", options.agent, "The file that describes the agent itself");
    app_->add_flag("--live", options.live, "Read each parameter anew where several come from one command");
    add_file("--log", options.log_level, "The library's log level: 3 error, 6 progress, 7 debug");

    app_->add_flag("--why", options.why, "Show the library's messages up to --log, or 6, here and not on the console");

    add("get", "Read parameters, or all below a path that ends in '.'; '*' stands for each instance", "PATH", 1);
    add("watch", "Print what changes, until Ctrl-C", "PATH", 1)
        ->add_option("--interval", options.interval, "Seconds between two readings")
        ->check(CLI::Range(1, 86400))
        ->capture_default_str();
    for (CLI::App* subcommand :
         {add("set", "Set parameters in one transaction; '-' reads them from standard input", "PATH=VALUE", 1),
          add("transaction", "Set, add and delete in one transaction, line by line of a file or '-'", "FILE", 1)}) {
        subcommand->add_flag("--dry-run", options.dry_run, "Stage and check the values, then undo all of it");
    }
    add("recover", "Undo the change that a killed program has left half done", nullptr, 0);
    add("add", "Add an instance and set its parameters: Device.NAT.PortMapping. Protocol=TCP", "OBJECT [NAME=VALUE]",
        1);
    add("del", "Delete instances: Device.NAT.PortMapping.3.", "INSTANCE", 1);
    add("list", "List the instances of objects", "OBJECT", 1);
    add("names", "List the supported names, all or below PATH", "PATH", 0)
        ->add_option("--level", options.levels, "So many levels below only")
        ->check(CLI::Range(1, 99));
    add("find", "List the supported names that hold all of the words", "WORD", 1);
    add("export", "Print the settings of Device. or below PATH, for import", "PATH", 0);
    add("import", "Set what differs from a file in one transaction; '-' is standard input", "FILE", 1);
    add_diagnostics();
    add("complete", "What a shell may offer", "WORD", 0)->group("");
    app_->footer(kExitCodes);
}

CommandLine::~CommandLine() = default;

CLI::App* CommandLine::add(const char* name, const char* description, const char* arguments, size_t at_least) {
    CLI::App* subcommand = app_->add_subcommand(name, description);
    subcommand->callback([this, name] { command = name; });
    if (arguments) {
        CLI::Option* option = subcommand->add_option(arguments, options.words);
        if (at_least) option->required();
    }
    return subcommand;
}

void CommandLine::add_wait(CLI::App* subcommand) {
    subcommand->add_option("--wait", options.seconds, "Seconds to wait for the end of the test")
        ->check(CLI::Range(1, 86400))
        ->capture_default_str();
}

void CommandLine::add_diagnostics() {
    CLI::App* diagnose_command = add("diagnose", "Run or request a diagnostic test", nullptr, 0);
    diagnose_command->fallthrough();
    for (const Test& test : tests()) {
        CLI::App* subcommand = diagnose_command->add_subcommand(test.name, test.help);
        subcommand->callback([this, &test] { options.test = &test; });
        if (test.results) add_wait(subcommand);
        if (!test.settings.empty()) {
            subcommand->add_flag("--keep", options.request.keep, "Keep the earlier settings that are not given");
        }
        for (const Test::Setting& setting : test.settings) {
            CLI::Option* option = subcommand->add_option_function<std::string>(
                setting.option,
                [this, &setting](const std::string& value) { options.request.values[&setting] = value; }, setting.help);
            if (setting.option[0] != '-') option->required();
            if (setting.most) option->check(CLI::Range(setting.least, setting.most));
        }
    }
    add_wait(add("wait-diagnostics", "Wait for the end of a test that was requested elsewhere", nullptr, 0));
}

// A missing or unknown command is named, with the one that may be meant.
void CommandLine::require_command(const CLI::App& app, const char* what) const {
    if (!app.get_subcommands().empty()) return;
    Words known;
    for (const CLI::App* subcommand : app.get_subcommands(nullptr)) known.push_back(subcommand->get_name());
    const Words extra = app_->remaining(true);
    if (extra.empty())
        throw Failure{app.get_name(), kNoFault, Exit::Malformed, std::string("a ") + what + " is missing"};
    const auto near = nearest(extra.front(), known);
    throw Failure{extra.front(), kNoFault, Exit::Malformed,
                  std::string("no such ") + what + (near ? "; did you mean " + *near + "?" : "")};
}

Words CommandLine::completions(const Words& words) {
    const std::string last = words.empty() ? "" : words.back();
    const CLI::App* chosen = app_.get();
    for (size_t i = 0; i + 1 < words.size(); ++i) {
        for (const CLI::App* subcommand : chosen->get_subcommands(nullptr)) {
            if (subcommand->get_name() == words[i]) chosen = subcommand;
        }
    }
    command = chosen->get_name();
    Words known;
    for (const CLI::App* subcommand : chosen->get_subcommands(nullptr)) {
        if (!subcommand->get_group().empty()) known.push_back(subcommand->get_name());
    }
    for (const CLI::App* app : {chosen, static_cast<const CLI::App*>(app_.get())}) {
        for (const CLI::Option* option : app->get_options()) {
            if (last.starts_with('-') && !option->get_positional())
                known.push_back("--" + option->get_lnames().front());
        }
    }
    std::erase_if(known, [&](const std::string& word) { return !word.starts_with(last); });
    std::sort(known.begin(), known.end());
    known.erase(std::unique(known.begin(), known.end()), known.end());
    return known;
}

std::optional<int> CommandLine::parse(int argc, char** argv) {
    // A mistake is told as asked for, too.
    if (std::any_of(argv, argv + argc, [](std::string_view word) { return word == "--json"; })) {
        options.format = Format::Json;
    }
    try {
        app_->parse(argc, argv);
    } catch (const CLI::Success& help) {
        return app_->exit(help);
    } catch (const CLI::ParseError& error) {
        throw Failure{"command line", kNoFault, Exit::Malformed, error.what()};
    }
    require_command(*app_, "command");
    if (command == "diagnose") require_command(*app_->get_subcommand("diagnose"), "test");
    Words extra = app_->remaining(true);
    std::erase(extra, "--");
    if (extra.empty()) return std::nullopt;
    throw Failure{extra.front(), kNoFault, Exit::Malformed, "not understood by " + command};
}

}  // namespace cwmp
