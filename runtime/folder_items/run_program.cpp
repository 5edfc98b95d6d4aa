#include "folder_items/run_program.h"

#include <cerrno>
#include <sys/wait.h>
#include <unistd.h>

namespace kelp {
namespace {

// The argument array is built before fork: the child only calls exec.
std::vector<char *> Vector(const std::vector<std::string> &argv) {
    std::vector<char *> out;
    for (const std::string &arg : argv)
        out.push_back(const_cast<char *>(arg.c_str()));
    out.push_back(nullptr);
    return out;
}

int Wait(pid_t pid) {
    int status = 0;
    while (waitpid(pid, &status, 0) < 0)
        if (errno != EINTR)
            return -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

} // namespace

int RunAndWait(const std::vector<std::string> &argv) {
    if (argv.empty())
        return -1;
    std::vector<char *> args = Vector(argv);
    pid_t pid = fork();
    if (pid < 0)
        return -1;
    if (pid == 0) {
        execvp(args[0], args.data());
        _exit(127);
    }
    return Wait(pid);
}

bool RunDetached(const std::vector<std::string> &argv) {
    if (argv.empty())
        return false;
    std::vector<char *> args = Vector(argv);
    // Twice forked: the middle process ends at once and is reaped here, so
    // the program runs on as nobody's child.
    pid_t pid = fork();
    if (pid < 0)
        return false;
    if (pid == 0) {
        setsid();
        if (fork() == 0) {
            execvp(args[0], args.data());
            _exit(127);
        }
        _exit(0);
    }
    return Wait(pid) == 0;
}

} // namespace kelp
