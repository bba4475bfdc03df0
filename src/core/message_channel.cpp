#include "cwmp/message_channel.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/time.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "core/assertion.h"
#include "core/text.h"

namespace {

constexpr const char* kUnit = "os_msgLinux";
constexpr useconds_t kUntilBound = 10 * 1000;

void require(const cwmp_message_handle* handle) { CONTRACT_ASSERT(kUnit, handle != nullptr, "pMsgFd != NULL"); }

void require(const cwmp_message_handle* handle, const cwmp_message* message) {
    CONTRACT_ASSERT(kUnit, handle != nullptr && message != nullptr, "(pMsgFd != NULL) && (pMsgBuff != NULL)");
}

sockaddr_un address_of(const char* path) {
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path, sizeof address.sun_path - 1);
    return address;
}

sockaddr_un address_of(int identifier) { return address_of(cwmp::formatted("/var/tmp/%d", identifier).c_str()); }

// The kernel is told the path without its terminator.
socklen_t length_of(const sockaddr_un& address) {
    return static_cast<socklen_t>(offsetof(sockaddr_un, sun_path) + strnlen(address.sun_path, sizeof address.sun_path));
}

const sockaddr* generic(const sockaddr_un& address) { return reinterpret_cast<const sockaddr*>(&address); }

int new_socket() { return socket(AF_UNIX, SOCK_DGRAM, 0); }

// Whether a call succeeded; standard error is told why not.
bool succeeded(const char* call, bool success) {
    if (!success) std::perror(call);
    return success;
}

bool bind_to_local(const cwmp_message_handle& handle) {
    return succeeded("bind", bind(handle.descriptor, generic(handle.local), length_of(handle.local)) == 0);
}

// 0, or why the message was not sent: errno, taken before anything is printed.
int send_once(const cwmp_message_handle& handle, const cwmp_message& message, int flags) {
    const ssize_t sent =
        sendto(handle.descriptor, &message, sizeof message, flags, generic(handle.peer), length_of(handle.peer));
    return sent < 0 ? errno : 0;
}

// As the lines on standard output show it.
int type_of(const cwmp_message& message) { return static_cast<int>(message.type); }

void report(const char* call, int error) {
    errno = error;
    std::perror(call);
}

int send_to_bound(const cwmp_message_handle& handle, const cwmp_message& message) {
    int error = 0;
    while ((error = send_once(handle, message, 0)) == ENOENT) {
        usleep(kUntilBound);
        report("sendto", error);
        std::printf("send %d error %d, %d\n", type_of(message), getpid(), -1);
    }
    if (error != 0) report("sendto", error);
    return error;
}

bool set_receive_timeout(int descriptor, int seconds) {
    timeval timeout = {};
    timeout.tv_sec = seconds;
    const int result = setsockopt(descriptor, SOL_SOCKET, SO_RCVTIMEO, &timeout, sizeof timeout);
    return succeeded("setsockopt", result == 0);
}

bool receive_reply(int descriptor, cwmp_message& message) {
    if (succeeded("recvfrom", recvfrom(descriptor, &message, sizeof message, 0, nullptr, nullptr) >= 0)) return true;
    std::printf("pid %d recvfrom error\n", getpid());
    return false;
}

bool renew_socket(cwmp_message_handle& handle) {
    close(handle.descriptor);
    handle.descriptor = new_socket();
    return succeeded("new socket", handle.descriptor >= 0);
}

}  // namespace

int msg_init(cwmp_message_handle* handle) {
    require(handle);
    handle->descriptor = new_socket();
    if (!succeeded("socket", handle->descriptor >= 0)) return -1;
    if (succeeded("msg fcntl", fcntl(handle->descriptor, F_SETFD, FD_CLOEXEC) == 0)) return 0;
    close(handle->descriptor);
    return -1;
}

int msg_srvInit(int identifier, cwmp_message_handle* handle) {
    require(handle);
    handle->local = address_of(identifier);
    unlink(handle->local.sun_path);
    return bind_to_local(*handle) ? 0 : -1;
}

int msg_connSrv(int identifier, cwmp_message_handle* handle) {
    require(handle);
    handle->peer = address_of(identifier);
    return 0;
}

int msg_recv(cwmp_message_handle* handle, cwmp_message* message) {
    require(handle, message);
    *message = {};
    // A sender without an address must not leave the one before it as the peer.
    sockaddr_un sender = {};
    socklen_t length = sizeof sender;
    const ssize_t received =
        recvfrom(handle->descriptor, message, sizeof *message, 0, reinterpret_cast<sockaddr*>(&sender), &length);
    if (!succeeded("recvfrom", received >= 0)) return -1;
    handle->peer = sender;
    return 0;
}

int msg_send(cwmp_message_handle* handle, const cwmp_message* message) {
    require(handle, message);
    constexpr int kMostUnbound = 5;
    constexpr int kMostRefused = 3;
    const int flags = message->type == CWMP_MESSAGE_WITHOUT_BLOCKING ? MSG_DONTWAIT : 0;
    int error = 0;
    int unbound = 0;
    int refused = 0;
    bool again = true;
    while (again) {
        error = send_once(*handle, *message, flags);
        switch (error) {
            case 0:
                return 0;
            case ENOENT:
                usleep(kUntilBound);
                report("sendto", error);
                std::printf("pid %d send %d error\n", getpid(), type_of(*message));
                again = ++unbound < kMostUnbound && message->type != CWMP_MESSAGE_IF_BOUND;
                break;
            case ECONNREFUSED:
                again = ++refused < kMostRefused;
                break;
            default:
                again = error == EINTR;
        }
    }
    report("sendto", error);
    std::printf("pid %d send %d error, errno is %d\n", getpid(), type_of(*message), error);
    return -1;
}

int msg_cleanup(cwmp_message_handle* handle) {
    require(handle);
    return succeeded("close", close(handle->descriptor) == 0) ? 0 : -1;
}

int msg_connCliAndSend(int identifier, cwmp_message_handle* handle, const cwmp_message* message) {
    require(handle, message);
    if (msg_init(handle) != 0) {
        std::printf("Init %d msg client error\n", identifier);
        return -1;
    }
    if (msg_connSrv(identifier, handle) != 0) {
        std::printf("Connect %d msg client error\n", identifier);
        msg_cleanup(handle);
        return -1;
    }
    msg_send(handle, message);
    msg_cleanup(handle);
    return 0;
}

int msg_sendAndGetReplyWithTimeout(cwmp_message_handle* handle, cwmp_message* message, int seconds) {
    require(handle, message);
    char path[] = "/var/tmp_XXXXXX";
    const int reserved = mkostemp(path, O_CLOEXEC);
    if (!succeeded("mkstemp", reserved >= 0)) return -1;
    handle->local = address_of(path);
    unlink(path);
    if (!bind_to_local(*handle)) {
        close(reserved);
        return -1;
    }
    const bool replied = send_to_bound(*handle, *message) == 0 && set_receive_timeout(handle->descriptor, seconds) &&
                         receive_reply(handle->descriptor, *message);
    set_receive_timeout(handle->descriptor, 0);
    close(reserved);
    unlink(path);
    const bool renewed = renew_socket(*handle);
    return replied && renewed ? 0 : -1;
}
