// IPCSocket over Unix-domain paths, with socat and python3 on the other end.
#include "sockets/socket_kit.h"

#include <sys/stat.h>

namespace kelp {
namespace {

using test::EventLog;
using test::Peer;
using test::PumpUntil;

std::string gIPCReceived;
std::string gReplyOnData;

void IPCConnected(RuntimeObject *) { EventLog::All().push_back("Connected"); }
void IPCData(RuntimeObject *self) {
    EventLog::All().push_back("Data");
    gIPCReceived += test::TextAndRelease(IPCSocketReadAll(self, nullptr));
    if (!gReplyOnData.empty())
        IPCSocketWrite(self, test::MakeText(gReplyOnData.c_str()));
}
void IPCError(RuntimeObject *self) {
    EventLog::All().push_back("Error " + std::to_string(IPCSocketLastErrorGetter(self, 0)));
}

RuntimeObject *NewIPC(const std::string &path) {
    static RuntimeClass *klass = [] {
        RuntimeClass *k = test::MakeSubclass("IPCSocket", "LoggingIPC");
        test::SetEventHandler(k, "Connected", reinterpret_cast<void *>(&IPCConnected));
        test::SetEventHandler(k, "DataAvailable", reinterpret_cast<void *>(&IPCData));
        test::SetEventHandler(k, "Error", reinterpret_cast<void *>(&IPCError));
        return k;
    }();
    RuntimeObject *ipc = RuntimeNewObject(klass);
    stringSetter(ipc, KELP_OBJECT_FIELDS_OFFSET + sizeof(void *), test::MakeText(path.c_str()));
    return ipc;
}

bool Exists(const std::string &path) {
    struct stat info;
    return stat(path.c_str(), &info) == 0;
}

std::string TempPath(const char *name) {
    return "/tmp/kelp-ipc-" + std::to_string(getpid()) + "-" + name;
}

TEST(IPCSocket, ServesSocatAndTalksToAPythonServer) {
    EventLog::All().clear();
    gIPCReceived.clear();
    gReplyOnData.clear();
    // Ours listens; socat connects, sends and hangs up.
    std::string path = TempPath("listen");
    RuntimeObject *server = NewIPC(path);
    IPCSocketListen(server);
    ASSERT_TRUE(Exists(path));
    Peer socat({"sh", "-c", "printf hello | socat - UNIX-CONNECT:" + path});
    ASSERT_TRUE(PumpUntil(
        [] { return !EventLog::All().empty() && EventLog::All().back().rfind("Error", 0) == 0; }));
    EXPECT_EQ(test::Joined(EventLog::Folded()), "Connected, Data, Error 102");
    EXPECT_EQ(gIPCReceived, "hello");
    EXPECT_FALSE(Exists(path)) << "the listener removes the file it made";
    RuntimeUnlockObject(server);

    // A python3 server; ours connects, is answered, and hangs up: the
    // server's file stays.
    const char echo[] = R"(
import os, socket, sys
s = socket.socket(socket.AF_UNIX); s.bind(sys.argv[1]); s.listen(1)
print('ready', flush=True)
c, _ = s.accept(); c.sendall(c.recv(100).upper())
c.recv(100)
print(os.path.exists(sys.argv[1]), flush=True)
os.unlink(sys.argv[1])
)";
    EventLog::All().clear();
    gIPCReceived.clear();
    path = TempPath("connect");
    Peer python(Peer::Python(echo, {path}));
    ASSERT_EQ(python.Line(), "ready");
    RuntimeObject *client = NewIPC(path);
    gReplyOnData.clear();
    IPCSocketConnect(client);
    IPCSocketWrite(client, test::MakeText("shout"));
    ASSERT_TRUE(PumpUntil([] { return gIPCReceived == "SHOUT"; }));
    IPCSocketClose(client);
    ASSERT_TRUE(PumpUntil([&] { return python.Done(); }));
    EXPECT_EQ(python.Output(), "True\n");
    EXPECT_EQ(test::Joined(EventLog::Folded()), "Connected, Data");
    RuntimeUnlockObject(client);
}

TEST(IPCSocket, PathsThatCannotWorkGiveTheirErrors) {
    struct Case {
        const char *name;
        std::string path;
        void (*start)(RuntimeObject *);
        std::string event;
    };
    const std::string longest(107 - TempPath("").size(), 'p');
    const Case cases[] = {
        {"empty path, Connect", "", &IPCSocketConnect, "Error 106"},
        {"empty path, Listen", "", &IPCSocketListen, "Error 106"},
        {"108 bytes, Listen", TempPath(longest.c_str()) + "x", &IPCSocketListen, "Error 36"},
        {"108 bytes, Connect", TempPath(longest.c_str()) + "x", &IPCSocketConnect, "Error 36"},
        {"nobody listening", TempPath("absent"), &IPCSocketConnect, "Error 103"},
    };
    for (const Case &c : cases) {
        SCOPED_TRACE(c.name);
        EventLog::All().clear();
        RuntimeObject *ipc = NewIPC(c.path);
        c.start(ipc);
        PumpUntil([] { return !EventLog::All().empty(); }, 2000);
        EXPECT_EQ(test::Joined(EventLog::All()), c.event);
        EXPECT_EQ(IPCSocketHadError(ipc), 1);
        RuntimeUnlockObject(ipc);
    }
    // 107 bytes is the longest that fits, and works.
    EventLog::All().clear();
    std::string path = TempPath(longest.c_str());
    ASSERT_EQ(path.size(), 107u);
    RuntimeObject *ipc = NewIPC(path);
    IPCSocketListen(ipc);
    EXPECT_TRUE(Exists(path));
    EXPECT_TRUE(EventLog::All().empty());
    IPCSocketClose(ipc);
    EXPECT_FALSE(Exists(path));
    RuntimeUnlockObject(ipc);
}

} // namespace
} // namespace kelp
