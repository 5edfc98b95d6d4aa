#pragma once
// Helpers of the date tests: Date objects as compiled code holds them, the
// zone of the process, and Python run as an independent reference.
#include "kelp/kelp.h"

#include "dates/date_common.h"
#include "strings/kstring.h"
#include "support/class_kit.h"

#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <string>
#include <unistd.h>

namespace datekit {

// An owned object reference, released at the end of the scope.
struct Ref {
    RuntimeObject *o = nullptr;
    explicit Ref(RuntimeObject *object = nullptr) : o(object) {}
    Ref(const Ref &) = delete;
    Ref &operator=(const Ref &) = delete;
    ~Ref() { RuntimeUnlockObject(o); }
    RuntimeObject *get() const { return o; }
};

inline std::string Text(KelpString s) {
    const kelp::string text = kelp::string::Adopt(s);
    return std::string(text.View());
}

// A string as an image's literal holds it: alive for the whole run.
inline KelpString Lit(const char *text) { return kelp::test::Lit(text); }

// Runs `call` in a handler region and names the class of what it raised.
template <typename Call> std::string Raised(Call call) {
    RuntimeEnterHandlerRegion();
    call();
    RuntimeObject *e = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    if (!e)
        return "";
    std::string name(kelp::string::Wrap(e->klass->name).View());
    RuntimeUnlockObject(e);
    return name;
}

// Sets TZ for the life of the object.
class Zone {
public:
    explicit Zone(const char *zone) {
        const char *old = std::getenv("TZ");
        mHad = old != nullptr;
        if (old)
            mOld = old;
        setenv("TZ", zone, 1);
        tzset();
    }
    ~Zone() {
        if (mHad)
            setenv("TZ", mOld.c_str(), 1);
        else
            unsetenv("TZ");
        tzset();
    }

private:
    bool mHad = false;
    std::string mOld;
};

// Runs a Python script with `input` on its standard input and gives what
// it printed.
inline std::string RunPython(const std::string &script, const std::string &input) {
    char dir[] = "/tmp/kelp-dates-XXXXXX";
    if (!mkdtemp(dir))
        return "";
    const std::string base = dir;
    std::ofstream(base + "/s.py") << script;
    std::ofstream(base + "/in.txt") << input;
    std::string out;
    if (FILE *p = popen(("python3 " + base + "/s.py < " + base + "/in.txt").c_str(), "r")) {
        char buffer[4096];
        size_t n;
        while ((n = fread(buffer, 1, sizeof buffer, p)) > 0)
            out.append(buffer, n);
        pclose(p);
    }
    std::remove((base + "/s.py").c_str());
    std::remove((base + "/in.txt").c_str());
    rmdir(dir);
    return out;
}

} // namespace datekit
