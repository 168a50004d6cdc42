// modBasic: the small helpers for paths, files and the shell.
#pragma once

#include <cstdint>
#include <string>

namespace modBasic {

// Makes every folder of an absolute path in turn. 0 done, 3 empty, 2 no drive (a relative or network path),
// 1 a folder could not be made.
std::int16_t MakeFolderPath(const std::string& szPath);

// "\" as "%5c".
std::string EscapeBackslash(const std::string& szText);

// 1 when the first 256 bytes hold a control character other than TAB, LF and CR, else 0; -1 when the file
// cannot be read.
std::int16_t HasControlCharacters(const std::string& szFile);

// The path of a file that lies beside the program.
std::string ProgramFile(const std::string& szName);

// Opens a document or address with the desktop's program: 0, or the shell's error code in 1..32.
std::int32_t OpenWithShell(const std::string& szTarget);

}  // namespace modBasic
