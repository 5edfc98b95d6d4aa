#pragma once
// The plug-in host's state: the loaded plug-ins and what they registered.
// Plug-ins register during their main entry, on the main thread, before the
// application object exists; the host keeps their record pointers for the
// life of the process.  Everything here runs under the run lock.
#include "kelp/plugin.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace kelp {
struct ObjectDefinition;
struct ObjectHook;
} // namespace kelp

namespace kelp::plugins {

// One loaded library; a new one goes to the head of the list.
struct PluginRecord {
    PluginRecord *next = nullptr;
    void *exports = nullptr; // given by RegisterPluginExports
    int32_t reserved[2] = {-1, -1};
    int32_t reservedWord = 0;
    int32_t version = 1;       // the interface version it registered
    std::string temporaryPath; // the extracted file; empty when loaded in place
    std::string libraryPath;
    bool pathFlag = false; // messages use libraryPath
    void *handle = nullptr;
};

enum class Kind { Class, Control, Interface, Module };

// What a plug-in registered: one node per record, newest first in each list.
struct Registered {
    Registered *next = nullptr;
    Kind kind = Kind::Class;
    PluginRecord *plugin = nullptr;
    KELPclassDefinition *classRecord = nullptr;
    KELPcontrol *controlRecord = nullptr;
    KELPcontrolV1 *oldControlRecord = nullptr; // the version-1 record converted, if any
    KELPinterfaceDefinition *interfaceRecord = nullptr;
    KELPmoduleDefinition *moduleRecord = nullptr;
    ObjectDefinition *definition = nullptr; // made by linking
    RuntimeClass *klass = nullptr;          // made by linking
    bool linking = false;                   // on the stack of a recursive link

    const char *Name() const;
};

struct GlobalMethod {
    GlobalMethod *next = nullptr;
    PluginRecord *plugin = nullptr;
    KELPmethodDefinition *record = nullptr;
};

struct HostState {
    PluginRecord *plugins = nullptr;
    PluginRecord *current = nullptr; // the plug-in whose main entry runs, or that links
    Registered *classes = nullptr, *controls = nullptr, *interfaces = nullptr, *modules = nullptr;
    GlobalMethod *methods = nullptr;
    std::vector<KELPclassDefinition *> extensions;
    // Classes, controls and interfaces by lowered name: linking a thousand
    // classes looks names up many times.
    std::unordered_map<std::string, Registered *> byName;
};
HostState &Host();

// A plug-in class, control or interface by name (without regard to case), or
// null.
Registered *FindRegistered(std::string_view name);
// The definition of a class a plug-in record may name: the compatibility
// names mapped, then the library's classes, then those of plug-ins.
ObjectDefinition *FindClassDefinition(std::string_view name);
// Whether a declaration may name this type.
bool IsKnownClassName(std::string_view name);

// Method rows of a table: 32 bytes from record version 7 on, 24 below.
inline size_t MethodStride(int32_t version) {
    return version >= 7 ? sizeof(KELPmethodDefinition) : sizeof(KELPmethodDefinitionV6);
}
inline const KELPmethodDefinitionV6 *MethodAt(const void *table, int32_t version, int32_t i) {
    return reinterpret_cast<const KELPmethodDefinitionV6 *>(static_cast<const uint8_t *>(table) +
                                                            MethodStride(version) * size_t(i));
}
// The most rows a table may claim; a larger count is damage, not a table.
inline constexpr int32_t kMaxRows = 1 << 16;
// Checks a table before it is walked: a count in range, and rows when it
// isn't 0.  Reports with the condition text otherwise.
bool TableIsSound(const void *table, int32_t count, const char *condition, int line);

// Links the classes and controls down the list until `stop`.
void LinkPluginClasses(Registered *stop);
// The record of a control object's class, found up its class chain.
Registered *ControlOfClass(RuntimeClass *klass);
// The plug-in class a RuntimeClass was made from, or null.
Registered *ClassOfRuntimeClass(RuntimeClass *klass);

// Loading.
void LoadEmbeddedPlugins();
// Loads one library and runs its main entry; false with the loader's text.
// `temporaryPath` is empty for a library loaded in place.
bool LoadPluginLibrary(const std::string &path, const std::string &temporaryPath,
                       std::string &error);
void *Resolve(const char *name);

// A signature ("Add%i4%o<Counter>i4") as a declaration ("Function
// Add(p1 As Integer) As Integer").
std::string DeclarationOfSignature(std::string_view signature);

// For tests: forgets the entry table so that the next look-up builds it
// anew from everything registered so far.
void ForgetEntryTableForTest();

inline constexpr const char *kReportFile = "runtime/plugins";

} // namespace kelp::plugins
