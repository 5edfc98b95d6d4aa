#include "folder_items/xdg_folders.h"

#include <cstdlib>
#include <fstream>

namespace kelp {
namespace {

// The value of a line `XDG_<name>_DIR="$HOME/Music"`: the text between the
// quotes with a leading $HOME replaced; empty when the line is not that
// name's or the value is neither under $HOME nor absolute.
std::string ValueOf(const std::string &line, const std::string &name, const std::string &home) {
    const std::string key = "XDG_" + name + "_DIR=\"";
    if (line.compare(0, key.size(), key) != 0)
        return "";
    const size_t end = line.find('"', key.size());
    if (end == std::string::npos)
        return "";
    std::string value = line.substr(key.size(), end - key.size());
    if (value.compare(0, 5, "$HOME") == 0 && (value.size() == 5 || value[5] == '/'))
        return home + value.substr(5);
    return !value.empty() && value[0] == '/' ? value : "";
}

} // namespace

std::string UserHome() {
    const char *homeText = std::getenv("HOME");
    if (!homeText || homeText[0] != '/')
        return "";
    std::string home = homeText;
    while (home.size() > 1 && home.back() == '/')
        home.pop_back();
    return home;
}

std::string XdgUserFolder(const std::string &name) {
    const std::string home = UserHome();
    if (home.empty())
        return "";
    const char *config = std::getenv("XDG_CONFIG_HOME");
    const std::string file =
        (config && config[0] == '/' ? std::string(config) : home + "/.config") + "/user-dirs.dirs";
    std::ifstream in(file);
    std::string found;
    int lines = 0;
    for (std::string line; lines < 10000 && std::getline(in, line); ++lines) // a bounded read
        if (std::string value = ValueOf(line, name, home); !value.empty())
            found = value; // the last line of a name wins, as when the shell reads it
    if (!found.empty())
        return found;
    return name == "DESKTOP" ? home + "/Desktop" : home;
}

} // namespace kelp
