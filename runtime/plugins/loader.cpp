// Loading the image's plug-ins.  Each "KPPl" resource holds a file name and
// a shared library.  A library that already lies at that name beside the
// program is loaded where it is; otherwise its bytes are written to a fresh
// file in a folder of our own (mode 0700, made once), its length checked,
// and loaded from there, so nobody can swap the file between the write and
// the load.  The files go at the run-down.  There is no going on without a
// plug-in: any failure ends the process with status 1 after the report.
#include "plugins/host.h"

#include "base/fatal_report.h"
#include "base/soft_library.h"
#include "resources/resource_store.h"
#include "shutdown/shutdown_task.h"

#include "kelp/image.h"

#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace kelp::plugins {
namespace {

constexpr const char *kMainEntry = "KELPPluginMain";
constexpr const char *kPathVariable = "KPPLUGINPATH";

std::string &PrivateFolder() {
    static auto *folder = new std::string();
    return *folder;
}

// Closes every library and removes what was extracted, newest first.
class PluginShutDownTask : public runShutdownTask {
public:
    PluginShutDownTask() : runShutdownTask("PluginShutDownTask") {}
    ~PluginShutDownTask() override {
        for (PluginRecord *p = Host().plugins; p; p = p->next) {
            if (!p->handle)
                continue;
            ClosePluginLibrary(p->handle);
            p->handle = nullptr;
            if (!p->temporaryPath.empty())
                std::remove(p->temporaryPath.c_str());
        }
        if (!PrivateFolder().empty())
            RemoveTree(PrivateFolder());
    }
};

struct Failure {
    std::string text;
};

// Writes the bytes to a new file in the private folder; the file's path.
std::string Extract(const uint8_t *bytes, size_t length) {
    if (PrivateFolder().empty()) {
        const char *tmp = std::getenv("TMPDIR");
        std::string pattern = std::string(tmp && *tmp ? tmp : "/tmp") + "/kp_XXXXXX";
        if (!mkdtemp(pattern.data()))
            throw Failure{"Failed to construct a temporary path."};
        PrivateFolder() = pattern;
    }
    std::string path = PrivateFolder() + "/plugin_XXXXXX";
    const int fd = mkstemp(path.data());
    if (fd < 0)
        throw Failure{"Failed to construct a temporary path."};
    size_t written = 0;
    while (written < length) {
        const ssize_t n = write(fd, bytes + written, length - written);
        if (n <= 0)
            break;
        written += size_t(n);
    }
    close(fd);
    if (written != length) {
        std::remove(path.c_str());
        throw Failure{"The plug-in could not be written to " + path + "."};
    }
    return path;
}

bool gExtracted = false;

void LoadRow(const ResourceRow &row) {
    // name length, name, library bytes: the name must lie inside the row.
    if (!row.data || row.length < 1 || size_t(row.data[0]) + 1 > row.length)
        throw Failure{"The plug-in resource " + std::to_string(row.id) +
                      " is damaged: its name runs past its end."};
    const std::string name(reinterpret_cast<const char *>(row.data + 1), row.data[0]);
    const uint8_t *library = row.data + 1 + row.data[0];
    const size_t length = row.length - 1 - row.data[0];
    struct stat info {};
    // A plain name beside the program is the library itself; a name with a
    // folder in it never reaches outside the working folder that way.
    const bool inPlace = !name.empty() && name.find('/') == std::string::npos &&
                         stat(name.c_str(), &info) == 0 && S_ISREG(info.st_mode);
    std::string path = inPlace ? "./" + name : Extract(library, length);
    if (!inPlace)
        gExtracted = true;
    std::string error;
    if (!LoadPluginLibrary(path, inPlace ? std::string() : path, error))
        throw Failure{name + ": " + error}; // the loader names only the file it was given
}

} // namespace

void *Resolve(const char *name) { return name ? LookupExport(name) : nullptr; }

bool LoadPluginLibrary(const std::string &path, const std::string &temporaryPath,
                       std::string &error) {
    void *handle = OpenPluginLibrary(path, error);
    if (!handle) {
        if (!temporaryPath.empty())
            std::remove(temporaryPath.c_str());
        return false;
    }
    auto main =
        reinterpret_cast<void (*)(KELPResolver)>(PluginLibrarySymbol(handle, kMainEntry, error));
    auto *record = new PluginRecord();
    record->handle = handle;
    record->temporaryPath = temporaryPath;
    record->libraryPath = path;
    record->next = Host().plugins;
    Host().plugins = record; // listed even without an entry, so the run-down closes it
    if (!main)
        return false;
    Host().current = record;
    setenv(kPathVariable, path.c_str(), 1);
    main(&Resolve);
    unsetenv(kPathVariable);
    Host().current = nullptr;
    return true;
}

void LoadEmbeddedPlugins() {
    try {
        for (size_t i = 0; i < ResourceCount(); ++i) {
            const ResourceRow row = ResourceAt(i);
            if (row.type == kResourcePlugin)
                LoadRow(row);
        }
    } catch (const Failure &failure) {
        Host().current = nullptr;
        const std::string message =
            "The application cannot continue because a needed file cannot be installed. " +
            failure.text + "\n";
        FatalReport(kFatalFailedAssertion, kReportFile, __LINE__, "plugin", message.c_str());
        if (gExtracted || !PrivateFolder().empty())
            delete new PluginShutDownTask();
        std::exit(1);
    }
    if (gExtracted)
        new PluginShutDownTask(); // the run-down deletes it
    LinkPluginClasses(nullptr);
}

} // namespace kelp::plugins
