/*
 * The message channel: datagrams of fixed size between local processes.
 *
 * A process that receives is known by a small number; its socket is /var/tmp/<number>. The management agent
 * has the number 17. A background job of the library that has finished sends the agent
 * CWMP_MESSAGE_DIAGNOSTICS_COMPLETE, so that it can report the completion to the ACS:
 *
 *     struct cwmp_message_handle handle = {0};
 *     struct cwmp_message message;
 *     if (msg_init(&handle) == 0 && msg_srvInit(CWMP_AGENT_IDENTIFIER, &handle) == 0) {
 *         while (msg_recv(&handle, &message) == 0) ...
 *     }
 *
 * Result of all functions: 0 done, -1 failure, reported with perror and not in the library's log. Handle and
 * message are the caller's; a null pointer is a programming error and ends the process with an assertion. A
 * handle belongs to one thread.
 */
#ifndef CWMP_MESSAGE_CHANNEL_H
#define CWMP_MESSAGE_CHANNEL_H

#include <stdint.h>
#include <sys/un.h>

#include "cwmp/export.h"
#include "cwmp/layout.h"

#ifdef __cplusplus
extern "C" {
#endif

#define CWMP_AGENT_IDENTIFIER 17

enum cwmp_message_type {
    CWMP_MESSAGE_IF_BOUND = 1,                /* given up at once when the receiver has no socket */
    CWMP_MESSAGE_WITHOUT_BLOCKING = 2000,     /* given up at once when the receiver's queue is full */
    CWMP_MESSAGE_DIAGNOSTICS_COMPLETE = 4207, /* no payload */
};

/* Zero-fill before first use. */
struct cwmp_message_handle {
    int32_t descriptor;
    struct sockaddr_un local;
    struct sockaddr_un peer; /* where the next message goes */
};
CWMP_LAYOUT(sizeof(struct cwmp_message_handle) == 224 && offsetof(struct cwmp_message_handle, local) == 4 &&
            offsetof(struct cwmp_message_handle, peer) == 114);

#define CWMP_MESSAGE_PAYLOAD 516

/* What travels, byte by byte, in native order. */
struct cwmp_message {
    uint32_t type;
    uint8_t payload[CWMP_MESSAGE_PAYLOAD]; /* defined by the type; sent as it stands */
};
CWMP_LAYOUT(sizeof(struct cwmp_message) == 520 && offsetof(struct cwmp_message, payload) == 4);

/* Makes the handle's socket, closed on exec. */
CWMP_EXPORT int msg_init(struct cwmp_message_handle* handle);

/* Binds the handle to an identifier, so that it receives; a socket file left behind by another process is
 * removed first. */
CWMP_EXPORT int msg_srvInit(int identifier, struct cwmp_message_handle* handle);

/* Makes an identifier the handle's peer. Always 0. */
CWMP_EXPORT int msg_connSrv(int identifier, struct cwmp_message_handle* handle);

/* Waits for one message. Its sender becomes the peer: the next msg_send answers it. */
CWMP_EXPORT int msg_recv(struct cwmp_message_handle* handle, struct cwmp_message* message);

/* Sends a message to the peer. A receiver that is not bound yet is tried five times, 10 ms apart, and one
 * that refuses three times. Waits while the receiver's queue is full. A failure is also a line on standard
 * output.
 */
CWMP_EXPORT int msg_send(struct cwmp_message_handle* handle, const struct cwmp_message* message);

/* Closes the handle's socket. */
CWMP_EXPORT int msg_cleanup(struct cwmp_message_handle* handle);

/* One message to an identifier, with a socket of its own. 0 once there was a socket, whether or not the
 * message could be sent. */
CWMP_EXPORT int msg_connCliAndSend(int identifier, struct cwmp_message_handle* handle,
                                   const struct cwmp_message* message);

/*
 * Sends a request to the peer and waits at most so many seconds (0: for ever) for its reply, which replaces
 * the message. Waits without limit for a peer that is not bound yet. Afterwards the handle has a fresh socket
 * and the same peer, whatever the result, except when no address for the reply could be made.
 */
CWMP_EXPORT int msg_sendAndGetReplyWithTimeout(struct cwmp_message_handle* handle, struct cwmp_message* message,
                                               int seconds);

#ifdef __cplusplus
}
#endif

#endif
