/* Counter: the smallest windowed application built as an image.  A window
 * holds a button and a label; each click on the button counts in the label,
 * and the program says on its standard output what the label now reads.
 *
 * It is plain C against include/kelp/: every call into the runtime is an
 * export the image binds by name, every text a string constant, and puts
 * comes from the C library as a soft import. */
#include "kelp/image_code.h"
#include "kelp/kelp.h"

int puts(const char *text);
int fflush(void *stream);

static RuntimeObject *gLabel; /* borrowed: the window holds its controls */
static int32_t gClicks;

static RuntimeObject *NewOf(KelpString className) {
    return RuntimeNewObject(RuntimeLookupClass(className));
}

/* A control of the window, placed and registered under its name. */
static RuntimeObject *AddControl(RuntimeObject *window, KelpString className, KelpString name,
                                 int32_t left, int32_t top, int32_t width, int32_t height) {
    RuntimeObject *control = NewOf(className);
    WindowAddControl(window, name, control);
    RuntimeControlMove(control, left, top, width, height);
    RuntimeUnlockObject(control); /* the window holds it now */
    return control;
}

/* The button's Action event; the control is the only argument. */
static void CountClicked(RuntimeObject *button) {
    (void)button;
    ++gClicks;
    KelpString count = StringStr((double)gClicks);
    KelpString text = RuntimeAddString(KELP_STRING("Clicks: "), count);
    staticTextTextSetter(gLabel, 0, text);
    RuntimeUnlockString(text);
    RuntimeUnlockString(count);
    /* What the label holds now, read back from the control itself. */
    KelpString shown = staticTextTextGetter(gLabel, 0);
    puts(StringGetCString(shown));
    fflush(0);
    RuntimeUnlockString(shown);
}

void KelpMain(void) {
    RuntimeInit();
    RuntimeInitExternalClasses();
    RuntimeRegisterAppObject(0);
    RuntimeObject *window = NewOf(KELP_STRING("Window"));
    windowTitleSetter(window, 0, KELP_STRING("Counter"));
    RuntimeObject *button =
        AddControl(window, KELP_STRING("PushButton"), KELP_STRING("CountButton"), 20, 20, 120, 30);
    pushButtonCaptionSetter(button, 0, KELP_STRING("Count"));
    RuntimeInstallInstanceEventHandler(button, KELP_STRING("Action"), (void *)CountClicked);
    gLabel =
        AddControl(window, KELP_STRING("StaticText"), KELP_STRING("ClickLabel"), 20, 70, 200, 24);
    staticTextTextSetter(gLabel, 0, KELP_STRING("No clicks yet"));
    RuntimeShowWindow(window);
    RuntimeUnlockObject(window);
    RuntimeRun();
    RuntimeExit();
}
