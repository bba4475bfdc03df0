#include <dlfcn.h>
#include <poll.h>
#include <spawn.h>
#include <sys/resource.h>

#include <cerrno>
#include <cstring>

#include "diagnostics_test.h"

int failing_fork = 0;
std::string failing_command;

// Stand in for the C library's.
extern "C" pid_t fork() noexcept {
    if (failing_fork > 0 && --failing_fork == 0) {
        errno = EAGAIN;
        return -1;
    }
    return _Fork();
}

extern "C" int posix_spawn(pid_t* process, const char* program, const posix_spawn_file_actions_t* actions,
                           const posix_spawnattr_t* attributes, char* const words[],
                           char* const environment[]) {
    if (words[2] == failing_command) return EAGAIN;
    const auto spawn = reinterpret_cast<decltype(&posix_spawn)>(dlsym(RTLD_NEXT, "posix_spawn"));
    return spawn(process, program, actions, attributes, words, environment);
}

namespace {

constexpr const char* kTraceResult = "/tmp/tr069/trace_result";

class TraceRoute : public DiagnosticsTest {
  protected:
    void SetUp() override {
        DiagnosticsTest::SetUp();
        listen_as_agent();
        // The process list comes when the background command has written.
        program("/var/lib/router/answers/ps",
                "while [ ! -e /tmp/tr069/trace_result ]; do sleep 0.02; done\n");
        program("/usr/bin/tr069/get_trace_result", "exit 0\n");
    }
    void TearDown() override {
        failing_fork = 0;
        failing_command.clear();
        EXPECT_FALSE(exists("/tmp/started")) << "a value was run as a command";
        DiagnosticsTest::TearDown();
    }
    static void setting(const std::string& option, const std::string& value) {
        store("trace_route.traceroute." + option, value, kScratch);
    }
    static std::optional<std::string> traced(const std::string& option) {
        return scratch("trace_route.traceroute." + option);
    }
    int start() { return FROM_LIBRARY(libdiagnostics_startTraceRoute)(); }
    void run() {
        forget();
        std::filesystem::remove(kTraceResult);
        EXPECT_EQ(start(), 0);
        EXPECT_EQ(wait_for_jobs(), 1);
    }
};

TEST_F(TraceRoute, TheCommandLineFollowsTheSettings) {
    struct Row {
        std::vector<std::pair<const char*, const char*>> settings;
        const char* command;
    };
    const std::vector<Row> rows = {
        {{{"Host", "192.0.2.1"}}, "traceroute -q 3 -w 5  -m 30 192.0.2.1"},
        {{{"Host", "a-b_c.example:1"}, {"Interface", "br-wan"}},
         "traceroute -i br-wan -q 3 -w 5  -m 30 a-b_c.example:1"},
        {{{"Host", "h"}, {"Timeout", "2500"}}, "traceroute -q 3 -w 2 -m 30 h"},
        {{{"Host", "h"}, {"Timeout", "500"}}, "traceroute -q 3 -w 0 -m 30 h"},
        {{{"Host", "h"},
          {"Interface", "Device.IP.Interface.2"},
          {"NumberOfTries", "-1"},
          {"Timeout", "1000"},
          {"MaxHopCount", "1"},
          {"DataBlockSize", "100"}},
         "traceroute -i Device.IP.Interface.2 -q -1 -w 1 -m 1 h"},
        {{{"Host", "x'; touch /tmp/started; '"}},
         "traceroute -q 3 -w 5  -m 30 'x'\\''; touch /tmp/started; '\\'''"},
        {{{"Host", "h/1"}}, "traceroute -q 3 -w 5  -m 30 'h/1'"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.command);
        std::filesystem::remove(std::string(kScratch) + "/trace_route");
        for (const auto& [option, value] : row.settings) {
            EXPECT_EQ(set((std::string("IP_Diagnostics_TraceRoute_") + option).c_str(), {}, value).code, 0);
        }
        run();
        EXPECT_EQ(commands().front(), std::string(row.command) + " > /tmp/tr069/trace_result 2>&1 &");
    }
}

TEST_F(TraceRoute, ARunGoesFromNoneToCompleteAndTellsTheAgent) {
    setting("Host", "192.0.2.1");
    setting("DiagnosticsState", "Error_Internal");
    setting("RouteHopsNumberOfEntries", "9");
    // Running when first looked at, gone when looked at again; others' lines do not count.
    program("/var/lib/router/answers/ps",
            "while [ ! -e /tmp/tr069/trace_result ]; do sleep 0.02; done\n"
            "echo '7 root traceroute 198.51.100.1'\necho '8 root grep traceroute 192.0.2.1'\n"
            "echo '  10 root  1234 S    timeout 30 dm diagnose traceroute 192.0.2.1'\n"
            "echo '  11 root  1.2m SW<  router/enter --live / dm diagnose traceroute 192.0.2.1'\n"
            "echo '  12 root  1234 S    sh -c ps | grep traceroute 192.0.2.1'\n"
            "[ -e /tmp/looked ] || echo '9 root traceroute -q 3 192.0.2.1'\n"
            "uci -c /tmp/tr069 get trace_route.traceroute.last_trace_status >>/tmp/looked\n"
            "uci -c /tmp/tr069 get trace_route.traceroute.DiagnosticsState >>/tmp/looked\n");
    program("/usr/bin/tr069/get_trace_result",
            "uci -c /tmp/tr069 get trace_route.traceroute.last_trace_status >>/tmp/looked\n"
            "uci -c /tmp/tr069 set trace_route.traceroute.RouteHopsNumberOfEntries=3\n"
            "uci -c /tmp/tr069 commit trace_route\n");
    run();
    EXPECT_THAT(commands_of_job(),
                ElementsAre("traceroute -q 3 -w 5  -m 30 192.0.2.1 > /tmp/tr069/trace_result 2>&1 &",
                            "ps | grep traceroute", "sleep 1", "ps | grep traceroute",
                            "/usr/bin/tr069/get_trace_result", "kill -9"));
    EXPECT_EQ(text_of("/tmp/looked"), "1\nNone\n1\nNone\n0\n");
    EXPECT_EQ(traced("DiagnosticsState"), "Complete");
    EXPECT_EQ(traced("last_trace_status"), "0");
    EXPECT_THAT(messages(), ElementsAre(4207U));
}

TEST_F(TraceRoute, TheStateFollowsTheNumberOfHops) {
    for (const auto& [count, state] :
         {std::pair{"0", "Error_CannotResolveHostName"}, {"1", "Complete"}, {"", "Complete"}}) {
        setting("Host", "h");
        setting("RouteHopsNumberOfEntries", count);
        std::filesystem::remove("/usr/bin/tr069/get_trace_result");
        run();
        EXPECT_EQ(traced("DiagnosticsState"), state);
    }
}

TEST_F(TraceRoute, WithoutAHostNothingRuns) {
    EXPECT_EQ(start(), 0);
    EXPECT_EQ(traced("DiagnosticsState"), "Error_CannotResolveHostName");
    EXPECT_THAT(commands(), IsEmpty());
    EXPECT_THAT(messages(), IsEmpty());
    EXPECT_EQ(wait_for_jobs(), 0);
}

TEST_F(TraceRoute, WaitsForEveryWayToShowATrace) {
    setting("Host", "h");
    for (const char* line : {"  9 root  1234 S    /usr/bin/traceroute -q 3 h", "9 0:00 traceroute h",
                             "  9 root  2.1m SW<  {traceroute} /bin/sh /usr/bin/traceroute h",
                             "  9 root  1234 R    sh -c traceroute -q 3 h > /tmp/tr069/trace_result"}) {
        SCOPED_TRACE(line);
        program("/var/lib/router/answers/ps",
                std::string("[ -e /tmp/looked ] || echo '") + line + "'\ntouch /tmp/looked\n");
        run();
        EXPECT_THAT(commands_of_job(), Contains("sleep 1"));
        std::filesystem::remove("/tmp/looked");
    }
}

TEST_F(TraceRoute, AFailedForkIsReported) {
    setting("Host", "h");
    for (const int which : {1, 2}) {
        forget();
        failing_fork = which;
        EXPECT_EQ(start(), -1);
        failing_fork = 0;
        EXPECT_THAT(console(), ElementsAre("libdiagnostics_startTraceRoute: error fork pid\n"));
        EXPECT_THAT(commands(), IsEmpty());
        EXPECT_EQ(wait_for_jobs(), 0);
    }
}

TEST_F(TraceRoute, AProcessListThatCannotBeReadLeavesTheStatus) {
    setting("Host", "h");
    failing_command = "ps | grep traceroute";
    run();
    EXPECT_THAT(console(),
                Contains("libdiagnostics_startTraceRoute: Failed to exec cat ps | grep traceroute\n"));
    EXPECT_EQ(traced("last_trace_status"), "1");
    EXPECT_EQ(traced("DiagnosticsState"), "Complete");
    EXPECT_EQ(get("IP_Diagnostics_TraceRoute_DiagnosticsState").value, "None");
    EXPECT_THAT(messages(), ElementsAre(4207U));
}

TEST_F(TraceRoute, TheAgentHasNoChildAndSharesNeitherDescriptorNorSignalMask) {
    prctl(PR_SET_CHILD_SUBREAPER, 0);
    file("/tmp/hold", "");
    program("/var/lib/router/answers/ps",
            "grep SigBlk /proc/self/status >/tmp/mask; while [ -e /tmp/hold ]; do sleep 0.02; done\n");
    setting("Host", "h");
    int ends[2] = {};
    ASSERT_EQ(pipe(ends), 0);
    const int beyond_the_limit = fcntl(ends[1], F_DUPFD, 512);
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit few{64, before.rlim_max};
    setrlimit(RLIMIT_NOFILE, &few);
    sigset_t blocked;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGTERM);
    sigprocmask(SIG_BLOCK, &blocked, nullptr);
    EXPECT_EQ(start(), 0);
    sigprocmask(SIG_UNBLOCK, &blocked, nullptr);
    setrlimit(RLIMIT_NOFILE, &before);
    close(beyond_the_limit);
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1);
    EXPECT_EQ(errno, ECHILD);
    close(ends[1]);
    pollfd hung_up = {.fd = ends[0], .events = POLLIN, .revents = 0};
    EXPECT_EQ(poll(&hung_up, 1, 2000), 1) << "the job holds the agent's pipe";
    close(ends[0]);
    EXPECT_THAT(messages(), IsEmpty());
    std::filesystem::remove("/tmp/hold");
    for (int i = 0; i < 200 && messages().empty(); ++i) usleep(50 * 1000);
    EXPECT_EQ(text_of("/tmp/mask"), "SigBlk:\t0000000000000000\n");
    EXPECT_EQ(traced("DiagnosticsState"), "Complete");
    usleep(100 * 1000);
}

TEST_F(TraceRoute, AFullQueueHoldsTheJobAndNotTheAgent) {
    cwmp_message_handle filler = {};
    const cwmp_message message = {.type = CWMP_MESSAGE_WITHOUT_BLOCKING, .payload = {}};
    ASSERT_EQ(FROM_LIBRARY(msg_init)(&filler), 0);
    FROM_LIBRARY(msg_connSrv)(CWMP_AGENT_IDENTIFIER, &filler);
    while (FROM_LIBRARY(msg_send)(&filler, &message) == 0) {
    }
    FROM_LIBRARY(msg_cleanup)(&filler);
    setting("Host", "h");
    EXPECT_EQ(start(), 0);
    for (int i = 0; i < 200 && traced("DiagnosticsState") != "Complete"; ++i) usleep(20 * 1000);
    usleep(100 * 1000);
    pid_t ended = 0;
    while ((ended = waitpid(-1, nullptr, WNOHANG)) > 0) {  // the background command's shell
    }
    EXPECT_EQ(ended, 0) << "the job waits for room";
    // Once there is room the job may send at any moment.
    auto received = messages();
    EXPECT_EQ(wait_for_jobs(), 1);
    for (const uint32_t type : messages()) received.push_back(type);
    EXPECT_EQ(received.back(), 4207U);
}

TEST_F(DiagnosticsTest, TheResultScriptReadsWhatTracerouteAndItsFailuresPrint) {
    const auto parse = [&](const std::string& text) {
        file(kTraceResult, text);
        return std::system("/usr/bin/tr069/get_trace_result");
    };
    store("trace_route.traceroute.Host", "192.0.2.9", kScratch);
    parse(
        "traceroute to 192.0.2.9 (192.0.2.9), 30 hops max, 46 byte packets\n"
        " 1  gate.example (192.0.2.1)  0.812 ms  0.744 ms  0.301 ms\n"
        " 2  * * *\n"
        " 3  192.0.2.9 (192.0.2.9)  9.305 ms  *  8.211 ms !N\n");
    const std::vector<std::pair<const char*, std::optional<std::string>>> rows = {
        {"traceroute.Host", "192.0.2.9"}, {"traceroute.RouteHopsNumberOfEntries", "3"},
        {"traceroute.time", "9"},         {"1.Host", "gate.example"},
        {"1.RTTimes", "1,1,0"},           {"2.Host", std::nullopt},
        {"2.RTTimes", "0,0,0"},           {"3.Host", "192.0.2.9"},
        {"3.RTTimes", "9,0,8"},
    };
    for (const auto& [name, value] : rows)
        EXPECT_EQ(scratch(std::string("trace_route.") + name), value) << name;
    parse("traceroute: bad address 'nosuch.example'\n");
    EXPECT_EQ(scratch("trace_route.traceroute.RouteHopsNumberOfEntries"), "0");
    EXPECT_EQ(section_type("trace_route.1", kScratch), std::nullopt);
    EXPECT_EQ(scratch("trace_route.traceroute.Host"), "192.0.2.9");
}

}  // namespace
