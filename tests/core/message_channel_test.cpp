#include "cwmp/message_channel.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <deque>
#include <filesystem>
#include <thread>
#include <utility>

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
    if (!watched) return syscall(SYS_sendto, descriptor, data, size, flags, to, length);
    sends.push_back(flags);
    errno = failures.empty() ? 0 : failures.front();
    if (!failures.empty()) failures.pop_front();
    return errno == 0 ? static_cast<ssize_t>(size) : -1;
}

namespace {

constexpr int kServer = 40;
constexpr uint32_t kType = 3001, kAtOnce = 2000, kUnanswered = 9, kEnd = 10;

class MessageChannel : public RouterTest {
  protected:
    void TearDown() override {
        watched = false;
        if (server_.joinable()) {
            EXPECT_EQ(send(client(), kEnd), 0);
            server_.join();
        }
        for (auto& handle : handles_) FROM_LIBRARY(msg_cleanup)(&handle);
        RouterTest::TearDown();
    }

    // Closed after the test.
    cwmp_message_handle& opened(int (&as)(int, cwmp_message_handle*)) {
        auto& handle = handles_.emplace_back();
        EXPECT_EQ(FROM_LIBRARY(msg_init)(&handle), 0);
        EXPECT_EQ(as(kServer, &handle), 0);
        return handle;
    }
    cwmp_message_handle& server() { return opened(FROM_LIBRARY(msg_srvInit)); }
    cwmp_message_handle& client() { return opened(FROM_LIBRARY(msg_connSrv)); }

    // Answers requests: their payload's first byte one higher.
    void serve() {
        server_ = std::thread([this, &handle = server()] {
            cwmp_message message = {};
            while (FROM_LIBRARY(msg_recv)(&handle, &message) == 0 && message.type != kEnd) {
                ++message.payload[0];
                if (message.type != kUnanswered) FROM_LIBRARY(msg_send)(&handle, &message);
            }
        });
    }

    int send(cwmp_message_handle& handle, uint32_t type) {
        const cwmp_message message = {.type = type, .payload = {5}};
        return FROM_LIBRARY(msg_send)(&handle, &message);
    }
    int request(cwmp_message_handle& handle, cwmp_message& message, int seconds = 5) {
        return FROM_LIBRARY(msg_sendAndGetReplyWithTimeout)(&handle, &message, seconds);
    }
    static int reply_addresses() {
        int count = 0;
        for (const auto& entry : std::filesystem::directory_iterator("/var"))
            count += entry.path().filename().string().starts_with("tmp_");
        return count;
    }

  private:
    std::deque<cwmp_message_handle> handles_;
    std::thread server_;
};

TEST_F(MessageChannel, EachClientGetsItsOwnWholeReplies) {
    serve();
    std::vector<std::jthread> clients;
    for (const uint8_t number : std::initializer_list<uint8_t>{10, 20}) {
        clients.emplace_back([this, number, &handle = client()] {
            for (int i = 0; i < 50; ++i) {
                cwmp_message message = {.type = kType, .payload = {number}};
                message.payload[CWMP_MESSAGE_PAYLOAD - 1] = 77;
                EXPECT_EQ(request(handle, message), 0);
                EXPECT_EQ(message.type, kType);
                EXPECT_EQ(message.payload[0], number + 1);
                EXPECT_EQ(message.payload[CWMP_MESSAGE_PAYLOAD - 1], 77);
            }
        });
    }
    clients.clear();
    EXPECT_EQ(reply_addresses(), 0);
}

TEST_F(MessageChannel, ARequestWithoutReplyEndsInTimeAndLeavesTheHandleUsable) {
    serve();
    auto& handle = client();
    cwmp_message message = {.type = kUnanswered, .payload = {}};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    const auto start = std::time(nullptr);
    EXPECT_EQ(request(handle, message, 1), -1);
    EXPECT_LE(std::time(nullptr) - start, 3);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "pid " + std::to_string(getpid()) + " recvfrom error\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "recvfrom: Resource temporarily unavailable\n");
    EXPECT_EQ(reply_addresses(), 0);
    message.type = kType;
    EXPECT_EQ(request(handle, message), 0);
    handle.peer.sun_family = AF_INET;
    EXPECT_EQ(request(handle, message), -1);
    EXPECT_EQ(reply_addresses(), 0);
    EXPECT_EQ(FROM_LIBRARY(msg_cleanup)(&handle), 0);
    EXPECT_EQ(FROM_LIBRARY(msg_cleanup)(&handle), -1);
}

TEST_F(MessageChannel, ASocketFileLeftBehindIsReplaced) {
    close(std::exchange(server().descriptor, -1));
    ASSERT_TRUE(exists("/var/tmp/40"));
    auto& sender = client();
    EXPECT_EQ(send(sender, kType), -1);
    auto& receiver = server();
    EXPECT_EQ(fcntl(receiver.descriptor, F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(send(sender, kType), 0);
    cwmp_message received = {};
    EXPECT_EQ(FROM_LIBRARY(msg_recv)(&receiver, &received), 0);
    EXPECT_EQ(received.payload[0], 5);
    EXPECT_EQ(send(receiver, kType), -1) << "the sender has no address";
    rename("/var/tmp", "/var/moved");
    EXPECT_EQ(FROM_LIBRARY(msg_srvInit)(kServer, &sender), -1);
    rename("/var/moved", "/var/tmp");
}

TEST_F(MessageChannel, SendsAreRepeatedAsOftenAsTheirFailureAllows) {
    struct Row {
        uint32_t type;
        std::deque<int> failures;
        std::size_t attempts;
        int unbound_lines;
        int last_error;  // the result is -1 if there is one
    };
    const std::deque<int> unbound(20, ENOENT), refused(20, ECONNREFUSED), interrupted(6, EINTR),
        both = {ENOENT, ECONNREFUSED, ENOENT, ECONNREFUSED, ENOENT, ENOENT};
    auto& handle = client();
    for (const Row& row : std::vector<Row>{{kType, unbound, 5, 5, ENOENT},
                                           {1, unbound, 1, 1, ENOENT},
                                           {kType, refused, 3, 0, ECONNREFUSED},
                                           {kType, both, 7, 4, 0},
                                           {kType, interrupted, 7, 0, 0},
                                           {kType, {EMSGSIZE}, 1, 0, EMSGSIZE},
                                           {kAtOnce, {EAGAIN}, 1, 0, EAGAIN}}) {
        SCOPED_TRACE(std::to_string(row.type) + " " + testing::PrintToString(row.failures));
        const std::string what = "pid " + std::to_string(getpid()) + " send " + std::to_string(row.type) + " error";
        std::string lines, reasons;
        for (int i = 0; i < row.unbound_lines; ++i, reasons += "sendto: No such file or directory\n")
            lines += what + "\n";
        if (row.last_error != 0) {
            lines += what + ", errno is " + std::to_string(row.last_error) + "\n";
            reasons += std::string("sendto: ") + std::strerror(row.last_error) + "\n";
        }
        failures = row.failures;
        sends.clear();
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        watched = true;
        EXPECT_EQ(send(handle, row.type), row.last_error == 0 ? 0 : -1);
        watched = false;
        EXPECT_EQ(testing::internal::GetCapturedStdout(), lines);
        EXPECT_EQ(testing::internal::GetCapturedStderr(), reasons);
        EXPECT_EQ(sends, std::vector<int>(row.attempts, row.type == kAtOnce ? MSG_DONTWAIT : 0));
    }
}

TEST_F(MessageChannel, OneShotSendsAre520BytesAndReportOnlyAMissingSocket) {
    cwmp_message_handle handle = {};
    cwmp_message message = {.type = 1, .payload = {0xAB}};
    EXPECT_EQ(FROM_LIBRARY(msg_connCliAndSend)(kServer, &handle, &message), 0) << "nobody listens";
    auto& receiver = server();
    EXPECT_EQ(FROM_LIBRARY(msg_connCliAndSend)(kServer, &handle, &message), 0);
    unsigned char bytes[600] = {};
    EXPECT_EQ(recv(receiver.descriptor, bytes, sizeof bytes, MSG_DONTWAIT), 520);
    EXPECT_EQ(std::memcmp(bytes, "\x01\0\0\0\xAB", 5), 0);
    world("show output");
    EXPECT_EQ(told("starved call msg_connCliAndSend 40 ?200 ?520"),
              "-1 \\xff\\xff\\xff\\xffouched) (untouched) | > Init 40 msg client error\\n");
}

}  // namespace
