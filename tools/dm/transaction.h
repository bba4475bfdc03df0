#pragma once

#include <optional>
#include <string>
#include <vector>

#include "agent.h"
#include "change.h"
#include "groups.h"
#include "report.h"

namespace cwmp {

// PATH=VALUE of a parameter that can be set; its instances may be missing.
struct Assignment {
    Target target;
    std::string value;
};

// Throws Failure.
Assignment assignment(const Model& model, const std::string& text);

// One SetParameterValues transaction: nothing is called before every assignment has been looked at.
class Transaction {
  public:
    Transaction(Agent& agent, const Model& model, Report& report)
        : agent_(agent), model_(model), report_(report), groups_(agent.library()) {}

    // Takes PATH=VALUE. Throws Failure when the parameter cannot be set.
    void add(const std::string& text);

    // All handlers with each pass in turn; undoes the change at the first refusal. A dry run ends before anything is
    // applied, and undoes it too.
    void run(Change& whole, bool dry_run);

  private:
    struct Setting {
        Target target;
        std::string value;
        cwmp_handler handler;
        std::vector<std::string> passes;   // that the handler accepted
        std::optional<std::size_t> group;  // of settings
    };

    void run_passes(bool dry_run);
    bool accepts(Setting& setting, int op);

    Agent& agent_;
    const Model& model_;
    Report& report_;
    Groups groups_;
    std::vector<Setting> settings_;
    unsigned flags_ = 0;
};

}  // namespace cwmp
