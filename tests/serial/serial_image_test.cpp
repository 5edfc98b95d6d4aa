// A real image run by the runtime opens a pseudo-terminal as a Serial,
// waits for four bytes and sends them back, calling the exports by name as
// compiled code does.
#include "pty_peer.h"

#include "serial/serial_record.h"
#include "support/image_builder.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <termios.h>
#include <unistd.h>

namespace kelp::test {
namespace {

TEST(SerialFromAnImage, EchoesWhatTheFarEndSends) {
    Pty pty;
    termios raw{};
    tcgetattr(pty.slave, &raw);
    cfmakeraw(&raw); // no echo by the terminal itself before the program opens it
    tcsetattr(pty.slave, TCSANOW, &raw);
    ASSERT_EQ(write(pty.master, "ping", 4), 4);

    ImageBuilder b;
    EnterSaving(b, {Reg::RBX, Reg::R12});
    NewObjectOf(b, "Serial");
    b.MovReg(Reg::RBX, Reg::RAX);
    // Serial.SerialPort = System.SerialPort(path); Serial.Baud = Baud9600
    b.MovImm(Reg::RDI, 0);
    b.LoadString(Reg::RSI, pty.path);
    b.CallImport("getSerialPortByPath");
    b.MovReg(Reg::R12, Reg::RAX);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, offsetof(SerialRecord, serialPort));
    b.MovReg(Reg::RDX, Reg::R12);
    b.CallImport("objSetter");
    UnlockObject(b, Reg::R12);
    b.MovReg(Reg::RDI, Reg::RBX);
    b.MovImm(Reg::RSI, offsetof(SerialRecord, baud));
    b.MovImm(Reg::RDX, 8);
    b.CallImport("intSetter");
    CallWith(b, "serialOpen", {Reg::RBX});

    // Up to 500 passes of 10 ms until four bytes are in.
    b.MovImm(Reg::R12, 500);
    const uint32_t top = static_cast<uint32_t>(b.Here());
    b.AddImm(Reg::R12, -1);
    b.CompareImm(Reg::R12, 0);
    const uint32_t out = b.Jump(ImageBuilder::When::Equal);
    b.MovImm(Reg::RDI, 10000);
    b.CallSoftImport("usleep", "libc.so.6");
    CallWith(b, "serialTick", {Reg::RBX});
    b.MovImm(Reg::RSI, 0);
    CallWith(b, "SerialBytesAvailable", {Reg::RBX});
    b.CompareImm(Reg::RAX, 4);
    b.SetJumpTarget(b.Jump(ImageBuilder::When::NotEqual), top);
    b.SetJumpTarget(out, static_cast<uint32_t>(b.Here()));

    b.MovImm(Reg::RSI, 0);
    CallWith(b, "serialReadAll", {Reg::RBX});
    b.MovReg(Reg::R12, Reg::RAX);
    b.PutsString(Reg::R12);
    CallWith(b, "serialWrite", {Reg::RBX, Reg::R12});
    CallWith(b, "serialXmitWait", {Reg::RBX});
    CallWith(b, "RuntimeUnlockString", {Reg::R12});
    UnlockObject(b, Reg::RBX);
    LeaveRestoring(b, {Reg::RBX, Reg::R12});

    RunResult result = RunAppended(b.Build());
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "ping\n");
    EXPECT_EQ(pty.ReadMaster(4, 2000), "ping");
}

} // namespace
} // namespace kelp::test
