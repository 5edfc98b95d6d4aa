#pragma once
// Class definitions: the static description of a library (or plug-in) class,
// turned into a working RuntimeClass on first use by ClassForDefinition.
//
// How a library class is declared.  A definition accessor is a function with
// no arguments that returns the definition; it builds it once from plain
// static rows, and accessors may call each other for their types and supers:
//
//     struct TimerObject { RuntimeObject object; int32_t mode; int32_t period; };
//
//     static ObjectHook *gTimerAction;           // the hook's slot
//
//     ObjectDefinition *TimerDefinition() {
//         static const PropertyRow properties[] = {
//             {0, "Mode", &kTypeInteger, KELP_ENTRY(intGetter), KELP_ENTRY(timerModeSetter),
//              offsetof(TimerObject, mode)},
//             {0, "Period", &kTypeInteger, KELP_ENTRY(intGetter), KELP_PLAIN_FIELD,
//              offsetof(TimerObject, period)},
//         };
//         static const ParameterRow resetParams[] = {{"hard", &kTypeBoolean}};
//         static const MethodRow methods[] = {
//             {"Reset", nullptr, resetParams, 1, KELP_ENTRY(timerReset)},
//         };
//         static const EventRow events[] = {{"Action", "", nullptr, &gTimerAction}};
//         static const ClassDescription description = {
//             .name = "Timer",
//             .instanceSize = sizeof(TimerObject),
//             .initializer = KELP_ENTRY(TimerInitializer),
//             .finalizer = KELP_ENTRY(TimerFinalizer),
//             .properties = properties, .methods = methods, .events = events,
//         };
//         static ObjectDefinition *definition = BuildDefinition(description);
//         return definition;
//     }
//
// and registered from the folder's Wire function (its wiring.cpp):
//
//     AddIntrinsicClassAccessor(&TimerDefinition);
//
// A module (a named group of functions and constants) is declared the same
// way with `.instanceSize = 0` and no super, events or life-cycle functions,
// and registered with AddIntrinsicModuleAccessor.
//
// A subclass names its super with `.super = RectControlDefinition`; an
// implementation of an inherited event is a HookInstanceRow; an interface the
// class implements is listed in `.interfaces` by its accessor, and its
// methods are found by name among the class's methods.  Firing an event:
//     CallEvent(object, gTimerAction);      // exceptions/call_event.h
#include "kelp/records.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kelp {

struct ObjectDefinition;
using DefinitionAccessor = ObjectDefinition *(*)();

// ------------------------------------------------------------------ types

enum TypeKind : uint32_t {
    kTypeNamed = 0,
    kTypeArray = 1,
    kTypeObjectOf = 2, // an object of the class that `objectClass` describes
    kTypeClassRef = 3,
};

struct TypeRecord {
    uint32_t kind;
    const char *name;                         // named types: "String", "Integer", ...
    const TypeRecord *element = nullptr;      // arrays
    int32_t dimensions = 0;                   // arrays
    DefinitionAccessor objectClass = nullptr; // objects
};

extern const TypeRecord kTypeString, kTypeInteger, kTypeUInteger, kTypeBoolean, kTypeSingle,
    kTypeDouble, kTypeColor, kTypePtr, kTypeCString, kTypePString, kTypeWindowPtr, kTypeClass;

// ---------------------------------------------------------------- rows

// A code address with the name under which the export table lists it.
struct EntryPoint {
    void *code = nullptr;
    const char *name = nullptr;
};
#define KELP_ENTRY(fn) (::kelp::EntryPoint{reinterpret_cast<void *>(&(fn)), #fn})
// A property accessor that reads or writes the field at the row's offset.
#define KELP_PLAIN_FIELD (::kelp::EntryPoint{reinterpret_cast<void *>(1), nullptr})

enum ParameterFlags : uint32_t {
    kParamByRef = 1,
    kParamArray = 2,
    kParamAssigns = 4,
    kParamExtends = 8,
};

struct ParameterRow {
    const char *name = nullptr;
    const TypeRecord *type = nullptr;
    const char *defaultValue = nullptr; // "Nil", "True", "False", or a number
    uint32_t flags = 0;
};

enum ItemFlags : uint32_t {
    kItemConsoleSafe = 0x4,
    kItemSecondFlag = 0x8,
    kItemConsoleOnly = 0x804,
    kItemProtected = 0x4000,
    kItemPrivate = 0x14000,
    kItemSystemVirtual = 0x8 << 16, // must not reach a converted definition
};

struct PropertyRow {
    uint32_t flags = 0;
    const char *name = nullptr;
    const TypeRecord *type = nullptr;
    EntryPoint getter = {};
    EntryPoint setter = {};
    intptr_t parameter = -9; // field offset, selector, or -9 for none
    uint32_t target = 0;
    bool constant = false; // a class constant: no property table row
};

struct MethodRow {
    const char *name = nullptr;
    const TypeRecord *returnType = nullptr; // null for a Sub
    const ParameterRow *parameters = nullptr;
    int32_t parameterCount = 0;
    EntryPoint entry = {};
    EntryPoint secondEntry = {}; // the assigning form, if any
    uint32_t flags = 0;
    uint32_t target = 0;
};

struct EventRow {
    const char *name;
    const char *parameterText = "";       // "item As FolderItem"
    const char *returnTypeName = nullptr; // null for none
    struct ObjectHook **slot = nullptr;   // receives the hook; firing code passes it
};

struct HookInstanceRow {
    const char *eventName = nullptr; // an event of a super definition
    void *code = nullptr;
};

struct ClassDescription {
    const char *name;
    DefinitionAccessor super = nullptr;
    uint32_t instanceSize = sizeof(RuntimeObject);
    bool isInterface = false;
    uint8_t targetFlags[3] = {0, 0, 0};
    EntryPoint initializer = {};
    EntryPoint finalizer = {};
    std::span<const PropertyRow> properties = {};
    std::span<const MethodRow> methods = {};
    std::span<const EventRow> events = {};
    std::span<const HookInstanceRow> hookInstances = {};
    std::span<const DefinitionAccessor> interfaces = {};
};

// ------------------------------------------------------- list items

struct LinkedObjectDefItem {
    uint32_t userFlags = 0;
};

struct InstanceVariable : LinkedObjectDefItem {
    InstanceVariable *next = nullptr;
    const PropertyRow *row = nullptr;
    int32_t mPropertyTableIndex = -1;
    bool IsConstant() const { return row->constant; }
};

struct ObjectMethod : LinkedObjectDefItem {
    ObjectMethod *next = nullptr;
    const MethodRow *row = nullptr;
};

struct ObjectHook : LinkedObjectDefItem {
    ObjectHook *next = nullptr;
    const char *name = nullptr;
    const char *parameterText = nullptr;
    const char *returnTypeName = nullptr;
    int32_t index = -1; // row in the class's event table, set at conversion
};

struct ObjectHookInstance : LinkedObjectDefItem {
    ObjectHookInstance *next = nullptr;
    const char *name = nullptr;
    int32_t id = -1; // the index of the inherited hook, set at conversion
    void *code = nullptr;
};

struct InterfaceItem {
    InterfaceItem *next = nullptr;
    DefinitionAccessor interface = nullptr;
    void **slots = nullptr; // method count + 1 entries; slot 0 stays free
    // An interface known only while the program runs (a plug-in's), in
    // place of an accessor.
    ObjectDefinition *definition = nullptr;
    ObjectDefinition *Interface() const { return interface ? interface() : definition; }
};

struct FunctionReference {
    void *toc = nullptr; // code
    const char *name = nullptr;
    void *reserved[5] = {};
};

struct ObjectDefinition {
    int32_t formatVersion = 3;
    uint8_t targetFlags[3] = {0, 0, 0};
    InstanceVariable *instanceVariables = nullptr;
    ObjectDefinition *super = nullptr;
    uint32_t resolvedInterfacesMark = 0;
    KelpString className = nullptr;
    uint8_t flags[3] = {0, 0, 0};
    int32_t mPropertyTableSize = 0;
    ObjectDefinition *nextDefinition = nullptr;
    uint32_t objectSize = sizeof(RuntimeObject);
    int32_t id = -1;
    KelpString extra = nullptr;
    ObjectMethod *methods = nullptr;
    ObjectHook *hooks = nullptr;
    ObjectHookInstance *hookInstances = nullptr;
    void *menuHandlers = nullptr;
    InterfaceItem *interfaces = nullptr;
    uint32_t isInterface = 0;
    FunctionReference initializer;
    FunctionReference finalizer;
};

// Builds a definition from its rows and links it in the list of all
// definitions.  Call it once, from the definition's accessor.
ObjectDefinition *BuildDefinition(const ClassDescription &description);
// Adds rows to a definition from a folder above the one that built it (a
// class whose members reach a higher subsystem).  Call it from a Wire
// function, before the class is first used.
void ExtendDefinition(ObjectDefinition *definition, std::span<const PropertyRow> properties,
                      std::span<const MethodRow> methods);

// The text of the class's target condition: "not TargetHasGUI", "true" or
// "TargetHasGUI".
const char *TargetConditionText(const ObjectDefinition *definition);

// ----------------------------------------------------------- registries

// Adds a class accessor to those RuntimeInitExternalClasses registers.  A
// folder's Wire function adds its classes; modules register likewise.
void AddIntrinsicClassAccessor(DefinitionAccessor accessor);
void AddIntrinsicModuleAccessor(DefinitionAccessor accessor);

// Module-level functions of the language (Left, MsgBox, Rnd): method rows
// by name; a name may have several rows with different parameters.  Rows
// given before RuntimeInitExternalClasses have their entry points exported
// there; later ones at once.  A folder's Wire function adds its rows.
void AddIntrinsicFunctions(std::span<const MethodRow> rows);
std::vector<const MethodRow *> LookupIntrinsicFunction(const char *name);

void RegisterIntrinsicClass(ObjectDefinition *definition);
void RegisterIntrinsicModule(ObjectDefinition *definition);
ObjectDefinition *LookupIntrinsicClass(const char *name);
ObjectDefinition *LookupIntrinsicModule(const char *name);

// The RuntimeClass of a definition, converted on first use.
RuntimeClass *ClassForDefinition(ObjectDefinition *definition);
// RuntimeNewObject(ClassForDefinition(definition)).
RuntimeObject *NewObjectOfDefinition(ObjectDefinition *definition);

// Plug-in classes are looked up after the intrinsic ones, by the plug-in host.
using PluginClassFinder = ObjectDefinition *(*)(const char *name);
void SetPluginClassFinder(PluginClassFinder finder);
// What RuntimeInitExternalClasses does last, once the library's classes are
// registered: the plug-in host loads the image's plug-ins there.
void SetExternalClassesFinisher(void (*finisher)());

// The type code of a type in a signature ("s", "i4", "o<Window>", "a1s").
std::string TypeCode(const TypeRecord *type);
// "Name%result%o<Class>args" for a method; "Name%type%" for a property.
std::string MethodSignature(const ObjectDefinition *owner, const MethodRow &row);
std::string PropertySignature(const PropertyRow &row);
// "Function Name(x As Integer) As String", as messages and the debugger show it.
std::string DescribeMethod(const MethodRow &row);
// Whether a declaration a plug-in writes ("Left(s As String, n As Integer)
// As String", "Function" or "Sub" in front allowed) names the row: the same
// name, and the same types of parameters and result; parameter names and
// defaults don't count.
bool DeclarationMatches(const MethodRow &row, std::string_view declaration);

} // namespace kelp
