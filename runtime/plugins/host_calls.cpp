// The calls a plug-in finds through the resolver besides registration:
// objects, strings, controls and graphics.  Most forward to the class
// library; the by-name property access is this interface's own.
#include "plugins/custom_control.h"
#include "plugins/declaration.h"
#include "plugins/host.h"

#include "base/ascii.h"
#include "controls/control.h"
#include "graphics/graphics_gtk.h"
#include "graphics/graphics_object.h"
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "objects/text.h"
#include "strings/kstring.h"

#include "kelp/controls.h"
#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/strings.h"
#include "kelp/variants.h"

#include <cstring>
#include <string>

namespace kelp::plugins {
namespace {

ControlPane *PaneOf(RuntimeObject *control) {
    return control && IsControl(control) ? static_cast<ControlPane *>(Ctl(control)->pane) : nullptr;
}

// The property row of `name` up the object's class chain: the class table
// holds the inherited rows too, so one scan will do.
const RuntimePropertyRow *FindProperty(RuntimeObject *object, std::string_view name,
                                       std::string_view &type) {
    if (!object || !object->klass)
        return nullptr;
    const RuntimeClass *k = object->klass;
    for (int32_t i = k->propertyCount - 1; i >= 0; --i) {
        std::string_view sig = objtext::View(k->propertyTable[i].signature);
        const size_t percent = sig.find('%');
        if (percent == std::string_view::npos || !AsciiEqualNoCase(sig.substr(0, percent), name))
            continue;
        type = sig.substr(percent + 1);
        if (!type.empty() && type.back() == '%')
            type.remove_suffix(1);
        return &k->propertyTable[i];
    }
    return nullptr;
}

template <typename T> T Plain(RuntimeObject *o, int32_t offset) {
    T value{};
    std::memcpy(&value, reinterpret_cast<uint8_t *>(o) + offset, sizeof(T));
    return value;
}

template <typename R> R CallGetter(const RuntimePropertyRow *row, RuntimeObject *o) {
    using Getter = R (*)(RuntimeObject *, int32_t);
    return reinterpret_cast<Getter>(row->getter)(o, row->fieldOffset);
}

enum class Want { Int, Double, String, Bool, Object };

struct Value {
    int32_t i = 0;
    double d = 0;
    KelpString s = nullptr;
    RuntimeObject *o = nullptr;
};

// Reads the property through its getter (or the plain field), converting
// by the type code; false for a type that doesn't fit the wanted one.
bool Read(RuntimeObject *object, const RuntimePropertyRow *row, std::string_view type, Want want,
          Value &out) {
    const bool plain = row->getter == reinterpret_cast<void *>(1);
    if (!row->getter)
        return false;
    if (type == "i4" || type == "c" || type == "u4") {
        int32_t v =
            plain ? Plain<int32_t>(object, row->fieldOffset) : CallGetter<int32_t>(row, object);
        out.i = v, out.d = v;
        return want == Want::Int || want == Want::Double;
    }
    if (type == "f8" || type == "f4") {
        double v = type == "f8" ? (plain ? Plain<double>(object, row->fieldOffset)
                                         : CallGetter<double>(row, object))
                                : (plain ? Plain<float>(object, row->fieldOffset)
                                         : CallGetter<float>(row, object));
        out.d = v, out.i = int32_t(v);
        return want == Want::Int || want == Want::Double;
    }
    if (type == "b") {
        out.i = (plain ? Plain<uint8_t>(object, row->fieldOffset)
                       : CallGetter<uint8_t>(row, object)) != 0;
        return want == Want::Bool;
    }
    if (type == "s" && want == Want::String) {
        out.s = plain ? RuntimeLockString(Plain<KelpString>(object, row->fieldOffset))
                      : CallGetter<KelpString>(row, object);
        return true;
    }
    if (!type.empty() && type[0] == 'o' && want == Want::Object) {
        out.o = Plain<RuntimeObject *>(object, row->fieldOffset);
        if (plain)
            RuntimeLockObject(out.o);
        else
            out.o = CallGetter<RuntimeObject *>(row, object);
        return true;
    }
    return false;
}

// No property: a method of that name with no parameters that returns the
// type.
bool ReadByMethod(RuntimeObject *object, const char *name, Want want, Value &out) {
    static const char *kSuffix[] = {"() as Integer", "() as Double", "() as String",
                                    "() as Boolean", "() as Object"};
    void *code = KELPLoadObjectMethod(object, (std::string(name) + kSuffix[int(want)]).c_str());
    if (!code)
        return false;
    switch (want) {
    case Want::Int: out.i = reinterpret_cast<int32_t (*)(RuntimeObject *)>(code)(object); break;
    case Want::Double: out.d = reinterpret_cast<double (*)(RuntimeObject *)>(code)(object); break;
    case Want::String:
        out.s = reinterpret_cast<KelpString (*)(RuntimeObject *)>(code)(object);
        break;
    case Want::Bool:
        out.i = reinterpret_cast<uint8_t (*)(RuntimeObject *)>(code)(object) != 0;
        break;
    case Want::Object:
        out.o = reinterpret_cast<RuntimeObject *(*)(RuntimeObject *)>(code)(object);
        break;
    }
    return true;
}

// A Variant holding a value (a number, text, boolean, colour or date)
// answers Value, Type and the typed ...Value properties by converting, as
// the language's Variant does.  A conversion that raises (text that is no
// date) gives false: the exception is caught here, in a handler region of
// its own, and goes no further.
bool ReadVariant(RuntimeObject *v, std::string_view name, Want want, Value &out) {
    constexpr int32_t kVarObject = 9;
    if (VarType(v) == kVarObject || RuntimePendingException())
        return false;
    RuntimeEnterHandlerRegion();
    auto is = [&](const char *n) { return AsciiEqualNoCase(name, n); };
    const bool number = want == Want::Int || want == Want::Double;
    bool ok = true;
    if (is("Type") && number) {
        out.i = VarType(v), out.d = out.i;
    } else if ((is("IntegerValue") || is("Value")) && want == Want::Int) {
        out.i = variantToInt(v);
    } else if ((is("DoubleValue") || is("Value")) && want == Want::Double) {
        out.d = variantToDouble(v);
    } else if (is("DoubleValue") && want == Want::Int) {
        out.i = int32_t(variantToDouble(v));
    } else if (is("IntegerValue") && want == Want::Double) {
        out.d = variantToInt(v);
    } else if ((is("StringValue") || is("Value")) && want == Want::String) {
        out.s = variantToString(v);
    } else if ((is("BooleanValue") || is("Value")) && want == Want::Bool) {
        out.i = variantToBoolean(v) != 0;
    } else if ((is("ObjectValue") || is("Value")) && want == Want::Object) {
        out.o = variantToObject(v);
    } else if (is("DateValue") && want == Want::Object) {
        out.o = VariantToDate(v);
    } else {
        ok = false;
    }
    RuntimeObject *raised = RuntimeTakeException();
    RuntimeLeaveHandlerRegion();
    if (raised) {
        RuntimeUnlockObject(raised);
        RuntimeUnlockObject(out.o); // whatever the raising call gave back
        RuntimeUnlockString(out.s);
        out = Value{};
        return false;
    }
    return ok;
}

bool Get(RuntimeObject *object, const char *name, Want want, Value &out) {
    if (!object || !name)
        return false;
    std::string_view type;
    if (const RuntimePropertyRow *row = FindProperty(object, name, type))
        return Read(object, row, type, want, out);
    if (ReadVariant(object, name, want, out))
        return true;
    return ReadByMethod(object, name, want, out);
}

template <typename T>
bool Set(RuntimeObject *object, const char *name, const char *codes, T value) {
    std::string_view type;
    const RuntimePropertyRow *row = object && name ? FindProperty(object, name, type) : nullptr;
    if (!row || !row->setter || std::string_view(codes).find(type) == std::string_view::npos ||
        type.empty())
        return false;
    if (row->setter == reinterpret_cast<void *>(1)) {
        std::memcpy(reinterpret_cast<uint8_t *>(object) + row->fieldOffset, &value, sizeof(T));
        return true;
    }
    reinterpret_cast<void (*)(RuntimeObject *, int32_t, T)>(row->setter)(object, row->fieldOffset,
                                                                         value);
    return true;
}

// A method row's signature against a parsed declaration: same name, result
// and parameter codes (the first code after the result is the object's own).
bool SignatureMatches(std::string_view sig, const ParsedDeclaration &d, const std::string &codes) {
    const size_t p1 = sig.find('%');
    if (p1 == std::string_view::npos || !AsciiEqualNoCase(sig.substr(0, p1), d.name))
        return false;
    std::string_view rest = sig.substr(p1 + 1);
    const size_t p2 = rest.find('%');
    if (p2 == std::string_view::npos)
        return false;
    std::string_view args = rest.substr(p2 + 1);
    if (args.size() > 1 && args[0] == 'o') { // skip o<Self>
        const size_t close = args.find('>');
        args = close == std::string_view::npos ? args : args.substr(close + 1);
    }
    return AsciiEqualNoCase(std::string(rest.substr(0, p2)) + "%" + std::string(args), codes);
}

std::string CodeOf(const std::string &type, bool isArray) {
    std::string code;
    std::string_view v = ValueTypeName(type);
    if (v == "Boolean")
        code = "b";
    else if (v == "Integer")
        code = "i4";
    else if (v == "Color")
        code = "c";
    else if (v == "String")
        code = "s";
    else if (v == "Single")
        code = "f4";
    else if (v == "Double")
        code = "f8";
    else if (!type.empty())
        code = "o<" + type + ">";
    return isArray ? "a1" + code : code;
}

} // namespace
} // namespace kelp::plugins

using namespace kelp;
using namespace kelp::plugins;

extern "C" {

void *KELPLoadObjectMethod(RuntimeObject *object, const char *declaration) {
    ParsedDeclaration d;
    if (!object || !declaration || !ParseDeclaration(declaration, IsKnownClassName, d))
        return nullptr;
    std::string codes = CodeOf(d.resultType, d.resultArray) + "%";
    for (const ParsedParameter &p : d.parameters)
        codes += CodeOf(p.type, p.isArray);
    const RuntimeClass *k = object->klass;
    for (int32_t i = k ? k->directMethodCount - 1 : -1; i >= 0; --i)
        if (SignatureMatches(objtext::View(k->directMethodTable[i].signature), d, codes))
            return k->directMethodTable[i].code;
    return nullptr;
}

int32_t KELPGetPropValueInt(RuntimeObject *object, const char *name, int32_t *out) {
    Value v;
    if (!out || !Get(object, name, Want::Int, v))
        return 0;
    *out = v.i;
    return 1;
}
int32_t KELPGetPropValueDouble(RuntimeObject *object, const char *name, double *out) {
    Value v;
    if (!out || !Get(object, name, Want::Double, v))
        return 0;
    *out = v.d;
    return 1;
}
int32_t KELPGetPropValueString(RuntimeObject *object, const char *name, KelpString *out) {
    Value v;
    if (!out || !Get(object, name, Want::String, v))
        return 0;
    *out = v.s;
    return 1;
}
int32_t KELPGetPropValueBool(RuntimeObject *object, const char *name, int32_t *out) {
    Value v;
    if (!out || !Get(object, name, Want::Bool, v))
        return 0;
    *out = v.i;
    return 1;
}
int32_t KELPGetPropValueObject(RuntimeObject *object, const char *name, RuntimeObject **out) {
    Value v;
    if (!out || !Get(object, name, Want::Object, v))
        return 0;
    *out = v.o;
    return 1;
}
int32_t KELPSetPropValueInt(RuntimeObject *object, const char *name, int32_t value) {
    if (Set<int32_t>(object, name, "i4 c u4", value))
        return 1;
    return Set<double>(object, name, "f8", double(value)) ||
           Set<float>(object, name, "f4", float(value));
}
int32_t KELPSetPropValueDouble(RuntimeObject *object, const char *name, double value) {
    if (Set<double>(object, name, "f8", value) || Set<float>(object, name, "f4", float(value)))
        return 1;
    return Set<int32_t>(object, name, "i4 c u4", int32_t(value));
}
int32_t KELPSetPropValueString(RuntimeObject *object, const char *name, KelpString value) {
    return Set<KelpString>(object, name, "s", value);
}
int32_t KELPSetPropValueBoolean(RuntimeObject *object, const char *name, int32_t value) {
    return Set<uint8_t>(object, name, "b", value != 0);
}
int32_t KELPSetPropValueObject(RuntimeObject *object, const char *name, RuntimeObject *value) {
    std::string_view type;
    const RuntimePropertyRow *row = object && name ? FindProperty(object, name, type) : nullptr;
    if (!row || type.empty() || type[0] != 'o' || !row->setter ||
        row->setter == reinterpret_cast<void *>(1))
        return 0;
    reinterpret_cast<void (*)(RuntimeObject *, int32_t, RuntimeObject *)>(row->setter)(
        object, row->fieldOffset, value);
    return 1;
}

void KELPLockObject(RuntimeObject *object) { RuntimeLockObject(object); }
void KELPUnlockObject(RuntimeObject *object) { RuntimeUnlockObject(object); }
void KELPLockString(KelpString s) { RuntimeLockString(s); }
void KELPUnlockString(KelpString s) { RuntimeUnlockString(s); }

KelpString KELPBuildString(const char *text, int32_t length) {
    if (!text || length <= 0)
        return nullptr;
    string s(text, length);
    s.SetEncoding(kEncodingUTF8);
    return s.Release();
}
uint32_t KELPGetStringEncoding(KelpString s) { return s ? s->encoding : kEncodingASCII; }

RuntimeClass *pluginObjectType(const char *className) {
    ObjectDefinition *d = className ? FindClassDefinition(className) : nullptr;
    return d ? ClassForDefinition(d) : nullptr;
}
RuntimeObject *PluginNewInstance(const char *className) {
    RuntimeClass *k = pluginObjectType(className);
    if (!k && className) {
        KelpString name = objtext::Make(className);
        k = RuntimeLookupClass(name);
        objtext::Release(name);
    }
    return k ? RuntimeNewObject(k) : nullptr;
}
RuntimeObject *PluginNewOfSameClass(RuntimeObject *object) {
    return object && object->klass ? RuntimeNewObject(object->klass) : nullptr;
}

void *GetInterfaceRoutine(RuntimeObject *object, const char *interfaceName,
                          const char *routineName) {
    if (!object || !object->klass || !interfaceName || !routineName)
        return nullptr;
    const RuntimeClass *k = object->klass;
    for (int32_t i = 0; i < k->interfaceCount; ++i) {
        const RuntimeInterfaceRow &row = k->interfaceTable[i];
        if (!row.interfaceClass ||
            !AsciiEqualNoCase(objtext::View(row.interfaceClass->name), interfaceName))
            continue;
        for (int32_t slot = 1; slot <= row.slotCount; ++slot) {
            std::string_view sig = objtext::View(row.methodTable[slot].signature);
            if (AsciiEqualNoCase(sig.substr(0, sig.find('%')), routineName))
                return row.methodTable[slot].code;
        }
    }
    return nullptr;
}

void *GetEventInstance(RuntimeObject *object, void *eventRecord) {
    return FindEventHandler(object, static_cast<const ObjectHook *>(eventRecord));
}
void *GetEventInstancePPC(RuntimeObject *object, void *eventRecord) {
    return GetEventInstance(object, eventRecord);
}

void GetControlBounds(RuntimeObject *control, KelpRect *out) {
    if (out)
        *out = control && IsControl(control) ? Ctl(control)->bounds : KelpRect{};
}
int32_t GetControlVisible(RuntimeObject *control) {
    return control && IsControl(control) ? Ctl(control)->visible : 0;
}
void SetControlVisible(RuntimeObject *control, int32_t visible) {
    if (control && IsControl(control))
        ControlVisibleSetter(control, 0, visible != 0);
}
int32_t KELPGetControlEnabled(RuntimeObject *control) {
    if (ControlPane *pane = PaneOf(control))
        return pane->enabled;
    return control && IsControl(control) ? Ctl(control)->enabled : 0;
}
void *KELPGetControlHandle(RuntimeObject *control) {
    ControlPane *pane = PaneOf(control);
    return pane ? pane->GetWidget() : nullptr;
}
void KELPInvalidateControl(RuntimeObject *control) {
    if (ControlPane *pane = PaneOf(control))
        pane->Invalidate(true);
}
void KELPInvalidateControlRect(RuntimeObject *control, int32_t, int32_t, int32_t, int32_t) {
    KELPInvalidateControl(control); // the whole control: rectangles are small here
}
RuntimeObject *KELPGetControlGraphics(RuntimeObject *control) {
    ControlPane *pane = PaneOf(control);
    Graphics *g = pane ? pane->NewGraphics() : nullptr;
    return g ? NewGraphicsObject(g, true) : nullptr;
}

void *KELPGraphicsGdkDrawable(RuntimeObject *graphics) {
    auto *g = dynamic_cast<GraphicsGTK *>(GraphicsOfObject(graphics));
    return g ? g->TargetDrawable() : nullptr;
}
void KELPGetGraphicsOrigin(RuntimeObject *graphics, int32_t *x, int32_t *y) {
    Graphics *g = GraphicsOfObject(graphics);
    if (x)
        *x = g ? g->OriginX() : 0;
    if (y)
        *y = g ? g->OriginY() : 0;
}

KelpString PluginDefaultControlFont(void) { return objtext::Make("System"); }
KelpString PluginDefaultControlCaption(void) { return objtext::Make("Untitled"); }
int32_t PluginDefaultControlFontSize(void) { return 0; }
int32_t KELPinRuntime(void) { return 1; }

// The flag-0x01 setters: the plain store, and a redraw only for a change.
void intInvalidateSetter(RuntimeObject *control, int32_t offset, int32_t value) {
    const bool changed = control && intGetter(control, offset) != value;
    intSetter(control, offset, value);
    if (changed)
        KELPInvalidateControl(control);
}
void boolInvalidateSetter(RuntimeObject *control, int32_t offset, uint8_t value) {
    const bool changed = control && (boolGetter(control, offset) != 0) != (value != 0);
    boolSetter(control, offset, value);
    if (changed)
        KELPInvalidateControl(control);
}
void stringInvalidateSetter(RuntimeObject *control, int32_t offset, KelpString value) {
    KelpString old = control ? Plain<KelpString>(control, offset) : nullptr;
    const bool changed = control && RuntimeStringCompare(old, value) != 0;
    stringSetter(control, offset, value);
    if (changed)
        KELPInvalidateControl(control);
}
void objInvalidateSetter(RuntimeObject *control, int32_t offset, RuntimeObject *value) {
    const bool changed = control && Plain<RuntimeObject *>(control, offset) != value;
    objSetter(control, offset, value);
    if (changed)
        KELPInvalidateControl(control);
}

} // extern "C"
