#include "pictures/resource_fork.h"

#include "cursors/mouse_cursor.h"
#include "memory/memory_block.h"
#include "objects/definitions.h"
#include "pictures/picture_object.h"
#include "sound/sound_class.h"

#include "kelp/pictures.h"

namespace kelp {

ObjectDefinition *ResourceForkDefinition() {
    static const TypeRecord picture{kTypeObjectOf, nullptr, nullptr, 0, &PictureDefinition};
    static const TypeRecord sound{kTypeObjectOf, nullptr, nullptr, 0, &SoundDefinition};
    static const TypeRecord cursor{kTypeObjectOf, nullptr, nullptr, 0, &MouseCursorDefinition};
    static const TypeRecord block{kTypeObjectOf, nullptr, nullptr, 0, &MemoryBlockDefinition};
    static const ParameterRow id[] = {{"id", &kTypeInteger}};
    static const ParameterRow name[] = {{"name", &kTypeString}};
    static const ParameterRow type[] = {{"type", &kTypeString}};
    static const ParameterRow index[] = {{"index", &kTypeInteger}};
    static const ParameterRow typeId[] = {{"type", &kTypeString}, {"id", &kTypeInteger}};
    static const ParameterRow typeIndex[] = {{"type", &kTypeString}, {"index", &kTypeInteger}};
    static const ParameterRow typeName[] = {{"type", &kTypeString}, {"name", &kTypeString}};
    static const ParameterRow handle[] = {{"handle", &block}};
    static const ParameterRow addResource[] = {{"data", &kTypeString},
                                               {"type", &kTypeString},
                                               {"id", &kTypeInteger},
                                               {"name", &kTypeString}};
    static const ParameterRow addPicture[] = {
        {"picture", &picture}, {"id", &kTypeInteger}, {"name", &kTypeString}};
    static const MethodRow methods[] = {
        {"Close", nullptr, nullptr, 0, KELP_ENTRY(resourceForkClose)},
        {"TypeCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(resourceForkTypeCount)},
        {"ResourceType", &kTypeString, index, 1, KELP_ENTRY(resourceForkResourceType)},
        {"GetResource", &kTypeString, typeId, 2, KELP_ENTRY(resourceForkGetResource)},
        {"GetHandle", &block, typeId, 2, KELP_ENTRY(resourceForkGetHandle)},
        {"ReleaseHandle", nullptr, handle, 1, KELP_ENTRY(resourceForkReleaseHandle)},
        {"GetNamedResource", &kTypeString, typeName, 2, KELP_ENTRY(resourceForkGetNamedResource)},
        {"ResourceCount", &kTypeInteger, type, 1, KELP_ENTRY(resourceForkResourceCount)},
        {"ResourceID", &kTypeInteger, typeIndex, 2, KELP_ENTRY(resourceForkResourceID)},
        {"ResourceName", &kTypeString, typeIndex, 2, KELP_ENTRY(resourceForkResourceName)},
        {"AddResource", nullptr, addResource, 4, KELP_ENTRY(resourceForkAddResource)},
        {"AddPicture", nullptr, addPicture, 3, KELP_ENTRY(resourceForkAddPicture)},
        {"RemoveResource", nullptr, typeId, 2, KELP_ENTRY(resourceForkRemoveResource)},
        {"GetSound", &sound, id, 1, KELP_ENTRY(resourceForkGetSound)},
        {"GetPicture", &picture, id, 1, KELP_ENTRY(resourceForkGetPicture)},
        {"Getcicn", &picture, id, 1, KELP_ENTRY(resourceForkGetCicn)},
        {"Geticl", &picture, id, 1, KELP_ENTRY(resourceForkGetIcl)},
        {"Getics", &picture, id, 1, KELP_ENTRY(resourceForkGetIcs)},
        {"getCursor", &cursor, id, 1, KELP_ENTRY(resourceForkGetCursor)},
        {"GetNamedPicture", &picture, name, 1, KELP_ENTRY(resourceForkGetNamedPicture)},
        {"ResourceLocked", &kTypeBoolean, typeId, 2, KELP_ENTRY(resourceForkGetLocked),
         KELP_ENTRY(resourceForkSetLocked)},
        {"ResourceProtected", &kTypeBoolean, typeId, 2, KELP_ENTRY(resourceForkGetProtected),
         KELP_ENTRY(resourceForkSetProtected)},
        {"ResourcePreload", &kTypeBoolean, typeId, 2, KELP_ENTRY(resourceForkGetPreload),
         KELP_ENTRY(resourceForkSetPreload)},
        {"ResourcePurgeable", &kTypeBoolean, typeId, 2, KELP_ENTRY(resourceForkGetPurgeable),
         KELP_ENTRY(resourceForkSetPurgeable)},
        {"ResourceSysHeap", &kTypeBoolean, typeId, 2, KELP_ENTRY(resourceForkGetSysHeap),
         KELP_ENTRY(resourceForkSetSysHeap)},
    };
    static const ClassDescription description = {
        .name = "ResourceFork",
        .finalizer = KELP_ENTRY(ResourceForkDestructor),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

extern "C" {

void resourceForkClose(RuntimeObject *) {}
void ResourceForkDestructor(RuntimeObject *) {}
int32_t resourceForkTypeCount(RuntimeObject *) { return 0; }
KelpString resourceForkResourceType(RuntimeObject *, int32_t) { return nullptr; }
KelpString resourceForkGetResource(RuntimeObject *, KelpString, int32_t) { return nullptr; }
RuntimeObject *resourceForkGetHandle(RuntimeObject *, KelpString, int32_t) { return nullptr; }
void resourceForkReleaseHandle(RuntimeObject *, RuntimeObject *) {}
KelpString resourceForkGetNamedResource(RuntimeObject *, KelpString, KelpString) { return nullptr; }
int32_t resourceForkResourceCount(RuntimeObject *, KelpString) { return 0; }
int32_t resourceForkResourceID(RuntimeObject *, KelpString, int32_t) { return 0; }
KelpString resourceForkResourceName(RuntimeObject *, KelpString, int32_t) { return nullptr; }
void resourceForkAddResource(RuntimeObject *, KelpString, KelpString, int32_t, KelpString) {}
void resourceForkAddPicture(RuntimeObject *, RuntimeObject *, int32_t, KelpString) {}
void resourceForkRemoveResource(RuntimeObject *, KelpString, int32_t) {}
RuntimeObject *resourceForkGetSound(RuntimeObject *, int32_t) { return nullptr; }
RuntimeObject *resourceForkGetPicture(RuntimeObject *, int32_t) { return nullptr; }
RuntimeObject *resourceForkGetCicn(RuntimeObject *, int32_t) { return nullptr; }
RuntimeObject *resourceForkGetIcl(RuntimeObject *, int32_t) { return nullptr; }
RuntimeObject *resourceForkGetIcs(RuntimeObject *, int32_t) { return nullptr; }
RuntimeObject *resourceForkGetCursor(RuntimeObject *, int32_t) { return nullptr; }
RuntimeObject *resourceForkGetNamedPicture(RuntimeObject *, KelpString) { return nullptr; }
uint8_t resourceForkGetLocked(RuntimeObject *, KelpString, int32_t) { return 0; }
uint8_t resourceForkGetProtected(RuntimeObject *, KelpString, int32_t) { return 0; }
uint8_t resourceForkGetPreload(RuntimeObject *, KelpString, int32_t) { return 0; }
uint8_t resourceForkGetPurgeable(RuntimeObject *, KelpString, int32_t) { return 0; }
uint8_t resourceForkGetSysHeap(RuntimeObject *, KelpString, int32_t) { return 0; }
void resourceForkSetLocked(RuntimeObject *, KelpString, int32_t, uint8_t) {}
void resourceForkSetProtected(RuntimeObject *, KelpString, int32_t, uint8_t) {}
void resourceForkSetPreload(RuntimeObject *, KelpString, int32_t, uint8_t) {}
void resourceForkSetPurgeable(RuntimeObject *, KelpString, int32_t, uint8_t) {}
void resourceForkSetSysHeap(RuntimeObject *, KelpString, int32_t, uint8_t) {}

} // extern "C"
