// A container control laid out inside a window: its controls at its place
// and moving with it, real clicks reaching them, Tab walking into it and
// out again with its GotFocus and LostFocus, and the Open and Close events
// in order.
#include "control_fixture.h"

#include "canvas/canvas.h"
#include "controls/embedded.h"
#include "objects/definitions.h"
#include "pictures/picture_object.h"

#include "kelp/canvas.h"
#include "kelp/pictures.h"

#include <filesystem>

namespace kelp::test {
namespace {

void LogView(const char *what) { Events().push_back(std::string(what) + " Answers"); }
void ViewOpen(RuntimeObject *) { LogView("Open"); }
void ViewClose(RuntimeObject *) { LogView("Close"); }
void ViewGotFocus(RuntimeObject *) { LogView("GotFocus"); }
void ViewLostFocus(RuntimeObject *) { LogView("LostFocus"); }

bool gRefuseClose = false;
uint8_t ViewCancelClose(RuntimeObject *, uint8_t) { return gRefuseClose; }

constexpr uint32_t kBack = 0xffd080;

void ContainerLayout(RuntimeObject *self) {
    auto *v = reinterpret_cast<ViewRecord *>(self);
    v->left = 60, v->top = 50, v->width = 200, v->height = 90;
    v->hasBackColor = 1, v->backColor = kBack;
}

void ContainerControls(RuntimeObject *self) {
    for (auto [base, name, top] :
         {std::tuple("PushButton", "Inner1", 10), std::tuple("CheckBox", "Inner2", 45)})
        ControlFixture::Add(
            self, base, name, [&](MassData &m) { Box(m, 10, top, 110, 24).Text("Caption", name); },
            {{"Action", H(&LogAction)}, {"Open", H(&LogOpen)}, {"Close", H(&LogClose)}});
}

RuntimeObject *NewContainer() {
    RuntimeClass *klass = MakeSubclass("ContainerControl", "ccAnswers");
    SetEventHandler(klass, "Layout", H(&ContainerLayout));
    SetEventHandler(klass, "CreateControls", H(&ContainerControls));
    SetEventHandler(klass, "Open", H(&ViewOpen));
    SetEventHandler(klass, "Close", H(&ViewClose));
    SetEventHandler(klass, "GotFocus", H(&ViewGotFocus));
    SetEventHandler(klass, "LostFocus", H(&ViewLostFocus));
    SetEventHandler(klass, "CancelClose", H(&ViewCancelClose));
    return RuntimeNewObject(klass);
}

// A green band across the top of the control, in its own coordinates.
void PaintBand(RuntimeObject *, RuntimeObject *g) {
    Events().push_back("Paint");
    graphicsForeColorSetter(g, 0, 0x00c000);
    RuntimeGraphicsFillRect(g, 0, 0, 150, 6);
}

class EmbeddedTest : public ControlFixture {
protected:
    // Before, the container, After: in that order in the host's layout,
    // or with the container placed later by EmbedWithin.
    RuntimeObject *Host(bool laidOut) {
        return MakeWindow(300, 200, [laidOut](RuntimeObject *view) {
            Add(view, "PushButton", "Before", [](MassData &m) { Box(m, 10, 10, 80, 24); });
            if (laidOut) {
                RuntimeObject *cc = NewContainer();
                KelpString key = MakeText("Answers");
                WindowAddControl(view, key, cc);
                objtext::Release(key);
                RuntimeUnlockObject(cc);
            }
            Add(view, "PushButton", "After", [](MassData &m) { Box(m, 10, 160, 80, 24); });
        });
    }
    // Where the X server shows the control's widget in the window.
    std::pair<int, int> Shown(RuntimeObject *w, RuntimeObject *control) {
        int x = -1, y = -1;
        gtk_widget_translate_coordinates(Widget(control), Fixed(w), 0, 0, &x, &y);
        return {x, y};
    }
    // A real click on the control, wherever it lies in the window.
    void ClickShown(RuntimeObject *w, RuntimeObject *control) {
        auto [x, y] = Shown(w, control);
        ASSERT_TRUE(ClickAt(Fixed(w), x + 10, y + 12));
        Settle(80);
    }
    SubPane *PaneOfName(RuntimeObject *view, const char *name) { return PaneOf(Find(view, name)); }
};

TEST_F(EmbeddedTest, ControlsLieAtTheContainerAndMoveWithIt) {
    RuntimeObject *w = Host(true);
    RuntimeObject *cc = Find(w, "Answers");
    ASSERT_TRUE(IsContainerView(cc));
    RuntimeObject *inner1 = Find(cc, "Inner1"), *inner2 = Find(cc, "Inner2");
    ASSERT_NE(inner1, nullptr);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Open Inner2", "Open Inner1", "Open Answers"}))
        << "a container opens its own controls first, then itself";
    RuntimeObject *embedded = EmbeddedControlOf(cc);
    struct Place {
        int containerLeft;
        RuntimeObject *control;
        int x, y; // in the window, as the X server shows the widget
    };
    const Place places[] = {{60, inner1, 70, 60}, {60, inner2, 70, 95}, {100, inner1, 110, 60}};
    for (const Place &p : places) {
        ctlPosSetter(embedded, 0, p.containerLeft);
        Settle(60);
        EXPECT_EQ(Shown(w, p.control), std::pair(p.x, p.y)) << NameOf(p.control);
        EXPECT_EQ(ctlPosGetter(p.control, 0), 10) << "read from the container's corner";
    }
    // Moving a control inside the container counts from its corner too.
    ctlPosSetter(inner2, 1, 50);
    Settle(60);
    EXPECT_EQ(Shown(w, inner2), std::pair(110, 100));
    // The container paints its back colour around its controls.
    EXPECT_EQ(Pixel(w, 100 + 190, 50 + 80), kBack);
    EXPECT_EQ(Pixel(w, 40, 100), 0xffffffu) << "the host's own colour outside it";
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Fixed(w), "screenshots/container_control.png"));

    Events().clear();
    ClickShown(w, inner1);
    EXPECT_EQ(Events(), (std::vector<std::string>{"GotFocus Answers", "Action Inner1"}))
        << "the click takes the focus into the container";
}

TEST_F(EmbeddedTest, TabWalksIntoTheContainerAndOutAgain) {
    RuntimeObject *w = Host(true);
    RuntimeObject *cc = Find(w, "Answers");
    Focus(w);
    RuntimeSetFocus(Find(w, "Before"));
    Settle(40);
    Events().clear();
    struct Step {
        const char *key;
        SubPane *focus;
        std::vector<std::string> events;
    };
    const Step steps[] = {
        {"Tab", PaneOfName(cc, "Inner1"), {"GotFocus Answers"}},
        {"Tab", PaneOfName(cc, "Inner2"), {}},
        {"Tab", PaneOfName(w, "After"), {"LostFocus Answers"}},
        {"shift+Tab", PaneOfName(cc, "Inner2"), {"GotFocus Answers"}},
    };
    for (const Step &s : steps) {
        Events().clear();
        Key(s.key);
        EXPECT_EQ(FocusPane(), s.focus) << s.key;
        EXPECT_EQ(Events(), s.events) << s.key;
    }
    // Closing the window takes the focus out of the container first, then
    // closes its controls and the container.
    Events().clear();
    RuntimeCloseWindow(w);
    Settle(40);
    EXPECT_EQ(Events(), (std::vector<std::string>{"LostFocus Answers", "Close Inner2",
                                                  "Close Inner1", "Close Answers"}));
    EXPECT_EQ(FocusPane(), nullptr);
}

TEST_F(EmbeddedTest, EmbedWithinPlacesAContainerInAnOpenWindowOnce) {
    RuntimeObject *w = Host(false);
    RuntimeObject *cc = NewContainer();
    Events().clear();
    EmbedWithin(cc, w, 120, 20, 150, 80);
    EmbedWithin(cc, w, 0, 0, 10, 10); // placed already: stays
    EmbedWithin(w, w, 0, 0, 10, 10);  // a window isn't a container
    Settle(60);
    EXPECT_EQ(Events(), (std::vector<std::string>{"Open Inner2", "Open Inner1", "Open Answers"}));
    EXPECT_EQ(Shown(w, Find(cc, "Inner1")), std::pair(130, 30));
    EXPECT_EQ(ctlPosGetter(EmbeddedControlOf(cc), 2), 150);
    EXPECT_EQ(Find(w, "ccAnswers"), cc) << "in the map under its class's name";
    Events().clear();
    ClickShown(w, Find(cc, "Inner1"));
    EXPECT_EQ(Events(), (std::vector<std::string>{"GotFocus Answers", "Action Inner1"}));
    // The container's CancelClose keeps the whole window; closing the
    // container itself takes only it and its controls away.
    gRefuseClose = true;
    RuntimeCloseWindow(w);
    gRefuseClose = false;
    EXPECT_NE(View(w)->pane, nullptr);
    Events().clear();
    RuntimeCloseWindow(cc);
    Settle(40);
    EXPECT_EQ(Events(), (std::vector<std::string>{"LostFocus Answers", "Close Inner2",
                                                  "Close Inner1", "Close Answers"}));
    EXPECT_EQ(Find(w, "ccAnswers"), nullptr);
    EXPECT_EQ(Ctl(EmbeddedControlOf(cc))->pane, nullptr);
    EXPECT_EQ(cc->referenceCount, 1) << "only this test holds it now";
    EXPECT_NE(View(w)->pane, nullptr);
    RuntimeUnlockObject(cc);
}

// The control standing for the container is a Canvas in full: the program's
// Paint handler draws on it and its Backdrop lies over the back colour.
TEST_F(EmbeddedTest, TheEmbeddedControlPaintsAsACanvas) {
    RuntimeObject *w = Host(false);
    RuntimeObject *cc = NewContainer();
    RuntimeObject *embedded = EmbeddedControlOf(cc);
    ASSERT_NE(embedded, nullptr);
    EXPECT_TRUE(ClassInherits(embedded->klass, ClassForDefinition(CanvasDefinition())));
    KelpString paint = MakeText("Paint");
    RuntimeInstallInstanceEventHandler(embedded, paint, H(&PaintBand));
    objtext::Release(paint);
    RuntimeObject *backdrop = newPicture(40, 30, 32);
    StoreOf(backdrop)->Fill(0x2040ff);
    canvasBackdropSetter(embedded, 0, backdrop);
    RuntimeUnlockObject(backdrop);
    Events().clear();
    EmbedWithin(cc, w, 120, 20, 150, 80);
    Settle(120);
    EXPECT_NE(CanvasPaneOf(embedded), nullptr) << "its pane is the canvas pane";
    EXPECT_NE(std::find(Events().begin(), Events().end(), "Paint"), Events().end());
    struct Probe {
        int x, y;
        uint32_t rgb;
        const char *what;
    } probes[] = {{125, 22, 0x00c000, "Paint's band over the backdrop"},
                  {125, 40, 0x2040ff, "the backdrop at the corner"},
                  {255, 40, 0xffd080, "the back colour beside the controls"},
                  {265, 95, 0xffd080, "the back colour at the far corner"},
                  {275, 40, 0xffffff, "the host outside the container"}};
    for (const Probe &p : probes)
        EXPECT_EQ(Pixel(w, p.x, p.y), p.rgb) << p.what;
    std::filesystem::create_directories("screenshots");
    EXPECT_TRUE(SaveScreenshot(Fixed(w), "screenshots/embedded_canvas.png"));
}

} // namespace
} // namespace kelp::test
