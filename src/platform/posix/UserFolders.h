// UserFolders: where the desktop says that a user's things lie (the XDG base directories, and the
// file user-dirs.dirs of xdg-user-dirs). No folder is made; no path ends in "/" but the root's own.
#pragma once

#include <string>

namespace UserFolders {

std::string Home();
std::string Config();   // $XDG_CONFIG_HOME, else ~/.config
std::string Data();     // $XDG_DATA_HOME, else ~/.local/share
std::string Desktop();  // as the desktop's settings name it, else ~/Desktop, else the home folder

// Makes the folder and every missing one above it, for this user only (0700).
bool MakePrivate(const std::string& szFolder);

}  // namespace UserFolders
