/* A plug-in for the plug-in benchmark: 50 classes of three methods, two
 * properties on the default accessors and an event each; every second class
 * derives from the one before.  BENCH_PLUGIN_NUMBER names its classes
 * "B<number>_C<index>" so twenty copies can load side by side. */
#include "kelp/plugin.h"

#include <stdio.h>

#define CLASSES 50

static int32_t Get(RuntimeObject *self) { return self ? 1 : 0; }

static char gNames[CLASSES][32];
static char gDeclarations[CLASSES][3][64];
static KELPproperty gProperties[CLASSES][2];
static KELPmethodDefinition gMethods[CLASSES][3];
static KELPevent gEvents[CLASSES][1];
static KELPclassDefinition gClasses[CLASSES];

__attribute__((visibility("default"))) void KELPPluginMain(KELPResolver resolve) {
    void (*version)(int32_t) = (void (*)(int32_t))resolve("RegisterPluginVersion");
    void (*add)(KELPclassDefinition *) =
        (void (*)(KELPclassDefinition *))resolve("PluginRegisterClass");
    version(7);
    for (int i = 0; i < CLASSES; ++i) {
        snprintf(gNames[i], sizeof gNames[i], "B%d_C%d", BENCH_PLUGIN_NUMBER, i);
        snprintf(gDeclarations[i][0], 64, "Value() As Integer");
        snprintf(gDeclarations[i][1], 64, "Add%d(a As Integer, b As String) As Boolean", i);
        snprintf(gDeclarations[i][2], 64, "Reset(ByRef x As Double, Optional2 As Color)");
        for (int m = 0; m < 3; ++m)
            gMethods[i][m] =
                (KELPmethodDefinition){(void *)Get, KELP_NO_SETTER, gDeclarations[i][m], NULL};
        gProperties[i][0] = (KELPproperty){
            "Behavior", "Count", "Integer", 0,   KELP_DEFAULT_ACCESSOR, KELP_DEFAULT_ACCESSOR,
            0,          NULL,    0,         NULL};
        gProperties[i][1] = (KELPproperty){
            "Behavior", "Label", "String", 0,   KELP_DEFAULT_ACCESSOR, KELP_DEFAULT_ACCESSOR,
            8,          NULL,    0,        NULL};
        gEvents[i][0] = (KELPevent){"Changed(n As Integer)", NULL};
        gClasses[i] = (KELPclassDefinition){7,
                                            gNames[i],
                                            i % 2 ? gNames[i - 1] : NULL,
                                            16,
                                            0,
                                            NULL,
                                            NULL,
                                            gProperties[i],
                                            2,
                                            gMethods[i],
                                            3,
                                            gEvents[i],
                                            1,
                                            NULL,
                                            0,
                                            NULL};
        add(&gClasses[i]);
    }
}
