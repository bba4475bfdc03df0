#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "subject.h"

namespace cwmp {

// What was found out in one world, kept in a file between the run in the router and the writing of pages.
struct World {
    std::string name;
    std::vector<Finding> findings;
};

void save(const World& world, const std::filesystem::path& file);

// Throws Failure when the file is not one of save's.
World load_world(const std::filesystem::path& file);

}  // namespace cwmp
