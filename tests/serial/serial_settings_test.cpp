// The settings of every constant, as the far end of a pseudo-terminal sees
// them: once through stty and once through Python's termios module, both
// reading the master side, which answers with the slave's settings.
#include "pty_peer.h"

#include "serial/serial_record.h"
#include "serial/termios_settings.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/serial.h"

#include <gtest/gtest.h>

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
size = {t.CS5: 5, t.CS6: 6, t.CS7: 7, t.CS8: 8}[c & t.CSIZE]
flags = dict(cs=size, speed=speeds[osp], ispeed=speeds[isp], cread=c & t.CREAD,
    clocal=c & t.CLOCAL, hupcl=c & t.HUPCL, cstopb=c & t.CSTOPB, parenb=c & t.PARENB,
    parodd=c & t.PARODD, crtscts=c & t.CRTSCTS, inpck=i & t.INPCK, ixon=i & t.IXON,
    ixoff=i & t.IXOFF, icrnl=i & t.ICRNL, opost=o & t.OPOST, isig=l & t.ISIG,
    icanon=l & t.ICANON, echo=l & t.ECHO, echoe=l & t.ECHOE, min=cc[t.VMIN], time=cc[t.VTIME],
    start=cc[t.VSTART][0], stop=cc[t.VSTOP][0], bit18=(c >> 18) & 1)
print(' '.join('%s=%d' % (k, int(bool(v)) if k in ('cread', 'clocal', 'hupcl', 'cstopb',
    'parenb', 'parodd', 'crtscts', 'inpck', 'ixon', 'ixoff', 'icrnl', 'opost', 'isig',
    'icanon', 'echo', 'echoe') else int(v)) for k, v in flags.items()))
)";

std::map<std::string, std::string> Pairs(const std::string &text) {
    std::map<std::string, std::string> out;
    std::istringstream in(text);
    std::string word;
    while (in >> word)
        if (auto eq = word.find('='); eq != std::string::npos)
            out[word.substr(0, eq)] = word.substr(eq + 1);
    return out;
}

// Every row must also leave the port raw.
const char *kRaw = "cread=1 clocal=1 isig=0 icanon=0 echo=0 echoe=0 opost=0 icrnl=0 min=0 "
                   "time=0 start=17 stop=19 bit18=0";

// The same expectation in stty's words: "cs7", "-parenb", "speed 9600 baud".
void ExpectStty(const std::string &stty, const std::map<std::string, std::string> &want) {
    std::set<std::string> words;
    std::istringstream in(stty);
    for (std::string word; in >> word;)
        words.insert(word);
    for (const auto &[key, value] : want) {
        if (key == "speed" || key == "min" || key == "time") {
            const std::string text =
                key == "speed" ? "speed " + value + " baud;" : key + " = " + value + ";";
            EXPECT_NE(stty.find(text), std::string::npos) << "stty lacks \"" << text << "\"";
        } else if (key != "ispeed" && key != "bit18" && key != "start" && key != "stop") {
            const std::string word = key == "cs" ? "cs" + value : (value == "0" ? "-" : "") + key;
            EXPECT_TRUE(words.count(word)) << "stty lacks " << word;
        }
    }
}

struct Row {
    const char *name;
    int16_t bits, stop, parity;
    int32_t baud;
    bool xon, cts, dtr, leaveDTR;
    const char *expect;
    int32_t baudAfter; // what Baud reads after the settings went out
};

constexpr int32_t kB57600 = 4097; // the system's code, as Baud reads it back

TEST(SerialSettings, EveryConstantReadBackFromTheFarEnd) {
    const Row rows[] = {
        {"Bits5 StopBits1", kBits5, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "cs=5 cstopb=0", 8},
        {"Bits5 StopBits15 is one stop bit", kBits5, kStopBits15, kParityNone, 8, 0, 0, 0, 0,
         "cs=5 cstopb=0", 8},
        {"Bits6", kBits6, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "cs=6", 8},
        {"Bits7", kBits7, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "cs=7", 8},
        {"Bits8 StopBits2", kBits8, kStopBits2, kParityNone, 8, 0, 0, 0, 0, "cs=8 cstopb=1", 8},
        {"ParityNone", kBits8, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "parenb=0", 8},
        {"ParityOdd", kBits7, kStopBits1, kParityOdd, 8, 0, 0, 0, 0, "parenb=1 parodd=1 inpck=1",
         8},
        {"ParityEven", kBits7, kStopBits1, kParityEven, 8, 0, 0, 0, 0, "parenb=1 parodd=0 inpck=1",
         8},
        {"XON", kBits8, kStopBits1, kParityNone, 8, 1, 0, 0, 0, "ixon=1 ixoff=1 crtscts=0", 8},
        {"CTS", kBits8, kStopBits1, kParityNone, 8, 0, 1, 0, 0, "ixon=0 ixoff=0 crtscts=1", 8},
        {"XON wins over CTS", kBits8, kStopBits1, kParityNone, 8, 1, 1, 0, 0, "ixon=1 crtscts=0",
         8},
        {"DTR keeps the input speed", kBits8, kStopBits1, kParityNone, 8, 0, 0, 1, 0,
         "speed=9600 ispeed=9600", 8},
        {"hang up on close", kBits8, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "hupcl=1", 8},
        {"LeaveDTROnClose", kBits8, kStopBits1, kParityNone, 8, 0, 0, 0, 1, "hupcl=0", 8},
        {"Baud300", kBits8, kStopBits1, kParityNone, 0, 0, 0, 0, 0, "speed=300", 0},
        {"Baud600", kBits8, kStopBits1, kParityNone, 1, 0, 0, 0, 0, "speed=600", 1},
        {"Baud1200", kBits8, kStopBits1, kParityNone, 2, 0, 0, 0, 0, "speed=1200", 2},
        {"Baud1800", kBits8, kStopBits1, kParityNone, 3, 0, 0, 0, 0, "speed=1800", 3},
        {"Baud2400", kBits8, kStopBits1, kParityNone, 4, 0, 0, 0, 0, "speed=2400", 4},
        {"Baud3600", kBits8, kStopBits1, kParityNone, 5, 0, 0, 0, 0, "speed=57600", kB57600},
        {"Baud4800", kBits8, kStopBits1, kParityNone, 6, 0, 0, 0, 0, "speed=4800", 6},
        {"Baud7200", kBits8, kStopBits1, kParityNone, 7, 0, 0, 0, 0, "speed=57600", kB57600},
        {"Baud9600", kBits8, kStopBits1, kParityNone, 8, 0, 0, 0, 0, "speed=9600", 8},
        {"Baud14400", kBits8, kStopBits1, kParityNone, 9, 0, 0, 0, 0, "speed=57600", kB57600},
        {"Baud19200", kBits8, kStopBits1, kParityNone, 10, 0, 0, 0, 0, "speed=19200", 10},
        {"Baud28800", kBits8, kStopBits1, kParityNone, 11, 0, 0, 0, 0, "speed=57600", kB57600},
        {"Baud38400", kBits8, kStopBits1, kParityNone, 12, 0, 0, 0, 0, "speed=38400", 12},
        {"Baud57600", kBits8, kStopBits1, kParityNone, 13, 0, 0, 0, 0, "speed=57600", kB57600},
        {"Baud115200", kBits8, kStopBits1, kParityNone, 14, 0, 0, 0, 0, "speed=115200", 4098},
        {"Baud230400", kBits8, kStopBits1, kParityNone, 15, 0, 0, 0, 0, "speed=230400", 4099},
        {"a system code", kBits8, kStopBits1, kParityNone, 4100, 0, 0, 0, 0, "speed=460800", 4100},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.name);
        Pty pty;
        RuntimeObject *object = NewTestSerial(pty.path);
        SerialRecord *serial = SerialOf(object);
        serial->bits = row.bits;
        serial->stop = row.stop;
        serial->parity = row.parity;
        serial->baud = row.baud;
        serial->xonFlow = row.xon;
        serial->ctsFlow = row.cts;
        serial->dtrFlow = row.dtr;
        if (row.leaveDTR)
            serialLeaveDTROnClose(object);
        ASSERT_TRUE(serialOpen(object));
        EXPECT_EQ(serial->baud, row.baudAfter);
        auto want = Pairs(std::string(kRaw) + " " + row.expect);
        // The pseudo-terminal driver keeps every character at 8 bits without
        // parity, whatever it is told: those two are checked on the settings
        // the port asks for, the rest on what the far end reads.
        termios asked{};
        ComposeSettings(*serial, asked);
        const int size = (asked.c_cflag & CSIZE) == CS5   ? 5
                         : (asked.c_cflag & CSIZE) == CS6 ? 6
                         : (asked.c_cflag & CSIZE) == CS7 ? 7
                                                          : 8;
        if (want.count("cs")) {
            EXPECT_EQ(std::to_string(size), want["cs"]);
        }
        if (want.count("parenb")) {
            EXPECT_EQ((asked.c_cflag & PARENB) ? "1" : "0", want["parenb"]);
        }
        want.erase("cs");
        want.erase("parenb");
        auto seen = Pairs(RunWithInput(pty.master, {"/usr/bin/python3", "-c", kReadTermios}));
        for (const auto &[key, value] : want)
            EXPECT_EQ(seen[key], value) << key;
        ExpectStty(RunWithInput(pty.master, {"stty", "-a"}), want);
        RuntimeUnlockObject(object);
    }
}

// Reset refuses what no UART frames, naming the data bits it means.
TEST(SerialSettings, IllegalStopBitsRaiseWithTheirMessage) {
    struct Case {
        int16_t bits, stop;
        const char *message; // null: accepted
    } cases[] = {
        {kBits5, kStopBits2, "You cannot have 5 bits with 2 stop bits."},
        {kBits6, kStopBits15, "You cannot have 6 bits with 1.5 stop bits."},
        {kBits8, kStopBits15, "You cannot have 8 bits with 1.5 stop bits."},
        {kBits5, kStopBits15, nullptr},
        {kBits6, kStopBits2, nullptr},
    };
    Pty pty;
    RuntimeObject *object = NewTestSerial(pty.path);
    ASSERT_TRUE(serialOpen(object));
    for (const Case &c : cases) {
        SCOPED_TRACE(c.bits * 10 + c.stop);
        SerialOf(object)->bits = c.bits;
        SerialOf(object)->stop = c.stop;
        RuntimeEnterHandlerRegion();
        serialReset(object);
        RuntimeObject *raised = RuntimeTakeException();
        RuntimeLeaveHandlerRegion();
        if (!c.message) {
            EXPECT_EQ(raised, nullptr);
            continue;
        }
        ASSERT_NE(raised, nullptr);
        auto *record = reinterpret_cast<RuntimeExceptionObject *>(raised);
        const std::string text(reinterpret_cast<const char *>(record->message->buffer + 1),
                               static_cast<size_t>(record->message->length));
        EXPECT_EQ(text, std::string("Illegal combination of properties.  ") + c.message);
        EXPECT_EQ(std::string(reinterpret_cast<const char *>(raised->klass->name->buffer + 1),
                              static_cast<size_t>(raised->klass->name->length)),
                  "UnsupportedFormatException");
        RuntimeUnlockObject(raised);
    }
    RuntimeUnlockObject(object);
}

} // namespace
} // namespace kelp::test
