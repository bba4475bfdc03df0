#include "cwmp/platform.h"
#include "no_free_descriptor.h"
#include "router_test.h"

namespace {

constexpr const char* k2G = R"(ath0      13 channels in total; available frequencies :
          Channel 1 : 2.412 GHz
          Channel 06 : 2.437 GHz
          Channel 13 : 2.472 GHz
          Current Frequency:2.437 GHz (Channel 6)
)";
constexpr const char* k5G = R"(ath1      3 channels in total; available frequencies :
          Channel 36 : 5.18 GHz
          Channel 149 : 5.745 GHz
          Current Frequency:5.18 GHz (Channel 36)
)";

class RadioChannels : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        answer("iwlist ath0 channel", k2G);
        answer("iwlist ath1 channel", k5G);
    }

    Result channels(Locate locate, int band) { return ask(&FROM_LIBRARY(GetChannelPoll), locate, band); }
    Result frequencies(Locate locate, int band) { return ask(&FROM_LIBRARY(GetFrequencyPoll), locate, band); }
    int supports(decltype(::GetChannelPoll)* probe, int op, std::string value) {
        return dispatch(probe, op, value.data(), Locate{1, 1}, 0, nullptr);
    }

  private:
    static Result ask(decltype(::GetChannelPoll)* probe, Locate locate, int band) {
        std::vector<char> buffer(1024);
        std::string(kUntouched).copy(buffer.data(), buffer.size());
        Result result;
        result.code = dispatch(probe, CWMP_OP_GET, buffer.data(), locate, band, nullptr);
        result.value = buffer.data();
        return result;
    }
    static int dispatch(decltype(::GetChannelPoll)* probe, int op, char* value, Locate locate, int band,
                        const void* last, ...) {
        va_list args;
        va_start(args, last);
        const int code = probe(op, args, value, locate.data(), band);
        va_end(args);
        return code;
    }
};

TEST_F(RadioChannels, PathThenBandChooseTheRadio) {
    struct Row {
        Locate locate;
        int band;
        const char* list;
    };
    for (const Row& row : {Row{{1, 1}, 0, "1,06,13"}, Row{{1, 2}, 0, "36,149"}, Row{{1, 1}, 2, "1,06,13"},
                           Row{{1, 2}, 1, "1,06,13"}, Row{{2, 1}, 1, "1,06,13"}, Row{{2, 1}, 2, "36,149"},
                           Row{{0, 0}, 2, "36,149"}}) {
        SCOPED_TRACE(::testing::PrintToString(row.locate));
        const Result result = channels(row.locate, row.band);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.value, row.list);
    }
    forget();
    for (const int band : {0, 3, -1}) {
        EXPECT_EQ(channels({2, 1}, band).code, -1);
        EXPECT_EQ(channels({1, 3}, band).value, kUntouched);
    }
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_EQ(frequencies({1, 1}, 0).value, "2412MHz,2437MHz,2472MHz");
    EXPECT_EQ(frequencies({1, 2}, 0).value, "5180MHz,5745MHz");
}

TEST_F(RadioChannels, AskTheInterfaceThatTheProfileNames) {
    const std::string filter = " channel | grep Channel| grep -v Current | awk '{print $2}' | tr '\n' ' ' ";
    profile("interfaceinfo.wifi_2_4G", "wlan0");
    profile("interfaceinfo.wifi_5G", "wlan1");
    answer("iwlist wlan0 channel", k5G);
    EXPECT_EQ(channels({}, 1).value, "36,149");
    EXPECT_EQ(channels({}, 2).value, "");
    EXPECT_THAT(commands(), ElementsAre("iwlist wlan0" + filter, "iwlist wlan1" + filter));
    forget();
    profile("interfaceinfo.wifi_2_4G", std::string(300, 'w'));
    EXPECT_EQ(channels({}, 1).value, "");
    EXPECT_THAT(commands(), ElementsAre(("iwlist " + std::string(300, 'w')).substr(0, 254)));
}

TEST_F(RadioChannels, EveryPassOfASetTellsWhetherTheValueIsSupported) {
    for (const int op : {CWMP_OP_STAGE, CWMP_OP_CHECK, CWMP_OP_APPLY}) {
        for (const char* value : {"1", "6", "06", "13", "13 and more"})
            EXPECT_EQ(supports(&FROM_LIBRARY(GetChannelPoll), op, value), op) << value;
        for (const char* value : {"2", "36", "0", "", "x", "-1", "99999999999"})
            EXPECT_EQ(supports(&FROM_LIBRARY(GetChannelPoll), op, value), 0) << value;
        EXPECT_EQ(supports(&FROM_LIBRARY(GetFrequencyPoll), op, "2437MHz"), op);
        EXPECT_EQ(supports(&FROM_LIBRARY(GetFrequencyPoll), op, "6"), 0);
    }
}

TEST_F(RadioChannels, SurviveAnyOutput) {
    std::string many, list;
    for (int channel = 100; channel < 200; ++channel) {
        many += "Channel " + std::to_string(channel) + "\n";
        if (channel < 163) list += std::to_string(channel) + ",";
    }
    struct Row {
        std::string output, list;
    };
    const std::vector<Row> rows = {{"", ""},
                                   {"Channel", ""},
                                   {"no such interface\n", ""},
                                   {"Channel abc : x\nChannel 7x : y\n", "7"},
                                   {"Channel 0 :\n", "0"},
                                   {"Channel \xff\xfe\nChannel 5", "5"},
                                   {many, list + "163"},  // a line holds 255 characters
                                   {"Channel " + std::string(5000, '1') + "\n", std::string(255, '1')}};
    for (const Row& row : rows) {
        answer("iwlist ath0 channel", row.output);
        const Result result = channels({1, 1}, 0);
        EXPECT_EQ(result.code, 0);
        EXPECT_EQ(result.value, row.list) << row.output.substr(0, 40);
        EXPECT_EQ(frequencies({1, 1}, 0).code, 0);
    }
}

// The descriptors run out for the store, too: the names are the defaults then.
TEST_F(RadioChannels, RefuseWhenTheToolCannotStart) {
    {
        const NoFreeDescriptor none;
        EXPECT_EQ(channels({1, 1}, 0).code, -1);
    }
    EXPECT_EQ(console().back(), "GetRadioInfo: Failed to get Channel pool\n");
}

}  // namespace
