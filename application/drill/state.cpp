#include "drill/state.h"

namespace sumbrook {

ModuleState &Drill() {
    static ModuleState *state = [] {
        // Never destroyed: the drill's globals live as long as the process,
        // and the runtime they hold strings of may be gone at exit.
        auto *s = new ModuleState;
        s->asNames = StringArray::Create(60);
        s->asItems = StringArray::Create(50);
        s->abProbUsed = BoolArray::Create(100);
        s->asMissed = StringArray::Create(100);
        s->problem.sAnswerStrings = StringArray::Create(10);
        return s;
    }();
    return *state;
}

} // namespace sumbrook
