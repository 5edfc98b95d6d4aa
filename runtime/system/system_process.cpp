// The command line, the environment, the logs and functions found by name.
#include "system/system_text.h"

#include "base/soft_library.h"
#include "process/process_state.h"

#include "kelp/system.h"

#include <dlfcn.h>
#include <syslog.h>

#include <cstdio>
#include <cstdlib>
#include <map>

namespace kelp {
namespace {

int SyslogPriority(int32_t level) {
    static const int kPriorities[] = {LOG_EMERG,  LOG_ALERT, LOG_CRIT,  LOG_ERR, LOG_WARNING,
                                      LOG_NOTICE, LOG_INFO,  LOG_DEBUG, LOG_INFO};
    return level >= 1000 && level <= 1008 ? kPriorities[level - 1000] : LOG_INFO;
}

// The two maps of bindings made at run time, for the life of the process.
std::map<std::string, void *> &FunctionsByName() {
    static std::map<std::string, void *> functions;
    return functions;
}
std::map<std::string, void *> &LibrariesByName() {
    static std::map<std::string, void *> libraries;
    return libraries;
}

} // namespace
} // namespace kelp

using namespace kelp;

extern "C" stringStorage *SystemGetCommandLine(RuntimeObject *) {
    static const std::string line = [] {
        std::string joined;
        for (int i = 0; i < ProcessArgumentCount(); ++i)
            joined += (i ? " " : "") + std::string(ProcessArguments()[i]);
        return joined;
    }();
    return FromSystem(line);
}

extern "C" stringStorage *SystemGetEnvVariable(RuntimeObject *, stringStorage *name) {
    const char *value = name ? std::getenv(SystemText(name).c_str()) : nullptr;
    return FromSystem(value ? value : "");
}

extern "C" void SystemSetEnvVariable(RuntimeObject *, stringStorage *name, stringStorage *value) {
    if (name)
        setenv(SystemText(name).c_str(), SystemText(value).c_str(), 1);
}

extern "C" void SystemLogger(RuntimeObject *, int32_t level, stringStorage *message) {
    if (!message)
        return;
    // Passed as an argument of "%s", the message can't be taken for a format.
    const char *name = ProcessArgumentCount() > 0 ? ProcessArguments()[0] : "kelp";
    openlog(name, LOG_PID, LOG_USER);
    syslog(SyslogPriority(level), "%s", SystemText(message).c_str());
    closelog();
}

extern "C" void SystemDebugLogger(RuntimeObject *, stringStorage *message) {
    if (!message)
        return;
    std::fprintf(stderr, "%s\n", SystemText(message).c_str());
    std::fflush(stderr);
}

extern "C" void *LoadFunctionPointerFromLibrary(stringStorage *function, stringStorage *library) {
    const std::string name = SystemText(function);
    auto &functions = FunctionsByName();
    if (auto found = functions.find(name); found != functions.end())
        return found->second;
    const std::string libraryName = SystemText(library);
    auto &libraries = LibrariesByName();
    auto known = libraries.find(libraryName);
    if (known == libraries.end())
        known = libraries.emplace(libraryName, OpenLibraryByItsForms(libraryName)).first;
    void *code = OptionalSymbol(known->second, name.c_str());
    if (code)
        functions[name] = code;
    return code;
}

extern "C" uint8_t IsFunctionAvailable(RuntimeObject *, stringStorage *function,
                                       stringStorage *library) {
    return LoadFunctionPointerFromLibrary(function, library) ? 1 : 0;
}
