// Folders that the system keeps for the user; apart from Shell.cpp because shlobj.h has a Shell of its own.
#pragma once

#include <string>

std::string LocalDataFolder();  // empty when the system does not say
std::string ProfileFolder();
std::string CommonStartupFolder();  // what every user's session starts
