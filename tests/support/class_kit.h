#pragma once
// Helpers for building classes and objects the way compiled code does:
// string literals that live for the whole run, a log of life-cycle calls,
// and a recorder of fatal reports.
#include "base/fatal_report.h"
#include "kelp/kelp.h"

#include <deque>
#include <string>
#include <vector>

namespace kelp::test {

// A string literal as an image holds it: one reference that nobody releases.
inline KelpString Lit(const std::string &text) {
    struct Literal {
        stringStorage record;
        std::string bytes;
    };
    static std::deque<Literal> literals;
    Literal &l = literals.emplace_back();
    l.bytes = std::string(1, static_cast<char>(text.size() > 255 ? 255 : text.size())) + text;
    l.bytes.push_back('\0');
    l.record.referenceCount = 1;
    l.record.buffer = reinterpret_cast<uint8_t *>(l.bytes.data());
    l.record.capacity = static_cast<uint32_t>(l.bytes.size());
    l.record.length = static_cast<int32_t>(text.size());
    l.record.encoding = kEncodingASCII;
    return &l.record;
}

inline std::string Str(KelpString s) {
    return s && s->length > 0
               ? std::string(reinterpret_cast<const char *>(s->buffer + 1), s->length)
               : std::string();
}

// Releases a string the runtime handed over.
inline void ReleaseString(KelpString s) { RuntimeUnlockString(s); }

struct Report {
    int kind;
    std::string condition, message;
};

// Collects fatal reports for the life of the object, instead of dialogs.
class ReportRecorder {
public:
    ReportRecorder() {
        mPrevious = kelp::SetFatalReportHook(&Record);
        Reports().clear();
    }
    ~ReportRecorder() { kelp::SetFatalReportHook(mPrevious); }
    static std::vector<Report> &Reports() {
        static std::vector<Report> reports;
        return reports;
    }
    bool Has(const std::string &condition) const {
        for (const Report &r : Reports())
            if (r.condition == condition)
                return true;
        return false;
    }

private:
    static void Record(int kind, const char *, int, const char *condition, const char *message) {
        Reports().push_back({kind, condition, message});
    }
    kelp::FatalReportHook mPrevious;
};

// A log of calls, shared by the life-cycle functions of the test classes.
inline std::vector<std::string> &Log() {
    static std::vector<std::string> log;
    return log;
}

// A class made as an image's class set-up makes it.
inline RuntimeClass *MakeClass(RuntimeClass *base, const char *name, uint32_t size,
                               int32_t methods = 0, int32_t interfaces = 0, int32_t events = 0,
                               int32_t properties = 0) {
    RuntimeClass *c = RuntimeNewClass(base, methods, interfaces, events, 0, properties);
    c->name = Lit(name);
    c->instanceSize = size;
    return c;
}

} // namespace kelp::test
