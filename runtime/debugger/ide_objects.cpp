// The small calls about objects that a debug build and the IDE make besides
// the protocol.
#include "objects/object_model.h"
#include "objects/text.h"

#include "kelp/debugger.h"
#include "kelp/objects.h"
#include "kelp/startup.h"

#include <cstdio>
#include <string>

extern "C" {

intptr_t RuntimeDebugObjectID(RuntimeObject *object) { return reinterpret_cast<intptr_t>(object); }

RuntimeObject *RuntimeProjectObject(void) {
    RuntimeObject *app = getAppObject();
    RuntimeLockObject(app);
    return app;
}

void debugDumpObjects(void) {
    using namespace kelp;
    int32_t count = 0;
    for (RuntimeObject *o = AllObjectsHead(); o; o = o->next, ++count) {
        RuntimeClass *klass = GetObjectClass(o);
        std::string name(klass ? objtext::View(klass->name) : std::string_view());
        std::fprintf(stderr, "%p %s %d\n", static_cast<void *>(o), name.c_str(), o->referenceCount);
    }
    std::fprintf(stderr, "%d objects\n", count);
}

} // extern "C"
