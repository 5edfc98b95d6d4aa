#pragma once
// The user's folders as the desktop names them: the XDG user directories of
// $XDG_CONFIG_HOME/user-dirs.dirs (else ~/.config/user-dirs.dirs), with the
// same defaults as the desktop's own look-up: $HOME/Desktop for the desktop
// and $HOME for the rest.  The file is read on every call, so a change the
// user makes while the program runs is seen.
#include <string>

namespace kelp {

// $HOME without a trailing slash; empty when it is not an absolute path.
std::string UserHome();

// The folder for a name such as "DESKTOP", "MUSIC" or "PUBLICSHARE"; empty
// when there is no usable HOME.
std::string XdgUserFolder(const std::string &name);

} // namespace kelp
