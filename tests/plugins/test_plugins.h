#pragma once
// Loads the test build's own plug-ins into the process once: the one that
// calls the host's calls and the one written to the first interface.
#include "plugins/host.h"

#include "objects/text.h"

#include "kelp/objects.h"

#include <gtest/gtest.h>

#include <string>

namespace kelp::plugins {

inline void LoadTestPlugins() {
    static const bool loaded = [] {
        RuntimeInitExternalClasses();
        std::string error;
        bool ok = LoadPluginLibrary(KELP_BIN_DIR "/libKPHostCalls.so", "", error) &&
                  LoadPluginLibrary(KELP_BIN_DIR "/libKPOldStyle.so", "", error);
        EXPECT_EQ(error, "");
        LinkPluginClasses(nullptr);
        ForgetEntryTableForTest();
        return ok;
    }();
    ASSERT_TRUE(loaded);
}

inline void *Entry(const std::string &name) {
    KelpString s = objtext::Make(name);
    void *e = RuntimeLookupPluginEntrypoint(s);
    objtext::Release(s);
    return e;
}

} // namespace kelp::plugins
