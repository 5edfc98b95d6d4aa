// Feeds every file of the corpus folders named on the command line through
// the fuzz entry once, so that the test suite replays what the fuzzer found
// without a fuzzing compiler.  Exit status 0 when every input came back.
#ifdef KELP_REPLAY_HEADER
#include KELP_REPLAY_HEADER
#else
#include "image_input.h"
#endif

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace {

std::vector<std::string> Inputs(const std::string &path) {
    struct stat st;
    if (stat(path.c_str(), &st) != 0 || !S_ISDIR(st.st_mode))
        return {path};
    std::vector<std::string> out;
    if (DIR *dir = opendir(path.c_str())) {
        while (const dirent *entry = readdir(dir))
            if (entry->d_name[0] != '.')
                out.push_back(path + "/" + entry->d_name);
        closedir(dir);
    }
    std::sort(out.begin(), out.end());
    return out;
}

} // namespace

int main(int argc, char **argv) {
    size_t count = 0;
    for (int i = 1; i < argc; ++i)
        for (const std::string &file : Inputs(argv[i])) {
            std::ifstream in(file, std::ios::binary);
            if (!in) {
                std::fprintf(stderr, "cannot read %s\n", file.c_str());
                return 1;
            }
            const std::vector<uint8_t> bytes{std::istreambuf_iterator<char>(in), {}};
            LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
            ++count;
        }
    std::printf("%zu inputs replayed\n", count);
    // An empty corpus would make the replay a test that cannot fail.
    return count > 0 ? 0 : 1;
}
