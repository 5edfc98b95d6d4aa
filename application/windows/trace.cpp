#include "windows/trace.h"

#include "windows/kit.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

namespace sumbrook::ui {
namespace {

std::FILE *TraceFile() {
    static std::FILE *file = [] {
        const char *path = std::getenv("SUMBROOK_TRACE");
        return path && *path ? std::fopen(path, "a") : nullptr;
    }();
    return file;
}

std::string_view ClassName(RuntimeObject *view) {
    const stringStorage *name = view && view->klass ? view->klass->name : nullptr;
    if (!name || !name->buffer || name->length <= 0)
        return {};
    return {reinterpret_cast<const char *>(name->buffer + 1), size_t(name->length)};
}

// One line per record: line breaks of a text become \n, backslashes \\.
void WriteLine(std::string line) {
    std::string out;
    for (char c : line) {
        if (c == '\\')
            out += "\\\\";
        else if (c == '\n')
            out += "\\n";
        else if (c != '\r')
            out += c;
    }
    out += '\n';
    std::fputs(out.c_str(), TraceFile());
    std::fflush(TraceFile());
}

} // namespace

void TraceEvent(const char *what, RuntimeObject *view) {
    if (TraceFile())
        WriteLine(std::string(what) + " " + std::string(ClassName(view)));
}

void TraceLabels(RuntimeObject *view, std::initializer_list<const char *> labels) {
    if (!TraceFile())
        return;
    for (const char *label : labels)
        WriteLine("text " + std::string(ClassName(view)) + " " + label + " " +
                  LabelText(view, label).ToStd());
}

} // namespace sumbrook::ui
