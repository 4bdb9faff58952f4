/* The local IPC transport: one socket a request, one reply. */
#ifndef PLATFORM_LIPC_H
#define PLATFORM_LIPC_H

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

uint32_t LIPC_SetRuntimeDir(const char* directory);
uint32_t LIPC_SetWaitLimit(uint32_t milliseconds);

int32_t LIPC_Socket(int32_t family, int32_t type, int32_t protocol);
int32_t LIPC_Connect(int32_t fd, const void* address, uint32_t length);
void LIPC_Close(int32_t fd);

int32_t LIPC_ServerOpen(uint16_t endpoint, uint16_t sub_endpoint, uint32_t mode);
int32_t LIPC_ServerAccept(int32_t server_fd, LIPC_PEER* peer);
void LIPC_ServerClose(int32_t server_fd);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif
#endif
