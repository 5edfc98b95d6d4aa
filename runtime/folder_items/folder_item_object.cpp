#include "folder_items/folder_item_object.h"

#include "folder_items/folder_item_unix.h"
#include "folder_items/paths.h"
#include "folder_items/special_folders.h"

#include "base/fatal_report.h"
#include "dates/date_common.h"
#include "exceptions/raise.h"
#include "objects/definitions.h"
#include "stream_classes/stream_objects.h"
#include "strings/kstring.h"

#include "kelp/files.h"
#include "kelp/objects.h"

#include <climits>
#include <cmath>
#include <cstring>

namespace kelp {
namespace {

constexpr const char kFile[] = "runtime/folder_items/folder_item_object.cpp";

const TypeRecord kFolderItemType{kTypeObjectOf, nullptr, nullptr, 0, &FolderItemDefinition};
const TypeRecord kTextInputType{kTypeObjectOf, nullptr, nullptr, 0, &TextInputStreamDefinition};
const TypeRecord kTextOutputType{kTypeObjectOf, nullptr, nullptr, 0, &TextOutputStreamDefinition};
const TypeRecord kBinaryType{kTypeObjectOf, nullptr, nullptr, 0, &BinaryStreamDefinition};
const TypeRecord kDateType{kTypeObjectOf, nullptr, nullptr, 0, &DateDefinition};

FolderItemRecord *Record(RuntimeObject *self) { return reinterpret_cast<FolderItemRecord *>(self); }

// The bytes handed to the system: UTF-8 as the program gave them; text in
// another known encoding is brought to UTF-8 first, never to Latin-1.
std::string SystemPath(KelpString text) {
    string s = string::Wrap(text);
    uint32_t encoding = s.Encoding();
    if (encoding != kEncodingUTF8 && encoding != kEncodingASCII && encoding != kEncodingUnknown)
        s = GetUTF8String(s);
    return std::string(s.View());
}

KelpString Text(const std::string &bytes, uint32_t encoding = kEncodingUTF8) {
    return string::FromBytes(bytes.data(), static_cast<long>(bytes.size()), encoding)
        .ExtractStringStorage();
}

// An item with no base: the relative record can't be used.
std::unique_ptr<FolderItemImp> FromSaveInfo(const std::string &bytes, FolderItemImp *base) {
    SaveInfoPaths paths;
    if (!DecodeSaveInfo(bytes, paths))
        return nullptr;
    if (!base || paths.mode == kSaveInfoAbsolute)
        return FolderItemImpUnix::FromPath(paths.absolute.empty() ? paths.relative
                                                                  : paths.absolute);
    std::string baseFolder = base->IsDirectory() ? base->AbsolutePath()
                             : base->Parent()    ? base->Parent()->AbsolutePath()
                                                 : std::string("/");
    std::string relative =
        paths.relative.empty() ? std::string() : ResolveRelativePath(baseFolder, paths.relative);
    if (paths.mode == kSaveInfoRelative)
        return relative.empty() ? nullptr : FolderItemImpUnix::FromPath(relative);
    for (const std::string &candidate : {relative, paths.absolute}) {
        if (candidate.empty())
            continue;
        std::unique_ptr<FolderItemImpUnix> item = FolderItemImpUnix::FromPath(candidate);
        if (item && item->Exists())
            return item;
    }
    return FolderItemImpUnix::FromPath(relative.empty() ? paths.absolute : relative);
}

// The one routine behind the constructor and RuntimeGet(True)FolderItem.
std::unique_ptr<FolderItemImp> ImpFromPath(KelpString text, bool resolve, int32_t pathMode) {
    std::string path = SystemPath(text);
    std::unique_ptr<FolderItemImp> imp;
    if (pathMode == 1) {
        if (path.empty() || path[0] != '/') {
            RaiseWithMessage("UnsupportedFormatException",
                             "Passing non-absolute shell paths is not currently supported");
            return nullptr;
        }
        imp = FolderItemImpUnix::FromPath(path);
    } else if (pathMode == 2) {
        std::string decoded = PathFromFileURL(path);
        if (decoded.empty() || decoded.find('\0') != std::string::npos)
            return nullptr;
        imp = FolderItemImpUnix::FromPath(decoded);
    } else if (IsSaveInfo(path)) {
        imp = FromSaveInfo(path, nullptr);
    } else {
        if (path.find('\0') != std::string::npos)
            return nullptr;
        imp = FolderItemImpUnix::FromPath(path);
    }
    if (imp && resolve && imp->IsAlias())
        if (std::unique_ptr<FolderItemImp> target = imp->ResolveAlias())
            imp = std::move(target);
    return imp;
}

template <typename T> T WithImp(RuntimeObject *self, T neutral, auto &&action) {
    FolderItemImp *imp = ImpOf(self);
    return imp ? action(*imp) : neutral;
}

// A new Date of a file time, or nil when the file couldn't be asked: a
// missing file has no date, and a made-up one would pass for real.
RuntimeObject *FileDate(RuntimeObject *self, int64_t (FolderItemImp::*seconds)()) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return nullptr;
    imp->mLastError = 0;
    const int64_t total = (imp->*seconds)();
    return imp->mLastError ? nullptr : NewDateWithTotalSeconds(static_cast<double>(total));
}

int32_t Narrow(int64_t value) { return value > INT_MAX ? INT_MAX : static_cast<int32_t>(value); }

// The language's names for the wrappers without an optional argument.
void LaunchPlain(RuntimeObject *self) { FolderItemLaunch(self, 1); }
RuntimeObject *OpenBinaryReadOnly(RuntimeObject *self) { return FolderItemOpenBinaryFile(self, 0); }
KelpString SaveInfoDefault(RuntimeObject *self, RuntimeObject *relativeTo) {
    return FolderItemGetSaveInfo(self, relativeTo, kSaveInfoDefault);
}
void PathCtorAbsolute(RuntimeObject *self, KelpString path) { FolderItemPathCtor(self, path, 0); }

} // namespace

FolderItemImp *ImpOf(RuntimeObject *item) {
    if (!item) {
        RaiseNilObject();
        return nullptr;
    }
    FolderItemImp *imp = Record(item)->imp;
    if (!imp)
        AssertionFailed(kFile, __LINE__, "entry->mImp");
    return imp;
}

RuntimeObject *NewFolderItem(std::unique_ptr<FolderItemImp> imp) {
    if (!imp)
        return nullptr;
    RuntimeObject *object = NewObjectOfDefinition(FolderItemDefinition());
    if (object)
        Record(object)->imp = imp.release();
    return object;
}

ObjectDefinition *FolderItemDefinition() {
    static const PropertyRow properties[] = {
        {0, "AbsolutePath", &kTypeString, KELP_ENTRY(fileAbsolutePathGetter), {}},
        {0, "ShellPath", &kTypeString, KELP_ENTRY(FileShellPathGetter), {}},
        {0, "URLPath", &kTypeString, KELP_ENTRY(FileURLGetter), {}},
        {0, "DisplayName", &kTypeString, KELP_ENTRY(FileDisplayNameGetter), {}},
        {0, "Name", &kTypeString, KELP_ENTRY(fileNameGetter), KELP_ENTRY(fileNameSetter)},
        {0, "Alias", &kTypeBoolean, KELP_ENTRY(fileAliasGetter), {}},
        {0, "Directory", &kTypeBoolean, KELP_ENTRY(fileDirectoryGetter), {}},
        {0, "Exists", &kTypeBoolean, KELP_ENTRY(fileExistsGetter), {}},
        {0, "Count", &kTypeInteger, KELP_ENTRY(fileCountGetter), {}},
        {0, "Length", &kTypeInteger, KELP_ENTRY(fileSizeGetter), {}},
        {0, "ResourceForkLength", &kTypeInteger, KELP_ENTRY(fileRFSizeGetter), {}},
        {0, "Locked", &kTypeBoolean, KELP_ENTRY(fileLockedGetter), KELP_ENTRY(fileLockedSetter)},
        {0, "Visible", &kTypeBoolean, KELP_ENTRY(fileVisibleGetter), KELP_ENTRY(fileVisibleSetter)},
        {0, "ExtensionVisible", &kTypeBoolean, KELP_ENTRY(FileExtensionVisibleGetter),
         KELP_ENTRY(FileExtensionVisibleSetter)},
        {0, "Type", &kTypeString, KELP_ENTRY(fileTypeGetter), {}},
        {0, "MacType", &kTypeString, KELP_ENTRY(fileMacTypeGetter), KELP_ENTRY(fileMacTypeSetter)},
        {0, "MacCreator", &kTypeString, KELP_ENTRY(fileMacCreatorGetter),
         KELP_ENTRY(fileMacCreatorSetter)},
        {0, "MacVRefNum", &kTypeInteger, KELP_ENTRY(fileVRefNumGetter), {}},
        {0, "MacDirID", &kTypeInteger, KELP_ENTRY(fileDirIDGetter), {}},
        {0, "Parent", &kFolderItemType, KELP_ENTRY(folderParentGetter), {}},
        {0, "CreationDate", &kDateType, KELP_ENTRY(folderGetCreation),
         KELP_ENTRY(folderSetCreation)},
        {0, "ModificationDate", &kDateType, KELP_ENTRY(folderGetModified),
         KELP_ENTRY(folderSetModified)},
        {0, "Owner", &kTypeString, KELP_ENTRY(FolderItemOwnerGetter),
         KELP_ENTRY(FolderItemOwnerSetter)},
        {0, "Group", &kTypeString, KELP_ENTRY(FolderItemGroupGetter),
         KELP_ENTRY(FolderItemGroupSetter)},
        {0, "LastErrorCode", &kTypeInteger, KELP_ENTRY(FolderItemGetLastError),
         KELP_ENTRY(FolderItemSetLastError)},
        {0, "Permissions", &kTypeInteger, KELP_ENTRY(FolderItemGetPermissions),
         KELP_ENTRY(FolderItemSetPermissionsInteger)},
        {0, "IsReadable", &kTypeBoolean, KELP_ENTRY(FolderItemIsCurrentlyReadable), {}},
        {0, "IsWriteable", &kTypeBoolean, KELP_ENTRY(FolderItemIsCurrentlyWriteable), {}},
        {0, "NoError", &kTypeInteger, {}, {}, 0, 0, true},
        {0, "DestDoesNotExistError", &kTypeInteger, {}, {}, 100, 0, true},
        {0, "FileNotFound", &kTypeInteger, {}, {}, 101, 0, true},
        {0, "AccessDenied", &kTypeInteger, {}, {}, 102, 0, true},
        {0, "NotEnoughMemory", &kTypeInteger, {}, {}, 103, 0, true},
        {0, "FileInUse", &kTypeInteger, {}, {}, 104, 0, true},
        {0, "InvalidName", &kTypeInteger, {}, {}, 105, 0, true},
        {0, "SaveInfoDefaultMode", &kTypeInteger, {}, {}, 0, 0, true},
        {0, "SaveInfoRelativeMode", &kTypeInteger, {}, {}, 1, 0, true},
        {0, "SaveInfoAbsoluteMode", &kTypeInteger, {}, {}, 2, 0, true},
        {0, "SaveAsMostCompatible", &kTypeInteger, {}, {}, 0, 0, true},
        {0, "SaveAsMostComplete", &kTypeInteger, {}, {}, 1, 0, true},
        {0, "SaveAsDefault", &kTypeInteger, {}, {}, 2, 0, true},
        {0, "SaveAsDefaultVector", &kTypeInteger, {}, {}, 3, 0, true},
        {0, "SaveAsDefaultRaster", &kTypeInteger, {}, {}, 4, 0, true},
        {0, "SaveAsMactintoshPICT", &kTypeInteger, {}, {}, 100, 0, true},
        {0, "SaveAsMactintoshRasterPICT", &kTypeInteger, {}, {}, 250, 0, true},
        {0, "SaveAsWindowsWMF", &kTypeInteger, {}, {}, 300, 0, true},
        {0, "SaveAsWindowsEMF", &kTypeInteger, {}, {}, 301, 0, true},
        {0, "SaveAsWindowsBMP", &kTypeInteger, {}, {}, 350, 0, true},
        {0, "PathTypeAbsolute", &kTypeInteger, {}, {}, 0, 0, true},
        {0, "PathTypeShell", &kTypeInteger, {}, {}, 1, 0, true},
        {0, "PathTypeURL", &kTypeInteger, {}, {}, 2, 0, true},
    };
    static const ParameterRow pathParams[] = {{"Path", &kTypeString}, {"pathMode", &kTypeInteger}};
    static const ParameterRow sourceParams[] = {{"Source", &kFolderItemType}};
    static const ParameterRow indexParams[] = {{"Index", &kTypeInteger}};
    static const ParameterRow nameParams[] = {{"Name", &kTypeString}};
    static const ParameterRow typeParams[] = {{"Type", &kTypeString}};
    static const ParameterRow rwParams[] = {{"ReadWrite", &kTypeBoolean}};
    static const ParameterRow destParams[] = {{"Destination", &kFolderItemType}};
    static const ParameterRow activateParams[] = {{"Activate", &kTypeBoolean}};
    static const ParameterRow launchParams[] = {{"Parameters", &kTypeString},
                                                {"Activate", &kTypeBoolean, "True"}};
    static const ParameterRow saveInfoParams[] = {{"RelativeTo", &kFolderItemType},
                                                  {"Mode", &kTypeInteger}};
    static const ParameterRow relativeParams[] = {{"SaveInfo", &kTypeString}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, nullptr, 0, KELP_ENTRY(FolderItemPathCtorNoParams)},
        {"Constructor", nullptr, pathParams, 1, KELP_ENTRY(PathCtorAbsolute)},
        {"Constructor", nullptr, pathParams, 2, KELP_ENTRY(FolderItemPathCtor)},
        {"Constructor", nullptr, sourceParams, 1, KELP_ENTRY(FolderItemCopyCtor)},
        {"Item", &kFolderItemType, indexParams, 1, KELP_ENTRY(FolderItemItem)},
        {"TrueItem", &kFolderItemType, indexParams, 1, KELP_ENTRY(FolderItemTrueItem)},
        {"Child", &kFolderItemType, nameParams, 1, KELP_ENTRY(FolderChild)},
        {"TrueChild", &kFolderItemType, nameParams, 1, KELP_ENTRY(FolderTrueChild)},
        {"OpenAsTextFile", &kTextInputType, nullptr, 0, KELP_ENTRY(FolderItemOpenTextFile)},
        {"AppendToTextFile", &kTextOutputType, nullptr, 0, KELP_ENTRY(FolderItemAppendTextFile)},
        {"CreateTextFile", &kTextOutputType, nullptr, 0, KELP_ENTRY(FolderItemCreateTextFile)},
        {"OpenAsBinaryFile", &kBinaryType, nullptr, 0, KELP_ENTRY(OpenBinaryReadOnly)},
        {"OpenAsBinaryFile", &kBinaryType, rwParams, 1, KELP_ENTRY(FolderItemOpenBinaryFile)},
        {"CreateBinaryFile", &kBinaryType, typeParams, 1, KELP_ENTRY(FolderItemCreateBinaryFile)},
        {"Delete", nullptr, nullptr, 0, KELP_ENTRY(FolderItemDelete)},
        {"CreateAsFolder", nullptr, nullptr, 0, KELP_ENTRY(FolderItemCreateAsFolder)},
        {"Launch", nullptr, nullptr, 0, KELP_ENTRY(LaunchPlain)},
        {"Launch", nullptr, activateParams, 1, KELP_ENTRY(FolderItemLaunch)},
        {"Launch", nullptr, launchParams, 2, KELP_ENTRY(FolderItemLaunchWithParameters)},
        {"CopyFileTo", nullptr, destParams, 1, KELP_ENTRY(FolderItemCopyFileTo)},
        {"MoveFileTo", nullptr, destParams, 1, KELP_ENTRY(FolderItemMoveFileTo)},
        {"GetSaveInfo", &kTypeString, saveInfoParams, 1, KELP_ENTRY(SaveInfoDefault)},
        {"GetSaveInfo", &kTypeString, saveInfoParams, 2, KELP_ENTRY(FolderItemGetSaveInfo)},
        {"GetRelative", &kFolderItemType, relativeParams, 1, KELP_ENTRY(FolderItemGetRelative)},
        {"_MakeFileExecutable", nullptr, nullptr, 0, KELP_ENTRY(FolderItemImpMakeFileExecutable)},
    };
    static const ClassDescription description = {
        .name = "FolderItem",
        .instanceSize = sizeof(FolderItemRecord),
        .finalizer = KELP_ENTRY(FolderItemDestructor),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

std::span<const MethodRow> FolderItemFunctions() {
    static const ParameterRow pathParams[] = {{"path", &kTypeString},
                                              {"pathMode", &kTypeInteger, "0"}};
    static const ParameterRow indexParams[] = {{"index", &kTypeInteger}};
    static const MethodRow rows[] = {
        {"GetFolderItem", &kFolderItemType, pathParams, 2, KELP_ENTRY(RuntimeGetFolderItem)},
        {"GetTrueFolderItem", &kFolderItemType, pathParams, 2,
         KELP_ENTRY(RuntimeGetTrueFolderItem)},
        {"GetTemporaryFolderItem", &kFolderItemType, nullptr, 0,
         KELP_ENTRY(getTemporaryFolderItem)},
        {"DesktopFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getDesktopFolder)},
        {"DocumentsFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(GetDocumentsFolder)},
        {"PreferencesFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getPreferencesFolder)},
        {"ApplicationSupportFolder", &kFolderItemType, nullptr, 0,
         KELP_ENTRY(getApplicationSupportFolder)},
        {"FontsFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getFontsFolder)},
        {"ControlPanelsFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getControlPanelsFolder)},
        {"ExtensionsFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getExtensionsFolder)},
        {"StartupItemsFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getStartupItemsFolder)},
        {"ShutdownItemsFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getShutdownItemsFolder)},
        {"TrashFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getTrashFolder)},
        {"SystemFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getSystemFolder)},
        {"TemporaryFolder", &kFolderItemType, nullptr, 0, KELP_ENTRY(getTemporaryItemsFolder)},
        {"Volume", &kFolderItemType, indexParams, 1, KELP_ENTRY(getVolume)},
        {"VolumeCount", &kTypeInteger, nullptr, 0, KELP_ENTRY(getVolumeCount)},
    };
    return rows;
}

ObjectDefinition *PermissionsDefinition() {
    static const PropertyRow properties[] = {
        {0, "StickyBit", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 512},
        {0, "GidBit", &kTypeBoolean, KELP_ENTRY(PermissionsGetter), KELP_ENTRY(PermissionsSetter),
         1024},
        {0, "UidBit", &kTypeBoolean, KELP_ENTRY(PermissionsGetter), KELP_ENTRY(PermissionsSetter),
         2048},
        {0, "OwnerExecute", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 64},
        {0, "OwnerWrite", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 128},
        {0, "OwnerRead", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 256},
        {0, "GroupExecute", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 8},
        {0, "GroupWrite", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 16},
        {0, "GroupRead", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 32},
        {0, "OthersExecute", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 1},
        {0, "OthersWrite", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 2},
        {0, "OthersRead", &kTypeBoolean, KELP_ENTRY(PermissionsGetter),
         KELP_ENTRY(PermissionsSetter), 4},
    };
    static const ParameterRow ctorParams[] = {{"perms", &kTypeInteger}};
    static const MethodRow methods[] = {
        {"Constructor", nullptr, ctorParams, 1, KELP_ENTRY(PermissionsCtor)},
    };
    static const ClassDescription description = {
        .name = "Permissions",
        .instanceSize = sizeof(PermissionsRecord),
        .initializer = KELP_ENTRY(PermissionsInitializer),
        .properties = properties,
        .methods = methods,
    };
    static ObjectDefinition *definition = BuildDefinition(description);
    return definition;
}

} // namespace kelp

using namespace kelp;

// ---------------------------------------------------------------- construction

extern "C" void FolderItemPathCtorNoParams(RuntimeObject *self) {
    if (!self)
        return;
    delete Record(self)->imp;
    Record(self)->imp = new FolderItemImpUnix(DefaultFolder());
}

extern "C" void FolderItemPathCtor(RuntimeObject *self, KelpString path, int32_t pathMode) {
    if (!self)
        return;
    std::unique_ptr<FolderItemImp> imp = ImpFromPath(path, true, pathMode);
    if (!imp) {
        if (!ExceptionPending())
            RaiseWithMessage("UnsupportedFormatException",
                             "The path passed into new FolderItem was invalid");
        return;
    }
    delete Record(self)->imp;
    Record(self)->imp = imp.release();
}

extern "C" void FolderItemCopyCtor(RuntimeObject *self, RuntimeObject *source) {
    if (!self)
        return;
    FolderItemImp *imp = ImpOf(source);
    if (!imp)
        return;
    delete Record(self)->imp;
    Record(self)->imp = imp->Clone().release();
}

extern "C" void FolderItemDestructor(RuntimeObject *self) {
    if (!self)
        return;
    delete Record(self)->imp;
    Record(self)->imp = nullptr;
}

extern "C" RuntimeObject *FolderItemFromPath(KelpString path) {
    return NewFolderItem(ImpFromPath(path, true, 0));
}

extern "C" void *FolderItemGetImp(RuntimeObject *self) {
    return self ? Record(self)->imp : nullptr;
}

extern "C" KelpString KELPpathFromFolderItem(RuntimeObject *item) {
    return item && Record(item)->imp ? Text(Record(item)->imp->AbsolutePath()) : nullptr;
}

// ---------------------------------------------------------------- properties

#define KELP_TEXT_GETTER(fn, expr)                                                                 \
    extern "C" KelpString fn(RuntimeObject *self, int32_t) {                                       \
        return WithImp<KelpString>(self, nullptr, [](FolderItemImp &imp) { return Text(expr); });  \
    }
#define KELP_BOOL_GETTER(fn, expr)                                                                 \
    extern "C" uint8_t fn(RuntimeObject *self, int32_t) {                                          \
        return WithImp<uint8_t>(self, 0, [](FolderItemImp &imp) -> uint8_t { return expr; });      \
    }

KELP_TEXT_GETTER(fileAbsolutePathGetter, imp.AbsolutePath())
KELP_TEXT_GETTER(FileShellPathGetter, imp.ShellPath())
KELP_TEXT_GETTER(FileURLGetter, imp.URLPath())
KELP_TEXT_GETTER(FileDisplayNameGetter, imp.DisplayName())
KELP_TEXT_GETTER(fileNameGetter, imp.Name())
KELP_TEXT_GETTER(fileTypeGetter, FileTypeOfName(imp.Name()))
KELP_TEXT_GETTER(FolderItemOwnerGetter, imp.Owner())
KELP_TEXT_GETTER(FolderItemGroupGetter, imp.Group())
KELP_BOOL_GETTER(fileAliasGetter, imp.IsAlias())
KELP_BOOL_GETTER(fileDirectoryGetter, imp.IsDirectory())
KELP_BOOL_GETTER(fileExistsGetter, imp.Exists())
KELP_BOOL_GETTER(fileLockedGetter, imp.Locked())
KELP_BOOL_GETTER(fileVisibleGetter, imp.Visible())
KELP_BOOL_GETTER(FolderItemIsCurrentlyReadable, imp.IsReadable())
KELP_BOOL_GETTER(FolderItemIsCurrentlyWriteable, imp.IsWriteable())

extern "C" void fileNameSetter(RuntimeObject *self, int32_t, KelpString name) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->Rename(SystemPath(name));
}

extern "C" int32_t fileCountGetter(RuntimeObject *self, int32_t) {
    return WithImp<int32_t>(self, 0, [](FolderItemImp &imp) { return imp.Count(); });
}

// The language's Integer is 32 bits; a larger file reads as the largest.
extern "C" int32_t fileSizeGetter(RuntimeObject *self, int32_t) {
    return WithImp<int32_t>(self, 0, [](FolderItemImp &imp) { return Narrow(imp.Length()); });
}

extern "C" int32_t fileRFSizeGetter(RuntimeObject *, int32_t) { return 0; }

// Locking is no file-system notion here: the setter changes nothing.
extern "C" void fileLockedSetter(RuntimeObject *self, int32_t, uint8_t) { ImpOf(self); }

extern "C" void fileVisibleSetter(RuntimeObject *self, int32_t, uint8_t value) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->SetVisible(value != 0);
}

extern "C" uint8_t FileExtensionVisibleGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" void FileExtensionVisibleSetter(RuntimeObject *, int32_t, uint8_t) {}
KELP_TEXT_GETTER(fileMacTypeGetter, imp.MacType())
extern "C" void fileMacTypeSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->SetMacType(SystemPath(value));
}
extern "C" KelpString fileMacCreatorGetter(RuntimeObject *, int32_t) { return nullptr; }
extern "C" void fileMacCreatorSetter(RuntimeObject *, int32_t, KelpString) {}
extern "C" int32_t fileVRefNumGetter(RuntimeObject *, int32_t) { return 0; }
extern "C" int32_t fileDirIDGetter(RuntimeObject *self, int32_t) {
    return WithImp<int32_t>(self, 0, [](FolderItemImp &imp) { return imp.MacDirID(); });
}

extern "C" RuntimeObject *folderParentGetter(RuntimeObject *self, int32_t) {
    FolderItemImp *imp = ImpOf(self);
    return imp ? NewFolderItem(imp->Parent()) : nullptr;
}

extern "C" void FolderItemOwnerSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->SetOwner(SystemPath(value));
}

extern "C" void FolderItemGroupSetter(RuntimeObject *self, int32_t, KelpString value) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->SetGroup(SystemPath(value));
}

extern "C" int32_t FolderItemGetLastError(RuntimeObject *self, int32_t) {
    if (!self) {
        RaiseNilObject();
        return 0;
    }
    return Record(self)->imp ? Record(self)->imp->mLastError : 0;
}

extern "C" void FolderItemSetLastError(RuntimeObject *self, int32_t, int32_t value) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->mLastError = value;
}

extern "C" int32_t FolderItemGetPermissions(RuntimeObject *self, int32_t) {
    return WithImp<int32_t>(self, 0, [](FolderItemImp &imp) { return imp.Permissions(); });
}

extern "C" void FolderItemSetPermissionsInteger(RuntimeObject *self, int32_t, int32_t mode) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->SetPermissions(mode);
}

extern "C" void FolderItemSetPermissionsClass(RuntimeObject *self, int32_t, RuntimeObject *perms) {
    if (!perms) {
        RaiseNilObject();
        return;
    }
    FolderItemSetPermissionsInteger(self, 0, reinterpret_cast<PermissionsRecord *>(perms)->mode);
}

// ---------------------------------------------------------------- the tree

extern "C" RuntimeObject *FolderItemItem(RuntimeObject *self, int32_t index) {
    FolderItemImp *imp = ImpOf(self);
    return imp ? NewFolderItem(imp->Item(index - 1, true)) : nullptr;
}

extern "C" RuntimeObject *FolderItemTrueItem(RuntimeObject *self, int32_t index) {
    FolderItemImp *imp = ImpOf(self);
    return imp ? NewFolderItem(imp->Item(index - 1, false)) : nullptr;
}

extern "C" RuntimeObject *FolderChild(RuntimeObject *self, KelpString name) {
    FolderItemImp *imp = ImpOf(self);
    return imp ? NewFolderItem(imp->Child(SystemPath(name))) : nullptr;
}

extern "C" RuntimeObject *FolderTrueChild(RuntimeObject *self, KelpString name) {
    return FolderChild(self, name); // a child's name is never resolved here
}

// ---------------------------------------------------------------- streams

extern "C" RuntimeObject *FolderItemOpenTextFile(RuntimeObject *self) {
    FolderItemImp *imp = ImpOf(self);
    std::unique_ptr<RandomAccessMechanism> data = imp ? imp->OpenData(false) : nullptr;
    return data ? NewTextInputStream(std::move(data)) : nullptr;
}

extern "C" RuntimeObject *FolderItemCreateTextFile(RuntimeObject *self) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp || imp->Locked())
        return nullptr;
    std::unique_ptr<RandomAccessMechanism> data = imp->CreateData();
    return data ? NewTextOutputStream(std::move(data)) : nullptr;
}

extern "C" RuntimeObject *FolderItemAppendTextFile(RuntimeObject *self) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp || imp->Locked())
        return nullptr;
    std::unique_ptr<RandomAccessMechanism> data = imp->OpenData(true);
    if (data)
        data->SetPosition(data->GetLength());
    else
        data = imp->CreateData();
    return data ? NewTextOutputStream(std::move(data)) : nullptr;
}

extern "C" RuntimeObject *FolderItemOpenBinaryFile(RuntimeObject *self, uint8_t readWrite) {
    FolderItemImp *imp = ImpOf(self);
    std::unique_ptr<RandomAccessMechanism> data = imp ? imp->OpenData(readWrite != 0) : nullptr;
    return data ? NewBinaryStream(std::move(data)) : nullptr;
}

extern "C" RuntimeObject *FolderItemCreateBinaryFile(RuntimeObject *self, KelpString) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp || imp->Locked())
        return nullptr;
    std::unique_ptr<RandomAccessMechanism> data = imp->CreateData();
    return data ? NewBinaryStream(std::move(data)) : nullptr;
}

extern "C" RuntimeObject *folderOpenResourceFork(RuntimeObject *) { return nullptr; }
extern "C" RuntimeObject *folderCreateResourceFork(RuntimeObject *, KelpString) { return nullptr; }

// ---------------------------------------------------------------- changes

extern "C" void FolderItemDelete(RuntimeObject *self) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->Delete();
}

extern "C" void FolderItemCreateAsFolder(RuntimeObject *self) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->CreateAsFolder();
}

extern "C" void FolderItemCopyFileTo(RuntimeObject *self, RuntimeObject *destination) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return;
    if (!destination || !Record(destination)->imp) {
        AssertionFailed(kFile, __LINE__, "destination->mImp");
        return;
    }
    imp->CopyTo(*Record(destination)->imp);
}

extern "C" void FolderItemMoveFileTo(RuntimeObject *self, RuntimeObject *destination) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return;
    if (!destination || !Record(destination)->imp) {
        AssertionFailed(kFile, __LINE__, "destination->mImp");
        return;
    }
    imp->MoveTo(*Record(destination)->imp);
}

// Activate has no meaning here: a started program comes up as it will.
extern "C" void FolderItemLaunch(RuntimeObject *self, uint8_t) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->Launch(std::string());
}

extern "C" void FolderItemLaunchWithParameters(RuntimeObject *self, KelpString parameters,
                                               uint8_t) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->Launch(SystemPath(parameters));
}

extern "C" void FolderItemImpMakeFileExecutable(RuntimeObject *self) {
    if (FolderItemImp *imp = ImpOf(self))
        imp->MakeExecutable();
}

// ---------------------------------------------------------------- SaveInfo

extern "C" KelpString FolderItemGetSaveInfo(RuntimeObject *self, RuntimeObject *relativeTo,
                                            int32_t mode) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return nullptr;
    if (mode < kSaveInfoDefault || mode > kSaveInfoAbsolute)
        mode = kSaveInfoDefault;
    std::string relative;
    FolderItemImp *base = relativeTo ? Record(relativeTo)->imp : nullptr;
    if (base && mode != kSaveInfoAbsolute)
        relative = RelativePath(base->AbsolutePath(), base->IsDirectory(), imp->AbsolutePath(),
                                imp->IsDirectory());
    if (!base && mode == kSaveInfoRelative)
        mode = kSaveInfoAbsolute; // nothing to be relative to
    return Text(EncodeSaveInfo(mode, imp->AbsolutePath(), relative), kEncodingUnknown);
}

extern "C" RuntimeObject *FolderItemGetRelative(RuntimeObject *self, KelpString saveInfo) {
    FolderItemImp *base = ImpOf(self);
    if (!base) {
        if (self)
            RaiseNilObject();
        return nullptr;
    }
    string text = string::Wrap(saveInfo);
    return NewFolderItem(FromSaveInfo(std::string(text.View()), base));
}

// ------------------------------------------------------------ finding folders

extern "C" RuntimeObject *RuntimeGetFolderItem(KelpString path, int32_t pathMode) {
    return NewFolderItem(ImpFromPath(path, true, pathMode));
}

extern "C" RuntimeObject *RuntimeGetTrueFolderItem(KelpString path, int32_t pathMode) {
    return NewFolderItem(ImpFromPath(path, false, pathMode));
}

extern "C" RuntimeObject *folderFindFolder(int32_t selector) {
    return NewFolderItem(FindStandardFolder(selector));
}

extern "C" RuntimeObject *getVolume(int32_t index) {
    return index == 0 ? NewFolderItem(std::make_unique<FolderItemImpUnix>("/")) : nullptr;
}

extern "C" int32_t getVolumeCount(void) { return 1; }

extern "C" RuntimeObject *getDesktopFolder(void) {
    return NewFolderItem(FindSpecialFolder(SpecialFolder::kDesktop));
}
extern "C" RuntimeObject *getTrashFolder(void) {
    return NewFolderItem(FindSpecialFolder(SpecialFolder::kTrash));
}
extern "C" RuntimeObject *getSystemFolder(void) {
    return NewFolderItem(FindSpecialFolder(SpecialFolder::kSystem));
}
extern "C" RuntimeObject *getTemporaryItemsFolder(void) {
    return NewFolderItem(FindSpecialFolder(SpecialFolder::kTemporary));
}
extern "C" RuntimeObject *getTemporaryFolderItem(void) {
    return NewFolderItem(NewTemporaryItemName());
}
extern "C" RuntimeObject *GetDocumentsFolder(void) {
    return NewFolderItem(FindSpecialFolder(SpecialFolder::kDocuments));
}
extern "C" RuntimeObject *getPreferencesFolder(void) {
    return NewFolderItem(FindSpecialFolder(SpecialFolder::kPreferences));
}
extern "C" RuntimeObject *getFontsFolder(void) { return nullptr; }
// Folders this platform does not have: a program that asks gets nil, as it
// would for a folder that is missing.
extern "C" RuntimeObject *getControlPanelsFolder(void) { return nullptr; }
extern "C" RuntimeObject *getExtensionsFolder(void) { return nullptr; }
extern "C" RuntimeObject *getStartupItemsFolder(void) { return nullptr; }
extern "C" RuntimeObject *getShutdownItemsFolder(void) { return nullptr; }
extern "C" RuntimeObject *getApplicationSupportFolder(void) {
    return NewFolderItem(FindSpecialFolder(SpecialFolder::kApplicationSupport));
}

extern "C" void RuntimeRegisterFileType(KelpString name, KelpString macCreator, KelpString macType,
                                        KelpString extensions) {
    RegisterFileType(SystemPath(name), SystemPath(macCreator), SystemPath(macType),
                     SystemPath(extensions));
}

extern "C" void RuntimeDeregisterFileType(KelpString name) { DeregisterFileType(SystemPath(name)); }

// ---------------------------------------------------------------- Permissions

extern "C" void PermissionsInitializer(RuntimeObject *self) {
    if (self)
        reinterpret_cast<PermissionsRecord *>(self)->mode = 0;
}

extern "C" void PermissionsCtor(RuntimeObject *self, int32_t perms) {
    if (self)
        reinterpret_cast<PermissionsRecord *>(self)->mode = perms;
}

extern "C" uint8_t PermissionsGetter(RuntimeObject *self, int32_t bit) {
    return self && (reinterpret_cast<PermissionsRecord *>(self)->mode & bit) != 0;
}

extern "C" void PermissionsSetter(RuntimeObject *self, int32_t bit, uint8_t value) {
    if (!self)
        return;
    int32_t &mode = reinterpret_cast<PermissionsRecord *>(self)->mode;
    mode = value ? (mode | bit) : (mode & ~bit);
}

// The file's real times as Dates.  The birth time is where the file system
// keeps one, else the time of the last change of the entry.
extern "C" RuntimeObject *folderGetCreation(RuntimeObject *self, int32_t) {
    return FileDate(self, &FolderItemImp::CreationSeconds);
}

extern "C" RuntimeObject *folderGetModified(RuntimeObject *self, int32_t) {
    return FileDate(self, &FolderItemImp::ModificationSeconds);
}

// The host system keeps no settable birth time: there the assignment is
// refused and the file is left alone.  An item that keeps one takes it.
extern "C" void folderSetCreation(RuntimeObject *self, int32_t, RuntimeObject *date) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return;
    if (!date) {
        RaiseNilObject();
        return;
    }
    imp->SetCreationSeconds(static_cast<int64_t>(std::floor(TotalSecondsOf(date))));
}

// Sets the modification time to the date's moment, in whole seconds, so
// that reading the property back gives the date that was set.
extern "C" void folderSetModified(RuntimeObject *self, int32_t, RuntimeObject *date) {
    FolderItemImp *imp = ImpOf(self);
    if (!imp)
        return;
    if (!date) {
        RaiseNilObject();
        return;
    }
    imp->SetModificationSeconds(static_cast<int64_t>(std::floor(TotalSecondsOf(date))));
}
