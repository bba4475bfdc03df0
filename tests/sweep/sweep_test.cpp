// What holds of every parameter of the model.
#include <set>

#include "cwmp/staged_objects.h"
#include "library.h"
#include "model.h"
#include "router_test.h"

namespace {

using cwmp::Node;

// Each parameter's handler once for each count of numbers, though several paths may lead to it.
class Sweep : public RouterTest {
  protected:
    Sweep() {
        std::set<std::pair<std::string, std::size_t>> known;
        for (const Node* line : model_.root().lines()) {
            const auto in_path = static_cast<std::size_t>(std::ranges::count(line->path, '{'));
            const std::size_t numbers = line->locate ? line->locate->size() : in_path;
            if (line->kind == Node::Kind::Parameter && known.emplace(line->handler, numbers).second)
                lines_.push_back(line);
        }
    }
    const cwmp::Model model_{"/usr/share/cwmp-datamodel/model"};
    std::vector<const Node*> lines_;
};

// They look at their place first, take a write without effect, or say that they refuse; the reference shows it.
bool is_loud(const std::string& handler) {
    for (const char* part : {"Bridging_Bridge", "_Layer1Interface", "_Layer2Interface", "_FirstUseDate", "_DeviceLog",
                             "_WLANConfiguration_T", "_TotalErrors", "_WANCommonInterfaceConfig_T", "_Stats_Ethernet",
                             "WiFi_Radio_Stats_", "Security_Radius", "Security_X_QM_WEP"})
        if (handler.find(part) != std::string::npos) return true;
    return false;
}

TEST_F(Sweep, ReadOnlyParametersRefuseASetAndTouchNoArgument) {
    int seen = 0;
    forget();
    for (const Node* line : lines_) {
        if (line->writable || is_loud(line->handler)) continue;
        ++seen;
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY})
            EXPECT_EQ(cwmp::call(handler(line->handler.c_str()), op, nullptr, nullptr, nullptr), -1) << line->handler;
    }
    EXPECT_GT(seen, 400);
    EXPECT_THAT(console(), IsEmpty());
    EXPECT_THAT(commands(), IsEmpty());
}

// Writable, without effect.
const std::set<std::string> kIdle = {"ManagementServer_KickURL",
                                     "ManagementServer_UDPConnectionRequestAddressNotificationLimit"};

// Where it is staged, if it belongs to a group. An interface may be none.
TEST_F(Sweep, ASetWithoutValueIsRefusedAndChangesNothing) {
    level(-1);
    int seen = 0;
    for (const Node* line : lines_) {
        if (!line->writable || kIdle.contains(line->handler) || line->handler.ends_with("loadDiagnostics_Interface"))
            continue;
        const std::string pass = line->group.empty() ? "apply " : "stage ";
        EXPECT_EQ(told(pass + line->handler + " 1.1.1.1 = null"), "-1") << line->handler;
        ++seen;
    }
    EXPECT_GT(seen, 190);
}

// Else it could be undone to what was in force before an earlier one.
TEST_F(Sweep, AStagePassBeginsATransactionThoughItIsRefused) {
    level(-1);
    auto& in_force = FROM_LIBRARY(vlan_obj_data_revert);
    for (const Node* line : lines_) {
        if (!line->writable || kIdle.contains(line->handler)) continue;
        unsigned flags = 0;
        FROM_LIBRARY(vlan_set)(&flags);
        in_force.checked = 1;
        set(line->handler, {}, "x", CWMP_OP_STAGE);
        EXPECT_EQ(in_force.checked, 0) << line->path;
    }
}

TEST_F(Sweep, NoPathReadsASecretBack) {
    const std::string secret = "open-sesame-42";
    world("+cwmp. | +network. | +network_sync. | +protocol. | wifi.ap:wifi | wifi.guest:wifi");
    level(-1);
    int seen = 0;
    for (const Node* line : lines_) {
        if (!line->secret) continue;
        ++seen;
        for (const int number : {1, 2}) set(line->handler, {number, 1}, secret);
        EXPECT_EQ(get(line->handler, {1, 1}).value, "") << line->path;
    }
    EXPECT_GT(seen, 20);
    const auto stored = stores::snapshot();
    EXPECT_EQ(std::ranges::count(stored, secret, &stores::Snapshot::value_type::second), 11);
    for (const Node* line : lines_)
        for (const Locate& locate : {Locate{1, 1, 1, 1}, Locate{2}, Locate{3}, Locate{4}})
            EXPECT_THAT(get(line->handler, locate).value, Not(HasSubstr(secret))) << line->path;
}

}  // namespace
