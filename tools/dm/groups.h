#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "library.h"
#include "report.h"

namespace cwmp {

// Follows the groups of settings through a transaction: which group a handler belongs to, and what became of
// it, shows in the records that the library exports. A library without them has no groups.
class Groups {
  public:
    explicit Groups(const Library& library);

    // Before and after each call of a handler. group is the one that the handler's setting belongs to; the
    // stage pass finds it.
    void before_call();
    void after_call(int op, bool accepted, std::optional<std::size_t>& own);
    void before_revert();
    void after_revert(bool whole);

    // The groups that the transaction touched.
    std::vector<Report::Group> touched() const;

  private:
    struct Group {
        std::string name;
        const char* staging = nullptr;
        const char* revert = nullptr;
        std::size_t size = 0;
        bool to_revert = false;
        std::string before = {};
        std::vector<std::string> steps = {};

        std::string now() const { return {staging, size}; }
        bool checked(const std::string& record) const;
        void note(const char* step);
    };

    std::vector<Group> groups_;
};

}  // namespace cwmp
