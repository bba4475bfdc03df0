#include "diagnostics_test.h"

namespace {

// dm in the agent's place.
class DmDiagnose : public DiagnosticsTest {
  protected:
    struct Run {
        int exit;
        std::string out;
        std::string err;
    };
    Run dm(const std::string& arguments) {
        const int status = std::system(("dm >/tmp/out 2>/tmp/err " + arguments).c_str());
        return {WEXITSTATUS(status), text_of("/tmp/out").value_or(""), text_of("/tmp/err").value_or("")};
    }
};

TEST_F(DmDiagnose, TracesARouteToItsEnd) {
    answer("traceroute -q 2 -w 1 -m 30 192.0.2.9",
           " 1  192.0.2.1 (192.0.2.1)  0.8 ms  0.7 ms\n"
           " 2  192.0.2.9 (192.0.2.9)  9.3 ms  *\n");
    program("/var/lib/router/answers/ps", "while [ ! -s /tmp/tr069/trace_result ]; do sleep 0.02; done\n");
    const Run run = dm("diagnose traceroute 192.0.2.9 --tries 2 --timeout 1500 --wait 30");
    EXPECT_EQ(run.exit, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("TraceRoute.NumberOfTries             2\n"));
    EXPECT_THAT(run.out,
                testing::EndsWith(
                    "#  Host       RTTimes\n1  192.0.2.1  1,1\n2  192.0.2.9  9,0\ndiagnostics complete\n"
                    "apply flags 0x2000: trace-route diagnostics\n"));
    EXPECT_EQ(run.err, "");
    EXPECT_FALSE(exists("/var/tmp/17"));
    wait_for_jobs();
}

TEST_F(DmDiagnose, ScansForNetworksToTheEnd) {
    answer("iwlist ath02 scan", "  Cell 01 - Address: A1\n  ESSID:\"a\\x1Bb\"\n");
    answer("iwlist ath12 scan", "END\n");
    program("/var/lib/router/answers/ps",
            "until grep -q END /tmp/tr069/NeighboringWiFi_5G_log 2>/dev/null; do sleep 0.02; done\n");
    const Run run = dm("diagnose neighbours --wait 30");
    EXPECT_EQ(run.exit, 0) << run.err;
    EXPECT_THAT(run.out, HasSubstr("\n1  a\\x1Bb  A1 "));
    EXPECT_THAT(run.out, HasSubstr("diagnostics complete\n"));
    wait_for_jobs();
}

TEST_F(DmDiagnose, ATestThatFailsOrDoesNotEndIsAFailure) {
    program("/var/lib/router/answers/ps", "while [ ! -e /tmp/tr069/trace_result ]; do sleep 0.02; done\n");
    answer("traceroute -q 3 -w 5 -m 30 nosuch", "traceroute: bad address 'nosuch'\n", 1);
    const Run failed = dm("diagnose traceroute nosuch --wait 30");
    EXPECT_EQ(failed.exit, 1);
    EXPECT_THAT(failed.err, HasSubstr("the test ended in state Error_CannotResolveHostName\n"));
    const Run no_host = dm("diagnose traceroute '' --wait 30");
    EXPECT_EQ(no_host.exit, 1);
    EXPECT_THAT(no_host.err, HasSubstr("the test ended in state Error_CannotResolveHostName\n"));
    wait_for_jobs();
    file("/tmp/hold", "");
    program("/var/lib/router/answers/ps", "while [ -e /tmp/hold ]; do sleep 0.02; done\n");
    const Run endless = dm("diagnose traceroute h --wait 1");
    EXPECT_EQ(endless.exit, 1);
    EXPECT_THAT(endless.err, HasSubstr("dm: diagnostics: no completion message within 1 s\n"));
    EXPECT_THAT(dm("wait-diagnostics --wait 1").err, HasSubstr("no completion message within 1 s\n"));
    const Run stopped = dm("diagnose traceroute h & sleep 0.5; kill $!; wait $!");
    EXPECT_EQ(stopped.exit, 143);
    EXPECT_FALSE(exists("/var/tmp/17"));
    std::filesystem::remove("/tmp/hold");
    wait_for_jobs();
    EXPECT_THAT(dm("wait-diagnostics").err, HasSubstr("no test runs\n"));
}

TEST_F(DmDiagnose, ShowsTheRequestOfATestThatTheAgentRuns) {
    const Run ping = dm("diagnose ping 192.0.2.7 --count 4 --protocol IPv4");
    EXPECT_EQ(ping.exit, 0) << ping.err;
    EXPECT_THAT(ping.out, HasSubstr("IPPing.DiagnosticsState             Requested\n"));
    EXPECT_THAT(ping.out, HasSubstr("the agent runs it"));
    EXPECT_THAT(ping.out, HasSubstr("apply flags 0x1000: IP ping diagnostics\n"));
    EXPECT_EQ(scratch("diagnostics_config.ping.NumberOfRepetitions"), "4");
    const Run upload = dm("diagnose upload http://192.0.2.7/x --length 1000 --interface br-wan");
    EXPECT_THAT(upload.out, HasSubstr("apply flags 0x0400: upload diagnostics\n"));
    EXPECT_EQ(scratch("diagnostics_config.upload.state"), "Requested");
    EXPECT_EQ(scratch("diagnostics_config.upload.file_len"), "1000");
}

}  // namespace
