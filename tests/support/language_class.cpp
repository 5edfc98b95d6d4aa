#include "support/language_class.h"

#include "objects/text.h"

#include "kelp/objects.h"

#include <cstring>
#include <string>

namespace kelp::test {

KelpString MakeText(const char *text) { return objtext::Make(text ? text : ""); }

const char *TextOf(KelpString s) {
    if (!s || !s->buffer)
        return "";
    return reinterpret_cast<const char *>(s->buffer + 1);
}

RuntimeClass *MakeSubclass(const char *baseName, const char *name, uint32_t extraBytes) {
    RuntimeInitExternalClasses();
    KelpString baseText = MakeText(baseName);
    RuntimeClass *base = RuntimeLookupClass(baseText);
    objtext::Release(baseText);
    if (!base)
        return nullptr;
    RuntimeClass *klass =
        RuntimeNewClass(base, base->methodCount, base->interfaceCount, base->eventCount,
                        base->directMethodCount, base->propertyCount);
    if (!klass)
        return nullptr;
    klass->name = MakeText(name);
    klass->instanceSize = base->instanceSize + extraBytes;
    return klass;
}

bool SetEventHandler(RuntimeClass *klass, const char *eventName, void *code) {
    for (int32_t i = klass->eventCount - 1; i >= 0; --i) {
        if (objtext::SameName(objtext::View(klass->eventTable[i].name), eventName)) {
            klass->eventTable[i].handler = code;
            return true;
        }
    }
    return false;
}

} // namespace kelp::test
