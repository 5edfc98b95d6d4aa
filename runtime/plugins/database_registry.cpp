// The registrations of database engines, cursors and data sources.  They
// need no plug-in version: any plug-in may offer a database.
#include "plugins/database_registry.h"

#include "kelp/plugin.h"

namespace kelp::plugins {
namespace {

struct Registry {
    std::vector<void *> engines, cursors, interfaces;
    std::vector<DataSource> sources;
};

Registry &R() {
    static auto *registry = new Registry(); // the plug-ins' records outlive us all
    return *registry;
}

void AddSource(const char *name, void *opener, bool designOnly) {
    if (name && *name && opener)
        R().sources.push_back(DataSource{name, opener, designOnly});
}

} // namespace

const std::vector<void *> &RegisteredDBEngines() { return R().engines; }
const std::vector<void *> &RegisteredDBCursors() { return R().cursors; }
const std::vector<void *> &RegisteredDataSourceInterfaces() { return R().interfaces; }
const std::vector<DataSource> &RegisteredDataSources() { return R().sources; }

} // namespace kelp::plugins

using namespace kelp::plugins;

extern "C" {

void PluginRegisterDBEngine(void *engineDefinition) {
    if (engineDefinition)
        R().engines.push_back(engineDefinition);
}
void PluginRegisterDBCursor(void *cursorDefinition) {
    if (cursorDefinition)
        R().cursors.push_back(cursorDefinition);
}
void RegisterDataSourceInterface(void *sourceInterface) {
    if (sourceInterface)
        R().interfaces.push_back(sourceInterface);
}
void RegisterDataSource(const char *name, void *opener) { AddSource(name, opener, false); }
void DesignAddDataSource(const char *name, void *opener) { AddSource(name, opener, true); }

} // extern "C"
