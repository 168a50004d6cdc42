// Files: what the system keeps in folders. Paths are 8-bit text, UTF-8 where they come from the program.
// No call throws; failures are answered.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace Files {

// "\" on Windows, "/" elsewhere.
extern const char chSeparator;
// Whether "A" and "a" name two files: not on Windows.
extern const bool bCaseMatters;
// What ends the drive of an absolute path: ":\" on Windows; elsewhere the root "/" stands for the drive.
// The number of leading characters that name the drive with its separator ("D:\" 3, "/" 1); 0: no absolute
// path.
std::size_t DriveLength(std::string_view szPath);

bool FolderExists(const std::string& szPath);
bool FileExists(const std::string& szPath);  // a regular file
std::optional<std::uint64_t> FileSize(const std::string& szPath);

// Names (no folder) of the regular files in the folder whose name ends exactly in szEnding (".kvl"), by name:
// bytewise, and in the letters' upper case where case does not matter, as Windows itself lists them.
std::vector<std::string> List(const std::string& szFolder, const std::string& szEnding);

// The path from its root or drive on; the path as it is where the system does not tell.
std::string Absolute(const std::string& szPath);
// The two are one path, or lead to one thing that is there.
bool Same(const std::string& szOne, const std::string& szOther);

bool MakeFolder(const std::string& szPath);  // one level; true also when it is there already

enum class Deletion { Done, Gone, Failed };  // Gone: it was not there any more
Deletion Delete(const std::string& szPath);

// Opens for appending (made when missing), tries once to lock the file against other writers, writes all or
// nothing (after a short write the file is cut back), unlocks and closes. False when nothing was written.
bool Append(const std::string& szPath, std::string_view szBytes);

// The whole file, or nothing when it cannot be read or is larger than lMost bytes.
std::optional<std::string> ReadWhole(const std::string& szPath, std::uint64_t lMost);
// At most lMost bytes from the given position; nothing when the file cannot be read.
std::optional<std::string> ReadPiece(const std::string& szPath, std::uint64_t lFrom, std::uint64_t lMost);

// A file that is written beside the one it is to replace, piece by piece and so at any length. Commit renames
// it over that one and is false when any piece could not be written; without Commit the old file stays as it
// is and nothing is left behind.
class Replacement {
 public:
  explicit Replacement(const std::string& szPath);
  ~Replacement();
  Replacement(const Replacement&) = delete;
  Replacement& operator=(const Replacement&) = delete;

  // False when this piece or one before it could not be written.
  bool Write(std::string_view szBytes);
  bool Commit();

 private:
  struct State;
  std::unique_ptr<State> pState;
};

// Writes beside the file, then renames over it: the old content stays until the new one is whole.
bool WriteWhole(const std::string& szPath, std::string_view szBytes);

}  // namespace Files
