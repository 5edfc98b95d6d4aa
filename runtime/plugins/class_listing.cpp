// The rest of the calls a plug-in may make: its classes' rows written back
// as the language's declarations, and small questions about controls and
// the process.  Each says what it answers for nil.
#include "plugins/host.h"

#include "base/fatal_report.h"
#include "controls/control.h"
#include "objects/text.h"
#include "runloop/debugger_slots.h"
#include "strings/kstring.h"

#include "kelp/controls.h"
#include "kelp/objects.h"
#include "kelp/strings.h"

#include <string>

namespace kelp::plugins {
namespace {

// One type code of a signature ("i4", "o<Window>", "a1s") as the language
// writes the type; `at` moves past it.  Empty for a code it doesn't know.
std::string TypeName(std::string_view codes, size_t &at) {
    if (at >= codes.size())
        return {};
    const char c = codes[at++];
    auto two = [&](char next, const char *name) -> std::string {
        if (at < codes.size() && codes[at] == next) {
            ++at;
            return name;
        }
        return {};
    };
    switch (c) {
    case 's': return "String";
    case 'b': return "Boolean";
    case 'c': return "Color";
    case 'p': return "Ptr";
    case 'z': return "CString";
    case 'l': return "PString";
    case 'w': return "WindowPtr";
    case 'x': return "Class";
    case 'i': return two('4', "Integer");
    case 'u': return two('4', "UInteger");
    case 'f':
        return at < codes.size() && codes[at] == '8' ? two('8', "Double") : two('4', "Single");
    case 'o': {
        const size_t close = codes.find('>', at);
        if (at >= codes.size() || codes[at] != '<' || close == std::string_view::npos)
            return {};
        std::string name(codes.substr(at + 1, close - at - 1));
        at = close + 1;
        return name;
    }
    case 'a':
    case 'A': {
        // the dimension count, then the element's code
        int dimensions = 0;
        while (at < codes.size() && codes[at] >= '0' && codes[at] <= '9')
            dimensions = dimensions * 10 + (codes[at++] - '0');
        KELP_ASSERT(dimensions > 0, kReportFile, "dimensions > 0");
        std::string element = TypeName(codes, at);
        return element.empty() ? element : element + "()";
    }
    default: return {};
    }
}

// "Name%result%o<Self>args" as "Function Name(p1 As T, ...) As R" or "Sub".
std::string MethodDeclaration(std::string_view signature) {
    const size_t p1 = signature.find('%');
    const size_t p2 = p1 == std::string_view::npos ? p1 : signature.find('%', p1 + 1);
    if (p2 == std::string_view::npos)
        return std::string(signature);
    const std::string_view name = signature.substr(0, p1);
    const std::string_view result = signature.substr(p1 + 1, p2 - p1 - 1);
    const std::string_view args = signature.substr(p2 + 1);
    size_t at = 0;
    if (!args.empty() && args[0] == 'o')
        TypeName(args, at); // the object's own class comes first
    std::string text = (result.empty() ? "Sub " : "Function ") + std::string(name) + "(";
    for (int n = 1; at < args.size(); ++n) {
        const std::string type = TypeName(args, at);
        if (type.empty())
            break;
        if (n > 1)
            text += ", ";
        text += "p" + std::to_string(n) + " As " + type;
    }
    text += ")";
    size_t r = 0;
    if (!result.empty())
        text += " As " + TypeName(result, r);
    return text;
}

KelpString Make(const std::string &text) {
    string s(text.c_str(), long(text.size()));
    s.SetEncoding(kEncodingUTF8);
    return s.Release();
}

} // namespace

std::string DeclarationOfSignature(std::string_view signature) {
    return MethodDeclaration(signature);
}

} // namespace kelp::plugins

using namespace kelp;
using namespace kelp::plugins;

extern "C" {

int32_t KELPCountClassMethods(RuntimeClass *klass) {
    return klass ? klass->methodCount + klass->directMethodCount : 0;
}
int32_t KELPCountClassProperties(RuntimeClass *klass) { return klass ? klass->propertyCount : 0; }

// Methods first by the virtual table, then the direct rows.  False and
// nothing written for an index out of range.
int32_t KELPGetClassMethod(RuntimeClass *klass, int32_t index, KelpString *declaration,
                           void **code) {
    if (!klass || index < 0 || index >= KELPCountClassMethods(klass))
        return 0;
    const RuntimeMethodRow &row = index < klass->methodCount
                                      ? klass->methodTable[index]
                                      : klass->directMethodTable[index - klass->methodCount];
    if (declaration)
        *declaration = Make(MethodDeclaration(objtext::View(row.signature)));
    if (code)
        *code = row.code;
    return 1;
}

// "Name As Type" of the property row.
int32_t KELPGetClassProperty(RuntimeClass *klass, int32_t index, KelpString *declaration) {
    if (!klass || index < 0 || index >= klass->propertyCount)
        return 0;
    const std::string_view sig = objtext::View(klass->propertyTable[index].signature);
    const size_t p1 = sig.find('%');
    const size_t p2 = p1 == std::string_view::npos ? p1 : sig.find('%', p1 + 1);
    if (p2 == std::string_view::npos)
        return 0;
    size_t at = 0;
    const std::string type = TypeName(sig.substr(p1 + 1, p2 - p1 - 1), at);
    if (declaration)
        *declaration = Make(std::string(sig.substr(0, p1)) + " As " + type);
    return 1;
}

KelpString KELPGetControlName(RuntimeObject *control) {
    return control && IsControl(control) ? RuntimeLockString(Ctl(control)->name) : nullptr;
}
RuntimeObject *KELPGetControlParent(RuntimeObject *control) {
    return control && IsControl(control) ? ControlParentGetter(control, 0) : nullptr;
}
RuntimeObject *getControlWindow(RuntimeObject *control) {
    return control && IsControl(control) ? controlWindowGetter(control, 0) : nullptr;
}
int32_t KELPGetControlFocus(RuntimeObject *control) {
    return control && IsControl(control) && Ctl(control)->pane &&
           FocusPane() == static_cast<SubPane *>(Ctl(control)->pane);
}
void KELPSetControlFocus(RuntimeObject *control) {
    if (control && IsControl(control) && Ctl(control)->pane)
        SetFocus(static_cast<SubPane *>(Ctl(control)->pane));
}
// A control on a page that isn't shown is hidden with its panel.
int32_t GetTabPanelVisible(RuntimeObject *control) {
    auto *pane =
        control && IsControl(control) ? static_cast<ControlPane *>(Ctl(control)->pane) : nullptr;
    return pane ? pane->panelVisible : 0;
}
int32_t KELPIsHIViewWindow(RuntimeObject *) { return 0; }
int32_t KELPInDebugMode(void) { return kelp::DebugModeOn() ? 1 : 0; }
// Compiled code runs here, never the design environment's interpreter.
void KELPYieldToKP(void) {}
// Keyboard mnemonics of captions: GTK 2 shows none on these controls.
void KELPSetAccelerator(RuntimeObject *, KelpString) {}
// Constants of the design environment: the running program has the value.
KelpString PluginInterpretConstantValue(KelpString value) { return RuntimeLockString(value); }
void PluginMarkSocketUsage(void) {}

// The caption without its mnemonic marks: "&" dropped, "&&" kept as "&".
KelpString KELPStripAmpersands(KelpString caption) {
    const std::string_view raw = objtext::View(caption);
    std::string out;
    for (size_t i = 0; i < raw.size(); ++i) {
        if (raw[i] != '&')
            out += raw[i];
        else if (i + 1 < raw.size() && raw[i + 1] == '&')
            out += '&', ++i;
    }
    KelpString s = Make(out);
    if (s && caption)
        s->encoding = caption->encoding;
    return s;
}

void KELPSetStringEncoding(KelpString s, uint32_t encoding) {
    if (s)
        s->encoding = encoding;
}

} // extern "C"
