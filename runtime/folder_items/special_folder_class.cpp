// The SpecialFolder object: the user's and the system's folders by name,
// each a new FolderItem, whether or not the folder exists yet (a program may
// make it).  Nil only when there is no usable HOME.
#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"
#include "folder_items/special_folders.h"
#include "folder_items/xdg_folders.h"

#include "objects/definitions.h"

#include "kelp/files.h"
#include "kelp/objects.h"

#include <cstdlib>

namespace kelp {
namespace {

// Property selectors, from 1; GetFromCode takes the same numbers.
struct NamedFolder {
    const char *property;
    const char *xdgName; // a user directory, or null for the folders below
};
const NamedFolder kNamed[] = {
    {"Desktop", "DESKTOP"},       {"Documents", "DOCUMENTS"},
    {"Music", "MUSIC"},           {"Pictures", "PICTURES"},
    {"Movies", "VIDEOS"},         {"Downloads", "DOWNLOAD"},
    {"Templates", "TEMPLATES"},   {"SharedDocuments", "PUBLICSHARE"},
    {"UserHome", nullptr},        {"Preferences", nullptr},
    {"ApplicationData", nullptr}, {"Temporary", nullptr},
    {"System", nullptr},
};
constexpr int32_t kNamedCount = sizeof(kNamed) / sizeof(kNamed[0]);

// The XDG base folder of an environment variable, else home + fallback.
std::string BaseFolder(const char *variable, const std::string &home, const char *fallback) {
    const char *value = std::getenv(variable);
    return value && value[0] == '/' ? std::string(value) : home + fallback;
}

std::unique_ptr<FolderItemImp> FolderFor(int32_t selector) {
    if (selector < 1 || selector > kNamedCount)
        return FindStandardFolder(selector); // 1034 "/etc" and the rest, or null
    const NamedFolder &named = kNamed[selector - 1];
    if (named.xdgName) {
        const std::string path = XdgUserFolder(named.xdgName);
        return path.empty() ? nullptr : std::make_unique<FolderItemImpUnix>(path);
    }
    const std::string property = named.property;
    if (property == "Temporary")
        return FindSpecialFolder(SpecialFolder::kTemporary);
    if (property == "System")
        return FindSpecialFolder(SpecialFolder::kSystem);
    const std::string home = UserHome();
    if (home.empty())
        return nullptr;
    if (property == "Preferences")
        return std::make_unique<FolderItemImpUnix>(BaseFolder("XDG_CONFIG_HOME", home, "/.config"));
    if (property == "ApplicationData")
        return std::make_unique<FolderItemImpUnix>(
            BaseFolder("XDG_DATA_HOME", home, "/.local/share"));
    return std::make_unique<FolderItemImpUnix>(home);
}

const std::vector<PropertyRow> &NamedProperties() {
    static const TypeRecord folderItem{kTypeObjectOf, nullptr, nullptr, 0, &FolderItemDefinition};
    static const std::vector<PropertyRow> rows = [] {
        std::vector<PropertyRow> r;
        for (int32_t i = 0; i < kNamedCount; ++i)
            r.push_back(
                {0, kNamed[i].property, &folderItem, KELP_ENTRY(GetSpecialFolder), {}, i + 1});
        return r;
    }();
    return rows;
}

// GetFromCode on the instance, which has a self.
RuntimeObject *SpecialFolderInstanceGetFromCode(RuntimeObject *, int32_t code) {
    return GetSpecialFolderFromCode(code);
}

} // namespace

ObjectDefinition *SpecialFolderDefinition() {
    static const TypeRecord folderItem{kTypeObjectOf, nullptr, nullptr, 0, &FolderItemDefinition};
    static const ParameterRow code[] = {{"code", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"GetFromCode", &folderItem, code, 1, KELP_ENTRY(SpecialFolderInstanceGetFromCode)},
    };
    static const ClassDescription description = {
        .name = "SpecialFolder",
        .properties = NamedProperties(),
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

extern "C" RuntimeObject *GetSpecialFolder(RuntimeObject *, int32_t selector) {
    return NewFolderItem(FolderFor(selector));
}

extern "C" RuntimeObject *GetSpecialFolderFromCode(int32_t code) {
    return NewFolderItem(FolderFor(code));
}

extern "C" RuntimeObject *systemGetSpecialFoldersClass(void) {
    // Made at the first call and kept for the process; each caller gets a
    // reference of its own.
    static RuntimeObject *folders = NewObjectOfDefinition(SpecialFolderDefinition());
    RuntimeLockObject(folders);
    return folders;
}
