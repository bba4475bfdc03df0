// What rows cannot say of the tests beside the agent: calls of the C library that fail, what a job inherits, how it
// is held up and killed.
#include <dlfcn.h>
#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <filesystem>

#include "cwmp/diagnostics.h"
#include "cwmp/message_channel.h"
#include "router_test.h"

// The count-th fork from now on, and the pipe of a command.
static int failing_fork = 0;
static std::string failing_command;

// Stand in for the C library's.
extern "C" pid_t fork() noexcept {
    if (failing_fork > 0 && --failing_fork == 0) {
        errno = EAGAIN;
        return -1;
    }
    return _Fork();
}

extern "C" int posix_spawn(pid_t* process, const char* program, const posix_spawn_file_actions_t* actions,
                           const posix_spawnattr_t* attributes, char* const words[], char* const environment[]) {
    if (words[2] == failing_command) {
        // By then the scan that is not looked for is through with the first radio.
        for (int i = 0; failing_command == "ps | grep iwlist" && i < 10'000; ++i) {
            if (access("/tmp/tr069/NeighboringWiFi_5G_log", F_OK) == 0) break;
            usleep(1000);
        }
        return EAGAIN;
    }
    const auto spawn = reinterpret_cast<decltype(&posix_spawn)>(dlsym(RTLD_NEXT, "posix_spawn"));
    return spawn(process, program, actions, attributes, words, environment);
}

namespace {

using ::testing::AllOf;
using ::testing::EndsWith;
using ::testing::StartsWith;

constexpr const char* kProcessList = "/var/lib/router/answers/ps";

class Diagnostics : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        listen();
        world("mute $");
        world("tr069/trace_route.traceroute.Host=h");
        world("file /var/lib/router/answers/ps: #!/bin/dash\\nwhile [ -e /tmp/hold ]; do sleep 0.02; done\\n");
        world("remove /usr/bin/tr069/get_trace_result");
        world("answer iwlist ath02 scan: Cell 01 - Address: A1\\n");
    }
    static std::string traced(const char* name) {
        return option(std::string("tr069/trace_route.traceroute.") + name).value_or("");
    }
};

TEST_F(Diagnostics, WhatCannotStartIsReported) {
    const char *trace = "awaited call libdiagnostics_startTraceRoute",
               *scan = "awaited set WiFi_NeighboringWiFiDiagnostic_DiagnosticsState = Requested";
    world("hear fork Failed");
    for (const int which : {1, 2}) {
        failing_fork = which;
        EXPECT_EQ(told(trace), "-1 | 0 killed | ! error fork pid");
    }
    failing_fork = 1;
    EXPECT_THAT(told(scan), AllOf(StartsWith("-1 | 0 killed"), EndsWith("! error fork pid")));
    failing_command = "ps | grep traceroute";
    EXPECT_THAT(told(trace), EndsWith(".DiagnosticsState=Complete | .last_trace_status=1 | "
                                      "! Failed to exec cat ps | grep traceroute"));
    EXPECT_EQ(told("get IP_Diagnostics_TraceRoute_DiagnosticsState"), "None");
    failing_command = "ps | grep iwlist";
    EXPECT_THAT(told(scan), EndsWith(".{ResultNumberOfEntries,ResultNumberOfEntries_2_4G,last_scan_status}=1 | "
                                     ".ResultNumberOfEntries_5G=0 | ! Failed to exec cat ps | grep ping"));
    failing_command = "cat /tmp/tr069/NeighboringWiFi_2_4G_log";
    EXPECT_THAT(told(scan), EndsWith(".{ResultNumberOfEntries,ResultNumberOfEntries_2_4G,last_scan_status}=0 | "
                                     "! NeighboringWiFi_Diagnostic: Failed to exec " +
                                     failing_command));
    failing_command.clear();
}

TEST_F(Diagnostics, TheAgentHasNoChildAndSharesNeitherDescriptorNorSignalMask) {
    if (prctl(PR_SET_CHILD_SUBREAPER, 0) != 0) GTEST_SKIP() << "no help against adopting the job";
    file("/tmp/hold", "");
    file(kProcessList, "#!/bin/dash\ngrep SigBlk /proc/self/status >/tmp/mask\n" + *text_of(kProcessList));
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
    EXPECT_EQ(FROM_LIBRARY(libdiagnostics_startTraceRoute)(), 0);
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

TEST_F(Diagnostics, AFullQueueHoldsTheJobAndNotTheAgent) {
    cwmp_message_handle filler = {};
    const cwmp_message message = {.type = CWMP_MESSAGE_WITHOUT_BLOCKING, .payload = {}};
    ASSERT_EQ(FROM_LIBRARY(msg_init)(&filler), 0);
    FROM_LIBRARY(msg_connSrv)(CWMP_AGENT_IDENTIFIER, &filler);
    while (FROM_LIBRARY(msg_send)(&filler, &message) == 0) {
    }
    FROM_LIBRARY(msg_cleanup)(&filler);
    EXPECT_EQ(FROM_LIBRARY(libdiagnostics_startTraceRoute)(), 0);
    for (int i = 0; i < 200 && traced("DiagnosticsState") != "Complete"; ++i) usleep(20 * 1000);
    usleep(100 * 1000);
    pid_t ended = 0;
    while ((ended = waitpid(-1, nullptr, WNOHANG)) > 0) {  // the background command's shell
    }
    EXPECT_EQ(ended, 0) << "the job waits for room";
    // Once there is room the job may send at any moment.
    Texts received = messages();
    EXPECT_EQ(wait_for_jobs(), 1);
    for (const auto& late : messages()) received.push_back(late);
    EXPECT_THAT(received, Contains("message 4207"));
}

TEST_F(Diagnostics, AScanThatIsKilledStartsAnew) {
    file(kProcessList, "#!/bin/dash\ntouch /tmp/looked\necho '9 root iwlist ath02 scan'; sleep 0.02\n");
    level(6);
    signal(SIGHUP, [](int) {});
    EXPECT_EQ(set("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState", {}, "Requested").code, 0);
    for (int i = 0; i < 200 && !exists("/tmp/looked"); ++i) usleep(20 * 1000);
    const std::string after = "after: child pid id : ", events = raw_console();
    kill(-std::stoi(events.substr(events.find(after) + after.size())), SIGHUP);
    EXPECT_EQ(wait_for_jobs(), 0) << "the agent's handler keeps the job alive";
    EXPECT_EQ(told("get WiFi_NeighboringWiFiDiagnostic_DiagnosticsState"), "None");
    file(kProcessList, "#!/bin/dash\n");
    EXPECT_EQ(set("WiFi_NeighboringWiFiDiagnostic_DiagnosticsState", {}, "Requested").code, 0);
    EXPECT_EQ(wait_for_jobs(), 1);
    EXPECT_EQ(told("get WiFi_NeighboringWiFiDiagnostic_DiagnosticsState"), "Completed | message 4207");
}

}  // namespace
