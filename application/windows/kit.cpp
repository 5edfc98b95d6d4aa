#include "windows/kit.h"

#include <cstdio>
#include <deque>
#include <map>

namespace sumbrook::ui {
namespace {

std::string_view ViewOf(const stringStorage *s) {
    if (!s || !s->buffer || s->length <= 0)
        return {};
    return {reinterpret_cast<const char *>(s->buffer + 1), static_cast<size_t>(s->length)};
}

bool SameName(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (size_t i = 0; i < a.size(); ++i) {
        char x = a[i], y = b[i];
        if (x >= 'A' && x <= 'Z')
            x = char(x - 'A' + 'a');
        if (y >= 'A' && y <= 'Z')
            y = char(y - 'A' + 'a');
        if (x != y)
            return false;
    }
    return true;
}

} // namespace

stringStorage *Constant(std::string_view bytes) {
    struct Block {
        stringStorage record;
        std::string buffer; // length byte, text, NUL
    };
    static std::deque<Block> blocks; // stable addresses
    static std::map<std::string, stringStorage *, std::less<>> made;
    if (bytes.empty())
        return nullptr;
    if (auto it = made.find(bytes); it != made.end())
        return it->second;
    Block &b = blocks.emplace_back();
    b.buffer.reserve(bytes.size() + 2);
    b.buffer.push_back(char(bytes.size() < 255 ? bytes.size() : 255));
    b.buffer.append(bytes);
    b.buffer.push_back('\0');
    b.record.referenceCount = 1; // the reference nobody gives back
    b.record.buffer = reinterpret_cast<uint8_t *>(b.buffer.data());
    b.record.capacity = uint32_t(b.buffer.size());
    b.record.length = int32_t(bytes.size());
    b.record.encoding = kEncodingUTF8;
    made.emplace(std::string(bytes), &b.record);
    return &b.record;
}

RuntimeClass *Subclass(const char *base, const char *name, uint32_t extraBytes) {
    RuntimeClass *parent = RuntimeLookupClass(Constant(base));
    if (!parent) {
        std::fprintf(stderr, "sumbrook: the runtime has no class %s\n", base);
        return nullptr;
    }
    RuntimeClass *klass =
        RuntimeNewClass(parent, parent->methodCount, parent->interfaceCount, parent->eventCount,
                        parent->directMethodCount, parent->propertyCount);
    if (!klass)
        return nullptr;
    klass->name = RuntimeLockString(Constant(name));
    klass->instanceSize = parent->instanceSize + extraBytes;
    return klass;
}

uint32_t OwnFieldsOffset(RuntimeClass *klass) {
    return klass && klass->base ? klass->base->instanceSize : KELP_OBJECT_FIELDS_OFFSET;
}

bool SetHandler(RuntimeClass *klass, const char *event, void *code) {
    // The most derived row of the name wins, as the binder looks it up.
    for (int32_t i = klass ? klass->eventCount - 1 : -1; i >= 0; --i) {
        if (SameName(ViewOf(klass->eventTable[i].name), event)) {
            klass->eventTable[i].handler = code;
            return true;
        }
    }
    std::fprintf(stderr, "sumbrook: class has no event %s\n", event);
    return false;
}

bool MassData::Row(std::string_view name, char type) {
    for (int32_t i = mClass ? mClass->propertyCount - 1 : -1; i >= 0; --i) {
        std::string_view signature = ViewOf(mClass->propertyTable[i].signature);
        const size_t percent = signature.find('%');
        if (percent == std::string_view::npos || !SameName(signature.substr(0, percent), name))
            continue;
        if (percent + 1 >= signature.size() || signature[percent + 1] != type) {
            std::fprintf(stderr, "sumbrook: property %.*s is not of type %c\n", int(name.size()),
                         name.data(), type);
            return false;
        }
        Put(uint32_t(i), 2);
        return true;
    }
    std::fprintf(stderr, "sumbrook: no property %.*s\n", int(name.size()), name.data());
    return false;
}

void MassData::Put(uint32_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i)
        mBytes.push_back(char((value >> (8 * i)) & 0xff));
}

MassData &MassData::Int(std::string_view name, int32_t value) {
    if (Row(name, 'i'))
        Put(uint32_t(value), 4);
    return *this;
}

MassData &MassData::Bool(std::string_view name, bool value) {
    if (Row(name, 'b'))
        Put(value ? 1 : 0, 1);
    return *this;
}

MassData &MassData::Color(std::string_view name, uint32_t rgb) {
    if (Row(name, 'c'))
        Put(rgb, 3);
    return *this;
}

MassData &MassData::Text(std::string_view name, std::string_view text) {
    if (Row(name, 's')) {
        Put(uint32_t(text.size()), 4);
        mBytes.append(text);
    }
    return *this;
}

EventScope::EventScope(RuntimeObject *control) : self(control) {
    RuntimeLockObject(self);
    RuntimeExchangeSelfAndMe(&self, &me);
}

EventScope::~EventScope() {
    RuntimeUnlockObject(me);
    RuntimeUnlockObject(self);
}

RuntimeObject *ControlOf(RuntimeObject *view, const char *name) {
    return RuntimeControlFetch(view, Constant(name));
}

namespace {
bool IsEditField(RuntimeObject *control) {
    static RuntimeClass *const field = RuntimeLookupClass(Constant("EditField"));
    return control && field && RuntimeObjectIsa(control, field);
}
} // namespace

sumbrook::Text LabelText(RuntimeObject *view, const char *name) {
    RuntimeObject *control = ControlOf(view, name);
    return sumbrook::Text::Adopt(IsEditField(control) ? editTextGetter(control, 0)
                                                      : staticTextTextGetter(control, 0));
}

void SetLabelText(RuntimeObject *view, const char *name, const sumbrook::Text &text) {
    RuntimeObject *control = ControlOf(view, name);
    if (IsEditField(control))
        editTextSetter(control, 0, text.get());
    else
        staticTextTextSetter(control, 0, text.get());
}

void SetRadioCaption(RuntimeObject *view, const char *name, const sumbrook::Text &text) {
    radioCaptionSetter(ControlOf(view, name), 0, text.get());
}

void SetRadioValue(RuntimeObject *view, const char *name, bool value) {
    radioValueSetter(ControlOf(view, name), 0, value ? 1 : 0);
}

void SetVisible(RuntimeObject *view, const char *name, bool visible) {
    ControlVisibleSetter(ControlOf(view, name), 0, visible ? 1 : 0);
}

void SetEnabled(RuntimeObject *view, const char *name, bool enabled) {
    controlEnabledSetter(ControlOf(view, name), 0, enabled ? 1 : 0);
}

void SetLabelColor(RuntimeObject *view, const char *name, uint32_t rgb) {
    staticTextColorSetter(ControlOf(view, name), 0, int32_t(rgb));
}

} // namespace sumbrook::ui
