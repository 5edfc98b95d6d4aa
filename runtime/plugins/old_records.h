#pragma once
// Records of the first plug-in interface, converted to the current layout
// when they are registered.  The converted records live as long as the
// process, as the plug-in's own records do.
#include "plugins/host.h"

namespace kelp::plugins {

// A control record of version 4 built from one of version 1: default width
// and height 100, the properties on the default accessors, the method rows
// whose function index the plug-in's exports table knows.  Null when a
// table of the old record is unsound.
KELPcontrol *ConvertControlV1(const KELPcontrolV1 &old, const PluginRecord &plugin);
// A global method row with its function index looked up; null for an index
// the exports table doesn't have.
KELPmethodDefinition *ConvertMethodV1(const KELPmethodDefinitionV1 &old,
                                      const PluginRecord &plugin);

} // namespace kelp::plugins
