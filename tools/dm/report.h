#pragma once

#include <cstdio>
#include <optional>
#include <string>
#include <vector>

#include "failure.h"
#include "model.h"

namespace cwmp {

// What a command found and did; printed once at its end.
struct Report {
    struct Parameter {
        std::string path;
        std::string value;
        std::string type = {};                 // its name in a message
        std::vector<std::string> passes = {};  // the SET passes that its handler accepted
    };

    // One group of settings that a transaction touched, and the steps it took.
    struct Group {
        std::string name;
        std::vector<std::string> steps;
    };

    std::vector<Parameter> parameters;
    std::vector<Group> groups;
    std::optional<std::vector<std::string>> instances;
    std::optional<std::vector<Entry>> names;
    std::optional<std::vector<std::string>> secrets;  // that an export leaves out
    // Rows that tables show in place of some parameters, headings first.
    std::optional<std::vector<std::vector<std::string>>> table;
    std::string table_of = {};  // what such parameters' paths begin with
    std::vector<std::string> notes;
    bool diagnostics_complete = false;
    std::optional<unsigned> apply_flags;
    std::optional<bool> reverted;
    std::vector<Failure> errors;

    Exit exit() const;
};

// Runs the action; a failure ends it alone and is kept.
template <typename Action>
void note_failure(Report& report, Action action) {
    try {
        action();
    } catch (const Failure& failure) {
        report.errors.push_back(failure);
    }
}

enum class Format { Table, Plain, Json };

// Without the errors, but in JSON. Tables are for people: lines are folded to so many columns, 0 for never.
void print_text(const Report& report, size_t columns, FILE* out);

// PATH=VALUE lines, as `dm set -` takes them, or paths alone.
void print_plain(const Report& report, FILE* out);

void print_json(const Report& report, FILE* out);

// One change that `dm watch` saw, on a line; null for a value that there was not.
void print_change_json(const std::string& time, const std::string& path, const std::string* before,
                       const std::string* after, FILE* out);

// One line for each error.
void print_errors(const Report& report, FILE* err);

}  // namespace cwmp
