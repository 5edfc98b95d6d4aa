#include "folder_items/special_folders.h"

#include "folder_items/folder_item_unix.h"

#include "base/ascii.h"
#include "shutdown/shutdown_task.h"

#include <sys/stat.h>

#include <cstdlib>
#include <list>
#include <random>

namespace kelp {
namespace {

struct FileTypeRecord {
    std::string name, macCreator, macType, extensions;
};

std::list<FileTypeRecord> &FileTypes() {
    static std::list<FileTypeRecord> types; // registration order
    return types;
}

bool IsFolder(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool EndsWithCaseless(const std::string &text, const std::string &ending) {
    return !ending.empty() && ending.size() <= text.size() &&
           AsciiEqualNoCase(std::string_view(text).substr(text.size() - ending.size()), ending);
}

} // namespace

std::unique_ptr<FolderItemImp> FindSpecialFolder(SpecialFolder which) {
    switch (which) {
    case SpecialFolder::kSystem: return std::make_unique<FolderItemImpUnix>("/usr/");
    case SpecialFolder::kTemporary: return std::make_unique<FolderItemImpUnix>("/tmp/");
    default: break;
    }
    const char *homeText = std::getenv("HOME");
    if (!homeText || homeText[0] != '/')
        return nullptr;
    std::string home = homeText;
    if (home.back() != '/')
        home += '/';
    auto firstFolder = [&](std::initializer_list<const char *> names) {
        for (const char *name : names)
            if (IsFolder(home + name))
                return std::make_unique<FolderItemImpUnix>(home + name);
        return std::make_unique<FolderItemImpUnix>(home);
    };
    switch (which) {
    case SpecialFolder::kDesktop: return firstFolder({"Desktop", ".gnome-desktop"});
    case SpecialFolder::kDocuments: return firstFolder({"Documents"});
    case SpecialFolder::kTrash:
        return IsFolder(home + ".Trash") ? std::make_unique<FolderItemImpUnix>(home + ".Trash")
                                         : nullptr;
    default: return std::make_unique<FolderItemImpUnix>(home);
    }
}

std::unique_ptr<FolderItemImp> FindStandardFolder(int32_t selector) {
    static const char *const kFolders[] = {"/etc",      "/bin", "/usr/bin", "/sbin",
                                           "/usr/sbin", "/var", "/var/log", nullptr,
                                           "/home",     "/mnt", "/lib",     "/usr/lib"};
    if (selector < 1034 || selector > 1045)
        return nullptr;
    const char *path = kFolders[selector - 1034];
    if (!path) {
        const char *home = std::getenv("HOME");
        return home && home[0] == '/' ? std::make_unique<FolderItemImpUnix>(home) : nullptr;
    }
    return std::make_unique<FolderItemImpUnix>(path);
}

std::unique_ptr<FolderItemImp> NewTemporaryItemName() {
    static const char kLetters[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789";
    static std::mt19937 rng{std::random_device{}()};
    for (int attempt = 0; attempt < 100; ++attempt) {
        std::string path = "/tmp/";
        for (int i = 0; i < 7; ++i)
            path += kLetters[rng() % (sizeof kLetters - 1)];
        struct stat st;
        if (lstat(path.c_str(), &st) != 0)
            return std::make_unique<FolderItemImpUnix>(path);
    }
    return nullptr;
}

void RemoveItemAtShutdown(const FolderItemImp &item) { RemoveAtShutdown(item.AbsolutePath()); }

void RegisterFileType(const std::string &name, const std::string &macCreator,
                      const std::string &macType, const std::string &extensions) {
    FileTypes().push_back({name, macCreator, macType, extensions});
}

void DeregisterFileType(const std::string &name) {
    FileTypes().remove_if([&](const FileTypeRecord &r) { return r.name == name; });
}

std::string FileTypeOfName(const std::string &fileName) {
    for (const FileTypeRecord &record : FileTypes()) {
        size_t start = 0;
        for (;;) {
            size_t end = record.extensions.find(';', start);
            std::string ending = record.extensions.substr(
                start, end == std::string::npos ? std::string::npos : end - start);
            // Every match scores the same, so the first registered one wins.
            if (EndsWithCaseless(fileName, ending))
                return record.name;
            if (end == std::string::npos)
                break;
            start = end + 1;
        }
    }
    return std::string();
}

bool FileTypeEndings(const std::string &name, std::string *endings) {
    bool found = false;
    for (const FileTypeRecord &record : FileTypes())
        if (record.name == name) {
            if (found && !record.extensions.empty())
                *endings += ';';
            *endings += record.extensions;
            found = true;
        }
    return found;
}

} // namespace kelp
