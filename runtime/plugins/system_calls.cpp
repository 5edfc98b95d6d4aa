// Strings, the program's setting and windows, for plug-ins: the calls that
// forward to the class library and the few that answer for this platform.
#include "plugins/host.h"

#include "folder_items/folder_item_object.h"
#include "folder_items/folder_item_unix.h"
#include "objects/definitions.h"
#include "process/process_state.h"
#include "strings/kstring.h"
#include "windows/runtime_view.h"

#include "kelp/objects.h"

#include <unistd.h>

#include <climits>

using namespace kelp;

extern "C" {

KelpString KELPConvertString(KelpString s, uint32_t encoding) {
    if (!s)
        return nullptr;
    const string text = string::Wrap(s);
    if (text.Encoding() == encoding)
        return string(text).ExtractStringStorage();
    return ConvertEncoding(text, encoding).ExtractStringStorage();
}

uint32_t KELPGetFontEncoding(KelpString) { return kEncodingUTF8; }

int32_t KELPGetKPVersion(void) { return KELP_PLUGIN_VERSION; }

// A built program has no project beside it: its working folder is where
// its relative paths, a plug-in's library among them, are found.
RuntimeObject *KELPGetProjectFolder(void) {
    char path[PATH_MAX];
    if (!getcwd(path, sizeof path))
        return nullptr;
    auto item = FolderItemImpUnix::FromPath(path);
    return item ? NewFolderItem(std::move(item)) : nullptr;
}

uintptr_t KELPGetStackLimit(void) { return StackLimit(); }
void KELPSetStackLimit(uintptr_t limit) { SetStackLimit(limit); }

void *KELPGetWindowHandle(RuntimeObject *window) {
    RuntimeClass *windowClass = ClassForDefinition(WindowDefinition());
    if (!window || !RuntimeObjectIsa(window, windowClass))
        return nullptr;
    RuntimeViewWindow *pane = reinterpret_cast<ViewRecord *>(window)->pane;
    return pane ? pane->GtkWin() : nullptr;
}

// Plug-ins here are loaded from the image's resources; there is no system
// folder of plug-ins to install into.
void Win32InstallPlugins(void) {}

} // extern "C"
