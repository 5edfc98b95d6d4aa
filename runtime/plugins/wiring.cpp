#include "plugins/wiring.h"

#include "plugins/host.h"

#include "objects/definitions.h"

namespace kelp {

void WirePlugins() {
    SetExternalClassesFinisher(&plugins::LoadEmbeddedPlugins);
    SetPluginClassFinder([](const char *name) -> ObjectDefinition * {
        plugins::Registered *r = plugins::FindRegistered(name ? name : "");
        return r ? r->definition : nullptr;
    });
}

} // namespace kelp
