#include "resources/sound_file.h"

#include "resources/resource_store.h"
#include "shutdown/shutdown_task.h"

#include <unistd.h>

#include <cstdlib>
#include <vector>

namespace kelp {

bool SoundResourceSource(uint32_t id, const std::string &executable, SoundSource &out) {
    const ResourceRow row = FindResource(kResourceWave, id);
    if (!row.data)
        return false;
    const char *base = std::getenv("TMPDIR");
    std::string pattern = std::string(base && *base ? base : "/tmp") + "/kp_XXXXXX";
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back(0);
    const int fd = mkstemp(name.data());
    if (fd >= 0) {
        RemoveAtShutdown(name.data());
        // A short write leaves a short file: the sound then plays what is there.
        size_t done = 0;
        while (done < row.length) {
            const ssize_t n = write(fd, row.data + done, row.length - done);
            if (n <= 0)
                break;
            done += size_t(n);
        }
        close(fd);
        out.path = name.data();
        out.offset = 0;
        return true;
    }
    out.path = executable;
    out.offset = row.fileOffset;
    return true;
}

} // namespace kelp
