// All or nothing over several groups and packages, with the router's own check script.
#include "cwmp/transaction.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>

#include "cwmp/staged_objects.h"
#include "router_test.h"
#include "store.h"

namespace {

// What an agent does between begin and end: plain options of three packages, an added mapping, a deleted reservation,
// two groups; and where the last member is refused.
class AllOrNothing : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        world("use router");
        package("custom",
                "# as delivered\nconfig info DeviceInfo\n\toption ProvisioningCode 'old'\n\toption b '2'\n");
        package("cwmp",
                "config info 'info'\n\toption inform_interval '300'\n\tlist many 'a'\n\tlist many 'b c'\n");
        world("nat.nat:nat | .PortMappingNumberOfEntries=1 | nat.1:rule_vs | .port_forwarding_id=1");
        package("dhcp_reservation",
                "config reservation '1'\n\toption enable 'on'\n\tlist x 'it''s'\n\toption mac 'm'\n\n"
                "config reservation '2'\n\toption enable 'off'\n\nconfig other\n\toption y 'z%\n\t'\n");
        world("profile.d/profile.cwmp_settings.isp_reset=yes | qos_v2.settings:settings | .up_band=1");
        file("/etc/profile.d/cwmp-config-force", "");
        world("{network,network_sync}.wan.{wan_type,proto}=static | network.wan.gateway=192.0.2.1");
        world("network.wan.ipaddr=192.0.2.20 | network.wan.netmask=255.255.255.0");
        level(-1);
        before_ = packages();
    }

    // The script writes its own packages its own way; the library's are what they were, byte for byte.
    static stores::Snapshot packages() {
        auto texts = stores::snapshot();
        std::erase_if(texts, [](const auto& each) { return each.first.find('/') != std::string::npos; });
        for (const char* name : {"custom", "cwmp", "nat", "dhcp_reservation", "qos_v2"})
            texts[std::string(name) + " text"] = stores::text_of(std::string(kLive) + "/" + name);
        return texts;
    }

    bool write_all() {
        const std::pair<const char*, const char*> members[] = {
            {"DeviceInfo_ProvisioningCode", "new\tcode"},
            {"ManagementServer_PeriodicInformInterval", "600"},
            {"WANDevice_X_QM_QoS_Upband", "5"},
            {"LANDevice_LANHostConfigManagement_MinAddress", "192.168.0.50"},
            {"LANDevice_LANHostConfigManagement_IPInterface_IPInterfaceIPAddress", "192.168.0.2"},
            {"WANDevice_WANConnectionDevice_WANIPConnection_ExternalIPAddress", last_value_}};
        for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
            if (op == CWMP_OP_CHECK &&
                (handle(CWMP_OP_ADD, "NAT_PortMapping").code != 0 ||
                 handle(CWMP_OP_DELETE, "DHCPv4_Server_Pool_StaticAddress", {}, "1").code != 0))
                return false;
            for (const auto& [name, value] : members)
                if (set(name, {1, 1, 1, 1}, value, op).code != 0) return false;
        }
        return true;
    }

    int begin(int wait = 0) { return FROM_LIBRARY(cwmp_transaction_begin)(wait); }
    int end(int keep) { return FROM_LIBRARY(cwmp_transaction_end)(keep, &flags); }
    int recover() { return FROM_LIBRARY(cwmp_transaction_recover)(&flags); }

    void expect_undone() {
        EXPECT_THAT(stores::changes(before_, packages()), IsEmpty());
        EXPECT_TRUE(idle(FROM_LIBRARY(pppoe_obj_data), FROM_LIBRARY(pppoe_obj_data_revert)));
        EXPECT_TRUE(idle(FROM_LIBRARY(dhcp_obj_data), FROM_LIBRARY(dhcp_obj_data_revert)));
        EXPECT_TRUE(idle(FROM_LIBRARY(lan_obj_data), FROM_LIBRARY(lan_obj_data_revert)));
        EXPECT_TRUE(idle(FROM_LIBRARY(wan_obj_data), FROM_LIBRARY(wan_obj_data_revert)));
        EXPECT_EQ(text_of(CWMP_TRANSACTION_NOTES), "");
        EXPECT_EQ(option("cwmp-config/cwmp.info.inform_interval"), std::nullopt);
    }
    template <typename Record>
    static bool idle(const Record& staging, const Record& revert) {
        const Record zero{};
        return std::memcmp(&staging, &zero, sizeof zero) == 0 &&
               std::memcmp(&revert, &zero, sizeof zero) == 0;
    }

    unsigned flags = 0;
    stores::Snapshot before_;
    const char* last_value_ = "192.0.2.99";
};

// holds P7, P8
TEST_F(AllOrNothing, IsUndoneWhereverItIsRefusedAndWhoeverIsKilled) {
    for (const std::string refused : {"stage", "wan_check", "wan_whole", "nowhere"}) {
        SCOPED_TRACE(refused);
        last_value_ = refused == "stage" ? "nonsense" : "192.0.2.99";
        for (const bool killed : {false, true}) {
            if (refused.starts_with("wan")) answer("check_params " + refused, R"({"error_code":1})");
            const pid_t child = killed ? fork() : 0;
            if (child == 0) {
                EXPECT_EQ(begin(), 0);
                EXPECT_EQ(write_all(), refused == "nowhere");
                if (killed) _exit(0);
            } else {
                waitpid(child, nullptr, 0);
            }
            EXPECT_NE(packages(), before_);
            std::filesystem::remove_all("/var/lib/router/answers");
            EXPECT_EQ(killed ? recover() - 1 : end(0), 0);
            expect_undone();
        }
        EXPECT_EQ(recover(), 0);
    }
}

TEST_F(AllOrNothing, CountsAWriteThatIsOverlookedAlone) {
    for (const char* package : {"/etc/config/cwmp_local", "/etc/config/wifi"}) remove_file(package);
    ASSERT_EQ(begin(), 0);
    EXPECT_EQ(set("ManagementServer_URL", {}, "http://new/").code, -1);
    EXPECT_EQ(set("LANDevice_WLANConfiguration_AutoChannelEnable", {1, 1}, "1").code, -1);
    EXPECT_EQ(end(0), 0);
    expect_undone();
}

}  // namespace
