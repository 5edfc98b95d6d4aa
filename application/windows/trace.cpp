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

// One line per record: line breaks of a text (CR LF in labels, CR in edit
// fields, LF) become \n, backslashes \\.
void WriteLine(std::string line) {
    std::string out;
    for (size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (c == '\\')
            out += "\\\\";
        else if (c == '\r' && i + 1 < line.size() && line[i + 1] == '\n')
            continue; // its LF writes the break
        else if (c == '\r' || c == '\n')
            out += "\\n";
        else
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
