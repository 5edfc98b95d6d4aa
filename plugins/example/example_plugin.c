/*
 * A worked example of a plug-in: one of each thing a plug-in can add.
 *
 *   Counter      a class with a property on the host's default accessors, a
 *                property with accessors of its own, methods, an event and
 *                a constructor; it implements the interface Greeter
 *   BigCounter   a subclass of Counter with data of its own behind Counter's
 *   Greeter      an interface with one method
 *   Arith        a module: Arith.Twice(n As Integer) As Integer
 *   Triple       a global method
 *   Swatch       a control that fills itself with its Color property
 *
 * Build:   cc -shared -fPIC -I<runtime>/include example_plugin.c -o libKPExample.so
 * Pack:    kelp-image pack -o app code.dat data.dat import.dat --plugin 65535:libKPExample.so
 * Call:    compiled code asks RuntimeLookupPluginEntrypoint for
 *          "Counter.Add(n As Integer) As Integer" and calls the address with
 *          the object first, then the arguments, as any C function.
 */
#include "kelp/plugin.h"

#include <stddef.h>
#include <string.h>

#define EXPORT __attribute__((visibility("default")))

/* The runtime functions this plug-in calls, found once through the resolver. */
static struct {
    void (*registerVersion)(int32_t);
    void (*registerClass)(KELPclassDefinition *);
    void (*registerControl)(KELPcontrol *);
    void (*registerModule)(KELPmoduleDefinition *);
    void (*registerInterface)(KELPinterfaceDefinition *);
    void (*registerMethod)(KELPmethodDefinition *);
    KelpString (*buildString)(const char *, int32_t);
    void *(*eventInstance)(RuntimeObject *, void *);
    void (*invalidate)(RuntimeObject *);
    void *(*drawable)(RuntimeObject *);
    void (*bounds)(RuntimeObject *, KelpRect *);
} host;

/* ---------------------------------------------------------------- Counter */

/* Counter's data, at the offset the runtime writes into its record. */
typedef struct {
    int32_t count; /* the property Count, on the default accessors */
    int32_t step;  /* Step, on accessors of our own */
} CounterData;

static KELPclassDefinition counterClass;

static CounterData *Counter(RuntimeObject *self) {
    return (CounterData *)((char *)self + counterClass.forSystemUse);
}

static KELPevent counterEvents[] = {{"Changed(n As Integer)", NULL}};

static void CounterConstructor(RuntimeObject *self) { Counter(self)->step = 1; }

static int32_t StepGetter(RuntimeObject *self, int32_t parameter) {
    (void)parameter;
    return Counter(self)->step;
}
static void StepSetter(RuntimeObject *self, int32_t parameter, int32_t value) {
    (void)parameter;
    Counter(self)->step = value > 0 ? value : 1; /* a step is at least 1 */
}

/* Adds n steps, tells the handler of Changed, returns the new count. */
static int32_t CounterAdd(RuntimeObject *self, int32_t n) {
    CounterData *d = Counter(self);
    d->count += n * d->step;
    void (*changed)(RuntimeObject *, int32_t) =
        (void (*)(RuntimeObject *, int32_t))host.eventInstance(self, counterEvents[0].forSystemUse);
    if (changed)
        changed(self, d->count);
    return d->count;
}

static KelpString CounterGreet(RuntimeObject *self) {
    (void)self;
    return host.buildString("hello from Counter", 18);
}

static KELPproperty counterProperties[] = {
    {"Behavior", "Count", "Integer", 0, KELP_DEFAULT_ACCESSOR, KELP_DEFAULT_ACCESSOR,
     offsetof(CounterData, count), NULL, 0, NULL},
    {"Behavior", "Step", "Integer", 0, (void *)StepGetter, (void *)StepSetter, 0, NULL, 0, NULL},
};

static KELPmethodDefinition counterMethods[] = {
    {(void *)CounterAdd, KELP_NO_SETTER, "Add(n As Integer) As Integer", NULL},
    {(void *)CounterGreet, KELP_NO_SETTER, "Greet() As String", NULL},
};

static KELPclassDefinition counterClass = {
    7,    "Counter",
    NULL, sizeof(CounterData),
    0,    CounterConstructor,
    NULL, counterProperties,
    2,    counterMethods,
    2,    counterEvents,
    1,    NULL,
    0,    "Greeter",
};

/* ------------------------------------------------------------- BigCounter */

typedef struct {
    int32_t limit;
} BigCounterData;

static KELPclassDefinition bigCounterClass;

static void BigCounterConstructor(RuntimeObject *self) {
    ((BigCounterData *)((char *)self + bigCounterClass.forSystemUse))->limit = 1000;
}

static KELPproperty bigCounterProperties[] = {
    {"Behavior", "Limit", "Integer", 0, KELP_DEFAULT_ACCESSOR, KELP_DEFAULT_ACCESSOR,
     offsetof(BigCounterData, limit), NULL, 0, NULL},
};

static KELPclassDefinition bigCounterClass = {
    7,         "BigCounter",
    "Counter", sizeof(BigCounterData),
    0,         BigCounterConstructor,
    NULL,      bigCounterProperties,
    1,         NULL,
    0,         NULL,
    0,         NULL,
    0,         NULL,
};

/* ------------------------------------------------ Greeter, Arith, Triple */

static KELPmethodDefinition greeterMethods[] = {{NULL, KELP_NO_SETTER, "Greet() As String", NULL}};
static KELPinterfaceDefinition greeterInterface = {7, "Greeter", greeterMethods, 1};

static int32_t Twice(int32_t n) { return 2 * n; }
static KELPmethodDefinition arithMethods[] = {
    {(void *)Twice, KELP_NO_SETTER, "Twice(n As Integer) As Integer", NULL}};
static KELPmoduleDefinition arithModule = {7, "Arith", arithMethods, 1};

static int32_t Triple(int32_t n) { return 3 * n; }
static KELPmethodDefinition tripleMethod = {(void *)Triple, KELP_NO_SETTER,
                                            "Triple(n As Integer) As Integer", NULL};

/* ----------------------------------------------------------------- Swatch */

typedef struct {
    int32_t color; /* 0xRRGGBB */
} SwatchData;

static SwatchData *Swatch(RuntimeObject *self) {
    return (SwatchData *)((char *)self + KELP_CONTROL_DATA_OFFSET);
}

static void SwatchConstructor(RuntimeObject *self) { Swatch(self)->color = 0x3366CC; }

/* Draws with the runtime's own Graphics calls would do as well; this one
 * shows the plain route: the drawable and GDK.  The pane is a drawing area
 * of its own, so its origin is (0, 0). */
#include <gdk/gdk.h>
static void SwatchRedraw(RuntimeObject *self, RuntimeObject *graphics) {
    GdkDrawable *d = (GdkDrawable *)host.drawable(graphics);
    KelpRect b;
    if (!d)
        return;
    host.bounds(self, &b);
    GdkGC *gc = gdk_gc_new(d);
    int32_t c = Swatch(self)->color;
    GdkColor colour = {0, (guint16)(((c >> 16) & 0xFF) * 0x101),
                       (guint16)(((c >> 8) & 0xFF) * 0x101), (guint16)((c & 0xFF) * 0x101)};
    gdk_gc_set_rgb_fg_color(gc, &colour);
    gdk_draw_rectangle(d, gc, TRUE, 0, 0, b.right - b.left, b.bottom - b.top);
    g_object_unref(gc);
}

static KELPproperty swatchProperties[] = {
    {"Appearance", "Color", "Color", 0x01, KELP_DEFAULT_ACCESSOR, KELP_DEFAULT_ACCESSOR,
     offsetof(SwatchData, color), NULL, 0, NULL},
};

static KELPcontrolBehaviour swatchBehaviour = {
    .constructor = SwatchConstructor,
    .redraw = SwatchRedraw,
};

static KELPcontrol swatchControl = {
    7,    "Swatch", sizeof(SwatchData), 0, 0,    0, 32,   32, swatchProperties, 1, NULL, 0,
    NULL, 0,        &swatchBehaviour,   0, NULL, 0, NULL,
};

/* ------------------------------------------------------------ the entry */

EXPORT void KELPPluginMain(KELPResolver resolve) {
    host.registerVersion = (void (*)(int32_t))resolve("RegisterPluginVersion");
    host.registerClass = (void (*)(KELPclassDefinition *))resolve("PluginRegisterClass");
    host.registerControl = (void (*)(KELPcontrol *))resolve("PluginRegisterControl");
    host.registerModule = (void (*)(KELPmoduleDefinition *))resolve("PluginRegisterModule");
    host.registerInterface =
        (void (*)(KELPinterfaceDefinition *))resolve("PluginRegisterInterface");
    host.registerMethod = (void (*)(KELPmethodDefinition *))resolve("PluginRegisterMethod");
    host.buildString = (KelpString(*)(const char *, int32_t))resolve("KELPBuildString");
    host.eventInstance = (void *(*)(RuntimeObject *, void *))resolve("GetEventInstance");
    host.invalidate = (void (*)(RuntimeObject *))resolve("KELPInvalidateControl");
    host.drawable = (void *(*)(RuntimeObject *))resolve("KELPGraphicsGdkDrawable");
    host.bounds = (void (*)(RuntimeObject *, KelpRect *))resolve("GetControlBounds");

    host.registerVersion(KELP_PLUGIN_VERSION);
    host.registerInterface(&greeterInterface);
    host.registerClass(&counterClass);
    host.registerClass(&bigCounterClass);
    host.registerModule(&arithModule);
    host.registerMethod(&tripleMethod);
    host.registerControl(&swatchControl);
}
