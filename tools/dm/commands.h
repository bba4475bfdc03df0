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
};

// Each command handles its arguments one by one and adds what it did, or its errors, to the report.
void get_values(Session& session, const std::vector<std::string>& paths);
void set_values(Session& session, const std::vector<std::string>& assignments);
void add_instance(Session& session, const std::string& object);
void delete_instance(Session& session, const std::string& instance);
void list_instances(Session& session, const std::string& object);

// An empty path stands for the whole model.
void list_names(const Model& model, const std::string& path, Report& report);

}  // namespace cwmp
