#include "tool_files.h"

#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iterator>

extern char **environ;

namespace kelp::tool {

bool IsFolder(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 && S_ISDIR(st.st_mode);
}

bool ReadWholeFile(const std::string &path, std::vector<uint8_t> &out) {
    if (IsFolder(path))
        return false;
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return false;
    out.assign(std::istreambuf_iterator<char>(in), {});
    return !in.bad();
}

bool WriteWholeFile(const std::string &path, const std::vector<uint8_t> &bytes, bool executable) {
    // Written beside the target and renamed over it, so a failed write never
    // leaves half a program under the target's name.
    const std::string temporary = path + ".partial";
    {
        std::ofstream file(temporary, std::ios::binary | std::ios::trunc);
        file.write(reinterpret_cast<const char *>(bytes.data()), std::streamsize(bytes.size()));
        file.close();
        if (!file) {
            std::remove(temporary.c_str());
            return false;
        }
    }
    if (chmod(temporary.c_str(), executable ? 0755 : 0644) != 0 ||
        std::rename(temporary.c_str(), path.c_str()) != 0) {
        std::remove(temporary.c_str());
        return false;
    }
    return true;
}

std::string ToolFolder() {
    char buffer[4096];
    const ssize_t n = readlink("/proc/self/exe", buffer, sizeof buffer - 1);
    if (n <= 0)
        return ".";
    std::string path(buffer, size_t(n));
    return path.substr(0, path.rfind('/'));
}

bool RunCollecting(const std::string &program, const std::string &environment, std::string &out) {
    int pipeEnds[2];
    if (pipe(pipeEnds) != 0)
        return false;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, pipeEnds[1], 1);
    posix_spawn_file_actions_addclose(&actions, pipeEnds[0]);
    std::vector<char *> env;
    std::string setting = environment;
    env.push_back(setting.data());
    for (char **e = environ; *e; ++e)
        env.push_back(*e);
    env.push_back(nullptr);
    std::string path = program;
    char *argv[] = {path.data(), nullptr};
    pid_t pid = 0;
    const int failed = posix_spawn(&pid, path.c_str(), &actions, nullptr, argv, env.data());
    posix_spawn_file_actions_destroy(&actions);
    close(pipeEnds[1]);
    if (failed) {
        close(pipeEnds[0]);
        return false;
    }
    char buffer[65536];
    for (;;) {
        const ssize_t got = read(pipeEnds[0], buffer, sizeof buffer);
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            break;
        out.append(buffer, size_t(got));
    }
    close(pipeEnds[0]);
    int status = 0;
    while (waitpid(pid, &status, 0) < 0 && errno == EINTR) {}
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

} // namespace kelp::tool
