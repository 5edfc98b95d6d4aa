// The prologue of window event code: the control becomes `me`, its window
// (or a container of a given class) becomes `self`.
#include "objects/object_model.h"
#include "support/class_kit.h"

#include <cstddef>
#include <gtest/gtest.h>

using namespace kelp::test;

namespace {

// A control knows its parent pane holder and its window, as the window
// classes keep them.
struct ControlObject {
    RuntimeObject object;
    RuntimeObject *parent;
    RuntimeObject *window;
};

RuntimeObject *WindowOfControl(RuntimeObject *o) {
    RuntimeObject *w = reinterpret_cast<ControlObject *>(o)->window;
    RuntimeLockObject(w);
    return w;
}
RuntimeClass *FindControlClass();

RuntimeObject *ParentOfControl(RuntimeObject *o) {
    if (!o || !RuntimeObjectIsa(o, FindControlClass()))
        return nullptr;
    RuntimeObject *p = reinterpret_cast<ControlObject *>(o)->parent;
    RuntimeLockObject(p);
    return p;
}

struct World {
    RuntimeClass *control, *button, *window, *container, *childIface, *paneChild, *plain;
    World() {
        control = MakeClass(nullptr, "Control", sizeof(ControlObject));
        button = MakeClass(control, "SmButton", sizeof(ControlObject));
        window = MakeClass(nullptr, "SmWindow", sizeof(RuntimeObject));
        container = MakeClass(control, "SmContainer", sizeof(ControlObject));
        childIface = MakeClass(nullptr, "_PaneChild", 0);
        childIface->isInterface = 1;
        paneChild = MakeClass(nullptr, "SmPaneChild", sizeof(ControlObject), 0, 1);
        paneChild->interfaceTable[0] = {childIface, 3, RuntimeNewVtable(3)};
        paneChild->interfaceTable[0].methodTable[2].code =
            reinterpret_cast<void *>(&WindowOfControl);
        plain = MakeClass(nullptr, "SmPlain", sizeof(RuntimeObject));
        kelp::SetControlRelations(&WindowOfControl, &ParentOfControl);
    }
    ~World() { kelp::SetControlRelations(nullptr, nullptr); }
};

RuntimeClass *gControlClass;
RuntimeClass *FindControlClass() { return gControlClass; }

ControlObject *AsControl(RuntimeObject *o) { return reinterpret_cast<ControlObject *>(o); }

TEST(SelfAndMe, ControlsAndPaneChildrenGiveTheirWindow) {
    World w;
    gControlClass = w.control;
    RuntimeObject *window = RuntimeNewObject(w.window);
    RuntimeObject *button = RuntimeNewObject(w.button);
    AsControl(button)->window = window;

    RuntimeObject *self = button, *me = nullptr;
    RuntimeLockObject(self); // the slot's reference
    RuntimeExchangeSelfAndMe(&self, &me);
    EXPECT_EQ(me, button);
    EXPECT_EQ(self, window);
    EXPECT_EQ(button->referenceCount, 2);
    EXPECT_EQ(window->referenceCount, 2);
    RuntimeUnlockObject(self);
    RuntimeUnlockObject(me);

    RuntimeObject *child = RuntimeNewObject(w.paneChild);
    AsControl(child)->window = window;
    self = child;
    me = nullptr;
    RuntimeLockObject(self);
    RuntimeExchangeSelfAndMe(&self, &me);
    EXPECT_EQ(me, child);
    EXPECT_EQ(self, window);
    RuntimeUnlockObject(self);
    RuntimeUnlockObject(me);

    ReportRecorder reports;
    RuntimeObject *plain = RuntimeNewObject(w.plain);
    self = plain;
    me = nullptr;
    RuntimeLockObject(self);
    RuntimeExchangeSelfAndMe(&self, &me);
    ASSERT_EQ(ReportRecorder::Reports().size(), 1u);
    EXPECT_EQ(ReportRecorder::Reports()[0].message,
              "Non-control object has a window event implementation");
    EXPECT_EQ(self, nullptr);
    EXPECT_EQ(me, plain);
    RuntimeUnlockObject(me);
    RuntimeExchangeSelfAndMe(nullptr, &me);
    EXPECT_TRUE(reports.Has("self"));

    RuntimeUnlockObject(plain);
    RuntimeUnlockObject(child);
    RuntimeUnlockObject(button);
    EXPECT_EQ(window->referenceCount, 1);
    RuntimeUnlockObject(window);
}

TEST(SelfAndMe, ClassFormWalksTheContainerChain) {
    World w;
    gControlClass = w.control;
    RuntimeObject *outer = RuntimeNewObject(w.container);
    RuntimeObject *inner = RuntimeNewObject(w.control);
    RuntimeObject *button = RuntimeNewObject(w.button);
    AsControl(button)->parent = inner;
    AsControl(inner)->parent = outer;

    RuntimeObject *self = button, *me = nullptr;
    RuntimeLockObject(self);
    RuntimeExchangeSelfAndMeClass(&self, &me, w.container);
    EXPECT_EQ(self, outer);
    EXPECT_EQ(me, button);
    EXPECT_EQ(inner->referenceCount, 1) << "the walk releases what it passed";
    RuntimeUnlockObject(self);
    RuntimeUnlockObject(me);

    ReportRecorder reports;
    self = button;
    me = nullptr;
    RuntimeLockObject(self);
    RuntimeExchangeSelfAndMeClass(&self, &me, w.window);
    EXPECT_EQ(self, nullptr);
    ASSERT_EQ(ReportRecorder::Reports().size(), 1u);
    EXPECT_EQ(ReportRecorder::Reports()[0].message, "couldn't find SmWindow in container chain");
    RuntimeUnlockObject(me);

    me = nullptr;
    self = button;
    RuntimeLockObject(self);
    RuntimeExchangeSelfAndMeObj(&self, &me, outer);
    EXPECT_EQ(self, outer);
    EXPECT_EQ(me, button);
    RuntimeUnlockObject(self);
    RuntimeUnlockObject(me);

    EXPECT_EQ(outer->referenceCount, 1);
    EXPECT_EQ(button->referenceCount, 1);
    RuntimeUnlockObject(button);
    RuntimeUnlockObject(inner);
    RuntimeUnlockObject(outer);
}

} // namespace
