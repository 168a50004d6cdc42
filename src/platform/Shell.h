// Shell: the program's place and other programs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace Shell {

// The executable's folder, or $KESTROVA_HOME where set; without a trailing separator, except for a root.
std::string ProgramFolder();
// The user's own folder for the program's data (logs where the program folder cannot be written).
std::string UserDataFolder();
// Where logs lie unless the operator says otherwise: "Logs" in the program folder; on Linux in the user's
// data folder, so that a build that goes takes no history with it, unless $KESTROVA_HOME names a program
// folder that the system's package manager does not keep.
std::string DefaultLogFolder();
// The user's home folder, the last resort for a file dialog.
std::string HomeFolder();

// "LogView" as the file is called here: "LogView.exe" on Windows.
std::string ProgramFileName(const std::string& szName);

// Opens a document or an http(s) address with the desktop's own program. 0, or a shell error code in 1..32.
std::int32_t OpenDocument(const std::string& szTarget);

// Starts a program without waiting and without a shell between; its end is reaped. False when it cannot
// start.
bool StartProgram(const std::string& szProgram, const std::vector<std::string>& aArguments);

}  // namespace Shell
