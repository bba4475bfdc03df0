#pragma once

#include <memory>
#include <optional>
#include <string>

#include "diagnose.h"

namespace CLI {
class App;
}

namespace cwmp {

struct Options {
    Format format = Format::Table;
    bool tables = false;  // folded to the width of a terminal although there is none
    std::string library = "/usr/lib/libcwmp-datamodel.so";
    std::string model = "/usr/share/cwmp-datamodel/model";
    std::string root;
    std::optional<std::string> agent;
    std::optional<int> log_level;
    bool why = false;
    bool dry_run = false;
    bool live = false;
    Words words;  // the command's arguments
    const Test* test = nullptr;
    TestRequest request;
    int seconds = 120;
    int interval = 1;
    int levels = 0;
};

class CommandLine {
  public:
    CommandLine();
    ~CommandLine();

    // The exit code when there is nothing to run: after help and version. Throws Failure at a mistake.
    std::optional<int> parse(int argc, char** argv);

    // What the last of the words may become: a command, a test or an option; of a path nothing is known here. The
    // command comes to `command`.
    Words completions(const Words& words);

    Options options;
    std::string command;
    bool completes = false;  // the command's words, instead of running it

  private:
    CLI::App* add(const char* name, const char* description, const char* arguments, size_t at_least);
    void add_diagnostics();
    void add_wait(CLI::App* subcommand);
    void require_command(const CLI::App& app, const char* what) const;

    std::unique_ptr<CLI::App> app_;
};

}  // namespace cwmp
