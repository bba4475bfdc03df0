#include "groups.h"

#include <cwmp/handler.h>
#include <cwmp/staged_objects.h>

#include <cstdint>
#include <cstring>

namespace cwmp {

namespace {

struct Kind {
    const char* name = "";
    std::size_t size = 0;
};

constexpr Kind kKinds[] = {{"pppoe", sizeof(cwmp_pppoe_record)}, {"dhcp", sizeof(cwmp_dhcp_record)},
                           {"lan", sizeof(cwmp_lan_record)},     {"wan", sizeof(cwmp_wan_record)},
                           {"iptv", sizeof(cwmp_iptv_record)},   {"vlan", sizeof(cwmp_vlan_record)}};

}  // namespace

Groups::Groups(const Library& library) {
    for (const Kind& kind : kKinds) {
        const std::string record = std::string(kind.name) + "_obj_data";
        const auto* staging = static_cast<const char*>(library.data(record));
        const auto* revert = static_cast<const char*>(library.data(record + "_revert"));
        if (staging && revert) groups_.push_back({kind.name, staging, revert, kind.size});
    }
}

void Groups::before_call() {
    for (Group& group : groups_) group.before = group.now();
}

void Groups::after_call(int op, bool accepted, std::optional<std::size_t>& own) {
    for (std::size_t i = 0; i < groups_.size(); ++i) {
        Group& group = groups_[i];
        const std::string now = group.now();
        if (op == CWMP_OP_STAGE && now != group.before) {
            group.note("staged");
            own = i;
        }
        if (op == CWMP_OP_CHECK && group.checked(now)) group.note("checked");
        const bool handed_over = group.checked(group.before) && !group.checked(now);
        if (op == CWMP_OP_APPLY && handed_over && accepted) group.note("applied");
    }
    if (accepted || !own) return;
    if (op == CWMP_OP_CHECK) groups_[*own].note("check refused");
    if (op == CWMP_OP_APPLY) groups_[*own].note("apply refused");
}

void Groups::before_revert() {
    for (Group& group : groups_) group.to_revert = group.checked({group.revert, group.size});
}

// The library does not tell which group it could not revert.
void Groups::after_revert(bool whole) {
    for (Group& group : groups_) {
        if (group.to_revert) group.note(whole ? "reverted" : "perhaps not reverted");
    }
}

std::vector<Report::Group> Groups::touched() const {
    std::vector<Report::Group> touched;
    for (const Group& group : groups_) {
        if (!group.steps.empty()) touched.push_back({group.name, group.steps});
    }
    return touched;
}

// The marker is the last word of every record.
bool Groups::Group::checked(const std::string& record) const {
    std::uint32_t marker = 0;
    std::memcpy(&marker, record.data() + size - sizeof marker, sizeof marker);
    return marker == 1;
}

// Several settings of a group take the same step.
void Groups::Group::note(const char* step) {
    if (steps.empty() || steps.back() != step) steps.emplace_back(step);
}

}  // namespace cwmp
