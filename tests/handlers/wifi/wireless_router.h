// A router with two radios, a main and a guest network, for the tests of the wireless parameters.
#pragma once

#include "router_test.h"

inline constexpr unsigned kWireless = 0x1;
inline constexpr unsigned kWirelessMode = 0x8000;

class WirelessRouter : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        package("wifi",
                "config wifi 'ap'\n\toption enable '1'\n\toption enable_2g '1'\n\toption enable_5g '0'\n"
                "\toption ssid 'main'\n\toption hidessid '0'\n\toption encryption '1'\n"
                "config wifi 'guest'\n\toption enable '1'\n\toption enable_2g '0'\n\toption enable_5g '1'\n"
                "\toption ssid 'guests'\n\toption encryption '0'\n"
                "config wifi 'default'\n\toption enable '1'\n"
                "config radio 'radio_2g'\n\toption channel '6'\n\toption ax_hwmode '11axg'\n"
                "config radio 'radio_5g'\n\toption channel '0'\n\toption ax_hwmode '11axa'\n");
        package("wireless",
                "config wifi-device 'wifi0'\n\toption htmode 'HT40'\n\toption hwmode '11ng'\n"
                "config wifi-device 'wifi1'\n\toption htmode 'HT80'\n\toption hwmode '11ac'\n");
        profile("interfaceinfo.wifi_2_4G", "radio2");
        profile("interfaceinfo.wifi_5G", "radio5");
        forget();
    }

    // What a handler logged, without the store's own events.
    Texts events_of(const std::string& name) {
        Texts events;
        for (const auto& event : console()) {
            if (event.starts_with(name + ": ")) events.push_back(event.substr(name.size() + 2));
        }
        return events;
    }

    struct RefusedRow {
        const char* handler;
        Locate locate;
        std::string value;
        std::string event;  // empty for none
    };
    // Each is -1, raises nothing, logs its event and leaves the store as it is.
    void expect_refused(const std::vector<RefusedRow>& rows) {
        for (const auto& row : rows) {
            SCOPED_TRACE(std::string(row.handler) + " = " + row.value.substr(0, 40));
            const Texts before = everything();
            forget();
            const Result result = set(row.handler, row.locate, row.value);
            EXPECT_EQ(result.code, -1);
            EXPECT_EQ(result.flags, 0u);
            EXPECT_EQ(everything(), before);
            EXPECT_EQ(console(), row.event.empty() ? Texts{} : Texts{row.event});
        }
    }
    // Each is 0 with these flags and leaves the store as it is.
    void expect_no_effect(const char* handler, Locate locate, const std::string& value, unsigned flags) {
        SCOPED_TRACE(std::string(handler) + " = " + value);
        const Texts before = everything();
        const Result result = set(handler, locate, value);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.flags, flags);
        EXPECT_EQ(everything(), before);
    }

    static Texts everything() {
        return {text_of("/etc/config/wifi").value_or(""), text_of("/etc/config/wireless").value_or("")};
    }
};
