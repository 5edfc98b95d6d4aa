// Image link figures for the drill, all taken in one run:
//  - the time kelp-image takes to link the drill's objects;
//  - the size of the drill's image (code, data, link table, symbols) against
//    the size of its objects;
//  - the start of sumbrook (image-built) against sumbrook-linked: the
//    whole run of `--print-problem 1`, which needs no display, alternating
//    the two programs so both see the same machine.
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <sstream>
#include <string>
#include <vector>

using Clock = std::chrono::steady_clock;

namespace {

const std::string kBin = KELP_BIN_DIR;

double Median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

// Milliseconds of one run of the shell command, output dropped.
double Timed(const std::string &command) {
    const auto start = Clock::now();
    if (std::system((command + " >/dev/null 2>&1").c_str()) != 0) {
        std::printf("image link figures stopped: %s failed\n", command.c_str());
        std::exit(1);
    }
    return std::chrono::duration<double, std::milli>(Clock::now() - start).count();
}

long long FileSize(const std::string &path) {
    struct stat st;
    return stat(path.c_str(), &st) == 0 ? (long long)st.st_size : -1;
}

} // namespace

int main() {
    std::string objects, link = kBin + "/kelp-image link";
    long long objectBytes = 0;
    std::stringstream list(SUMBROOK_IMAGE_OBJECTS);
    for (std::string path; std::getline(list, path, ':');) {
        link += " " + path;
        objectBytes += FileSize(path);
    }
    std::stringstream soft(SUMBROOK_SOFT);
    for (std::string s; soft >> s;)
        link += " --soft " + s;
    char folder[] = "/tmp/kelp-bench-XXXXXX";
    if (!mkdtemp(folder))
        return 1;
    const std::string image = std::string(folder) + "/drill.image";
    link += " --soft-data stdout:libc.so.6 --soft-data stderr:libc.so.6 --entry SumbrookEntry"
            " --out " +
            image;

    std::vector<double> linking;
    for (int i = 0; i < 10; ++i)
        linking.push_back(Timed(link));
    std::printf("link of the drill's objects: median %.1f ms over 10\n", Median(linking));
    const long long imageBytes = FileSize(image);
    std::printf("image %lld bytes from %lld bytes of objects (%.0f%%)\n", imageBytes, objectBytes,
                100.0 * double(imageBytes) / double(objectBytes));

    std::vector<double> linked, imaged;
    const std::string args = " --print-problem 1 --seed 1";
    for (int i = 0; i < 20; ++i) {
        linked.push_back(Timed("env -u DISPLAY " + kBin + "/sumbrook-linked" + args));
        imaged.push_back(Timed("env -u DISPLAY " + kBin + "/sumbrook" + args));
    }
    std::printf(
        "start to end of --print-problem: linked-in %.1f ms, image %.1f ms (median of 20)\n",
        Median(linked), Median(imaged));
    std::remove(image.c_str());
    rmdir(folder);
    return 0;
}
