#include "agent.h"

#include <cwmp/logging.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <numeric>

#include "failure.h"
#include "text.h"

namespace cwmp {

namespace {

// No table of a router comes near this; a count beyond it is a broken store.
constexpr int kMostInstances = 4096;
constexpr int kLeastListCapacity = 64;

using Locate = std::array<int, kLocateSize>;

// Handlers may rewrite their array, so each call gets a new one.
Locate locate_of(const Node& node, const std::vector<int>& numbers) {
    Locate locate{};
    if (!node.locate) {
        std::copy(numbers.begin(), numbers.end(), locate.begin());
        return locate;
    }
    size_t next = 0;
    for (size_t position : *node.locate) {
        if (position <= numbers.size()) locate[next++] = numbers[position - 1];
    }
    return locate;
}

// Where a handler writes its answer. To clear it all would cost more than most answers.
class ValueBuffer {
  public:
    ValueBuffer() { bytes_[0] = '\0'; }
    char* data() { return bytes_.get(); }
    std::string text() {
        bytes_[CWMP_VALUE_SIZE - 1] = '\0';
        return data();
    }

  private:
    std::unique_ptr<char[]> bytes_ = std::make_unique_for_overwrite<char[]>(CWMP_VALUE_SIZE);
};

}  // namespace

// Object handlers answer 1 or a TR-069 fault number.
void Agent::require_done(int result, const std::string& path, const char* refusal) const {
    if (result == 0) return;
    const bool is_fault = result >= 9000 && result <= 9899;
    throw Failure{path, is_fault ? result : kInvalidArguments, Exit::Refused, refusal + reason()};
}

void Agent::set_log_level(int level) const {
    const cwmp_handler handler = library_.find("debug_level");
    if (!handler) throw Failure{"debug_level", kNoFault, Exit::Unusable, "not exported by the library"};
    int levels[2] = {level, 0};
    call(handler, CWMP_OP_APPLY, levels, state_);
}

void Agent::show_messages(int level) const {
    static int highest;
    static pid_t process;
    highest = level;
    process = getpid();
    set_log_level(-1);
    library_.function<decltype(cwmp_listen)>("cwmp_listen")([](int of, const char* line) {
        // A test that goes on by itself has no terminal.
        if (of > highest || getpid() != process) return;
        std::string_view text = line;
        while (text.ends_with('\n')) text.remove_suffix(1);
        std::fprintf(stderr, "dm: why: %s\n", printable(text).c_str());
    });
}

std::string Agent::reason() const {
    const auto last = reinterpret_cast<decltype(&cwmp_last_refusal)>(library_.data("cwmp_last_refusal"));
    const std::string text = last ? last() : "";
    return text.empty() ? "" : ": " + text;
}

cwmp_handler Agent::handler_of(const Node& node, const std::string& path) const {
    const cwmp_handler handler = library_.find(node.handler);
    if (handler) return handler;
    throw Failure{path, kInternalError, Exit::Unusable, "the library has no handler " + node.handler};
}

std::string Agent::get(const Node& parameter, const std::vector<int>& numbers) const {
    const std::string path = concrete_path(parameter.path, numbers);
    const cwmp_handler handler = handler_of(parameter, path);
    Locate locate = locate_of(parameter, numbers);
    ValueBuffer value;
    if (call(handler, CWMP_OP_GET, locate.data(), value.data(), state_) != 0) {
        throw Failure{path, kInternalError, Exit::Refused, "the value cannot be read" + reason()};
    }
    return value.text();
}

int Agent::set(cwmp_handler handler, const Target& target, int op, const std::string& value, unsigned& flags) const {
    Locate locate = locate_of(*target.node, target.numbers);
    return call(handler, op, locate.data(), value.c_str(), &flags, state_);
}

const std::vector<int>& Agent::instances(const Node& table, const std::vector<int>& outer) {
    const std::string path = concrete_path(table.path, outer);
    auto [entry, is_new] = instances_.try_emplace(path);
    if (!is_new) return entry->second;
    if (table.writable) {
        entry->second = listed(table, outer);
    } else {
        entry->second.resize(static_cast<size_t>(counted(table, outer)));
        std::iota(entry->second.begin(), entry->second.end(), 1);
    }
    return entry->second;
}

int Agent::counted(const Node& table, const std::vector<int>& outer) const {
    if (!table.count) return table.instances;
    const std::string text = get(*table.count, outer);
    if (text.empty()) return 0;  // a test that has not run yet has counted nothing
    const auto number = decimal<int>(text);
    if (number && *number >= 0 && *number <= kMostInstances) return *number;
    throw Failure{concrete_path(table.count->path, outer), kInternalError, Exit::Refused,
                  "'" + text + "' is not a number of instances"};
}

std::vector<int> Agent::listed(const Node& table, const std::vector<int>& outer) const {
    const std::string path = concrete_path(table.path, outer);
    const cwmp_handler handler = handler_of(table, path);
    Locate locate = locate_of(table, outer);
    uint32_t capacity = static_cast<uint32_t>(std::max(counted(table, outer), kLeastListCapacity));
    std::vector<uint32_t> numbers(capacity);
    require_done(call(handler, CWMP_OP_LIST, locate.data(), numbers.data(), &capacity, state_), path,
                 "the instances cannot be listed");
    // The handler tells no count: the numbers end at the first entry that it left at zero.
    const auto end = std::find_if(numbers.begin(), numbers.end(), [](uint32_t n) { return n == 0 || n > INT32_MAX; });
    return {numbers.begin(), end};
}

std::vector<std::vector<int>> Agent::resolve(const Target& target) {
    std::vector<std::vector<int>> found(1);
    bool chosen = true;  // by number, so far
    for (size_t i = 0; i < target.numbers.size(); ++i) {
        const int wanted = target.numbers[i];
        const Node& table = *target.tables[i];
        chosen = chosen && wanted != Target::kEach;
        std::vector<std::vector<int>> longer;
        for (const std::vector<int>& outer : found) {
            for (int number : instances(table, outer)) {
                if (wanted != Target::kEach && wanted != number) continue;
                longer.push_back(outer);
                longer.back().push_back(number);
            }
        }
        if (chosen && longer.empty()) {
            throw Failure{
                target.path, kInvalidName, Exit::Missing,
                "there is no instance " + std::to_string(wanted) + " of " + concrete_path(table.path, found.front())};
        }
        found = std::move(longer);
    }
    if (!chosen) std::erase_if(found, [&](const auto& n) { return !target.node->exists_below(n); });
    return found;
}

int Agent::add(const Node& table, const std::vector<int>& outer, unsigned& flags) const {
    std::string path = concrete_path(table.path, outer);
    path.resize(path.size() - kInstance.size() - 1);
    const cwmp_handler handler = handler_of(table, path);
    Locate locate = locate_of(table, outer);
    ValueBuffer text;
    require_done(call(handler, CWMP_OP_ADD, locate.data(), text.data(), &flags, state_), path,
                 "no instance can be added");
    const int number = decimal<int>(text.text()).value_or(0);
    if (number > 0) return number;
    throw Failure{path, kInternalError, Exit::Refused, "the handler answered no instance number"};
}

void Agent::remove(const Node& table, const std::vector<int>& outer, int number, unsigned& flags) const {
    std::vector<int> numbers = outer;
    numbers.push_back(number);
    const std::string path = concrete_path(table.path, numbers);
    const cwmp_handler handler = handler_of(table, path);
    Locate locate = locate_of(table, outer);
    const std::string text = std::to_string(number);
    require_done(call(handler, CWMP_OP_DELETE, locate.data(), text.c_str(), &flags, state_), path,
                 "the instance cannot be deleted");
}

}  // namespace cwmp
