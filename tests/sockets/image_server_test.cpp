// A program on the runtime, built as an image and run through the runtime's
// executable, listens on a ServerSocket, answers curl once and quits.
#include "sockets/socket_kit.h"
#include "support/image_builder.h"

#include <cstring>
#include <thread>

namespace kelp::test {
namespace {

void PatchAddress(ImageBuilder &b, size_t at, uint64_t codeOffset) {
    std::memcpy(b.Code().data() + at, &codeOffset, sizeof codeOffset);
}

// Installs the handler whose code offset is patched in later; answers the
// place of the hole.
size_t InstallHandler(ImageBuilder &b, Reg object, const char *event) {
    b.MovReg(Reg::RDI, object);
    b.LoadString(Reg::RSI, event);
    b.LoadCodeAddress(Reg::RDX, 0);
    size_t hole = b.Here() - 8;
    b.CallImport("RuntimeInstallInstanceEventHandler");
    return hole;
}

image::Segments ServerImage() {
    ImageBuilder b;
    const uint32_t format = b.AddCString("%d\n");
    // Entry: a ServerSocket on a port of the system's choice, printed, then
    // the loop until the request is answered.
    EnterSaving(b, {Reg::RBX, Reg::R12});
    b.CallImport("RuntimeInit");
    NewObjectOf(b, "ServerSocket");
    b.MovReg(Reg::RBX, Reg::RAX);
    size_t addSocketHole = InstallHandler(b, Reg::RBX, "AddSocket");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.CallImport("ServerSocketListen");
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("ServerSocketPortGetter");
    b.MovReg(Reg::RSI, Reg::RAX);
    b.LoadDataAddress(Reg::RDI, format);
    b.MovImm(Reg::RAX, 0);
    b.CallSoftImport("printf", "libc.so.6");
    b.MovImm(Reg::RDI, 0);
    b.CallSoftImport("fflush", "libc.so.6");
    b.CallImport("RuntimeRun");
    UnlockObject(b, Reg::RBX);
    LeaveRestoring(b, {Reg::RBX, Reg::R12});
    // AddSocket: a TCPSocket that answers what comes.
    const uint32_t addSocket = uint32_t(b.Here());
    EnterSaving(b, {Reg::RBX, Reg::R12});
    NewObjectOf(b, "TCPSocket");
    b.MovReg(Reg::RBX, Reg::RAX);
    size_t dataHole = InstallHandler(b, Reg::RBX, "DataAvailable");
    b.MovReg(Reg::RAX, Reg::RBX);
    LeaveRestoring(b, {Reg::RBX, Reg::R12});
    // DataAvailable: read the request, answer, flush, close, quit.
    const uint32_t data = uint32_t(b.Here());
    EnterSaving(b, {Reg::RBX, Reg::R12});
    b.MovReg(Reg::RBX, Reg::RDI);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("SocketReadAll");
    CallWith(b, "RuntimeUnlockString", {Reg::RAX});
    b.MovReg(Reg::RDI, Reg::RBX);
    b.LoadString(Reg::RSI, "HTTP/1.0 200 OK\r\nContent-Length: 16\r\n\r\nserved by image\n");
    b.CallImport("SocketWrite");
    CallWith(b, "TCPSocketFlush", {Reg::RBX});
    CallWith(b, "socketClose", {Reg::RBX});
    b.MovImm(Reg::RDI, 0);
    b.MovImm(Reg::RSI, 0);
    b.CallImport("ApplicationQuit");
    LeaveRestoring(b, {Reg::RBX, Reg::R12});
    PatchAddress(b, addSocketHole, addSocket);
    PatchAddress(b, dataHole, data);
    return b.Build();
}

TEST(SocketsInAnImage, AServerSocketAnswersCurlAndTheProgramEnds) {
    TempDir dir;
    const std::string program = dir / "server";
    ASSERT_TRUE(WriteAppended(ServerImage(), program));
    Peer server({program});
    std::string port = server.Line();
    ASSERT_FALSE(port.empty());
    Peer curl({"curl", "-s", "--max-time", "10", "http://127.0.0.1:" + port + "/question"});
    for (int i = 0; i < 1000 && !(curl.Done() && server.Done()); ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(10));
    EXPECT_EQ(curl.Output(), "served by image\n");
    EXPECT_TRUE(server.Done()) << "the program did not end after answering";
}

} // namespace
} // namespace kelp::test
