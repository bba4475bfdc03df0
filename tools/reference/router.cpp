#include "router.h"

#include <cwmp/handler.h>
#include <cwmp/staged_objects.h>

#include <algorithm>
#include <array>
#include <cstring>

#include "failure.h"

namespace cwmp {

namespace {

struct RecordKind {
    const char* name;
    std::size_t size;
};

constexpr RecordKind kRecords[] = {{"pppoe", sizeof(cwmp_pppoe_record)}, {"dhcp", sizeof(cwmp_dhcp_record)},
                                   {"lan", sizeof(cwmp_lan_record)},     {"wan", sizeof(cwmp_wan_record)},
                                   {"iptv", sizeof(cwmp_iptv_record)},   {"vlan", sizeof(cwmp_vlan_record)}};

using Locate = std::array<int, kLocateSize>;

Locate locate_of(const Node& node, const std::vector<int>& numbers) {
    Locate locate{};
    std::vector<std::size_t> positions(numbers.size());
    for (std::size_t i = 0; i < positions.size(); ++i) positions[i] = i + 1;
    if (node.locate) positions = *node.locate;
    std::size_t next = 0;
    for (std::size_t position : positions) {
        if (position <= numbers.size()) locate[next++] = numbers[position - 1];
    }
    return locate;
}

std::string path_of_package(const std::string& place) {
    const std::size_t slash = place.rfind('/');
    const std::size_t name = slash == std::string::npos ? 0 : slash + 1;
    const std::string file = place.substr(0, place.find('.', name));
    return name == 0 ? "/etc/config/" + file : file;
}

}  // namespace

Router::Router(const Library& library, const cwmp_agent_state* state)
    : library_(library), state_(state), files_(read_files()) {
    for (const auto& [path, text] : files_) write_file(path, text);
    for (const RecordKind& kind : kRecords) {
        for (const char* end : {"_obj_data", "_obj_data_revert"}) {
            auto* data = static_cast<char*>(const_cast<void*>(library.data(std::string(kind.name) + end)));
            if (data) records_.push_back({kind.name, data, kind.size});
        }
    }
}

void Router::clear_records() {
    for (const Record& record : records_) std::memset(record.data, 0, record.size);
}

void Router::begin() { watch::begin(); }

void Router::finish(Outcome& outcome) {
    outcome.seen = watch::seen();
    Files now = read_files();
    outcome.changes = changes(files_, now);
    if (!outcome.changes.empty() || now != files_) restore_files(files_, now);
    clear_records();
    watch::remember_answers(true);
}

Outcome Router::get(const Node& node, const std::vector<int>& numbers) {
    Outcome outcome;
    const cwmp_handler handler = library_.find(node.handler);
    if (!handler) throw Failure{node.path, kInternalError, Exit::Unusable, "no handler " + node.handler};
    Locate locate = locate_of(node, numbers);
    std::vector<char> value(CWMP_VALUE_SIZE);
    kUntouched.copy(value.data(), kUntouched.size());
    begin();
    outcome.code = call(handler, CWMP_OP_GET, locate.data(), value.data(), state_);
    value.back() = '\0';
    outcome.value = value.data();
    outcome.seen = watch::seen();
    // Few GETs do more than read, and those run a command for its effect.
    if (watch::ran_for_effect()) finish(outcome);
    return outcome;
}

int Router::pass(const Node& node, const std::vector<int>& numbers, int op, const std::string& value,
                 Outcome& outcome) {
    const cwmp_handler handler = library_.find(node.handler);
    if (!handler) throw Failure{node.path, kInternalError, Exit::Unusable, "no handler " + node.handler};
    std::vector<std::string> before;
    for (const Record& record : records_) before.emplace_back(record.data, record.size);
    Locate locate = locate_of(node, numbers);
    const int code = call(handler, op, locate.data(), value.c_str(), &outcome.flags, state_);
    for (std::size_t i = 0; i < records_.size() && op == CWMP_OP_STAGE; ++i) {
        if (before[i] != std::string(records_[i].data, records_[i].size)) outcome.group = records_[i].name;
    }
    return code;
}

Outcome Router::set(const Node& node, const std::vector<int>& numbers, int op, const std::string& value) {
    Outcome outcome;
    begin();
    outcome.code = pass(node, numbers, op, value, outcome);
    finish(outcome);
    return outcome;
}

Outcome Router::transact(const Node& node, const std::vector<int>& numbers, const std::string& value) {
    Outcome outcome;
    begin();
    for (int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        if (node.apply_only && op != CWMP_OP_APPLY) continue;
        if (pass(node, numbers, op, value, outcome) == 0) continue;
        outcome.code = op;
        Locate none{};
        const bool staged = !outcome.group.empty();
        if (staged) call(library_.find("func_obj_revert"), CWMP_OP_APPLY, none.data(), "", &outcome.flags, state_);
        break;
    }
    finish(outcome);
    return outcome;
}

Outcome Router::add(const Node& table, const std::vector<int>& outer) {
    Outcome outcome;
    Locate locate = locate_of(table, outer);
    std::vector<char> number(CWMP_VALUE_SIZE);
    kUntouched.copy(number.data(), kUntouched.size());
    begin();
    outcome.code =
        call(library_.find(table.handler), CWMP_OP_ADD, locate.data(), number.data(), &outcome.flags, state_);
    outcome.value = number.data();
    finish(outcome);
    return outcome;
}

Outcome Router::remove(const Node& table, const std::vector<int>& outer, const std::string& number) {
    Outcome outcome;
    Locate locate = locate_of(table, outer);
    begin();
    outcome.code =
        call(library_.find(table.handler), CWMP_OP_DELETE, locate.data(), number.c_str(), &outcome.flags, state_);
    finish(outcome);
    return outcome;
}

std::vector<int> Router::list(const Node& table, const std::vector<int>& outer) {
    std::vector<unsigned> numbers(64);
    unsigned capacity = 64;
    Locate locate = locate_of(table, outer);
    call(library_.find(table.handler), CWMP_OP_LIST, locate.data(), numbers.data(), &capacity, state_);
    return {numbers.begin(), std::find(numbers.begin(), numbers.end(), 0U)};
}

void Router::with_option(const std::string& place, const std::optional<std::string>& value,
                         const std::function<void()>& act) {
    const std::string path = path_of_package(place);
    const auto file = files_.find(path);
    if (file == files_.end()) return;
    const std::size_t dot = place.find('.', place.rfind('/') == std::string::npos ? 0 : place.rfind('/'));
    const std::size_t second = place.find('.', dot + 1);
    if (second == std::string::npos) return;
    const auto text =
        cwmp::with_option(file->second, place.substr(dot + 1, second - dot - 1), place.substr(second + 1), value);
    if (!text) return;
    const std::string kept = file->second;
    file->second = *text;
    write_file(path, *text);
    act();
    file->second = kept;
    write_file(path, kept);
}

}  // namespace cwmp
