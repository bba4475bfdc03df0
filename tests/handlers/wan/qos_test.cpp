#include <unistd.h>

#include "cwmp/apply_flags.h"
#include "router_test.h"

namespace {

constexpr const char* kUp = "WANDevice_X_QM_QoS_Upband";
constexpr const char* kDown = "WANDevice_X_QM_QoS_Downband";
constexpr const char* kEnable = "WANDevice_X_QM_QoS_Enable";

class Qos : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        package("qos_v2", "config qos 'settings'\n");
    }
    std::optional<std::string> stored(const std::string& name) { return option("qos_v2.settings." + name); }
};

TEST_F(Qos, BandwidthIsReadInOtherUnitsThanWritten) {
    expect_answers({{kUp, {}, "102400"}, {kDown, {}, "102400"}});
    expect_stored({{kUp, {}, "204800", "qos_v2.settings.up_band", "102400", CWMP_APPLY_QOS},
                   {kDown, {}, "102399", "qos_v2.settings.down_band", "102399", CWMP_APPLY_QOS},
                   {kDown, {}, "102400 ", "qos_v2.settings.down_band", "102400", CWMP_APPLY_QOS},
                   {kDown, {}, "99999999999999999999", "qos_v2.settings.down_band", "102400", CWMP_APPLY_QOS},
                   {kDown, {}, "2047", "qos_v2.settings.down_band", "2047", CWMP_APPLY_QOS}});
    expect_answers({{kUp, {}, "100"}, {kDown, {}, "1"}});
    EXPECT_EQ(stored("has_set_bandwidth"), "true");
}

TEST_F(Qos, WhatIsStoredAlreadyChangesNothing) {
    store("qos_v2.settings.up_band", "900");
    store("qos_v2.settings.enable", "on");
    expect_stored({{kUp, {}, "900", "qos_v2.settings.up_band", "900", 0},
                   {kEnable, {}, "1", "qos_v2.settings.enable", "on", 0}});
    EXPECT_EQ(stored("has_set_bandwidth"), std::nullopt);
    store("qos_v2.settings.enable", "off");
    expect_stored({{kEnable, {}, "0", "qos_v2.settings.enable", "off", 0}});
}

TEST_F(Qos, Enable) {
    EXPECT_EQ(get(kEnable).value, "0");
    for (const auto& [text, value] :
         {std::pair("off", "0"), {"0", "0"}, {"on", "1"}, {"1", "1"}, {"yes", "1"}}) {
        store("qos_v2.settings.enable", text);
        EXPECT_EQ(get(kEnable).value, value);
    }
    expect_stored({{kEnable, {}, "0", "qos_v2.settings.enable", "off", CWMP_APPLY_QOS}});
    EXPECT_EQ(stored("has_set_bandwidth"), std::nullopt);
    expect_stored({{kEnable, {}, "1", "qos_v2.settings.enable", "on", CWMP_APPLY_QOS}});
    EXPECT_EQ(stored("has_set_bandwidth"), "true");
    for (const char* value : {"", "true", "2", "10"}) EXPECT_EQ(set(kEnable, {}, value).code, -1) << value;
    EXPECT_EQ(stored("enable"), "on");
}

TEST_F(Qos, AWriteThatFailsRaisesNothing) {
    ::unlink("/etc/config/qos_v2");
    for (const char* name : {kUp, kDown, kEnable}) {
        const Result result = set(name, {}, "1");
        EXPECT_EQ(result.code, -1) << name;
        EXPECT_EQ(result.flags, 0U);
    }
}

}  // namespace
