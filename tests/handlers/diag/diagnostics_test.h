// The fixture of the diagnostics: settings in scratch packages, and tests that run in processes of their own.
#pragma once

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>

#include "cwmp/apply_flags.h"
#include "cwmp/diagnostics.h"
#include "cwmp/message_channel.h"
#include "router_test.h"

// The library's calls that fail: the count-th fork from now on, and the pipe of a command.
extern int failing_fork;
extern std::string failing_command;

class DiagnosticsTest : public RouterTest {
  protected:
    void SetUp() override {
        RouterTest::SetUp();
        std::filesystem::create_directories(kScratch);
        // The uci command of a sanitizer build cannot look for leaks beside this program.
        setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
        prctl(PR_SET_CHILD_SUBREAPER, 1);
        program("/var/lib/router/answers/ps", "exit 0\n");
    }
    void TearDown() override {
        if (agent_ >= 0) close(agent_);
        RouterTest::TearDown();
    }

    // A script of the root in place of a tool's answer.
    void program(const std::string& path, const std::string& text) {
        file(path, "#!/bin/dash\n" + text);
        chmod(path.c_str(), 0755);
    }

    static std::optional<std::string> scratch(const std::string& name) { return option(name, kScratch); }

    void listen_as_agent() {
        cwmp_message_handle handle = {};
        ASSERT_EQ(FROM_LIBRARY(msg_init)(&handle), 0);
        ASSERT_EQ(FROM_LIBRARY(msg_srvInit)(CWMP_AGENT_IDENTIFIER, &handle), 0);
        agent_ = handle.descriptor;
    }
    // The types of the messages that have come.
    std::vector<uint32_t> messages() const {
        std::vector<uint32_t> types;
        cwmp_message message = {};
        while (recv(agent_, &message, sizeof message, MSG_DONTWAIT) > 0) types.push_back(message.type);
        return types;
    }

    // Waits for the processes that the test left running, which are handed to this one; how many ended by
    // their own kill.
    int wait_for_jobs() {
        alarm(60);
        int killed = 0;
        int status = 0;
        while (wait(&status) > 0) killed += WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL ? 1 : 0;
        alarm(0);
        return killed;
    }

    // Commands without the process id of the last one.
    static Texts commands_of_job() {
        Texts texts = commands();
        for (std::string& text : texts) {
            if (text.starts_with("kill -9 ")) text = "kill -9";
        }
        return texts;
    }

  private:
    int agent_ = -1;
};
