#pragma once

#include <string>
#include <vector>

#include "agent.h"
#include "library.h"
#include "model.h"
#include "report.h"

namespace cwmp {

struct Session {
    const Library& library;
    const Model& model;
    Agent& agent;
    Report& report;
    bool dry_run = false;                   // a change is checked and undone
    bool live = false;                      // every parameter is read anew, also of several
    bool (*wanted)(const Node&) = nullptr;  // a walk leaves the other parameters out
};

using Words = std::vector<std::string>;

// Each command handles its arguments one by one and adds what it did, or its errors, to the report.
void get_values(Session& session, const Words& paths);
void set_values(Session& session, const Words& assignments);
void add_instance(Session& session, const std::string& object, const Words& assignments);
void delete_instances(Session& session, const Words& instances);
// One step of a change, all of whose steps happen or none.
struct Step {
    enum class Kind { Set, Add, Delete };
    Kind kind;
    std::string text;  // PATH=VALUE, or .NAME=VALUE of the instance added last; the object; the instance
};
// Adds and deletes as they come, then sets everything.
void make_changes(Session& session, const std::vector<Step>& steps);
void list_instances(Session& session, const Words& objects);

// The names below the paths, of the whole model when there is none; at most so many levels below, 0 for all.
void list_names(const Model& model, const Words& paths, int levels, Report& report);

// The names that hold all of the parts.
void find_names(const Model& model, const Words& parts, Report& report);

}  // namespace cwmp
