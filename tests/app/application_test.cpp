// The Application object: start sequence, auto-quit, the quit sequence,
// pollable objects and uncaught exceptions, through classes made the way an
// image makes its application class.
#include "app/application.h"
#include "process/quit.h"
#include "runloop/main_loop.h"
#include "runloop/pollable.h"

#include "app/unhandled_exceptions.h"
#include "exceptions/unhandled.h"
#include "objects/definitions.h"
#include "process/process_state.h"
#include "support/language_class.h"

#include "kelp/exceptions.h"
#include "kelp/objects.h"
#include "kelp/resources.h"
#include "kelp/runloop.h"
#include "kelp/startup.h"

#include <glib.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace kelp {
namespace {

std::vector<std::string> gLog;
bool gRefuseClose = false;
bool gQuitInsideCancelClose = false;
int gPolls = 0;

void OnOpen(RuntimeObject *) { gLog.push_back("Open"); }
void OnNewDocument(RuntimeObject *) { gLog.push_back("NewDocument"); }
// What the maker made, newest last: an item and its path.
std::vector<std::pair<RuntimeObject *, std::string>> gItems;
RuntimeObject *MakeItem(const char *path) {
    if (std::string(path).ends_with("unmakeable"))
        return nullptr;
    static RuntimeClass *klass = test::MakeSubclass("Timer", "DocumentStandIn");
    gItems.emplace_back(RuntimeNewObject(klass), path);
    return gItems.back().first;
}
void OnOpenDocument(RuntimeObject *, RuntimeObject *item) {
    // An item freed after its event may leave its address to the next one.
    const auto at = std::find_if(gItems.rbegin(), gItems.rend(),
                                 [item](const auto &made) { return made.first == item; });
    gLog.push_back(at == gItems.rend() ? "OpenDocument of a stranger"
                                       : "OpenDocument " + at->second);
}
void OnClose(RuntimeObject *) { gLog.push_back("Close"); }
uint8_t OnCancelClose(RuntimeObject *self) {
    gLog.push_back("CancelClose");
    if (gQuitInsideCancelClose)
        ApplicationQuit(self, 0);
    return gRefuseClose ? 1 : 0;
}

class ApplicationTest : public ::testing::Test {
protected:
    void SetUp() override {
        gLog.clear();
        gItems.clear();
        SetDocumentItemMaker(&MakeItem);
        gRefuseClose = gQuitInsideCancelClose = false;
        gPolls = 0;
        ResetRunState();
        SetUnhandledHandler(&StandardUnhandledHandler);
        Arguments({});
    }
    void TearDown() override {
        ReleaseRegisteredApplication();
        ResetRunState();
    }

    // The process's arguments: the program's name, then these.
    static void Arguments(const std::vector<std::string> &rest) {
        static std::vector<std::string> texts;
        static std::vector<char *> argv;
        texts = {"sumbrook"};
        texts.insert(texts.end(), rest.begin(), rest.end());
        argv.clear();
        for (std::string &t : texts)
            argv.push_back(t.data());
        argv.push_back(nullptr);
        SetProcessArguments(int(texts.size()), argv.data());
    }

    // An application class with the handlers an image would compile.
    RuntimeClass *AppClass(bool withOpenDocument = true) {
        RuntimeClass *klass = test::MakeSubclass("Application", "App");
        EXPECT_NE(klass, nullptr);
        EXPECT_TRUE(test::SetEventHandler(klass, "Open", reinterpret_cast<void *>(&OnOpen)));
        EXPECT_TRUE(
            test::SetEventHandler(klass, "NewDocument", reinterpret_cast<void *>(&OnNewDocument)));
        if (withOpenDocument) {
            EXPECT_TRUE(test::SetEventHandler(klass, "OpenDocument",
                                              reinterpret_cast<void *>(&OnOpenDocument)));
        }
        EXPECT_TRUE(test::SetEventHandler(klass, "Close", reinterpret_cast<void *>(&OnClose)));
        EXPECT_TRUE(
            test::SetEventHandler(klass, "CancelClose", reinterpret_cast<void *>(&OnCancelClose)));
        return klass;
    }

    RuntimeObject *RegisterNew(RuntimeClass *klass) {
        RuntimeObject *app = RuntimeNewObject(klass);
        RuntimeRegisterAppObject(app);
        RuntimeUnlockObject(app); // the registration holds its own reference
        return app;
    }
};

// Open, then NewDocument without document arguments or OpenDocument for
// each in order; without an OpenDocument handler the arguments go unheard.
TEST_F(ApplicationTest, StartFiresOpenThenNewDocumentOrEachOpenDocument) {
    const struct {
        std::vector<std::string> arguments;
        bool withOpenDocument;
        std::vector<std::string> log;
    } cases[] = {
        {{}, true, {"Open", "NewDocument"}},
        {{"/tmp/one.txt", "/tmp/two.txt"},
         true,
         {"Open", "OpenDocument /tmp/one.txt", "OpenDocument /tmp/two.txt"}},
        {{"/tmp/one.txt"}, false, {"Open"}},
    };
    for (const auto &c : cases) {
        SCOPED_TRACE(c.log.back());
        Arguments(c.arguments);
        gLog.clear();
        RuntimeObject *app = RegisterNew(AppClass(c.withOpenDocument));
        EXPECT_EQ(gLog, c.log);
        EXPECT_EQ(getAppObject(), app);
        EXPECT_EQ(app->referenceCount, 1);
        ReleaseRegisteredApplication();
    }
}

TEST_F(ApplicationTest, DocumentsWaitForAMakerOfItemsInsteadOfGettingNil) {
    Arguments({"/tmp/one.txt", "/tmp/unmakeable", "/tmp/3"});
    SetDocumentItemMaker(nullptr);
    RegisterNew(AppClass());
    EXPECT_EQ(gLog, (std::vector<std::string>{"Open"})) << "held, not fired with nil";
    SetDocumentItemMaker(&MakeItem);
    EXPECT_EQ(gLog, (std::vector<std::string>{"Open", "OpenDocument /tmp/one.txt",
                                              "OpenDocument /tmp/3"}));
    SetDocumentItemMaker(&MakeItem); // fired once only
    EXPECT_EQ(gLog.size(), 3u);
}

TEST_F(ApplicationTest, NilGivesAPlainApplicationWithAutoQuitOn) {
    RuntimeRegisterAppObject(nullptr);
    RuntimeObject *app = getAppObject();
    ASSERT_NE(app, nullptr);
    EXPECT_TRUE(ApplicationAutoQuit(app));
    EXPECT_EQ(std::string(test::TextOf(app->klass->name)), "Application");
}

TEST_F(ApplicationTest, NoWindowsAndAutoQuitEndsTheRunOnTheFirstPass) {
    RegisterNew(AppClass());
    gLog.clear();
    RuntimeRun();
    EXPECT_TRUE(QuitRequested());
    EXPECT_EQ(gLog, (std::vector<std::string>{"CancelClose", "Close"}));
    // The run released the application object.
    EXPECT_EQ(getAppObject(), nullptr);
    EXPECT_FALSE(AppRunning());
}

struct QuitAfterPasses : Pollable {
    explicit QuitAfterPasses(int n) : remaining(n) {}
    void Poll() override {
        ++passes;
        if (--remaining == 0)
            RequestQuit();
    }
    int remaining, passes = 0;
};

TEST_F(ApplicationTest, AutoQuitOffKeepsRunningWithNoWindow) {
    RuntimeObject *app = RegisterNew(AppClass());
    AppAutoCloseSetter(app, 0, 0);
    EXPECT_EQ(AppAutoCloseGetter(app, 0), 0);
    QuitAfterPasses stopper(5);
    AddPollable(&stopper);
    // Nothing else wakes an idle loop here: a toolkit timeout stands in for
    // the events a user would bring.
    guint wake = g_timeout_add(
        1, [](gpointer) -> gboolean { return TRUE; }, nullptr);
    RuntimeRun();
    g_source_remove(wake);
    RemovePollable(&stopper);
    EXPECT_EQ(stopper.passes, 5);
    EXPECT_EQ(std::count(gLog.begin(), gLog.end(), "CancelClose"), 0);
}

TEST_F(ApplicationTest, SecondRunCallReturnsAtOnce) {
    RegisterNew(AppClass());
    RuntimeRun();
    ASSERT_TRUE(QuitRequested());
    ClearQuitRequest();
    QuitAfterPasses stopper(1000);
    AddPollable(&stopper);
    RuntimeRun(); // would loop until the stopper if it ran
    RemovePollable(&stopper);
    EXPECT_EQ(stopper.passes, 0);
}

TEST_F(ApplicationTest, CancelCloseRefusesAndALaterQuitSucceeds) {
    RuntimeObject *app = RegisterNew(AppClass());
    gLog.clear();
    gRefuseClose = true;
    ApplicationQuit(app, 0);
    EXPECT_FALSE(QuitRequested());
    EXPECT_EQ(reinterpret_cast<ApplicationRecord *>(app)->closingApplication, 0);
    EXPECT_EQ(gLog, (std::vector<std::string>{"CancelClose"}));
    gRefuseClose = false;
    ApplicationQuit(app, 0);
    EXPECT_TRUE(QuitRequested());
    EXPECT_EQ(gLog, (std::vector<std::string>{"CancelClose", "CancelClose", "Close"}));
}

TEST_F(ApplicationTest, QuitFromInsideCancelCloseIsRefusedWithoutRecursion) {
    RuntimeObject *app = RegisterNew(AppClass());
    gLog.clear();
    gQuitInsideCancelClose = true;
    ApplicationQuit(app, 0);
    EXPECT_EQ(gLog, (std::vector<std::string>{"CancelClose", "Close"}));
    EXPECT_TRUE(QuitRequested());
}

TEST_F(ApplicationTest, QuitWithoutApplicationObjectIsAgreed) {
    ApplicationQuit(nullptr, 0);
    EXPECT_TRUE(QuitRequested());
}

TEST_F(ApplicationTest, QuitCallEndsTheRunThroughEndException) {
    RuntimeObject *app = RegisterNew(AppClass());
    gLog.clear();
    // No handler region is open, so the EndException goes straight to the
    // top-level handler, which ends the run without the message.
    KP_ApplicationQuit(app);
    EXPECT_TRUE(QuitRequested());
    EXPECT_EQ(gLog, (std::vector<std::string>{"CancelClose", "Close"}));
    EXPECT_EQ(RuntimePendingException(), nullptr);
}

// A class of the language that implements _Pollable.
void PollCounter(RuntimeObject *) { ++gPolls; }
void PollRemovesItself(RuntimeObject *self) {
    ++gPolls;
    ApplicationRemovePollableObject(getAppObject(), self);
}

RuntimeClass *PollableClass(void *code) {
    RuntimeInitExternalClasses();
    RuntimeClass *klass = RuntimeNewClass(nullptr, 0, 1, 0, 0, 0);
    klass->name = test::MakeText("Ticker");
    klass->instanceSize = sizeof(RuntimeObject);
    RuntimeMethodRow *table = RuntimeNewVtable(2);
    table[1].code = code;
    klass->interfaceTable[0] = {ClassForDefinition(PollableInterfaceDefinition()), 1, table};
    return klass;
}

TEST_F(ApplicationTest, PollableObjectIsPolledEachPassUntilRemoved) {
    RuntimeObject *app = RegisterNew(AppClass());
    RuntimeObject *ticker = RuntimeNewObject(PollableClass(reinterpret_cast<void *>(&PollCounter)));
    ApplicationAddPollableObject(app, ticker);
    EXPECT_EQ(ticker->referenceCount, 2);
    MainLoopStep(false);
    MainLoopStep(false);
    EXPECT_EQ(gPolls, 2);
    ApplicationRemovePollableObject(app, ticker);
    EXPECT_EQ(ticker->referenceCount, 1);
    MainLoopStep(false);
    EXPECT_EQ(gPolls, 2);
    RuntimeUnlockObject(ticker);
}

TEST_F(ApplicationTest, PollableObjectMayRemoveItselfFromItsOwnPoll) {
    RuntimeObject *app = RegisterNew(AppClass());
    RuntimeObject *ticker =
        RuntimeNewObject(PollableClass(reinterpret_cast<void *>(&PollRemovesItself)));
    ApplicationAddPollableObject(app, ticker);
    RuntimeUnlockObject(ticker); // the wrapper holds the last reference now
    int before = PollableCount();
    MainLoopStep(false);
    EXPECT_EQ(gPolls, 1);
    EXPECT_EQ(PollableCount(), before - 1);
    MainLoopStep(false);
    EXPECT_EQ(gPolls, 1);
}

TEST_F(ApplicationTest, ObjectWithoutPollableInterfaceIsHeldButNeverCalled) {
    RuntimeObject *app = RegisterNew(AppClass());
    RuntimeObject *plain = RuntimeNewObject(PollableClass(nullptr));
    ApplicationAddPollableObject(app, plain);
    MainLoopStep(false);
    EXPECT_EQ(gPolls, 0);
    ApplicationRemovePollableObject(app, plain);
    RuntimeUnlockObject(plain);
}

TEST_F(ApplicationTest, ReleasingTheApplicationDropsItsPollables) {
    RuntimeObject *app = RegisterNew(AppClass());
    RuntimeObject *ticker = RuntimeNewObject(PollableClass(reinterpret_cast<void *>(&PollCounter)));
    int before = PollableCount();
    ApplicationAddPollableObject(app, ticker);
    ReleaseRegisteredApplication();
    EXPECT_EQ(PollableCount(), before);
    EXPECT_EQ(ticker->referenceCount, 1);
    RuntimeUnlockObject(ticker);
}

// Compiled code reads a property by calling the row's getter with the row's
// parameter; the version properties must reach the version block that way.
TEST_F(ApplicationTest, VersionPropertiesReadTheVersionBlockThroughTheirRows) {
    RuntimeRegisterAppObject(nullptr);
    RuntimeObject *app = getAppObject();
    ASSERT_NE(app, nullptr);
    const RuntimeClass *klass = app->klass;
    auto row = [&](const std::string &name) -> const RuntimePropertyRow * {
        for (int32_t i = 0; i < klass->propertyCount; ++i) {
            std::string signature = test::TextOf(klass->propertyTable[i].signature);
            if (signature.rfind(name + "%", 0) == 0)
                return &klass->propertyTable[i];
        }
        return nullptr;
    };
    const char *integers[] = {"MajorVersion", "MinorVersion",      "BugVersion",
                              "StageCode",    "NonReleaseVersion", "RegionCode"};
    for (int32_t selector = 0; selector < 6; ++selector) {
        const RuntimePropertyRow *r = row(integers[selector]);
        ASSERT_NE(r, nullptr) << integers[selector];
        EXPECT_EQ(r->getter, reinterpret_cast<void *>(&AppIntegerVersionStuffGetter));
        EXPECT_EQ(r->setter, nullptr) << "read-only";
        auto get = reinterpret_cast<int32_t (*)(RuntimeObject *, int32_t)>(r->getter);
        EXPECT_EQ(get(app, r->fieldOffset), AppIntegerVersionStuffGetter(app, selector));
        EXPECT_EQ(r->fieldOffset, selector);
    }
    const char *strings[] = {"ShortVersion", "LongVersion", "PackageInfo"};
    for (int32_t selector = 0; selector < 3; ++selector) {
        const RuntimePropertyRow *r = row(strings[selector]);
        ASSERT_NE(r, nullptr) << strings[selector];
        EXPECT_EQ(r->getter, reinterpret_cast<void *>(&AppStringVersionStuffGetter));
        EXPECT_EQ(r->fieldOffset, selector);
    }
}

} // namespace
} // namespace kelp
