#pragma once

#include <cwmp/handler.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "types.h"

namespace cwmp {

// The segment that stands for an instance number in a model path.
inline constexpr std::string_view kInstance = "{i}";

// A path may not hold more instance numbers than a handler can be told.
inline constexpr size_t kLocateSize = CWMP_LOCATE_SIZE;

// How a parameter leaves the published data model: WHAT is its access (R or W) or its type there, "filled" when
// only the empty answer of a router without a value differs, "path" when the published model has no such parameter.
// The reason is "kept" (other software relies on it), "unset" (there is no value yet) or "vendor" (its own addition).
struct Difference {
    std::string reason;
    std::string what;
};

// What a line of the model says.
struct Entry {
    enum class Kind { Branch, Parameter, Table };

    Kind kind = Kind::Branch;
    std::string path;         // with {i}; ends in "." unless this is a parameter
    bool writable = false;    // a parameter: SET is allowed; a table: instances can be added and deleted
    Type type;                // of a parameter's values
    bool apply_only = false;  // SET gets the apply pass alone
    bool secret = false;      // never shown by a GET
    bool inform = false;      // carried by every Inform
    bool reboot = false;      // a SET restarts a device
    std::string notify;       // what the published model says of active notification
    std::string group;        // the group of settings that a SET stages; several, with commas, when instances differ
    std::vector<Difference> differs;
    std::string handler;
    std::optional<std::vector<size_t>> locate;  // positions (from 1) of the instance numbers the handler gets
    std::string count_path;                     // of the parameter that tells how many instances a table has
    int instances = 0;                          // the number of instances of a table without one
    size_t only_position = 0;                   // the path's instance number (from 1) that is restricted, 0 none
    std::vector<int> only;                      // the values of it for which there is such a path

    std::string_view access() const;
    bool has_handler() const;
};

struct Node : Entry {
    std::string segment;
    const Node* count = nullptr;  // the parameter of count_path
    std::vector<std::unique_ptr<Node>> children;

    const Node* child(std::string_view name) const;
    // All that have a line in the model, this one and those below, each before what is below it.
    std::vector<const Node*> lines() const;
    bool exists_below(const std::vector<int>& numbers) const;
};

// The supported parameters as a tree, read from all *.txt files of a directory. Throws Failure.
class Model {
  public:
    explicit Model(const std::filesystem::path& directory);
    const Node& root() const { return root_; }

  private:
    Node root_;
};

bool is_root_object(std::string_view segment);

// A model path with its leading {i} replaced by the numbers; what has no number keeps {i}.
std::string concrete_path(std::string_view model_path, const std::vector<int>& numbers);

}  // namespace cwmp
