// The Application class: its record and definition, the start sequence of
// RuntimeRegisterAppObject, the quit sequence and the pollable objects.
#include "app/application.h"

#include "base/fatal_report.h"
#include "exceptions/call_event.h"
#include "exceptions/raise.h"
#include "folder_items/folder_item_object.h"
#include "menus/classes.h"
#include "menus/dispatch.h"
#include "objects/definitions.h"
#include "objects/object_model.h"
#include "panes/pane.h"
#include "pictures/resource_fork.h"
#include "process/process_state.h"
#include "process/quit.h"
#include "runloop/main_loop.h"
#include "runloop/pollable.h"
#include "windows/mdi_window.h"
#include "windows/menu_handlers.h"
#include "windows/runtime_view.h"
#include "windows/window.h"

#include "kelp/objects.h"
#include "kelp/resources.h"
#include "kelp/runloop.h"

#include <gtk/gtk.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>
#include <vector>

namespace kelp {

// Binds Poll to an object of the language: the object's _Poll when its
// class implements _Pollable, else nothing.
class RuntimeObjectPoll : public Pollable {
public:
    RuntimeObjectPoll(RuntimeObject *object, void *pollMethod)
        : mObject(object), mPollMethod(pollMethod) {
        RuntimeLockObject(mObject);
    }
    ~RuntimeObjectPoll() override { RuntimeUnlockObject(mObject); }
    void Poll() override {
        // The handler may remove this very wrapper: keep what the call needs
        // in locals; the call keeps the object alive until it returns.
        void *code = mPollMethod;
        RuntimeObject *object = mObject;
        if (code)
            CallHandlerCode(code, object);
    }
    RuntimeObject *object() const { return mObject; }

private:
    RuntimeObject *mObject;
    void *mPollMethod;
};

namespace {

ObjectHook *gOpen, *gClose, *gEnableMenuItems, *gNewDocument, *gOpenDocument, *gHandleAppleEvent,
    *gActivate, *gDeactivate, *gUnhandledException, *gCancelClose;

DocumentItemMaker gItemMaker = nullptr;
bool gInUnhandledEvent = false;

ApplicationRecord *Record(RuntimeObject *app) { return reinterpret_cast<ApplicationRecord *>(app); }

using Pollers = std::vector<RuntimeObjectPoll *>;
Pollers &PollersOf(RuntimeObject *app) {
    auto *record = Record(app);
    if (!record->pollers)
        record->pollers = new Pollers;
    return *static_cast<Pollers *>(record->pollers);
}

void FireSimple(RuntimeObject *app, ObjectHook *hook) { CallEvent(app, hook); }

bool FireBoolean(RuntimeObject *app, ObjectHook *hook) { return CallBooleanEvent(app, hook); }

void ConsoleApplicationFinalizer(RuntimeObject *object) {
    if (ConsoleApplicationObject() == object)
        SetConsoleApplicationObject(nullptr);
}

// The _Poll code of the object's class, found through its _Pollable row.
void *PollMethodOf(RuntimeObject *object) {
    RuntimeClass *klass = GetObjectClass(object);
    if (!klass)
        return nullptr;
    RuntimeClass *pollable = ClassForDefinition(PollableInterfaceDefinition());
    for (int32_t i = 0; i < klass->interfaceCount; ++i) {
        const RuntimeInterfaceRow &row = klass->interfaceTable[i];
        if (row.interfaceClass != pollable || !row.methodTable)
            continue;
        // Slot 0 is left free by the class builders; take the first code.
        for (int32_t slot = 0; slot <= row.slotCount; ++slot)
            if (row.methodTable[slot].code)
                return row.methodTable[slot].code;
    }
    return nullptr;
}

bool AutoQuitOfRegisteredApplication() { return ApplicationAutoQuit(ApplicationObject()); }

void QuitForWantOfWindows() { ApplicationQuit(nullptr, 0); }

// Paths whose OpenDocument waits for a maker of folder items: a handler
// given nil would take it for an item and fail on it.
std::vector<std::string> &HeldDocuments() {
    static auto *held = new std::vector<std::string>;
    return *held;
}

// Fires OpenDocument for each held path, in order, once items can be made.
void FireHeldDocuments() {
    RuntimeObject *app = ApplicationObject();
    void *code = app ? FindEventHandler(app, gOpenDocument) : nullptr;
    if (!gItemMaker || !code)
        return;
    const std::vector<std::string> paths = std::move(HeldDocuments());
    HeldDocuments().clear();
    RuntimeLockObject(app);
    for (const std::string &path : paths) {
        RuntimeObject *item = gItemMaker(path.c_str());
        if (item)
            CallHandlerCode(code, app, item);
        RuntimeUnlockObject(item);
    }
    RuntimeUnlockObject(app);
}

// The document arguments: the process's own argument copies from index 1 on.
std::vector<std::string> DocumentArguments() {
    std::vector<std::string> arguments;
    int argc = ProcessArgumentCount();
    char **argv = ProcessArguments();
    for (int i = 1; i < argc && argv; ++i)
        arguments.emplace_back(argv[i] ? argv[i] : "");
    return arguments;
}

} // namespace

// ------------------------------------------------------------ definitions

ObjectDefinition *PollableInterfaceDefinition() {
    static const MethodRow methods[] = {{"_Poll", nullptr, nullptr, 0, {}}};
    static const ClassDescription description = {
        .name = "_Pollable",
        .isInterface = true,
        .targetFlags = {1, 0, 0},
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

const TypeRecord kMDIWindowType{kTypeObjectOf, nullptr, nullptr, 0, &MDIWindowDefinition};
const TypeRecord kMenuBarType{kTypeObjectOf, nullptr, nullptr, 0, &MenuBarDefinition};
const TypeRecord kResourceForkType{kTypeObjectOf, nullptr, nullptr, 0, &ResourceForkDefinition};

ObjectDefinition *ApplicationDefinition() {
    static const TypeRecord executableType{kTypeObjectOf, nullptr, nullptr, 0,
                                           &FolderItemDefinition};
    static const PropertyRow properties[] = {
        {0, "AutoQuit", &kTypeBoolean, KELP_ENTRY(AppAutoCloseGetter),
         KELP_ENTRY(AppAutoCloseSetter), offsetof(ApplicationRecord, autoQuit)},
        {0, "BalloonHelpVisible", &kTypeBoolean, KELP_PLAIN_FIELD, KELP_PLAIN_FIELD,
         offsetof(ApplicationRecord, balloonHelpVisible)},
        {0, "MDIWindow", &kMDIWindowType, KELP_ENTRY(objGetter), KELP_ENTRY(objSetter),
         offsetof(ApplicationRecord, mdiWindow)},
        {0, "_CurrentEventTime", &kTypeInteger, KELP_ENTRY(AppGetCurrentEventTime), {}, -9},
        {0, "MenuBar", &kMenuBarType, KELP_ENTRY(AppMenuBarGetter), KELP_ENTRY(AppMenuBarSetter),
         offsetof(ApplicationRecord, menuBar)},
        {0, "ResourceFork", &kResourceForkType, KELP_ENTRY(appResourceForkGetter), {}, -9},
        {0, "ExecutableFile", &executableType, KELP_ENTRY(AppFolderItemGetter), {}, -9},
        // The version block of the image, read-only; the parameter selects
        // the field.
        {0, "MajorVersion", &kTypeInteger, KELP_ENTRY(AppIntegerVersionStuffGetter), {}, 0},
        {0, "MinorVersion", &kTypeInteger, KELP_ENTRY(AppIntegerVersionStuffGetter), {}, 1},
        {0, "BugVersion", &kTypeInteger, KELP_ENTRY(AppIntegerVersionStuffGetter), {}, 2},
        {0, "StageCode", &kTypeInteger, KELP_ENTRY(AppIntegerVersionStuffGetter), {}, 3},
        {0, "NonReleaseVersion", &kTypeInteger, KELP_ENTRY(AppIntegerVersionStuffGetter), {}, 4},
        {0, "RegionCode", &kTypeInteger, KELP_ENTRY(AppIntegerVersionStuffGetter), {}, 5},
        {0, "ShortVersion", &kTypeString, KELP_ENTRY(AppStringVersionStuffGetter), {}, 0},
        {0, "LongVersion", &kTypeString, KELP_ENTRY(AppStringVersionStuffGetter), {}, 1},
        {0, "PackageInfo", &kTypeString, KELP_ENTRY(AppStringVersionStuffGetter), {}, 2},
        {0, "Developement", &kTypeInteger, {}, {}, 0, 0, true},
        {0, "Alpha", &kTypeInteger, {}, {}, 1, 0, true},
        {0, "Beta", &kTypeInteger, {}, {}, 2, 0, true},
        {0, "Final", &kTypeInteger, {}, {}, 3, 0, true},
    };
    static const ParameterRow doEventsParams[] = {{"milliseconds", &kTypeInteger, "-1"}};
    static const ParameterRow sleepParams[] = {{"milliseconds", &kTypeInteger}};
    static const ParameterRow objectParams[] = {{"item", &kTypePtr}};
    static const ParameterRow menuParams[] = {{"name", &kTypeString}, {"handler", &kTypePtr}};
    static const MethodRow methods[] = {
        {"DoEvents", nullptr, doEventsParams, 1, KELP_ENTRY(RuntimeDoEvents)},
        {"NewDocument", nullptr, nullptr, 0, KELP_ENTRY(ApplicationNewDocument)},
        {"_AddPollableObject", nullptr, objectParams, 1, KELP_ENTRY(ApplicationAddPollableObject)},
        {"_RemovePollableObject", nullptr, objectParams, 1,
         KELP_ENTRY(ApplicationRemovePollableObject)},
        {"SleepCurrentThread", nullptr, sleepParams, 1, KELP_ENTRY(AppSleepCurrentThread)},
        {"Quit", nullptr, nullptr, 0, KELP_ENTRY(KP_ApplicationQuit)},
        {"_AddMenuHandler", nullptr, menuParams, 2, KELP_ENTRY(ApplicationAddMenuHandler)},
    };
    static const EventRow events[] = {
        {"Open", "", nullptr, &gOpen},
        {"Close", "", nullptr, &gClose},
        {"EnableMenuItems", "", nullptr, &gEnableMenuItems},
        {"NewDocument", "", nullptr, &gNewDocument},
        {"OpenDocument", "item As FolderItem", nullptr, &gOpenDocument},
        {"HandleAppleEvent", "theEvent As AppleEvent, eventClass As String, eventID As String",
         "Boolean", &gHandleAppleEvent},
        {"Activate", "", nullptr, &gActivate},
        {"Deactivate", "", nullptr, &gDeactivate},
        {"UnhandledException", "error As RuntimeException", "Boolean", &gUnhandledException},
        {"CancelClose", "", "Boolean", &gCancelClose},
    };
    static const ClassDescription description = {
        .name = "Application",
        .instanceSize = sizeof(ApplicationRecord),
        .initializer = KELP_ENTRY(ApplicationInitializer),
        .finalizer = KELP_ENTRY(ApplicationFinalizer),
        .properties = properties,
        .methods = methods,
        .events = events,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *ConsoleApplicationDefinition() {
    static const MethodRow methods[] = {
        {"Daemonize", &kTypeBoolean, nullptr, 0, KELP_ENTRY(DaemonizeApp)},
    };
    static const ClassDescription description = {
        .name = "ConsoleApplication",
        .instanceSize = sizeof(RuntimeObject),
        .targetFlags = {1, 0, 1},
        .initializer = KELP_ENTRY(ConsoleApplicationInitializer),
        .finalizer = KELP_ENTRY(ConsoleApplicationFinalizer),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

ObjectDefinition *ServiceApplicationDefinition() {
    static const ClassDescription description = {
        .name = "ServiceApplication",
        .super = ConsoleApplicationDefinition,
        .instanceSize = sizeof(RuntimeObject),
        .targetFlags = {1, 0, 1},
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

// ------------------------------------------------------------ state

RuntimeObject *RegisteredApplication() { return ApplicationObject(); }
RuntimeObject *RegisteredConsoleApplication() { return ConsoleApplicationObject(); }

void ReleaseRegisteredApplication() {
    HeldDocuments().clear();
    RuntimeObject *app = ApplicationObject();
    SetApplicationObject(nullptr);
    RuntimeUnlockObject(app);
}

bool ApplicationAutoQuit(RuntimeObject *app) { return app && Record(app)->autoQuit != 0; }

void SetDocumentItemMaker(DocumentItemMaker maker) {
    gItemMaker = maker;
    FireHeldDocuments();
}

bool FireApplicationUnhandledException(RuntimeObject *exception) {
    RuntimeObject *app = ApplicationObject();
    if (!app)
        return false;
    gInUnhandledEvent = true;
    const bool dealtWith = CallBooleanEvent(app, gUnhandledException, exception);
    gInUnhandledEvent = false;
    return dealtWith;
}

bool InUnhandledExceptionEvent() { return gInUnhandledEvent; }

ApplicationMenuClient MenusApplicationClient() {
    ApplicationMenuClient client;
    client.menuBar = []() -> RuntimeObject * {
        RuntimeObject *app = ApplicationObject();
        return app ? Record(app)->menuBar : nullptr;
    };
    client.handler = [](std::string_view name) -> void * {
        RuntimeObject *app = ApplicationObject();
        return app ? FindMenuHandler(Record(app)->menuHandlers, name) : nullptr;
    };
    client.enableMenuItems = []() {
        if (RuntimeObject *app = ApplicationObject())
            FireSimple(app, gEnableMenuItems);
    };
    // Chosen from a toolkit signal, not from compiled code: the run ends by
    // its quit flag, with no EndException left pending in the signal.
    client.quit = []() { ApplicationQuit(nullptr, 0); };
    return client;
}

ApplicationLoopClient RunLoopApplicationClient() {
    ApplicationLoopClient client;
    client.autoQuitOn = &AutoQuitOfRegisteredApplication;
    client.quitForWantOfWindows = &QuitForWantOfWindows;
    client.releaseApplication = &ReleaseRegisteredApplication;
    return client;
}

} // namespace kelp

// ------------------------------------------------------------ exports

using namespace kelp;

extern "C" void RuntimeRegisterAppObject(RuntimeObject *app) {
    if (app) {
        RuntimeLockObject(app);
    } else {
        app = NewObjectOfDefinition(ApplicationDefinition());
        if (!app)
            return;
    }
    RuntimeObject *old = ApplicationObject();
    SetApplicationObject(app);
    RuntimeUnlockObject(old);

    // Open always comes first; then exactly one of OpenDocument (once per
    // argument, in command-line order) and NewDocument.
    RuntimeLockObject(app);
    FireSimple(app, gOpen);
    const std::vector<std::string> arguments = DocumentArguments();
    if (!arguments.empty()) {
        if (FindEventHandler(app, gOpenDocument)) {
            HeldDocuments() = arguments;
            FireHeldDocuments();
        }
    } else {
        ApplicationNewDocument(app);
    }
    RuntimeUnlockObject(app);
}

extern "C" void RuntimeRegisterConsoleAppObject(RuntimeObject *app, uint8_t isService) {
    if (app) {
        RuntimeLockObject(app);
    } else {
        app = NewObjectOfDefinition(isService ? ServiceApplicationDefinition()
                                              : ConsoleApplicationDefinition());
    }
    RuntimeObject *old = ConsoleApplicationObject();
    SetConsoleApplicationObject(app);
    RuntimeUnlockObject(old);
}

extern "C" void ApplicationInitializer(RuntimeObject *object) {
    if (object)
        Record(object)->autoQuit = 1;
}

extern "C" void ApplicationFinalizer(RuntimeObject *object) {
    if (!object)
        return;
    auto *record = Record(object);
    if (record->pollers) {
        auto *pollers = static_cast<Pollers *>(record->pollers);
        record->pollers = nullptr;
        for (RuntimeObjectPoll *poller : *pollers)
            delete poller;
        delete pollers;
    }
    FreeMenuHandlers(record->menuHandlers);
    RuntimeUnlockObject(record->mouseCursor);
    RuntimeUnlockObject(record->mdiWindow);
    RuntimeUnlockObject(record->menuBar);
    record->mouseCursor = record->mdiWindow = record->menuBar = nullptr;
    if (ApplicationObject() == object)
        SetApplicationObject(nullptr);
}

extern "C" void ApplicationNewDocument(RuntimeObject *self) {
    RuntimeObject *app = self ? self : ApplicationObject();
    if (app)
        FireSimple(app, gNewDocument);
}

extern "C" void ApplicationQuit(RuntimeObject *, uint8_t raiseEnd) {
    bool agreed = true;
    RuntimeObject *app = ApplicationObject();
    if (app) {
        ApplicationRecord *record = Record(app);
        // A second quit from inside CancelClose or a window's close event is
        // refused, not recursed into.
        if (record->closingApplication)
            return;
        record->closingApplication = 1;
        RuntimeLockObject(app);
        if (FireBoolean(app, gCancelClose))
            agreed = false;
        else if (!CloseViewWindowsForQuit())
            agreed = false;
        if (agreed)
            FireSimple(app, gClose);
        record->closingApplication = 0;
        RuntimeUnlockObject(app);
    }
    if (!agreed)
        return;
    if (raiseEnd && !InUnhandledExceptionEvent()) {
        // Unwinds compiled code; the top-level handler closes the windows
        // and sets the quit flag.
        RaiseWithMessage("EndException", "", 0);
        return;
    }
    RequestQuit();
}

extern "C" uint8_t AppAutoCloseGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *app = self ? self : ApplicationObject();
    return app ? Record(app)->autoQuit : 0;
}

extern "C" void AppAutoCloseSetter(RuntimeObject *self, int32_t, uint8_t value) {
    RuntimeObject *app = self ? self : ApplicationObject();
    if (app)
        Record(app)->autoQuit = value ? 1 : 0;
}

extern "C" void KP_ApplicationQuit(RuntimeObject *self) { ApplicationQuit(self, 1); }

extern "C" void ApplicationAddPollableObject(RuntimeObject *self, RuntimeObject *object) {
    RuntimeObject *app = self ? self : ApplicationObject();
    if (!app || !object)
        return;
    auto *poller = new RuntimeObjectPoll(object, PollMethodOf(object));
    AddPollable(poller);
    PollersOf(app).push_back(poller);
}

extern "C" void ApplicationRemovePollableObject(RuntimeObject *self, RuntimeObject *object) {
    RuntimeObject *app = self ? self : ApplicationObject();
    if (!app || !Record(app)->pollers)
        return;
    Pollers &pollers = PollersOf(app);
    for (int i = static_cast<int>(pollers.size()) - 1; i >= 0; --i) {
        if (i >= static_cast<int>(pollers.size()))
            continue;
        RuntimeObjectPoll *poller = pollers[static_cast<size_t>(i)];
        if (poller->object() != object)
            continue;
        pollers.erase(pollers.begin() + i);
        delete poller; // leaves the registry in its destructor
    }
}

extern "C" int32_t AppGetCurrentEventTime(RuntimeObject *, int32_t) {
    // Event time in milliseconds, given to the language in ticks.
    uint32_t ms = gtk_get_current_event_time();
    return static_cast<int32_t>(ms / 1000 * 60);
}

// ------------------------------------------------------------ accessors

namespace {

RuntimeObject *AppOf(RuntimeObject *self) { return self ? self : ApplicationObject(); }

void SwapCounted(RuntimeObject *&field, RuntimeObject *value) {
    RuntimeObject *old = field;
    RuntimeLockObject(value); // first: storing the same object is safe
    field = value;
    RuntimeUnlockObject(old);
}

} // namespace

extern "C" void ApplicationOpenDocument(RuntimeObject *self, RuntimeObject *item) {
    if (RuntimeObject *app = AppOf(self))
        CallEvent(app, gOpenDocument, item);
}

extern "C" uint8_t AppBalloonHelpVisibleGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *app = AppOf(self);
    return app ? Record(app)->balloonHelpVisible : 0;
}

extern "C" void AppBalloonHelpVisibleSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (RuntimeObject *app = AppOf(self))
        Record(app)->balloonHelpVisible = value ? 1 : 0;
}

GdkCursor *kelp::ApplicationCursor() {
    RuntimeObject *app = ApplicationObject();
    return app ? CursorOfObject(Record(app)->mouseCursor) : nullptr;
}

extern "C" void appMouseCursorSetter(RuntimeObject *self, int32_t, RuntimeObject *cursor) {
    RuntimeObject *app = AppOf(self);
    if (!app)
        return;
    SwapCounted(Record(app)->mouseCursor, cursor);
    // Shown at once (a Wait cursor must appear before a long task, with no
    // pointer motion to bring it); the pointer's own place decides the rest
    // at its next move.
    for (Window *window : WindowList())
        ApplyCursor(window, ChooseCursor(window, -1, -1));
}

// The application has no resource fork of its own on this platform (its
// resources are in the image): each read answers a fresh, empty one, so a
// program written for one finds no resources rather than a nil object.
extern "C" RuntimeObject *appResourceForkGetter(RuntimeObject *, int32_t) {
    return NewObjectOfDefinition(ResourceForkDefinition());
}

extern "C" RuntimeObject *AppMenuBarGetter(RuntimeObject *self, int32_t) {
    RuntimeObject *app = AppOf(self);
    RuntimeObject *bar = app ? Record(app)->menuBar : nullptr;
    RuntimeLockObject(bar);
    return bar;
}

extern "C" void AppMenuBarSetter(RuntimeObject *self, int32_t, RuntimeObject *menuBar) {
    if (RuntimeObject *app = AppOf(self))
        SwapCounted(Record(app)->menuBar, menuBar);
}

extern "C" void ApplicationAddMenuHandler(RuntimeObject *self, KelpString name, void *code) {
    if (!code)
        return;
    KELP_ASSERT(self, "application", "self");
    KELP_ASSERT(name, "application", "name");
    if (self && name)
        AddMenuHandler(Record(self)->menuHandlers, name, code);
}
