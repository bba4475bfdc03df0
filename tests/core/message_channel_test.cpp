#include "cwmp/message_channel.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <deque>
#include <memory>
#include <thread>
#include <utility>

#include "router_test.h"

// What the next sends of the library fail with, 0 for one that goes through, and the flags of the last.
static std::deque<int> failures;
static int sent_flags = 0;

// Stands in for the C library's.
extern "C" ssize_t sendto(int descriptor, const void* data, size_t size, int flags, const sockaddr* to,
                          socklen_t length) {
    if (failures.empty()) return syscall(SYS_sendto, descriptor, data, size, flags, to, length);
    sent_flags = flags;
    errno = failures.front();
    failures.pop_front();
    return errno == 0 ? static_cast<ssize_t>(size) : -1;
}

namespace {

constexpr int kServer = 40;
const std::string kPid = "pid " + std::to_string(getpid());
constexpr uint32_t kType = 3001, kAtOnce = 2000, kUnanswered = 9, kEnd = 10;

// On the heap, where the sanitizers see what the library does with it: the test itself is not instrumented.
auto message_of(uint32_t type, uint8_t first = 0) {
    return std::make_unique<cwmp_message>(cwmp_message{.type = type, .payload = {first}});
}

class MessageChannel : public RouterTest {
  protected:
    void TearDown() override {
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
            const auto message = message_of(0);
            while (FROM_LIBRARY(msg_recv)(&handle, message.get()) == 0 && message->type != kEnd) {
                ++message->payload[0];
                if (message->type != kUnanswered) FROM_LIBRARY(msg_send)(&handle, message.get());
            }
        });
    }

    int send(cwmp_message_handle& to, uint32_t type) { return FROM_LIBRARY(msg_send)(&to, message_of(type, 5).get()); }
    int request(cwmp_message_handle& handle, cwmp_message& message, int seconds = 5) {
        return FROM_LIBRARY(msg_sendAndGetReplyWithTimeout)(&handle, &message, seconds);
    }
    // The call's result, then what it printed on either output.
    static std::string printed(const std::function<int()>& call) {
        testing::internal::CaptureStdout();
        testing::internal::CaptureStderr();
        const std::string result = std::to_string(call()) + ": ";
        return result + testing::internal::GetCapturedStdout() + testing::internal::GetCapturedStderr();
    }
    bool no_reply_address_is_left() { return told("run echo /var/tmp_*").starts_with("/var/tmp_*"); }

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
                const auto message = message_of(kType, number);
                message->payload[CWMP_MESSAGE_PAYLOAD - 1] = 77;
                EXPECT_EQ(request(handle, *message), 0);
                EXPECT_EQ(message->type, kType);
                EXPECT_EQ(message->payload[0], number + 1);
                EXPECT_EQ(message->payload[CWMP_MESSAGE_PAYLOAD - 1], 77);
            }
        });
    }
    clients.clear();
    EXPECT_TRUE(no_reply_address_is_left());
}

TEST_F(MessageChannel, ARequestWithoutReplyEndsInTimeAndLeavesTheHandleUsable) {
    serve();
    auto& handle = client();
    const auto message = message_of(kUnanswered);
    const auto start = std::time(nullptr);
    EXPECT_EQ(printed([&] { return request(handle, *message, 1); }),
              "-1: " + kPid + " recvfrom error\nrecvfrom: Resource temporarily unavailable\n");
    EXPECT_LE(std::time(nullptr) - start, 3);
    message->type = kType;
    EXPECT_EQ(request(handle, *message), 0);
    handle.peer.sun_family = AF_INET;
    EXPECT_EQ(request(handle, *message), -1);
    EXPECT_TRUE(no_reply_address_is_left());
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
    const auto received = message_of(0);
    EXPECT_EQ(FROM_LIBRARY(msg_recv)(&receiver, received.get()), 0);
    EXPECT_EQ(received->payload[0], 5);
    EXPECT_EQ(send(receiver, kType), -1) << "the sender has no address";
    rename("/var/tmp", "/var/moved");
    EXPECT_EQ(FROM_LIBRARY(msg_srvInit)(kServer, &sender), -1);
    rename("/var/moved", "/var/tmp");
}

TEST_F(MessageChannel, SendsAreRepeatedAsOftenAsTheirFailureAllows) {
    const std::deque<int> unbound(20, ENOENT), refused(20, ECONNREFUSED),
        interrupted = {EINTR, EINTR, EINTR, EINTR, EINTR, EINTR, 0},
        both = {ENOENT, ECONNREFUSED, ENOENT, ECONNREFUSED, ENOENT, ENOENT, 0};
    using Row = std::tuple<uint32_t, std::deque<int>, std::size_t>;
    auto& handle = client();
    for (const auto& [type, errors, attempts] :
         {Row{kType, unbound, 5}, Row{1, unbound, 1}, Row{kType, refused, 3}, Row{kType, both, 7},
          Row{kType, interrupted, 7}, Row{kType, {EMSGSIZE}, 1}, Row{kAtOnce, {EAGAIN}, 1}}) {
        const std::string what = kPid + " send " + std::to_string(type) + " error";
        const int last = errors[attempts - 1];
        std::string lines = last == 0 ? "0: " : "-1: ", reasons;
        for (std::size_t i = 0; i < attempts; ++i) {
            if (errors[i] != ENOENT) continue;
            lines += what + "\n";
            reasons += "sendto: No such file or directory\n";
        }
        if (last != 0) {
            lines += what + ", errno is " + std::to_string(last) + "\n";
            reasons += std::string("sendto: ") + std::strerror(last) + "\n";
        }
        failures = errors;
        EXPECT_EQ(printed([&, type = type] { return send(handle, type); }), lines + reasons);
        EXPECT_EQ(errors.size() - failures.size(), attempts) << lines;
        EXPECT_EQ(sent_flags, type == kAtOnce ? MSG_DONTWAIT : 0);
        failures.clear();
    }
}

TEST_F(MessageChannel, OneShotSendsReportOnlyAMissingSocket) {
    cwmp_message_handle handle = {};
    EXPECT_EQ(FROM_LIBRARY(msg_connCliAndSend)(kServer, &handle, message_of(1).get()), 0) << "nobody listens";
    world("show output");
    EXPECT_EQ(told("starved call msg_connCliAndSend 40 ?200 ?520"),
              "-1 \\xff\\xff\\xff\\xffouched) (untouched) | > Init 40 msg client error\\n");
}

}  // namespace
