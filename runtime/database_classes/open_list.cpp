// The open databases and record sets, and the shutdown task that closes
// what a program left open: record sets first, so that no cursor outlives
// the engine it reads, then the databases (each Close commits).
#include "database_classes/database_object.h"

#include "objects/definitions.h"
#include "shutdown/shutdown_task.h"

#include "kelp/objects.h"

#include <algorithm>

namespace kelp {
namespace {

struct OpenLists {
    std::vector<RuntimeObject *> databases, recordSets; // not counted
};

OpenLists &Lists() {
    static OpenLists lists;
    return lists;
}

bool IsRecordSet(RuntimeObject *o) {
    return RuntimeObjectIsa(o, ClassForDefinition(RecordSetDefinition()));
}

class dbShutdownContext : public runShutdownTask {
public:
    dbShutdownContext() : runShutdownTask("dbShutdownContext") {}
    ~dbShutdownContext() override {
        sContext = nullptr;
        CloseAllDatabases();
    }
    static dbShutdownContext *sContext;
};
dbShutdownContext *dbShutdownContext::sContext = nullptr;

void Remove(std::vector<RuntimeObject *> &list, RuntimeObject *o) {
    list.erase(std::remove(list.begin(), list.end(), o), list.end());
}

} // namespace

void RegisterOpen(RuntimeObject *o) {
    if (!o)
        return;
    if (!dbShutdownContext::sContext)
        dbShutdownContext::sContext = new dbShutdownContext();
    std::vector<RuntimeObject *> &list = IsRecordSet(o) ? Lists().recordSets : Lists().databases;
    if (std::find(list.begin(), list.end(), o) == list.end())
        list.push_back(o);
}

void UnregisterOpen(RuntimeObject *o) {
    Remove(Lists().recordSets, o);
    Remove(Lists().databases, o);
}

void CloseRecordSetsOf(RuntimeObject *database) {
    std::vector<RuntimeObject *> mine;
    for (RuntimeObject *rs : Lists().recordSets)
        if (RecordSetOf(rs)->owner == database)
            mine.push_back(rs);
    for (RuntimeObject *rs : mine)
        cursorClose(rs);
}

void CloseAllDatabases() {
    // Each close takes the object off its list; copies keep the walks sound.
    for (RuntimeObject *rs : std::vector<RuntimeObject *>(Lists().recordSets))
        cursorClose(rs);
    for (RuntimeObject *db : std::vector<RuntimeObject *>(Lists().databases))
        databaseClose(db);
}

} // namespace kelp
