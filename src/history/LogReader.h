// LogReader: one check log file, read whole and then followed as it grows. It holds the file's bytes once and
// a LogLine for each line. Lines end in CR LF or LF; empty ones are passed over. A file that was cut or
// replaced is read anew. A last line without its end is read as far as it goes and read again when more
// comes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "log/LogLine.h"

class LogReader {
 public:
  enum class Change { None, Grown, Replaced, Unreadable, TooLarge };

  static constexpr std::uint64_t lMostBytes = 2'000'000'000;

  explicit LogReader(std::string szFile) : szPath(std::move(szFile)) {}
  // Bytes that are in no file; it never changes.
  LogReader(std::string szName, std::string szBytes);

  // Reads what is new; the first time, everything. After Unreadable and TooLarge what was read before stays.
  Change Update();

  const std::string& Path() const { return szPath; }
  std::string_view Text() const { return szText; }
  std::string_view Line(const LogLine& aLine) const { return Text().substr(aLine.lOffset, aLine.lLength); }
  const std::vector<LogLine>& Lines() const { return aLines; }
  std::vector<LogLine>& Lines() { return aLines; }

  // True while the last of Lines() has no line end yet; the next growth replaces that line.
  bool Unfinished() const { return bUnfinished; }

 private:
  bool StillTheSame() const;
  void ReadLines();
  void AddLine(std::size_t lFrom, std::size_t lPast);

  std::string szPath;
  std::string szText;
  std::vector<LogLine> aLines;
  std::size_t lReadTo = 0;  // past the last whole line
  bool bUnfinished = false;
  bool bReadOnce = false;
  bool bNoFile = false;
};
