// The settings of every constant, as the far end of a pseudo-terminal sees
// them: once through stty and once through Python's termios module, both
// reading the master side, which answers with the slave's settings.
#include "pty_peer.h"

#include "serial/serial_record.h"
#include "serial/termios_settings.h"
#include "support/language_class.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/serial.h"

#include <gtest/gtest.h>

#include <iterator>
#include <map>
#include <set>
#include <sstream>

namespace kelp::test {
namespace {

// Python's own names and numbers for the flags, printed as name=value.
const char *kReadTermios = R"(
import termios as t
i, o, c, l, isp, osp, cc = t.tcgetattr(0)
speeds = {getattr(t, n): n[1:] for n in dir(t) if n[0] == 'B' and n[1:].isdigit()}
bits = lambda word, flag: int(word & flag != 0)
f = dict(speed=speeds[osp], ispeed=speeds[isp], cread=bits(c, t.CREAD), clocal=bits(c, t.CLOCAL),
    hupcl=bits(c, t.HUPCL), cstopb=bits(c, t.CSTOPB), parodd=bits(c, t.PARODD),
    crtscts=bits(c, t.CRTSCTS), inpck=bits(i, t.INPCK), ixon=bits(i, t.IXON),
    ixoff=bits(i, t.IXOFF), icrnl=bits(i, t.ICRNL), opost=bits(o, t.OPOST), isig=bits(l, t.ISIG),
    icanon=bits(l, t.ICANON), echo=bits(l, t.ECHO), echoe=bits(l, t.ECHOE), min=cc[t.VMIN],
    time=cc[t.VTIME], start=cc[t.VSTART][0], stop=cc[t.VSTOP][0], bit18=(c >> 18) & 1)
print(' '.join('%s=%s' % kv for kv in f.items()))
)";

std::map<std::string, std::string> Pairs(const std::string &text) {
    std::map<std::string, std::string> out;
    std::istringstream in(text);
    for (std::string word; in >> word;)
        if (auto eq = word.find('='); eq != std::string::npos)
            out[word.substr(0, eq)] = word.substr(eq + 1);
    return out;
}

// The flags in stty's words ("-parenb", "ixon"), and the speed and timing.
void ExpectStty(const std::string &stty, const std::map<std::string, std::string> &want) {
    std::istringstream in(stty);
    std::set<std::string> words{std::istream_iterator<std::string>(in), {}};
    for (const auto &[key, value] : want) {
        const bool timing = key == "speed" || key == "min" || key == "time";
        const std::string text = key == "speed" ? "speed " + value + " baud;" : key + " = " + value;
        const bool flag =
            !timing && key != "ispeed" && key != "bit18" && key != "start" && key != "stop";
        EXPECT_TRUE(!timing || stty.find(text) != std::string::npos) << text;
        EXPECT_TRUE(!flag || words.count((value == "0" ? "-" : "") + key)) << key;
    }
}

// Every row also leaves the port raw.
const char *kRaw = "cread=1 clocal=1 isig=0 icanon=0 echo=0 echoe=0 opost=0 icrnl=0 min=0 time=0 "
                   "start=17 stop=19 bit18=0 ";

struct Row {
    const char *name;
    int16_t bits, stop, parity;
    int32_t baud;
    bool xon, cts, dtr, leaveDTR;
    const char *expect; // cs and parenb: see below
    int32_t baudAfter;  // what Baud reads once the settings went out
};

TEST(SerialSettings, EveryConstantReadBackFromTheFarEnd) {
    std::vector<Row> rows = {
        {"Bits5", kBits5, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "cs=5 cstopb=0", 8},
        {"StopBits15 is one", kBits5, kStopBits15, kParityNone, 8, 0, 0, 0, 0, "cs=5 cstopb=0", 8},
        {"Bits6", kBits6, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "cs=6", 8},
        {"Bits7", kBits7, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "cs=7", 8},
        {"StopBits2", kBits8, kStopBits2, kParityNone, 8, 0, 0, 0, 0, "cs=8 cstopb=1", 8},
        {"ParityNone", kBits8, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "parenb=0", 8},
        {"ParityOdd", kBits7, kStopBits1, kParityOdd, 8, 0, 0, 0, 0, "parenb=1 parodd=1 inpck=1",
         8},
        {"ParityEven", kBits7, kStopBits1, kParityEven, 8, 0, 0, 0, 0, "parenb=1 parodd=0 inpck=1",
         8},
        {"XON", kBits8, kStopBits1, kParityNone, 8, 1, 0, 0, 0, "ixon=1 ixoff=1 crtscts=0", 8},
        {"CTS", kBits8, kStopBits1, kParityNone, 8, 0, 1, 0, 0, "ixon=0 ixoff=0 crtscts=1", 8},
        {"XON over CTS", kBits8, kStopBits1, kParityNone, 8, 1, 1, 0, 0, "ixon=1 crtscts=0", 8},
        {"DTR keeps ispeed", kBits8, kStopBits1, kParityNone, 8, 0, 0, 1, 0, "ispeed=9600", 8},
        {"hang up on close", kBits8, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "hupcl=1", 8},
        {"LeaveDTROnClose", kBits8, kStopBits1, kParityNone, 8, 0, 0, 0, 1, "hupcl=0", 8},
    };
    // Baud300 to Baud230400, then a system code; 4097 up are the system's codes.
    const struct {
        int speed, after;
    } speeds[] = {{300, 0},       {600, 1},      {1200, 2},     {1800, 3},     {2400, 4},
                  {57600, 4097},  {4800, 6},     {57600, 4097}, {9600, 8},     {57600, 4097},
                  {19200, 10},    {57600, 4097}, {38400, 12},   {57600, 4097}, {115200, 4098},
                  {230400, 4099}, {460800, 4100}};
    std::vector<std::string> texts;
    for (int32_t baud = 0; baud <= 16; ++baud)
        texts.push_back("speed=" + std::to_string(speeds[baud].speed));
    for (int32_t baud = 0; baud <= 16; ++baud)
        rows.push_back({"Baud", kBits8, kStopBits1, kParityNone, baud < 16 ? baud : 4100, 0, 0, 0,
                        0, texts[static_cast<size_t>(baud)].c_str(), speeds[baud].after});
    for (const Row &row : rows) {
        SCOPED_TRACE(std::string(row.name) + " " + row.expect);
        Pty pty;
        RuntimeObject *object = NewTestSerial(pty.path);
        SerialRecord *serial = SerialOf(object);
        serial->bits = row.bits, serial->stop = row.stop, serial->parity = row.parity;
        serial->baud = row.baud, serial->xonFlow = row.xon, serial->ctsFlow = row.cts;
        serial->dtrFlow = row.dtr;
        if (row.leaveDTR)
            serialLeaveDTROnClose(object);
        ASSERT_TRUE(serialOpen(object));
        EXPECT_EQ(serial->baud, row.baudAfter);
        auto want = Pairs(kRaw + std::string(row.expect));
        // A pseudo-terminal keeps 8 bits without parity, whatever it is told:
        // those two are checked on the settings asked for.
        termios asked{};
        ComposeSettings(*serial, asked);
        const tcflag_t sizes[] = {CS5, CS6, CS7, CS8};
        EXPECT_TRUE(!want.count("cs") ||
                    (asked.c_cflag & CSIZE) == sizes[std::stoi(want["cs"]) - 5]);
        EXPECT_TRUE(!want.count("parenb") ||
                    ((asked.c_cflag & PARENB) != 0) == (want["parenb"] == "1"));
        want.erase("cs"), want.erase("parenb");
        auto seen = Pairs(RunWithInput(pty.master, {"/usr/bin/python3", "-c", kReadTermios}));
        for (const auto &[key, value] : want)
            EXPECT_EQ(seen[key], value) << key;
        ExpectStty(RunWithInput(pty.master, {"stty", "-a"}), want);
        RuntimeUnlockObject(object);
    }
}

// Reset refuses what no UART frames, naming the data bits it means.
TEST(SerialSettings, IllegalStopBitsRaiseWithTheirMessage) {
    const struct {
        int16_t bits, stop;
        const char *message; // null: accepted
    } cases[] = {{kBits5, kStopBits2, "You cannot have 5 bits with 2 stop bits."},
                 {kBits6, kStopBits15, "You cannot have 6 bits with 1.5 stop bits."},
                 {kBits8, kStopBits15, "You cannot have 8 bits with 1.5 stop bits."},
                 {kBits5, kStopBits15, nullptr},
                 {kBits6, kStopBits2, nullptr}};
    Pty pty;
    RuntimeObject *object = NewTestSerial(pty.path);
    ASSERT_TRUE(serialOpen(object));
    for (const auto &c : cases) {
        SerialOf(object)->bits = c.bits, SerialOf(object)->stop = c.stop;
        RuntimeEnterHandlerRegion();
        serialReset(object);
        auto *raised = reinterpret_cast<RuntimeExceptionObject *>(RuntimeTakeException());
        RuntimeLeaveHandlerRegion();
        ASSERT_EQ(raised != nullptr, c.message != nullptr) << c.bits << " " << c.stop;
        if (!raised)
            continue;
        EXPECT_EQ(TextOf(raised->message),
                  std::string("Illegal combination of properties.  ") + c.message);
        EXPECT_STREQ(TextOf(raised->object.klass->name), "UnsupportedFormatException");
        RuntimeUnlockObject(&raised->object);
    }
    RuntimeUnlockObject(object);
}

} // namespace
} // namespace kelp::test
