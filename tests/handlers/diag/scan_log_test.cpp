#include <climits>

#include "diagnostics_test.h"

namespace {

constexpr const char* kLog = "/tmp/scan_log";

class ScanLog : public DiagnosticsTest {
  protected:
    void SetUp() override {
        DiagnosticsTest::SetUp();
        level(-1);
    }
    void TearDown() override {
        EXPECT_FALSE(exists("/tmp/started")) << "a name was run as a command";
        DiagnosticsTest::TearDown();
    }
    int parse(const std::string& text, int first = 0) {
        file(kLog, text);
        return FROM_LIBRARY(NeighboringWiFi_Diagnostic)((std::string("cat ") + kLog).c_str(), first);
    }
    static std::string cell(int number) {
        return "          Cell " + std::to_string(number) +
               " - Address: 00:00:5E:00:53:" + std::to_string(10 + number) +
               "\n                    ESSID:\"net " + std::to_string(number) + "\"\n";
    }
    static std::string cells(int count) {
        std::string text = "ath02     Scan completed :\n";
        for (int number = 1; number <= count; ++number) text += cell(number);
        return text;
    }
    static std::optional<std::string> result(const std::string& name) {
        return scratch("diagnostics_config." + name);
    }
};

TEST_F(ScanLog, ALogGivesAtMost15Results) {
    for (const auto& [count, last] : {std::pair{0, 4}, {1, 5}, {14, 18}, {15, 19}, {40, 19}}) {
        std::filesystem::remove_all(kScratch);
        std::filesystem::create_directories(kScratch);
        EXPECT_EQ(parse(cells(count), 4), last);
        const std::string number = std::to_string(last);
        const bool any = count > 0;
        EXPECT_EQ(result("NeighboringWiFi.ResultNumberOfEntries"),
                  any ? std::optional(number) : std::nullopt);
        EXPECT_EQ(result(number + ".SSID"),
                  any ? std::optional("net " + std::to_string(last - 4)) : std::nullopt);
        EXPECT_EQ(section_type("diagnostics_config." + std::to_string(last + 1), kScratch), std::nullopt);
        EXPECT_EQ(section_type("diagnostics_config.4", kScratch), std::nullopt);
    }
    EXPECT_EQ(parse(cells(2), INT_MAX), INT_MAX);
}

}  // namespace
