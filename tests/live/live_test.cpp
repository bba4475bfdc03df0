// The probes against the real tools: bridges, routes and processes of the live router root.
#include "cwmp/platform.h"
#include "router_test.h"

namespace {

class Live : public RouterTest {
  protected:
    static int number(const std::string& text) { return std::atoi(text.c_str()); }
};

TEST_F(Live, BridgeToolNamesTheWanPort) {
    char name[5] = "";
    EXPECT_EQ(FROM_LIBRARY(getWanIfname)(name), 0);
    EXPECT_STREQ(name, "eth0");
    EXPECT_EQ(FROM_LIBRARY(getWanPort)(), 1);
}

TEST_F(Live, KernelFilesAndProcessTools) {
    EXPECT_THAT(get("DeviceInfo_UpTime").value, ::testing::MatchesRegex("[0-9]+"));
    const int total = number(get("DeviceInfo_MemoryStatus_Total").value);
    const int free = number(get("DeviceInfo_MemoryStatus_Free").value);
    EXPECT_GT(free, 0);
    EXPECT_GT(total, free);
    EXPECT_GE(number(get("DeviceInfo_ProcessStatus_ProcessNumberOfEntries").value), 2);
    const std::string usage = get("DeviceInfo_ProcessStatus_CPUUsage").value;
    EXPECT_THAT(usage, ::testing::MatchesRegex("[0-9]{1,3}"));
    EXPECT_LE(number(usage), 100);
    EXPECT_THAT(console(), IsEmpty());
}

}  // namespace
