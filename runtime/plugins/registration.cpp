// The registration calls a plug-in makes from its main entry, each gated by
// the plug-in's interface version or the record's format version.  A call
// below its gate, or made while no plug-in is loading, is ignored without a
// word: an old plug-in keeps working with what it can express.
#include "plugins/host.h"
#include "plugins/old_records.h"

#include "base/ascii.h"
#include "base/fatal_report.h"
#include "objects/definitions.h"

#include <string>

namespace kelp::plugins {

HostState &Host() {
    static auto *state = new HostState(); // lives to the end of the process
    return *state;
}

const char *Registered::Name() const {
    switch (kind) {
    case Kind::Class: return classRecord->name;
    case Kind::Control: return controlRecord->name;
    case Kind::Interface: return interfaceRecord->name;
    case Kind::Module: return moduleRecord->name;
    }
    return nullptr;
}

bool TableIsSound(const void *table, int32_t count, const char *condition, int line) {
    if (count >= 0 && count <= kMaxRows && (table || count == 0))
        return true;
    FatalReport(kFatalFailedAssertion, kReportFile, line, condition, "");
    return false;
}

namespace {

// Older names of classes, as plug-ins built against them still write them.
std::string_view MappedClassName(std::string_view name) {
    static constexpr std::pair<std::string_view, std::string_view> kMap[] = {
        {"DatabaseCursor", "RecordSet"},
        {"DatabaseCursorField", "DatabaseField"},
        {"ExcelApplication", "OldExcelApplication"},
        {"PowerPointApplication", "OldPowerPointApplication"},
        {"WordApplication", "OldWordApplication"},
        {"SystemClass", "_SystemClass"},
    };
    for (const auto &[from, to] : kMap)
        if (AsciiEqualNoCase(from, name))
            return to;
    return name;
}

Registered *Push(Registered *&list, Kind kind) {
    auto *r = new Registered();
    r->kind = kind;
    r->plugin = Host().current;
    r->next = list;
    list = r;
    return r;
}

void Index(Registered *r) { Host().byName.emplace(AsciiLowered(r->Name()), r); }

bool NameIsFree(const char *name) {
    return name && *name && !FindClassDefinition(name) && !FindRegistered(name);
}

} // namespace

Registered *FindRegistered(std::string_view name) {
    auto it = Host().byName.find(AsciiLowered(name));
    return it == Host().byName.end() ? nullptr : it->second;
}

ObjectDefinition *FindClassDefinition(std::string_view name) {
    const std::string key(MappedClassName(name));
    if (ObjectDefinition *d = LookupIntrinsicClass(key.c_str()))
        return d;
    Registered *r = FindRegistered(key);
    return r ? r->definition : nullptr;
}

bool IsKnownClassName(std::string_view name) {
    const std::string key(MappedClassName(name));
    return LookupIntrinsicClass(key.c_str()) || FindRegistered(key);
}

} // namespace kelp::plugins

using namespace kelp;
using namespace kelp::plugins;

extern "C" void RegisterPluginVersion(int32_t version) {
    if (Host().current)
        Host().current->version = version;
}

extern "C" void RegisterPluginExports(void *exports) {
    if (Host().current)
        Host().current->exports = exports;
}

extern "C" void PluginRegisterClass(KELPclassDefinition *record) {
    PluginRecord *p = Host().current;
    if (!p || p->version <= 2 || !record || !NameIsFree(record->name))
        return;
    Registered *r = Push(Host().classes, Kind::Class);
    r->classRecord = record;
    Index(r);
}

// Record version 1 predates the layout a control has now and is converted;
// 2 was never released and is left alone.
extern "C" void PluginRegisterControl(KELPcontrol *record) {
    PluginRecord *p = Host().current;
    if (!p || !record || record->version == 2 || record->version < 1)
        return;
    KELPcontrolV1 *old = nullptr;
    if (record->version == 1) {
        old = reinterpret_cast<KELPcontrolV1 *>(record);
        record = ConvertControlV1(*old, *p);
    }
    if (!record || !NameIsFree(record->name))
        return;
    Registered *r = Push(Host().controls, Kind::Control);
    r->controlRecord = record;
    r->oldControlRecord = old;
    Index(r);
}

extern "C" void PluginRegisterModule(KELPmoduleDefinition *record) {
    PluginRecord *p = Host().current;
    if (!p || p->version < 4 || !record || !record->name)
        return;
    Push(Host().modules, Kind::Module)->moduleRecord = record;
}

extern "C" void PluginRegisterInterface(KELPinterfaceDefinition *record) {
    PluginRecord *p = Host().current;
    if (!p || p->version < 4 || !record || !NameIsFree(record->name))
        return;
    Registered *r = Push(Host().interfaces, Kind::Interface);
    r->interfaceRecord = record;
    Index(r);
}

// A plug-in of version 1 names the function by its index in its exports;
// version 2 is left alone.
extern "C" void PluginRegisterMethod(KELPmethodDefinition *record) {
    PluginRecord *p = Host().current;
    if (!p || p->version == 2 || p->version < 1 || !record)
        return;
    if (p->version == 1)
        record = ConvertMethodV1(*reinterpret_cast<KELPmethodDefinitionV1 *>(record), *p);
    if (!record || !record->declaration)
        return;
    auto *m = new GlobalMethod();
    m->plugin = p;
    m->record = record;
    m->next = Host().methods;
    Host().methods = m;
}

// Kept for the design environment's listing; the running program adds
// nothing to an existing class.
extern "C" void PluginRegisterClassExtension(KELPclassDefinition *record) {
    PluginRecord *p = Host().current;
    if (p && p->version >= 3 && record)
        Host().extensions.push_back(record);
}
