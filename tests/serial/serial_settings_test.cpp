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

#include <functional>
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
    time=cc[t.VTIME], vstart=cc[t.VSTART][0], vstop=cc[t.VSTOP][0], bit18=(c >> 18) & 1)
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
            !timing && key != "ispeed" && key != "bit18" && key != "vstart" && key != "vstop";
        EXPECT_TRUE(!timing || stty.find(text) != std::string::npos) << text;
        EXPECT_TRUE(!flag || words.count((value == "0" ? "-" : "") + key)) << key;
    }
}

// Every row also leaves the port raw.
const char *kRaw = "cread=1 clocal=1 isig=0 icanon=0 echo=0 echoe=0 opost=0 icrnl=0 min=0 time=0 "
                   "vstart=17 vstop=19 bit18=0 ";

// Each row: what it sets (bits, stop, parity, baud, xon, cts, dtr, leave;
// the rest stays as constructed, but at 9600 baud), then what the far end
// must read.  "after" is what Baud reads once the settings went out: the
// constant, or the system's code (4097 up) for 57,600 and faster.
const char *kRows[] = {"bits=0 cs=5 cstopb=0",
                       "bits=0 stop=1 cs=5 cstopb=0",
                       "bits=1 cs=6",
                       "bits=2 cs=7",
                       "stop=2 cs=8 cstopb=1",
                       "parity=0 parenb=0",
                       "bits=2 parity=1 parenb=1 parodd=1 inpck=1",
                       "bits=2 parity=2 parenb=1 parodd=0",
                       "xon=1 ixon=1 ixoff=1 crtscts=0",
                       "cts=1 ixon=0 ixoff=0 crtscts=1",
                       "xon=1 cts=1 ixon=1 crtscts=0",
                       "dtr=1 ispeed=9600",
                       "hupcl=1",
                       "leave=1 hupcl=0"};
// Baud0 to Baud15 and a system code: the speed the far end reads, and Baud after.
const int kSpeeds[][3] = {{0, 300, 0},        {1, 600, 1},         {2, 1200, 2},
                          {3, 1800, 3},       {4, 2400, 4},        {5, 57600, 4097},
                          {6, 4800, 6},       {7, 57600, 4097},    {8, 9600, 8},
                          {9, 57600, 4097},   {10, 19200, 10},     {11, 57600, 4097},
                          {12, 38400, 12},    {13, 57600, 4097},   {14, 115200, 4098},
                          {15, 230400, 4099}, {4100, 460800, 4100}};

TEST(SerialSettings, EveryConstantReadBackFromTheFarEnd) {
    setenv("KELP_READ_TERMIOS", kReadTermios, 1); // no quoting for the shell
    std::vector<std::string> rows(std::begin(kRows), std::end(kRows));
    for (const auto &[baud, speed, after] : kSpeeds)
        rows.push_back("baud=" + std::to_string(baud) + " speed=" + std::to_string(speed) +
                       " after=" + std::to_string(after));
    for (const std::string &row : rows) {
        SCOPED_TRACE(row);
        Pty pty;
        RuntimeObject *object = NewTestSerial(pty.path);
        SerialRecord *serial = SerialOf(object);
        serial->baud = 8;
        const std::map<std::string, std::function<void(int)>> setters = {
            {"bits", [&](int v) { serial->bits = static_cast<int16_t>(v); }},
            {"stop", [&](int v) { serial->stop = static_cast<int16_t>(v); }},
            {"parity", [&](int v) { serial->parity = static_cast<int16_t>(v); }},
            {"baud", [&](int v) { serial->baud = v; }},
            {"xon", [&](int v) { serial->xonFlow = static_cast<uint8_t>(v); }},
            {"cts", [&](int v) { serial->ctsFlow = static_cast<uint8_t>(v); }},
            {"dtr", [&](int v) { serial->dtrFlow = static_cast<uint8_t>(v); }},
            {"leave", [&](int) { serialLeaveDTROnClose(object); }}};
        auto want = Pairs(kRaw + row);
        for (const auto &[key, setter] : setters)
            if (want.count(key))
                setter(std::stoi(want[key])), want.erase(key);
        ASSERT_TRUE(serialOpen(object));
        EXPECT_EQ(serial->baud, want.count("after") ? std::stoi(want["after"]) : 8);
        want.erase("after");
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
        auto seen = Pairs(RunWithInput(pty.master, "/usr/bin/python3 -c \"$KELP_READ_TERMIOS\""));
        for (const auto &[key, value] : want)
            EXPECT_EQ(seen[key], value) << key;
        ExpectStty(RunWithInput(pty.master, "stty -a"), want);
        RuntimeUnlockObject(object);
    }
}

// Reset refuses what no UART frames, naming the data bits it means; a
// speed the system has no code for is reported, not raised.
TEST(SerialSettings, InvalidSettingsRaiseOrReport) {
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
    SerialOf(object)->baud = 100;
    serialReset(object);
    EXPECT_EQ(SerialEvents(), std::vector<std::string>{"error 102"});
    RuntimeUnlockObject(object);
}

} // namespace
} // namespace kelp::test
