#include "database_classes/wiring.h"

#include "database_classes/database_object.h"

#include "objects/definitions.h"

namespace kelp {

void WireDatabaseClasses() {
    AddIntrinsicClassAccessor(&DatabaseDefinition);
    AddIntrinsicClassAccessor(&KELPDatabaseDefinition);
    AddIntrinsicClassAccessor(&RecordSetDefinition);
    AddIntrinsicClassAccessor(&DatabaseFieldDefinition);
    AddIntrinsicClassAccessor(&DatabaseRecordDefinition);
    AddIntrinsicClassAccessor(&ScrollableCursorDefinition);
    AddIntrinsicClassAccessor(&DataControlDefinition);
    AddIntrinsicClassAccessor(&DatabaseQueryDefinition);
}

} // namespace kelp
