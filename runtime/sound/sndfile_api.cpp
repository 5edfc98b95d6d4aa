#include "sound/sndfile_api.h"

#include "base/soft_library.h"

namespace kelp {
namespace {

// The places a decoder has been installed, development link first; the bare
// versioned name comes last so that a machine without the development
// package still plays sound.
std::vector<std::string> DefaultNames() {
    return {"libsndfile.so",
            "/usr/local/lib/libsndfile.so",
            "/usr/lib/libsndfile.so",
            "/usr/local/lib/libsndfile.so.1",
            "/usr/lib/libsndfile.so.1",
            "libsndfile.so.1"};
}

struct LoadState {
    bool tried = false;
    bool available = false;
    SndfileApi api{};
    std::vector<std::string> names = DefaultNames();
};

LoadState &State() {
    static LoadState state;
    return state;
}

template <typename F> bool Find(void *handle, const char *name, F &out) {
    out = reinterpret_cast<F>(OptionalSymbol(handle, name));
    return out != nullptr;
}

bool Load(LoadState &state) {
    void *handle = nullptr;
    for (const std::string &name : state.names)
        if ((handle = OpenOptionalLibrary(name.c_str())))
            break;
    if (!handle)
        return false;
    SndfileApi &api = state.api;
    return Find(handle, "sf_open_fd", api.openFd) && Find(handle, "sf_close", api.close) &&
           Find(handle, "sf_command", api.command) && Find(handle, "sf_seek", api.seek) &&
           Find(handle, "sf_read_float", api.readFloat) &&
           Find(handle, "sf_read_short", api.readShort);
}

} // namespace

const SndfileApi *Sndfile() {
    LoadState &state = State();
    if (!state.tried) {
        state.tried = true;
        state.available = Load(state);
    }
    return state.available ? &state.api : nullptr;
}

void SetSndfileLibraryNamesForTest(std::vector<std::string> names) {
    LoadState &state = State();
    state = LoadState{};
    state.names = std::move(names);
}

} // namespace kelp
