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
    // Rows that tables show in place of the parameters, headings first.
    std::optional<std::vector<std::vector<std::string>>> table;
    bool diagnostics_complete = false;
    std::optional<unsigned> apply_flags;
    std::optional<bool> reverted;
    std::vector<Failure> errors;

    Exit exit() const;
};

// Tables for people, without the errors.
void print_text(const Report& report, FILE* out);

void print_json(const Report& report, FILE* out);

// One line for each error.
void print_errors(const Report& report, FILE* err);

}  // namespace cwmp
