#pragma once
// The system calls the socket layer makes, reached through one table that
// is filled once when the layer starts.  Tests swap single entries to make
// the kernel fail in ways a loopback peer can't.
#include <sys/socket.h>
#include <sys/types.h>

#include <poll.h>

struct ifaddrs;
struct addrinfo;

namespace kelp {

struct SocketCalls {
    int (*socket)(int, int, int);
    int (*connect)(int, const sockaddr *, socklen_t);
    int (*bind)(int, const sockaddr *, socklen_t);
    int (*listen)(int, int);
    int (*accept)(int, sockaddr *, socklen_t *);
    int (*getpeername)(int, sockaddr *, socklen_t *);
    int (*getsockname)(int, sockaddr *, socklen_t *);
    int (*getsockopt)(int, int, int, void *, socklen_t *);
    int (*setsockopt)(int, int, int, const void *, socklen_t);
    ssize_t (*send)(int, const void *, size_t, int);
    ssize_t (*recv)(int, void *, size_t, int);
    ssize_t (*sendto)(int, const void *, size_t, int, const sockaddr *, socklen_t);
    ssize_t (*recvfrom)(int, void *, size_t, int, sockaddr *, socklen_t *);
    int (*poll)(pollfd *, nfds_t, int);
    int (*close)(int);
    int (*fcntl)(int, int, ...);
    int (*ioctl)(int, unsigned long, ...);
    int (*unlink)(const char *);
    int (*getifaddrs)(ifaddrs **);
    void (*freeifaddrs)(ifaddrs *);
    int (*getaddrinfo)(const char *, const char *, const addrinfo *, addrinfo **);
    void (*freeaddrinfo)(addrinfo *);
};

// The table; valid once SocketLayerStart has run (it binds on first use).
SocketCalls &Sys();

} // namespace kelp
