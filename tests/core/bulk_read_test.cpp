#include "cwmp/bulk_read.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <ctime>
#include <functional>

#include "cwmp/diagnostics.h"
#include "cwmp/platform.h"
#include "cwmp/revert_journal.h"
#include "cwmp/staged_objects.h"
#include "cwmp/uci_access.h"
#include "router_test.h"

namespace {

time_t seconds_ahead = 0;

}  // namespace

// Found before that of the C library, by the library too.
extern "C" int clock_gettime(clockid_t clock, timespec* now) noexcept {
    const auto result = syscall(SYS_clock_gettime, clock, now);
    now->tv_sec += seconds_ahead;
    return static_cast<int>(result);
}

namespace {

class BulkRead : public RouterTest {
  protected:
    void begin() { FROM_LIBRARY(cwmp_bulk_read_begin)(); }
    void end() { FROM_LIBRARY(cwmp_bulk_read_end)(); }
    // Changes the model's name and tells which one is read.
    std::string model_now(const std::string& name) {
        answer("fwinfo MODEL", name);
        return get("DeviceInfo_ModelName").value;
    }
};

TEST_F(BulkRead, ACommandRunsOnceBetweenBeginAndEnd) {
    EXPECT_EQ(model_now("A\n"), "A");
    begin();
    EXPECT_EQ(model_now("B\n"), "B");
    forget();
    EXPECT_EQ(model_now("C\n"), "B");
    EXPECT_EQ(get("DeviceInfo_Description").value, "B");
    EXPECT_THAT(commands(), IsEmpty());
    begin();
    EXPECT_EQ(model_now("D\n"), "D") << "the agent forgot the end";
    end();
    EXPECT_EQ(model_now("E\n"), "E");
    end();

    begin();
    EXPECT_EQ(model_now(""), "") << "a command that fails once";
    EXPECT_EQ(model_now("F\n"), "");
    end();
    EXPECT_EQ(model_now("G\n"), "G");

    begin();
    seconds_ahead = 59;
    EXPECT_EQ(model_now("H\n"), "H");
    EXPECT_EQ(model_now("I\n"), "H");
    seconds_ahead = 62;
    EXPECT_EQ(model_now("J\n"), "J") << "the agent forgot the end for good";
    seconds_ahead = 0;
}

TEST_F(BulkRead, ScriptsThatRefreshAFileRunOnceAndOthersCommandsEachTime) {
    package("meshinfo", "config device 'row1'\n\toption wps_status 'idle'\n", kScratch);
    for (const bool bulk : {true, false}) {
        SCOPED_TRACE(bulk);
        if (bulk) begin();
        forget();
        char buffer[8];
        for (int i = 0; i < 2; ++i) {
            get("X_QM_MeshFeature_Host_WPS_Enable", {1});
            get("WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress", {1});
            FROM_LIBRARY(util_exec)("true", buffer, sizeof buffer);
        }
        EXPECT_EQ(std::ranges::count(commands(), "true"), 2);
        EXPECT_EQ(commands().size(), bulk ? 4U : 6U);
        end();
    }
}

TEST_F(BulkRead, APackageIsReadOnceUntilAScriptMayHaveChangedIt) {
    const auto code_now = [&](const std::string& code) {
        package("custom", "config d 'DeviceInfo'\n\toption ProvisioningCode '" + code + "'\n");
        return get("DeviceInfo_ProvisioningCode").value;
    };
    package("nat", "config rule_vs '1'\n");
    package("meshinfo", "", kScratch);
    begin();
    EXPECT_EQ(code_now("a"), "a");
    EXPECT_EQ(code_now("b"), "a");
    get("WANDevice_WANConnectionDevice_WANPPPConnection_ExternalIPAddress", {1});
    EXPECT_EQ(code_now("c"), "c");
    get("NAT_PortMappingNumberOfEntries");
    EXPECT_EQ(option("nat.nat.PortMappingNumberOfEntries"), "1");
    EXPECT_EQ(code_now("d"), "d") << "the GET's own write";
    remove_file(std::string(kLive) + "/custom");
    begin();
    forget();
    EXPECT_EQ(get("DeviceInfo_ProvisioningCode").value, "");
    const auto events = console();
    EXPECT_EQ(code_now("e"), "");
    forget();
    get("DeviceInfo_ProvisioningCode");
    EXPECT_EQ(console(), events);
    end();
    EXPECT_EQ(code_now("f"), "f");
}

TEST_F(BulkRead, AChangeEndsIt) {
    const std::vector<std::function<void()>> changes = {
        [&] { set("DeviceInfo_ProvisioningCode", {}, "x"); },
        [&] {
            set("IP_Interface_IPv4Address_IPAddress", {1, 1}, "192.168.1.1", CWMP_OP_STAGE);
        },
        [&] { set("XMPP_Connection_Password", {1}, "x", CWMP_OP_CHECK); },
        [&] { add_instance("NAT_PortMapping"); },
        [&] { delete_instance("NAT_PortMapping", {}, "1"); },
        [&] { set("func_obj_revert", {}, ""); },
        [&] {
            FROM_LIBRARY(lan_check)
            ();
        },
        [&] {
            FROM_LIBRARY(uciRawSetValue)
            ("custom", "DeviceInfo", "ProvisioningCode", "y");
        },
        [&] {
            FROM_LIBRARY(uciRevert)
            ("custom");
        },
        [&] {
            FROM_LIBRARY(libdiagnostics_startTraceRoute)
            ();
        },
    };
    package("nat", "");
    package("custom", "");
    for (std::size_t i = 0; i < changes.size(); ++i) {
        begin();
        EXPECT_EQ(model_now("before\n"), "before");
        changes[i]();
        EXPECT_EQ(model_now("after\n"), "after") << i;
    }
}

}  // namespace
