#include "threads/wiring.h"

#include "objects/definitions.h"
#include "threads/thread_objects.h"

namespace kelp {

void WireThreads() {
    TakeRunLockForMainThread();
    AddIntrinsicClassAccessor(&ThreadDefinition);
    AddIntrinsicClassAccessor(&SemaphoreDefinition);
    AddIntrinsicClassAccessor(&CriticalSectionDefinition);
    AddIntrinsicClassAccessor(&MutexDefinition);
}

} // namespace kelp
