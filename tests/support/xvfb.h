#pragma once
// A private X server for tests that need real windows.  The suite runs with
// no display set: a test program that needs one starts its own Xvfb (24-bit,
// 1280x1024), points DISPLAY at it and brings up the toolkit on it.
#include <string>

namespace kelp::test {

class XServer {
public:
    // Starts Xvfb on the first free display number from 90 on.  Check
    // running() (or use RequireToolkitDisplay) before using it.
    XServer();
    ~XServer();
    XServer(const XServer &) = delete;
    XServer &operator=(const XServer &) = delete;

    bool running() const { return mPid > 0; }
    const std::string &display() const { return mDisplay; }

private:
    int mPid = -1;
    std::string mDisplay;
};

// One server for the whole test program, started on first use and stopped at
// exit; the toolkit is initialised on it.  Returns false (and says why on
// standard error) when no server could be started.
bool RequireToolkitDisplay();

} // namespace kelp::test
