#include "cwmp/message_channel.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <deque>
#include <filesystem>
#include <functional>

#include "router_test.h"

namespace {

// What the next sends of the library fail with, 0 for a send that goes through, and the flags they had.
bool watched = false;
std::deque<int> failures;
std::vector<int> sends;

}  // namespace

// Stands in for the C library's.
extern "C" ssize_t sendto(int descriptor, const void* data, size_t size, int flags, const sockaddr* to,
                          socklen_t length) {
    if (watched) {
        sends.push_back(flags);
        const int failure = failures.empty() ? 0 : failures.front();
        if (!failures.empty()) failures.pop_front();
        errno = failure;
        return failure == 0 ? static_cast<ssize_t>(size) : -1;
    }
    return syscall(SYS_sendto, descriptor, data, size, flags, to, length);
}

namespace {

constexpr int kServer = 40;
constexpr uint32_t kType = 3001;

class MessageChannel : public RouterTest {
  protected:
    void TearDown() override {
        watched = false;
        for (const pid_t process : processes_) kill(process, SIGKILL);
        while (wait(nullptr) > 0) {
        }
        RouterTest::TearDown();
    }

    // A process of its own that goes on once it is ready, and its exit code.
    pid_t start(const std::function<int(const std::function<void()>&)>& body) {
        int ready[2] = {};
        EXPECT_EQ(pipe(ready), 0);
        const pid_t process = fork();
        if (process == 0) {
            close(ready[0]);
            _exit(body([&] { close(ready[1]); }));
        }
        close(ready[1]);
        char nothing = 0;
        EXPECT_EQ(read(ready[0], &nothing, 1), 0);
        close(ready[0]);
        processes_.push_back(process);
        return process;
    }
    int exit_code(pid_t process) {
        int status = 0;
        waitpid(process, &status, 0);
        std::erase(processes_, process);
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Answers requests: their payload's first byte one higher. Never answers type 9.
    pid_t start_server() {
        return start([&](const auto& ready) {
            cwmp_message_handle server = {};
            cwmp_message message = {};
            if (FROM_LIBRARY(msg_init)(&server) != 0 || FROM_LIBRARY(msg_srvInit)(kServer, &server) != 0)
                return 1;
            ready();
            while (FROM_LIBRARY(msg_recv)(&server, &message) == 0) {
                if (message.type == 9) continue;
                ++message.payload[0];
                if (FROM_LIBRARY(msg_send)(&server, &message) != 0) return 2;
            }
            return 3;
        });
    }

    cwmp_message_handle client(int identifier = kServer) {
        cwmp_message_handle handle = {};
        EXPECT_EQ(FROM_LIBRARY(msg_init)(&handle), 0);
        EXPECT_EQ(FROM_LIBRARY(msg_connSrv)(identifier, &handle), 0);
        return handle;
    }
    int request(cwmp_message_handle& handle, cwmp_message& message, int seconds = 5) {
        return FROM_LIBRARY(msg_sendAndGetReplyWithTimeout)(&handle, &message, seconds);
    }
    static Texts reply_addresses() {
        Texts names;
        for (const auto& entry : std::filesystem::directory_iterator("/var")) {
            const std::string name = entry.path().filename();
            if (name.starts_with("tmp_")) names.push_back(name);
        }
        return names;
    }

  private:
    std::vector<pid_t> processes_;
};

TEST_F(MessageChannel, MessagesAreWholeAndAnswered) {
    start_server();
    auto handle = client();
    for (const uint8_t number : std::initializer_list<uint8_t>{1, 2, 3}) {
        cwmp_message message = {.type = kType, .payload = {number}};
        message.payload[CWMP_MESSAGE_PAYLOAD - 1] = 77;
        EXPECT_EQ(request(handle, message), 0);
        EXPECT_EQ(message.type, kType);
        EXPECT_EQ(message.payload[0], number + 1);
        EXPECT_EQ(message.payload[CWMP_MESSAGE_PAYLOAD - 1], 77);
    }
    EXPECT_THAT(reply_addresses(), IsEmpty());
    EXPECT_EQ(FROM_LIBRARY(msg_cleanup)(&handle), 0);
    EXPECT_EQ(FROM_LIBRARY(msg_cleanup)(&handle), -1);
}

TEST_F(MessageChannel, ADatagramHas520BytesInNativeOrder) {
    const int server = socket(AF_UNIX, SOCK_DGRAM, 0);
    sockaddr_un address = {.sun_family = AF_UNIX, .sun_path = "/var/tmp/40"};
    ASSERT_EQ(bind(server, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    cwmp_message_handle handle = {};
    const cwmp_message message = {.type = kType, .payload = {0xAB}};
    EXPECT_EQ(FROM_LIBRARY(msg_connCliAndSend)(kServer, &handle, &message), 0);
    unsigned char bytes[600] = {};
    EXPECT_EQ(recv(server, bytes, sizeof bytes, MSG_DONTWAIT), 520);
    EXPECT_EQ(std::memcmp(bytes, &kType, 4), 0);
    EXPECT_EQ(bytes[4], 0xAB);
    close(server);
}

TEST_F(MessageChannel, ARequestWithoutReplyEndsInTimeAndLeavesTheHandleUsable) {
    start_server();
    auto handle = client();
    cwmp_message message = {.type = 9, .payload = {}};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const auto start = std::time(nullptr);
    EXPECT_EQ(request(handle, message, 1), -1);
    EXPECT_LE(std::time(nullptr) - start, 3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "pid " + std::to_string(getpid()) + " recvfrom error\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "recvfrom: Resource temporarily unavailable\n");
    EXPECT_THAT(reply_addresses(), IsEmpty());
    message.type = kType;
    EXPECT_EQ(request(handle, message), 0);
    FROM_LIBRARY(msg_cleanup)(&handle);
}

TEST_F(MessageChannel, AFailedRequestLeavesNothingOpen) {
    auto handle = client();
    cwmp_message message = {.type = kType, .payload = {}};
    handle.peer.sun_family = AF_INET;
    const int next = dup(handle.descriptor);
    close(next);
    for (int i = 0; i < 3; ++i) EXPECT_EQ(request(handle, message), -1);
    FROM_LIBRARY(msg_cleanup)(&handle);
    const int after = dup(0);
    EXPECT_LE(after, next);
    close(after);
    EXPECT_THAT(reply_addresses(), IsEmpty());
}

TEST_F(MessageChannel, ASocketFileLeftBehindIsReplaced) {
    const pid_t crashed = start([&](const auto&) {
        cwmp_message_handle server = {};
        FROM_LIBRARY(msg_init)(&server);
        return FROM_LIBRARY(msg_srvInit)(kServer, &server);
    });
    EXPECT_EQ(exit_code(crashed), 0);
    ASSERT_TRUE(exists("/var/tmp/40"));
    auto refused = client();
    const cwmp_message message = {.type = kType, .payload = {5}};
    EXPECT_EQ(FROM_LIBRARY(msg_send)(&refused, &message), -1);
    cwmp_message_handle server = {};
    ASSERT_EQ(FROM_LIBRARY(msg_init)(&server), 0);
    EXPECT_EQ(fcntl(server.descriptor, F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(FROM_LIBRARY(msg_srvInit)(kServer, &server), 0);
    EXPECT_EQ(FROM_LIBRARY(msg_send)(&refused, &message), 0);
    cwmp_message received = {};
    EXPECT_EQ(FROM_LIBRARY(msg_recv)(&server, &received), 0);
    EXPECT_EQ(received.payload[0], 5);
    EXPECT_EQ(FROM_LIBRARY(msg_send)(&server, &received), -1) << "the sender has no address";
    rename("/var/tmp", "/var/moved");
    EXPECT_EQ(FROM_LIBRARY(msg_srvInit)(kServer, &refused), -1);
    rename("/var/moved", "/var/tmp");
    for (auto* handle : {&refused, &server}) FROM_LIBRARY(msg_cleanup)(handle);
}

TEST_F(MessageChannel, SendsAreRepeatedAsOftenAsTheirFailureAllows) {
    const std::deque<int> unbound(20, ENOENT);
    const std::deque<int> refused(20, ECONNREFUSED);
    struct Row {
        uint32_t type;
        std::deque<int> failures;
        int code;
        std::size_t attempts;
        int unbound_lines;
        int last_error;
    };
    const std::vector<Row> rows = {
        {kType, {}, 0, 1, 0, 0},
        {kType, unbound, -1, 5, 5, ENOENT},
        {1, unbound, -1, 1, 1, ENOENT},
        {kType, refused, -1, 3, 0, ECONNREFUSED},
        {kType, {ENOENT, ECONNREFUSED, ENOENT, ECONNREFUSED, ENOENT, ENOENT, 0}, 0, 7, 4, 0},
        {kType, {EINTR, EINTR, EINTR, EINTR, EINTR, EINTR, EINTR, 0}, 0, 8, 0, 0},
        {kType, {EMSGSIZE, 0}, -1, 1, 0, EMSGSIZE},
        {2000, {EAGAIN, 0}, -1, 1, 0, EAGAIN},
    };
    const std::string process = "pid " + std::to_string(getpid()) + " send ";
    auto handle = client();
    for (const Row& row : rows) {
        SCOPED_TRACE(std::to_string(row.type) + " " + testing::PrintToString(row.failures));
        failures = row.failures;
        sends.clear();
        watched = true;
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const cwmp_message message = {.type = row.type, .payload = {}};
        EXPECT_EQ(FROM_LIBRARY(msg_send)(&handle, &message), row.code);
        watched = false;
        const std::string what = process + std::to_string(row.type) + " error";
        std::string lines;
        std::string reasons;
        for (int i = 0; i < row.unbound_lines; ++i) {
            lines += what + "\n";
            reasons += "sendto: No such file or directory\n";
        }
        if (row.last_error != 0) {
            lines += what + ", errno is " + std::to_string(row.last_error) + "\n";
            reasons += std::string("sendto: ") + std::strerror(row.last_error) + "\n";
        }
        EXPECT_EQ(testing::internal::GetCapturedStdout(), lines);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), reasons);
        EXPECT_EQ(sends, std::vector<int>(row.attempts, row.type == 2000 ? MSG_DONTWAIT : 0));
    }
    FROM_LIBRARY(msg_cleanup)(&handle);
}

TEST_F(MessageChannel, TwoClientsGetTheirOwnReplies) {
    start_server();
    std::vector<pid_t> clients;
    for (const uint8_t number : std::initializer_list<uint8_t>{10, 20}) {
        clients.push_back(start([&, number](const auto& ready) {
            ready();
            auto handle = client();
            for (int i = 0; i < 50; ++i) {
                cwmp_message message = {.type = kType, .payload = {number}};
                if (request(handle, message) != 0 || message.payload[0] != number + 1) return 1;
            }
            return 0;
        }));
    }
    for (const pid_t process : clients) EXPECT_EQ(exit_code(process), 0);
}

TEST_F(MessageChannel, OneShotSendsReportOnlyAMissingSocket) {
    const cwmp_message message = {.type = 1, .payload = {}};
    cwmp_message_handle handle = {};
    EXPECT_EQ(FROM_LIBRARY(msg_connCliAndSend)(kServer, &handle, &message), 0);
    rlimit before = {};
    getrlimit(RLIMIT_NOFILE, &before);
    const rlimit none = {0, before.rlim_max};
    testing::internal::CaptureStdout();
    setrlimit(RLIMIT_NOFILE, &none);
    const int code = FROM_LIBRARY(msg_connCliAndSend)(kServer, &handle, &message);
    setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Init 40 msg client error\n");
    EXPECT_EQ(code, -1);
}

TEST_F(MessageChannel, NullPointersEndTheProcess) {
    cwmp_message_handle handle = {};
    EXPECT_DEATH(FROM_LIBRARY(msg_init)(nullptr), "os_msgLinux: .*pMsgFd != NULL");
    EXPECT_DEATH(FROM_LIBRARY(msg_send)(&handle, nullptr), "\\(pMsgFd != NULL\\) && \\(pMsgBuff != NULL\\)");
}

}  // namespace
