// Socket figures on loopback: the echo round trip of a TCPSocket driven by
// the run loop against the same echo done with GLib's GSocket, the
// throughput of a 1 GiB send, accepts per second of a ServerSocket's pool,
// and the processor an idle program with 1,000 open connections uses.
// The far end of every figure is the same plain echo or sink thread.
#include "objects/definitions.h"
#include "runloop/main_loop.h"
#include "strings/kstring.h"

#include "kelp/kelp.h"
#include "main/wiring_table.h"

#include <gio/gio.h>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

using Clock = std::chrono::steady_clock;

namespace {

constexpr int kRoundTrips = 20000;
constexpr size_t kMessage = 64;
constexpr long long kTransfer = 1LL << 30;

double Seconds(Clock::time_point since) {
    return std::chrono::duration<double>(Clock::now() - since).count();
}

double CpuSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_utime.tv_sec + usage.ru_stime.tv_sec +
           (usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
}

int ListeningSocket(int *port) {
    int fd = socket(AF_INET, SOCK_STREAM, 0);
    sockaddr_in a{};
    a.sin_family = AF_INET;
    a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    bind(fd, reinterpret_cast<sockaddr *>(&a), sizeof a);
    listen(fd, 4096);
    socklen_t length = sizeof a;
    getsockname(fd, reinterpret_cast<sockaddr *>(&a), &length);
    *port = ntohs(a.sin_port);
    return fd;
}

// One thread that echoes (or only drains) every connection it accepts.
class Far {
public:
    explicit Far(bool echo) : mEcho(echo) {
        mListen = ListeningSocket(&mPort);
        mThread = std::thread([this] { Run(); });
    }
    ~Far() {
        mStop = true;
        mThread.join();
        close(mListen);
    }
    int Port() const { return mPort; }

private:
    void Run() {
        std::vector<pollfd> fds{{mListen, POLLIN, 0}};
        std::vector<char> buffer(1 << 20);
        while (!mStop) {
            if (poll(fds.data(), fds.size(), 50) <= 0)
                continue;
            if (fds[0].revents & POLLIN) {
                int c = accept(fds[0].fd, nullptr, nullptr);
                int one = 1;
                setsockopt(c, IPPROTO_TCP, TCP_NODELAY, &one, sizeof one);
                fds.push_back({c, POLLIN, 0});
            }
            for (size_t i = 1; i < fds.size(); ++i) {
                if (!(fds[i].revents & (POLLIN | POLLHUP | POLLERR)))
                    continue;
                ssize_t n = read(fds[i].fd, buffer.data(), buffer.size());
                if (n <= 0) {
                    close(fds[i].fd);
                    fds.erase(fds.begin() + static_cast<long>(i--));
                } else if (mEcho) {
                    for (ssize_t sent = 0; sent < n;)
                        sent += std::max<ssize_t>(0, write(fds[i].fd, buffer.data() + sent,
                                                           static_cast<size_t>(n - sent)));
                }
            }
        }
        for (size_t i = 1; i < fds.size(); ++i)
            close(fds[i].fd);
    }
    bool mEcho;
    int mListen = -1, mPort = 0;
    std::atomic<bool> mStop{false};
    std::thread mThread;
};

KelpString Text(const std::string &text) {
    return kelp::string::FromBytes(text.data(), static_cast<long>(text.size()), kEncodingASCII)
        .ExtractStringStorage();
}

RuntimeObject *NewOf(const char *name) {
    KelpString className = Text(name);
    RuntimeObject *object = RuntimeNewObject(RuntimeLookupClass(className));
    RuntimeUnlockString(className);
    return object;
}

RuntimeObject *Connected(int port) {
    RuntimeObject *socket = NewOf("TCPSocket");
    socketDirectConnect(socket, Text("127.0.0.1"), port);
    while (!SocketIsConnected(socket, 0))
        kelp::MainLoopStep(true);
    return socket;
}

void Report(const char *what, std::vector<double> &micros) {
    std::sort(micros.begin(), micros.end());
    std::printf("%-34s p50 %7.1f us  p99 %7.1f us\n", what, micros[micros.size() / 2],
                micros[micros.size() * 99 / 100]);
}

std::vector<double> KelpRoundTrips(int port) {
    RuntimeObject *socket = Connected(port);
    KelpString message = Text(std::string(kMessage, 'm'));
    std::vector<double> micros;
    for (int i = 0; i < kRoundTrips; ++i) {
        auto start = Clock::now();
        SocketWrite(socket, message);
        while (SocketBytesAvailable(socket, 0) < static_cast<int32_t>(kMessage))
            kelp::MainLoopStep(true);
        RuntimeUnlockString(SocketReadAll(socket, nullptr));
        micros.push_back(Seconds(start) * 1e6);
    }
    RuntimeUnlockString(message);
    socketClose(socket);
    RuntimeUnlockObject(socket);
    return micros;
}

GSocket *GConnected(int port) {
    GSocket *socket =
        g_socket_new(G_SOCKET_FAMILY_IPV4, G_SOCKET_TYPE_STREAM, G_SOCKET_PROTOCOL_TCP, nullptr);
    GInetAddress *loopback = g_inet_address_new_loopback(G_SOCKET_FAMILY_IPV4);
    GSocketAddress *address = g_inet_socket_address_new(loopback, static_cast<guint16>(port));
    g_socket_connect(socket, address, nullptr, nullptr);
    g_object_unref(address);
    g_object_unref(loopback);
    return socket;
}

std::vector<double> GlibRoundTrips(int port) {
    GSocket *socket = GConnected(port);
    std::string message(kMessage, 'm');
    char buffer[kMessage];
    std::vector<double> micros;
    for (int i = 0; i < kRoundTrips; ++i) {
        auto start = Clock::now();
        g_socket_send(socket, message.data(), message.size(), nullptr, nullptr);
        size_t got = 0;
        while (got < kMessage) {
            gssize n = g_socket_receive(socket, buffer, kMessage - got, nullptr, nullptr);
            if (n <= 0)
                break;
            got += static_cast<size_t>(n);
        }
        micros.push_back(Seconds(start) * 1e6);
    }
    g_object_unref(socket);
    return micros;
}

double KelpThroughput(int port) {
    RuntimeObject *socket = Connected(port);
    KelpString chunk = Text(std::string(1 << 20, 'd'));
    auto start = Clock::now();
    long long queued = 0;
    while (queued < kTransfer || TCPSocketBytesLeftToSend(socket, 0) > 0) {
        while (queued < kTransfer && TCPSocketBytesLeftToSend(socket, 0) < (8 << 20)) {
            SocketWrite(socket, chunk);
            queued += 1 << 20;
        }
        kelp::MainLoopStep(true);
    }
    double seconds = Seconds(start);
    RuntimeUnlockString(chunk);
    socketClose(socket);
    RuntimeUnlockObject(socket);
    return kTransfer / seconds / 1e6;
}

double GlibThroughput(int port) {
    GSocket *socket = GConnected(port);
    std::string chunk(1 << 20, 'd');
    auto start = Clock::now();
    for (long long sent = 0; sent < kTransfer;) {
        gssize n = g_socket_send(socket, chunk.data(), chunk.size(), nullptr, nullptr);
        if (n <= 0)
            break;
        sent += n;
    }
    double seconds = Seconds(start);
    g_object_unref(socket);
    return kTransfer / seconds / 1e6;
}

int gAccepted = 0;
void OnConnected(RuntimeObject *) { ++gAccepted; }
RuntimeObject *OnAddSocket(RuntimeObject *) {
    RuntimeObject *socket = NewOf("TCPSocket");
    RuntimeInstallInstanceEventHandler(socket, Text("Connected"),
                                       reinterpret_cast<void *>(&OnConnected));
    return socket;
}

double AcceptsPerSecond(int count) {
    RuntimeObject *server = NewOf("ServerSocket");
    RuntimeInstallInstanceEventHandler(server, Text("AddSocket"),
                                       reinterpret_cast<void *>(&OnAddSocket));
    ServerSocketSetMinSockets(server, 0, 64);
    ServerSocketSetMaxSockets(server, 0, count);
    ServerSocketListen(server);
    int port = ServerSocketPortGetter(server, 0);
    // The pool's first sockets are made before the clock starts.
    for (int i = 0; i < 10; ++i)
        kelp::MainLoopStep(false);
    std::thread clients([port, count] {
        sockaddr_in a{};
        a.sin_family = AF_INET;
        a.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        a.sin_port = htons(static_cast<uint16_t>(port));
        for (int i = 0; i < count; ++i) {
            int fd = socket(AF_INET, SOCK_STREAM, 0);
            connect(fd, reinterpret_cast<sockaddr *>(&a), sizeof a);
            close(fd);
        }
    });
    auto start = Clock::now();
    while (gAccepted < count && Seconds(start) < 30)
        kelp::MainLoopStep(true);
    double seconds = Seconds(start);
    clients.join();
    ServerSocketClose(server);
    RuntimeUnlockObject(server);
    return gAccepted / seconds;
}

void IdleConnections(int port, int count) {
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    limit.rlim_cur = std::min<rlim_t>(limit.rlim_max, 4096);
    setrlimit(RLIMIT_NOFILE, &limit);
    std::vector<RuntimeObject *> sockets;
    for (int i = 0; i < count; ++i)
        sockets.push_back(Connected(port));
    // A wake-up a second keeps the passes of a quiet program coming.
    guint wake = g_timeout_add(
        1000, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    double cpu = CpuSeconds();
    auto start = Clock::now();
    long passes = 0;
    while (Seconds(start) < 5) {
        kelp::MainLoopStep(true);
        ++passes;
    }
    std::printf("%-34s %5.2f %% of a processor, %ld passes in 5 s\n", "idle, 1,000 connections",
                (CpuSeconds() - cpu) / Seconds(start) * 100, passes);
    g_source_remove(wake);
    for (RuntimeObject *s : sockets) {
        socketClose(s);
        RuntimeUnlockObject(s);
    }
}

} // namespace

int main() {
    kelp::WireRuntime();
    RuntimeInit();
    RuntimeInitExternalClasses();
    {
        Far echo(true);
        std::vector<double> kelpTrips = KelpRoundTrips(echo.Port());
        std::vector<double> glibTrips = GlibRoundTrips(echo.Port());
        Report("echo round trip, TCPSocket", kelpTrips);
        Report("echo round trip, GSocket", glibTrips);
    }
    {
        Far sink(false);
        std::printf("%-34s %7.0f MB/s\n", "1 GiB send, TCPSocket", KelpThroughput(sink.Port()));
        std::printf("%-34s %7.0f MB/s\n", "1 GiB send, GSocket", GlibThroughput(sink.Port()));
    }
    std::printf("%-34s %7.0f /s\n", "accepts, ServerSocket pool", AcceptsPerSecond(5000));
    {
        Far echo(true);
        IdleConnections(echo.Port(), 1000);
    }
    return 0;
}
