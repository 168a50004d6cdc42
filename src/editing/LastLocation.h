// LastLocation: the folders that the file dialogs remember, one value each below "\Settings\LastLoc".
#pragma once

#include <string>

namespace LastLocation {

// Where pages and tables made of a log go; the monitor and the log viewer share it.
inline constexpr char szPages[] = "hmlg";

// The remembered folder; the desktop where none is remembered; szGone, where one is given and is there, or
// else the desktop when it is gone; the home folder where there is no desktop either.
std::string StartFolder(const char* szValue, const std::string& szGone = {});

// Remembers the folder that the file lies in. A name without a folder changes nothing.
void Remember(const char* szValue, const std::string& szFile);

}  // namespace LastLocation
