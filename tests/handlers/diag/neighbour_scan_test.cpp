#include "diagnostics_test.h"

namespace {

class NeighbourScan : public DiagnosticsTest {
  protected:
    void SetUp() override {
        DiagnosticsTest::SetUp();
        listen_as_agent();
        program("/var/lib/router/answers/ps",
                "until grep -q END /tmp/tr069/NeighboringWiFi_5G_log 2>/dev/null; do sleep 0.02; done\n"
                "echo '9 root iwlist ath0 channel'\n");
        bands("ath02", "ath12");
    }
    void TearDown() override {
        failing_fork = 0;
        failing_command.clear();
        DiagnosticsTest::TearDown();
    }
    void bands(const std::string& first, const std::string& second) {
        answer("iwlist " + first + " scan",
               "          Cell 01 - Address: A1\n          Cell 02 - Address: A2\n");
        answer("iwlist " + second + " scan", "          Cell 01 - Address: B1\nEND\n");
    }
    Result request() { return set("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState", {}, "Requested"); }
    static std::optional<std::string> result(const std::string& name) {
        return scratch("diagnostics_config." + name);
    }
};

TEST_F(NeighbourScan, ARunEndsSavedAndTellsTheAgent) {
    store("diagnostics_config.NeighboringWiFi.ResultNumberOfEntries", "2", kScratch);
    store("diagnostics_config.1.SSID", "old", kScratch);
    store("diagnostics_config.2.SSID", "old", kScratch);
    store("diagnostics_config.3.SSID", "kept", kScratch);
    level(6);
    EXPECT_EQ(request().code, 0);
    EXPECT_EQ(wait_for_jobs(), 1);
    EXPECT_THAT(
        commands_of_job(),
        ElementsAre("iwlist ath02 scan > /tmp/tr069/NeighboringWiFi_2_4G_log 2>&1 && iwlist ath12 scan > "
                    "/tmp/tr069/NeighboringWiFi_5G_log 2>&1 & ",
                    "ps | grep iwlist", "cat /tmp/tr069/NeighboringWiFi_2_4G_log",
                    "cat /tmp/tr069/NeighboringWiFi_5G_log",
                    "cp /tmp/tr069/diagnostics_config /etc/config/diagnostics_config",
                    "saveconfig user-config", "kill -9"));
    EXPECT_THAT(tool_calls(), Contains("saveconfig user-config"));
    const std::vector<std::pair<const char*, const char*>> rows = {
        {"NeighboringWiFi.DiagnosticsState", "Completed"},
        {"NeighboringWiFi.last_scan_status", "0"},
        {"NeighboringWiFi.ResultNumberOfEntries", "3"},
        {"NeighboringWiFi.ResultNumberOfEntries_2_4G", "2"},
        {"NeighboringWiFi.ResultNumberOfEntries_5G", "1"},
        {"1.BSSID", "A1"},
        {"2.BSSID", "A2"},
        {"3.BSSID", "B1"},
    };
    for (const auto& [name, value] : rows) EXPECT_EQ(result(name), value) << name;
    EXPECT_EQ(result("1.SSID"), std::nullopt);
    EXPECT_EQ(section_type("diagnostics_config.1", kScratch), "Cell");
    EXPECT_EQ(text_of("/etc/config/diagnostics_config"), text_of("/tmp/tr069/diagnostics_config"));
    EXPECT_THAT(messages(), ElementsAre(4207U));
    const std::string name = "WiFi_NeighboringWiFiDiagnostic_DiagnosticsState: ";
    EXPECT_THAT(console(), Contains(HasSubstr(name + "before: child pid id : ")));
    EXPECT_THAT(console(), Contains(HasSubstr(name + "after: child pid id : ")));
}

TEST_F(NeighbourScan, AMissingToolAndALogThatCannotBeReadCountNothing) {
    program("/var/lib/router/answers/ps", "exit 0\n");
    answer("iwlist ath02 scan", "", 1);
    EXPECT_EQ(request().code, 0);
    EXPECT_EQ(wait_for_jobs(), 1);
    EXPECT_EQ(result("NeighboringWiFi.ResultNumberOfEntries_2_4G"), "0");
    EXPECT_EQ(result("NeighboringWiFi.ResultNumberOfEntries_5G"), "0");
    EXPECT_EQ(result("NeighboringWiFi.ResultNumberOfEntries"), "0");
    EXPECT_EQ(result("NeighboringWiFi.DiagnosticsState"), "Completed");

    DiagnosticsTest::program(
        "/var/lib/router/answers/ps",
        "until grep -q END /tmp/tr069/NeighboringWiFi_5G_log 2>/dev/null; do sleep 0.02; done\n");
    bands("ath02", "ath12");
    forget();
    failing_command = "cat /tmp/tr069/NeighboringWiFi_2_4G_log";
    EXPECT_EQ(request().code, 0);
    EXPECT_EQ(wait_for_jobs(), 1);
    EXPECT_THAT(console(),
                Contains("NeighboringWiFi_Diagnostic: Failed to exec " + failing_command + "\n\n"));
    EXPECT_EQ(result("NeighboringWiFi.ResultNumberOfEntries_2_4G"), "0");
    EXPECT_EQ(result("NeighboringWiFi.ResultNumberOfEntries_5G"), "1");
    EXPECT_EQ(result("1.BSSID"), "B1");
}

TEST_F(NeighbourScan, FailuresToStartAndToWatchAreReported) {
    failing_fork = 1;
    EXPECT_EQ(request().code, -1);
    EXPECT_THAT(console(), Contains("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState: error fork pid\n"));
    failing_fork = 0;
    failing_command = "ps | grep iwlist";
    EXPECT_EQ(request().code, 0);
    EXPECT_EQ(wait_for_jobs(), 1);
    EXPECT_THAT(
        console(),
        Contains("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState: Failed to exec cat ps | grep ping\n"));
    EXPECT_EQ(result("NeighboringWiFi.last_scan_status"), "1");
    EXPECT_EQ(get("X_QM_NeighboringWiFiDiagnostic_DiagnosticsState").value, "None");
    EXPECT_THAT(messages(), ElementsAre(4207U));
}

TEST_F(NeighbourScan, KilledHalfWayItStartsAnew) {
    program("/var/lib/router/answers/ps",
            "touch /tmp/looked\nwhile :; do echo '9 root iwlist ath02 scan'; sleep 0.02; done\n");
    level(6);
    EXPECT_EQ(request().code, 0);
    pid_t job = 0;
    for (int i = 0; i < 200 && !exists("/tmp/looked"); ++i) usleep(20 * 1000);
    for (const auto& event : console()) {
        const std::size_t number = event.find("after: child pid id : ");
        if (number != std::string::npos) job = std::stoi(event.substr(number + 22));
    }
    ASSERT_GT(job, 0);
    kill(-job, SIGKILL);
    EXPECT_GE(wait_for_jobs(), 1);
    EXPECT_EQ(get("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState").value, "None");
    EXPECT_THAT(messages(), IsEmpty());
    program("/var/lib/router/answers/ps", "exit 0\n");
    EXPECT_EQ(request().code, 0);
    EXPECT_EQ(wait_for_jobs(), 1);
    EXPECT_EQ(get("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState").value, "Completed");
}

}  // namespace
