#pragma once

#include <string>
#include <vector>

#include "router.h"

namespace cwmp {

// What was found out about one parameter or object of a router, all of it text that can be compared.
struct Finding {
    std::string path;   // with instance numbers
    std::string model;  // the same with {i}
    std::string value;
    std::string misfit;  // what is wrong with the value's type
    std::string stored;  // where a valid value of a SET went
    std::string group;
    std::string services;
    std::string others;  // whether values that are not of the type are refused
    std::string back;    // what writing back the value changes
    std::vector<std::string> facts;
};

// How much is tried: all, on the first router; a value or two, on those that are shown as differences from it; a GET.
enum class Depth { Full, Brief, Glance };

Finding examine(Router& router, const Node& node, const std::vector<int>& numbers,
                const std::vector<std::vector<int>>& known, Depth depth);
Finding examine_object(Router& router, const Node& table, const std::vector<int>& outer);

}  // namespace cwmp
