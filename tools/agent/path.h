#pragma once

#include <string>
#include <vector>

#include "model.h"

namespace cwmp {

// A path from the command line, found in the model. Whether its instances exist is not known yet.
struct Target {
    static constexpr int kEach = 0;  // the number that "*" stands for

    std::string path;
    const Node* node;
    bool partial;                     // the path ends in "."
    std::vector<const Node*> tables;  // the multi-instance objects on the path, outermost first
    std::vector<int> numbers;         // their instance numbers
};

// Throws Failure with 9005 when the path is malformed or not in the model; it says which path may be meant.
Target find_target(const Model& model, const std::string& path);

// Likewise, and "*" may stand for the instances of an object.
Target find_targets(const Model& model, const std::string& path);

// The node that a path with numbers, "*" or {i} in it names, for listing names. Throws Failure likewise.
const Node& find_name(const Model& model, const std::string& path);

}  // namespace cwmp
