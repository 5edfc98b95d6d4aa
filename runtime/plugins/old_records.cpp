// Conversion of version-1 records.  Such a plug-in names its functions by
// index into the table it gave RegisterPluginExports; the table has no
// count, so an index is looked up by walking the rows up to it, stopping at
// the first row without code and never past kMaxRows.
#include "plugins/old_records.h"

#include <deque>
#include <vector>

namespace kelp::plugins {
namespace {

struct ConvertedControl {
    KELPcontrol record{};
    std::vector<KELPproperty> properties;
    std::vector<KELPmethodDefinitionV6> methods; // the stride of record version 4
};

// Never freed: the host keeps pointers into them for the process's life.
std::deque<ConvertedControl> &Controls() {
    static auto *controls = new std::deque<ConvertedControl>();
    return *controls;
}
std::deque<KELPmethodDefinition> &Methods() {
    static auto *methods = new std::deque<KELPmethodDefinition>();
    return *methods;
}

// The code of row `index` of the exports table, or null.
void *ExportedCode(const PluginRecord &plugin, intptr_t index) {
    const auto *rows = static_cast<const KELPexportRow *>(plugin.exports);
    if (!rows || index < 0 || index >= kMaxRows)
        return nullptr;
    for (intptr_t i = 0; i <= index; ++i)
        if (!rows[i].code)
            return nullptr; // the table ended before the index
    return rows[index].code;
}

void *ExportedSetter(const PluginRecord &plugin, intptr_t index) {
    if (index == -1)
        return KELP_NO_SETTER;
    void *code = ExportedCode(plugin, index);
    return code ? code : KELP_NO_SETTER;
}

} // namespace

KELPcontrol *ConvertControlV1(const KELPcontrolV1 &old, const PluginRecord &plugin) {
    if (!TableIsSound(old.properties, old.propertyCount, "properties || propertyCount == 0",
                      __LINE__) ||
        !TableIsSound(old.methods, old.methodCount, "methods || methodCount == 0", __LINE__))
        return nullptr;
    ConvertedControl &c = Controls().emplace_back();
    for (int32_t i = 0; i < old.propertyCount; ++i) {
        const KELPpropertyV1 &p = old.properties[i];
        c.properties.push_back(KELPproperty{p.group, p.name, p.type, p.flags, KELP_DEFAULT_ACCESSOR,
                                            KELP_DEFAULT_ACCESSOR, p.parameter, nullptr, 0,
                                            nullptr});
    }
    for (int32_t i = 0; i < old.methodCount; ++i) {
        const KELPmethodDefinitionV1 &m = old.methods[i];
        if (void *code = ExportedCode(plugin, m.function))
            c.methods.push_back(KELPmethodDefinitionV6{
                code, ExportedSetter(plugin, m.setterFunction), m.declaration});
    }
    KELPcontrol &r = c.record;
    r.version = 4;
    r.name = old.name;
    r.dataSize = old.dataSize;
    r.flags = old.flags;
    r.toolbarPicture = old.toolbarPicture;
    r.toolbarPicturePressed = old.toolbarPicturePressed;
    r.defaultWidth = r.defaultHeight = 100;
    r.properties = c.properties.empty() ? nullptr : c.properties.data();
    r.propertyCount = int32_t(c.properties.size());
    r.methods = c.methods.empty() ? nullptr : c.methods.data();
    r.methodCount = int32_t(c.methods.size());
    r.events = old.events;
    r.eventCount = old.eventCount;
    r.behaviour = old.behaviour;
    return &r;
}

KELPmethodDefinition *ConvertMethodV1(const KELPmethodDefinitionV1 &old,
                                      const PluginRecord &plugin) {
    void *code = ExportedCode(plugin, old.function);
    if (!code || !old.declaration)
        return nullptr;
    return &Methods().emplace_back(KELPmethodDefinition{
        code, ExportedSetter(plugin, old.setterFunction), old.declaration, nullptr});
}

} // namespace kelp::plugins
