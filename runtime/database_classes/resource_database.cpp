// A database stored in the image as a "DBAS" resource.  The storage works on
// files, and the image must not change under a running program, so on first
// use the bytes are copied to a private temporary file (mode 0600, made by
// mkstemp) and opened there, writable: the program may change its copy,
// and the copy and its journal are removed when the program ends.
#include "database_classes/database_object.h"

#include "objects/definitions.h"
#include "resources/resource_store.h"
#include "shutdown/shutdown_task.h"

#include "kelp/objects.h"

#include <unistd.h>

#include <cstdlib>

namespace kelp {
namespace {

bool IsFileEngineName(const std::string &name) { return SameName(name, "kelpdb"); }

// The copy's path, or empty when it could not be written whole.
std::string CopyToPrivateFile(const uint8_t *data, uint32_t length) {
    const char *base = std::getenv("TMPDIR");
    std::string path = std::string(base && *base ? base : "/tmp") + "/kelpdb_XXXXXX";
    const int fd = mkstemp(path.data());
    if (fd < 0)
        return {};
    RemoveAtShutdown(path);
    RemoveAtShutdown(path + "-journal");
    size_t done = 0;
    while (done < length) {
        const ssize_t n = write(fd, data + done, length - done);
        if (n <= 0)
            break;
        done += size_t(n);
    }
    close(fd);
    return done == length ? path : std::string();
}

} // namespace

void *OpenResourceDatabase(const std::string &name, const uint8_t *data, uint32_t length) {
    // The other engine name is of a text form that starts with "Z" and that
    // no engine of this runtime reads: such a database does not open.
    if (!IsFileEngineName(name) || !data)
        return nullptr;
    std::string path = CopyToPrivateFile(data, length);
    if (path.empty())
        return nullptr;
    std::string error;
    return OpenFileEngine(path, false, false, error);
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *RuntimeGetDatabaseFromResource(int32_t id) {
    DatabaseResource resource;
    if (!FindDatabaseResource(uint32_t(id), resource))
        return nullptr;
    RuntimeObject *object = NewObjectOfDefinition(DatabaseDefinition());
    if (!object)
        return nullptr;
    DatabaseObject *db = DatabaseOf(object);
    db->resourceData = resource.data;
    db->resourceLength = resource.length;
    SetText(db->source,
            std::string_view(reinterpret_cast<const char *>(resource.name), resource.nameLength));
    return object;
}
