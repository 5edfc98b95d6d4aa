/* A plug-in written to the first interface version: a control whose
 * functions are indexes into an exports table, and a global method named the
 * same way.  One method row names an index past the table's end. */
#include "kelp/plugin.h"

#define EXPORT __attribute__((visibility("default")))

static int32_t Spin(RuntimeObject *self, int32_t n) { return self ? 10 * n : -1; }
static int32_t Halve(int32_t n) { return n / 2; }

static KELPexportRow exportsTable[] = {
    {"Spin", (void *)Spin, 0}, {"Halve", (void *)Halve, 0}, {NULL, NULL, 0}};

static KELPpropertyV1 knobProperties[] = {
    {"Behavior", "Turns", "Integer", 0, 0},
    {"Appearance", "Label", "String", 0x01, 8},
};
static KELPmethodDefinitionV1 knobMethods[] = {
    {0, -1, "Spin(n As Integer) As Integer"},
    {7, -1, "Lost(n As Integer) As Integer"}, /* no such row: dropped */
};
static KELPcontrolBehaviour knobBehaviour;

EXPORT KELPcontrolV1 oldKnob = {
    1, "OldKnob", 16, 0, 0, 0, knobProperties, 2, knobMethods, 2, NULL, 0, &knobBehaviour, NULL,
};
static KELPmethodDefinitionV1 halve = {1, -1, "Halve(n As Integer) As Integer"};

EXPORT void KELPPluginMain(KELPResolver resolve) {
    ((void (*)(int32_t))resolve("RegisterPluginVersion"))(1);
    ((void (*)(void *))resolve("RegisterPluginExports"))(exportsTable);
    ((void (*)(void *))resolve("PluginRegisterControl"))(&oldKnob);
    ((void (*)(void *))resolve("PluginRegisterMethod"))(&halve);
}
