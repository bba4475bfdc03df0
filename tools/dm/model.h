#pragma once

#include <cwmp/handler.h>

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace cwmp {

// The segment that stands for an instance number in a model path.
inline constexpr std::string_view kInstance = "{i}";

// A path may not hold more instance numbers than a handler can be told.
inline constexpr size_t kLocateSize = CWMP_LOCATE_SIZE;

struct Node {
    enum class Kind { Branch, Parameter, Table };

    Kind kind = Kind::Branch;
    std::string segment;
    std::string path;         // with {i}; ends in "." unless this is a parameter
    bool writable = false;    // a parameter: SET is allowed; a table: instances can be added and deleted
    bool apply_only = false;  // SET gets the apply pass alone
    std::string handler;
    std::optional<std::vector<size_t>> locate;  // positions (from 1) of the instance numbers the handler gets
    const Node* count = nullptr;                // the parameter that tells how many instances a table has
    int instances = 0;                          // the number of instances of a table without one
    size_t only_position = 0;  // the path's instance number (from 1) that is restricted, 0 none
    std::vector<int> only;     // the values of it for which there is such a path
    std::vector<std::unique_ptr<Node>> children;

    const Node* child(std::string_view name) const;
    std::string_view access() const;
    bool has_handler() const;
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
