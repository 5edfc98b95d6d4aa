// Fuzz entry for the database file reader: whatever the bytes, opening,
// walking every table and reading every BLOB must end with an answer (rows
// or an error), never a read out of bounds, a hang or an abort.
#include "database_input.h"

#include "database/sql_engine.h"
#include "database/storage.h"
#include "streams/random_access_mechanism.h"

#include <cstdlib>

using namespace kelp::db;

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size) {
    Storage db;
    if (!db.OpenBytes(std::make_unique<kelp::FilePtr>(data, int64_t(size)))) {
        if (!db.LastError().Failed())
            std::abort(); // a refusal always says why
        return 0;
    }
    for (const std::string &name : db.TableNames()) {
        auto rows = SqlSelect(db, "SELECT * FROM [" + name + "] ORDER BY 1");
        Error error;
        for (int n = 0; rows && n < 100000 && rows->Next(error); ++n) {}
    }
    // Every BLOB piece, through its row id.
    if (Tree *blobs = db.OpenTree("sys$blob", {KeySpec::kRowId, {}}, false)) {
        TreeCursor cursor(*blobs);
        Error error;
        std::string content;
        for (bool more = cursor.First(error); more; more = cursor.Next(error))
            db.ReadBlob(Get32(cursor.Record() + kRecordHead), content);
    }
    return 0;
}
