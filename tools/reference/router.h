#pragma once

#include <cwmp/agent_state.h>

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "library.h"
#include "model.h"
#include "store.h"
#include "watch.h"

namespace cwmp {

// What a call answered and did.
struct Outcome {
    int code = 0;
    std::string value;  // of a GET; kUntouched when the handler wrote nothing
    unsigned flags = 0;
    std::string group;  // of settings, that a SET staged
    std::vector<Change> changes;
    watch::Seen seen;
};

inline constexpr std::string_view kUntouched = "~untouched~";

// The library in its router. Each call meets the router as it was when this was made, and leaves it so.
class Router {
  public:
    Router(const Library& library, const cwmp_agent_state* state);

    Outcome get(const Node& node, const std::vector<int>& numbers);

    // One call with this op. An object's handler takes the numbers of the objects around it.
    Outcome set(const Node& node, const std::vector<int>& numbers, int op, const std::string& value);

    // The passes of a transaction with this one value, up to the first refusal, which reverts it. The code is the op
    // that was refused, 0 when none was.
    Outcome transact(const Node& node, const std::vector<int>& numbers, const std::string& value);

    // Op 4 answers the number in value.
    Outcome add(const Node& table, const std::vector<int>& outer);
    Outcome remove(const Node& table, const std::vector<int>& outer, const std::string& number);
    std::vector<int> list(const Node& table, const std::vector<int>& outer);

    // Does something with a router in which this option or file has other contents.
    void with_option(const std::string& place, const std::optional<std::string>& value,
                     const std::function<void()>& act);

  private:
    struct Record {
        std::string name;
        char* data;
        std::size_t size;
    };

    void begin();
    void finish(Outcome& outcome);
    void clear_records();
    int pass(const Node& node, const std::vector<int>& numbers, int op, const std::string& value, Outcome& outcome);

    const Library& library_;
    const cwmp_agent_state* state_;
    Files files_;
    std::vector<Record> records_;
};

}  // namespace cwmp
