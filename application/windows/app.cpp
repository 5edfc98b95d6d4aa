// App, the drill's application object, and the run of the windowed drill
// in the order an image's entry runs it.
#include "drill/state.h"
#include "windows/kit.h"
#include "windows/windows.h"

#include <string_view>

namespace sumbrook::ui {
namespace {

// App.Open: the application's MDI window gets the product's name and is
// maximized; where the system has no such frame, nothing shows of it.
void Open(RuntimeObject *self) {
    const RuntimeClass *klass = self->klass;
    for (int32_t i = 0; i < klass->propertyCount; ++i) {
        const RuntimePropertyRow &row = klass->propertyTable[i];
        const stringStorage *s = row.signature;
        if (!s || s->length < 10 ||
            std::string_view(reinterpret_cast<const char *>(s->buffer + 1), 10) != "MDIWindow%")
            continue;
        RuntimeObject *mdi = objGetter(self, row.fieldOffset);
        MDIWindowTitleSetter(mdi, 0, Constant("Sumbrook"));
        MDIWindowMaximize(mdi);
        RuntimeUnlockObject(mdi);
    }
}

// Both Info items work in every window; End This Round is left to the
// practice window and Quit enables itself.
void EnableMenuItems(RuntimeObject *) {
    EnableMenuItem("InfoAbout");
    EnableMenuItem("InfoHelp");
    TraceMenu();
}

// The Info items open their window above whatever is open; false lets the
// search go on, as nothing else answers these items.
uint8_t InfoAbout(RuntimeObject *, int32_t) {
    Show(kAbout);
    return false;
}

uint8_t InfoHelp(RuntimeObject *, int32_t) {
    Show(kHelp);
    return false;
}

RuntimeClass *AppClass() {
    static RuntimeClass *klass = [] {
        RuntimeClass *c = Subclass("Application", "App");
        SetHandler(c, "Open", Code(&Open));
        SetHandler(c, "EnableMenuItems", Code(&EnableMenuItems));
        return c;
    }();
    return klass;
}

} // namespace

void RunWindows() {
    RuntimeInit();
    RuntimeInitExternalClasses();
    // The class set-up: every class of the drill before anything runs.
    AppClass();
    for (const WindowDesign *design :
         {&kWelcome, &kSelection, &kPractice, &kResults, &kHelp, &kAbout})
        SetUpWindowClass(*design);
    Drill(); // the module arrays
    RuntimeObject *app = RuntimeNewObject(AppClass());
    AppMenuBarSetter(app, 0, MenuBar());
    RuntimeRegisterAppObject(app);
    ApplicationAddMenuHandler(app, Constant("InfoAbout"), Code(&InfoAbout));
    ApplicationAddMenuHandler(app, Constant("InfoHelp"), Code(&InfoHelp));
    RuntimeUnlockObject(app); // the runtime holds it now
    RuntimeUnlockObject(Implicit(kWelcome));
    RuntimeRun();
    RuntimeExit();
}

} // namespace sumbrook::ui
