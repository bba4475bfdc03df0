#pragma once

#include <cwmp/agent_state.h>
#include <cwmp/last_refusal.h>

#include <map>
#include <string>
#include <vector>

#include "library.h"
#include "model.h"
#include "path.h"

namespace cwmp {

// Calls handlers the way the management agent does. Failed operations throw Failure.
class Agent {
  public:
    // The agent's record, null when there is none, follows the arguments of every call: the handlers of the
    // management server's URLs read it.
    Agent(const Library& library, const cwmp_agent_state* state) : library_(library), state_(state) {}

    const Library& library() const { return library_; }

    void set_log_level(int level) const;

    // Shows the library's messages of at most this level on standard error, and not on the console.
    void show_messages(int level) const;

    std::string get(const Node& parameter, const std::vector<int>& numbers) const;

    // The handler's own answer to one pass; the transaction judges it.
    int set(cwmp_handler handler, const Target& target, int op, const std::string& value, unsigned& flags) const;

    // The instance numbers of a table in ascending order. Read once, then remembered.
    const std::vector<int>& instances(const Node& table, const std::vector<int>& outer);

    // The instance numbers of each path that the target names. Fails when one that it names itself is missing.
    std::vector<std::vector<int>> resolve(const Target& target);

    // Instances may have come and gone.
    void forget_instances() { instances_.clear(); }

    int add(const Node& table, const std::vector<int>& outer, unsigned& flags) const;
    void remove(const Node& table, const std::vector<int>& outer, int number, unsigned& flags) const;

    // Why the last call was refused, ": " before it; empty when the library does not say.
    std::string reason() const;

    cwmp_handler handler_of(const Node& node, const std::string& path) const;

  private:
    void require_done(int result, const std::string& path, const char* refusal) const;
    int counted(const Node& table, const std::vector<int>& outer) const;
    std::vector<int> listed(const Node& table, const std::vector<int>& outer) const;

    const Library& library_;
    const cwmp_agent_state* state_;
    std::map<std::string, std::vector<int>> instances_;
};

}  // namespace cwmp
