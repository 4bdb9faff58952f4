/* The local IPC transport: one socket a request, one reply.
 *
 * Where the system has the native address family 37, client sockets are of that family. Elsewhere
 * an endpoint is a socket file for sequenced packets, <runtime directory>/lipc-EEEE-SSSS.sock with
 * the endpoint and sub-endpoint in four hexadecimal digits each; the 16-byte address is mapped to
 * it. Messages pass through TLV_Flush and TLV_CreateReceiveMsg with the descriptors of this header,
 * one packet each, up to 256 KiB at least. All descriptors are close-on-exec.
 *
 * An end that is closed, by its owner or by its owner's death, is seen by the other at once: a send
 * fails, a receive ends without a message. */
#ifndef PLATFORM_LIPC_H
#define PLATFORM_LIPC_H

#include <platform/api.h>
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/** Destination of a local IPC connection. */
typedef struct LIPC_ADDRESS {
    uint8_t length;        /* 16 */
    uint8_t family;        /* 37 */
    uint16_t endpoint;     /* host order */
    uint16_t sub_endpoint; /* host order */
    uint8_t zero[10];
} LIPC_ADDRESS; /* 16 bytes */

/** Who is at the other end of an accepted connection, as the kernel tells it. */
typedef struct LIPC_PEER {
    int32_t pid;
    uint32_t uid;
    uint32_t gid;
} LIPC_PEER;

/**
 * Sets the directory of the socket files, for connects and servers from now on.
 * @param directory  borrowed; at most 87 characters. /run/aaad until this is called.
 * @return 0; 0x40010001, and nothing changed, for null, an empty and a longer text.
 * @thread any; takes a lock of its own.
 */
uint32_t LIPC_SetRuntimeDir(const char* directory) PLATFORM_NOEXCEPT;

/**
 * Limits how long one connect, send or receive of this process may wait.
 * @param milliseconds  0 = no limit but the caller's own.
 * @return 0.
 * @thread any; takes no lock.
 */
uint32_t LIPC_SetWaitLimit(uint32_t milliseconds) PLATFORM_NOEXCEPT;

/**
 * Creates a client socket.
 * @param family    37.
 * @param type      2.
 * @param protocol  1.
 * @return descriptor, close with LIPC_Close; -1 with errno EAFNOSUPPORT for any other arguments,
 *         else with the errno of socket(2).
 * @thread any; takes no lock.
 */
int32_t LIPC_Socket(int32_t family, int32_t type, int32_t protocol) PLATFORM_NOEXCEPT;

/**
 * Connects a client socket. A server that is busy is waited for, a minute at most or the limit of
 * the process.
 * @param fd       descriptor from LIPC_Socket.
 * @param address  borrowed; an LIPC_ADDRESS, any alignment.
 * @param length   16.
 * @return 0; -1 with errno EINVAL when `address` is null or its or the given length or its family
 *         is wrong, ENOENT or ECONNREFUSED when nobody serves the endpoint, EACCES when the caller
 *         may not use it, EAGAIN when the wait is over, EINTR after a signal (call again), EISCONN
 *         when the socket is connected, else as connect(2).
 * @thread any; holds no lock while it waits.
 */
int32_t LIPC_Connect(int32_t fd, const void* address, uint32_t length) PLATFORM_NOEXCEPT;

/**
 * Closes a descriptor of LIPC_Socket or LIPC_ServerAccept.
 * @param fd  consumed always; negative is ignored.
 * @thread any; takes no lock.
 */
void LIPC_Close(int32_t fd) PLATFORM_NOEXCEPT;

/**
 * Serves an endpoint: makes the runtime directory (mode 0755; its parent must exist) and the socket
 * file, replacing the file that a dead server left. A lock on the file lipc-EEEE-SSSS.lock beside
 * it lasts as long as the server's process and tells the living from the dead; that file stays.
 * @param endpoint      first identifier of the endpoint.
 * @param sub_endpoint  second identifier of the endpoint.
 * @param mode          permission bits of the socket file; 0666 lets every user connect.
 * @return descriptor that never blocks, readable when a connection waits, close with
 *         LIPC_ServerClose; -1 with errno EADDRINUSE when a living server has the endpoint, EEXIST
 *         when something that is no socket has the file's name, EOPNOTSUPP when the system has the
 *         native family (clients would not come here), else as mkdir(2), open(2), bind(2).
 * @thread any; takes a lock of its own.
 */
int32_t LIPC_ServerOpen(uint16_t endpoint, uint16_t sub_endpoint, uint32_t mode) PLATFORM_NOEXCEPT;

/**
 * Accepts one waiting connection. Never blocks, nor do reads and writes on the new descriptor.
 * @param server_fd  descriptor from LIPC_ServerOpen.
 * @param peer       receives process, user and group that connected, untouched on failure; may be
 *                   null.
 * @return descriptor, close with LIPC_Close; -1 with errno EAGAIN when none waits, else as
 *         accept(2) (EMFILE: the connection goes on waiting).
 * @thread any; takes no lock.
 */
int32_t LIPC_ServerAccept(int32_t server_fd, LIPC_PEER* peer) PLATFORM_NOEXCEPT;

/**
 * Ends a server: connections that wait are dropped, accepted ones live on. Removes the socket file
 * unless another server has replaced it.
 * @param server_fd  consumed always; a descriptor that is no server's is ignored.
 * @thread any; takes a lock of its own.
 */
void LIPC_ServerClose(int32_t server_fd) PLATFORM_NOEXCEPT;

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
