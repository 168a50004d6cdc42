// LogReader: one check log file, read whole and then followed as it grows. Lines end in CR LF or LF; empty
// ones are passed over. A file that was cut or replaced is read anew. A last line without its end is read as
// far as it goes and read again when more comes.
//
// A log says the same of the same sites for weeks: what stands behind the time of an entry is kept once for
// all entries that share it. So a log takes less than half of its file's size here, and the file is not
// needed for it any more.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "log/LogLine.h"

class LogReader {
 public:
  enum class Change { None, Grown, Replaced, Unreadable, TooLarge };

  static constexpr std::uint64_t lMostBytes = 2'000'000'000;

  explicit LogReader(std::string szFile) : szPath(std::move(szFile)) {}
  // Bytes that are in no file; it never changes.
  LogReader(std::string szName, std::string_view szBytes);
  LogReader(const LogReader&) = delete;
  LogReader& operator=(const LogReader&) = delete;

  // Reads what is new; the first time, everything. After Unreadable and TooLarge what was read before stays.
  Change Update();

  const std::string& Path() const { return szPath; }
  std::string Text(const LogLine& aLine) const;  // the whole line
  // Of an entry its time, of any other line all of it. Holds until the next Update, as do the fields.
  std::string_view Own(const LogLine& aLine) const;
  LogFields Fields(const LogLine& aLine) const;
  const std::vector<LogLine>& Lines() const { return aLines; }
  std::vector<LogLine>& Lines() { return aLines; }

  // True while the last of Lines() has no line end yet; the next growth replaces that line.
  bool Unfinished() const { return bUnfinished; }

  // Neither is empty, and they hold the same lines.
  bool SameAs(const LogReader& aOther) const;

 private:
  // What stands behind the first comma of entries, read once.
  struct Shared {
    std::string szText;
    PlacedLine aRead;             // places in szText
    std::uint32_t lFollower = 0;  // the one that came after it last
  };

  LogReader(LogReader&&) = default;
  LogReader& operator=(LogReader&&) = default;
  bool StillTheSame() const;
  Change ReadAll(std::uint64_t lSize);
  void Take(std::string_view szNew);
  void AddLine(std::string_view szLine);
  bool AddKnownEntry(std::string_view szLine, std::size_t lComma);
  void AddReadLine(std::string_view szLine, std::size_t lComma);
  void Add(LogLine aLine, std::string_view szOwn);

  std::string szPath;
  std::string szOwn;  // of all lines, one behind the other
  std::vector<LogLine> aLines;
  std::deque<Shared> aShared;
  std::unordered_map<std::string_view, std::uint32_t> aSharedNumbers;
  std::uint32_t lLastShared = 0;
  std::string szHead, szTail;  // the first and the last bytes of the file, to notice another one in its place
  std::string szPending;       // behind the last line end
  std::uint64_t lSeen = 0;     // bytes
  bool bUnfinished = false;
  bool bReadOnce = false;
  bool bNoFile = false;
};
