// The plug-in entry table: compiled code never calls a plug-in by symbol; it
// fills a table of code addresses at start-up by the declaration text of each
// method ("Class.Method(x As Integer) As String", "Class.Prop.Get").  The
// table is built once, at the first look-up, from everything registered.
#include "plugins/host.h"

#include "base/ascii.h"
#include "base/fatal_report.h"
#include "objects/text.h"

#include "kelp/image.h"

#include <string>
#include <unordered_map>

namespace kelp::plugins {
namespace {

using EntryMap = std::unordered_map<std::string, void *>;

EntryMap *&Table() {
    static EntryMap *table = nullptr;
    return table;
}

void Add(EntryMap &map, const std::string &name, void *value, bool exported) {
    map.emplace(AsciiLowered(name), value);
    if (exported && value)
        AddExport(name.c_str(), value);
}

bool Callable(const void *code) { return code && code != KELP_DEFAULT_ACCESSOR; }

void AddMethods(EntryMap &map, const std::string &owner, const void *table, int32_t count,
                int32_t version, bool exported) {
    if (!TableIsSound(table, count, "methods || methodCount == 0", __LINE__))
        return;
    for (int32_t i = 0; i < count; ++i) {
        const KELPmethodDefinitionV6 *m = MethodAt(table, version, i);
        if (!m->declaration)
            continue;
        const std::string name = (owner.empty() ? "" : owner + ".") + m->declaration;
        if (m->function == KELPnoImplementation) {
            FatalReport(kFatalFailedAssertion, kReportFile, __LINE__,
                        "method->function != (KELPproc) KELPnoImplementation", name.c_str());
            continue;
        }
        Add(map, name, m->function, exported);
        if (Callable(m->setterFunction))
            Add(map, name + ".Set", m->setterFunction, exported);
    }
}

void AddProperties(EntryMap &map, const std::string &owner, const KELPproperty *table,
                   int32_t count) {
    if (!TableIsSound(table, count, "properties || propertyCount == 0", __LINE__))
        return;
    for (int32_t i = 0; i < count; ++i) {
        if (!table[i].name)
            continue;
        // The host's own accessors have no entry: compiled code reaches
        // them through the class's property row.
        if (Callable(table[i].getter))
            Add(map, owner + "." + table[i].name + ".Get", table[i].getter, true);
        if (Callable(table[i].setter))
            Add(map, owner + "." + table[i].name + ".Set", table[i].setter, true);
    }
}

void AddEvents(EntryMap &map, const std::string &owner, const KELPevent *table, int32_t count) {
    if (!TableIsSound(table, count, "events || eventCount == 0", __LINE__))
        return;
    for (int32_t i = 0; i < count; ++i)
        if (table[i].declaration)
            Add(map, owner + ".Events." + table[i].declaration, table[i].forSystemUse, true);
}

EntryMap *Build() {
    auto *map = new EntryMap(256);
    HostState &h = Host();
    for (Registered *r = h.classes; r; r = r->next) {
        const KELPclassDefinition *c = r->classRecord;
        const std::string owner = c->name;
        AddMethods(*map, owner, c->methods, c->methodCount, c->version, true);
        AddProperties(*map, owner, c->properties, c->propertyCount);
        AddEvents(*map, owner, c->events, c->eventCount);
        if (c->constructor)
            Add(*map, owner + ".__init", reinterpret_cast<void *>(c->constructor), true);
        if (c->destructor)
            Add(*map, owner + ".__exit", reinterpret_cast<void *>(c->destructor), true);
    }
    for (Registered *r = h.controls; r; r = r->next) {
        const KELPcontrol *c = r->controlRecord;
        const std::string owner = c->name;
        AddMethods(*map, owner, c->methods, c->methodCount, c->version, true);
        AddProperties(*map, owner, c->properties, c->propertyCount);
        AddEvents(*map, owner, c->events, c->eventCount);
    }
    for (GlobalMethod *m = h.methods; m; m = m->next)
        AddMethods(*map, "", m->record, 1, m->plugin ? m->plugin->version : 7, false);
    for (Registered *r = h.interfaces; r; r = r->next) {
        const KELPinterfaceDefinition *i = r->interfaceRecord;
        AddMethods(*map, i->name, i->methods, i->methodCount, i->version, true);
    }
    for (Registered *r = h.modules; r; r = r->next) {
        const KELPmoduleDefinition *m = r->moduleRecord;
        AddMethods(*map, m->name, m->methods, m->methodCount, m->version, true);
    }
    return map;
}

} // namespace

void ForgetEntryTableForTest() {
    delete Table();
    Table() = nullptr;
}

} // namespace kelp::plugins

using namespace kelp;
using namespace kelp::plugins;

extern "C" void **RuntimeAllocatePluginEntrypointsTable(int32_t count) {
    if (count <= 0)
        return nullptr;
    return new void *[size_t(count)](); // the image's for good
}

extern "C" void *RuntimeLookupPluginEntrypoint(KelpString name) {
    const std::string_view text = objtext::View(name);
    if (AsciiEqualNoCase(text, "_"))
        return nullptr; // a slot the image leaves empty
    if (!Table())
        Table() = Build();
    auto it = Table()->find(AsciiLowered(text));
    if (it != Table()->end())
        return it->second;
    const std::string message = "can't find plugin method " + std::string(text);
    FatalReport(kFatalFailedAssertion, kReportFile, __LINE__,
                "pluginEntryTable.GetEntry( entrypointName, out )", message.c_str());
    return nullptr;
}
