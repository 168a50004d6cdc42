// LogHistory: one or several check logs as one history, in passes. A pass is a start line, the entries behind
// it, and its end line, where it has one. Lines that stand outside a pass form a group without a start.
// Passes of several files are put in the order of their times; within a file the order written holds, even
// where the machine's clock was set back.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "history/LogReader.h"

struct LogPeriod;

struct LogPass {
  DateTime dtStart = 0;                 // of the start line, else of the first entry; 0 not known
  DateTime dtLast = 0;                  // the last moment at which it was surely running
  std::uint32_t lFirst = 0, lPast = 0;  // its lines in its file, start and end line included
  std::uint32_t lEntries = 0, lUnread = 0;
  bool bStarted = false;  // has a start line
  bool bManual = false;
  bool bEnded = false;    // has an end line
  bool bStopped = false;  // an operator stopped it
  // Every site of the list had its turn.
  bool Complete() const { return bStarted && bEnded && !bStopped && lUnread == 0; }
};

class LogHistory {
 public:
  struct Problem {
    std::string szPath;
    LogReader::Change iWhat;  // Unreadable or TooLarge
  };
  struct PassRef {
    std::uint32_t lFile = 0, lPass = 0;
  };
  struct LineRef {
    std::uint32_t lFile = 0, lLine = 0;
    bool operator==(const LineRef&) const = default;
  };

  LogHistory() = default;
  LogHistory(const LogHistory&) = delete;
  LogHistory& operator=(const LogHistory&) = delete;

  // Opens files, and of folders every ".kvl" file in them. A path named twice counts once; so do two files of
  // the same content. False when not one file could be read.
  bool Open(const std::vector<std::string>& aPaths);

  // Adds bytes that are in no file, such as a program's output; after Open.
  void Add(const std::string& szName, std::string_view szBytes);

  // Reads what was added since. True when anything changed; line references from before are then void.
  bool Update();

  // Leaves only the passes that begin in that time; until the next call of the others above.
  void Keep(const LogPeriod& aPeriod);

  std::size_t FileCount() const { return aFiles.size(); }
  const LogReader& File(std::uint32_t lFile) const { return *aFiles[lFile].pReader; }
  const std::vector<Problem>& Problems() const { return aProblems; }

  const std::vector<PassRef>& Passes() const { return aOrder; }
  const LogPass& Pass(PassRef aRef) const { return aFiles[aRef.lFile].aPasses[aRef.lPass]; }
  const std::vector<LineRef>& Lines() const { return aRows; }  // of all passes, in order
  const LogLine& Line(LineRef aRef) const { return File(aRef.lFile).Lines()[aRef.lLine]; }
  std::string Text(LineRef aRef) const { return File(aRef.lFile).Text(Line(aRef)); }
  // Of an entry; they hold until the next Update.
  LogFields Fields(LineRef aRef) const { return File(aRef.lFile).Fields(Line(aRef)); }

  // The sites named by entries, in the order of their first line, letter case ignored (ASCII). Bytes as
  // logged.
  const std::vector<std::string>& Sites() const { return aSites; }

 private:
  struct NoCaseHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view szText) const;
  };
  struct NoCaseEqual {
    using is_transparent = void;
    bool operator()(std::string_view szLeft, std::string_view szRight) const;
  };
  // How far the lines of a file have been sorted into passes.
  struct Progress {
    std::size_t lLines = 0, lPasses = 0;
    bool bOpen = false;  // the last pass takes more lines
    DateTime dtRunning = 0;
    LogPass aLast;
  };
  struct LogFile {
    std::unique_ptr<LogReader> pReader;
    std::vector<LogPass> aPasses;
    std::vector<std::uint32_t> aSiteOf;  // by number of the shared text; lNoSite: not looked up yet
    Progress aProgress, aBeforeUnfinished;
    bool bHeldBack = false;  // aBeforeUnfinished is to be gone back to
  };

  static constexpr std::uint32_t lNoSite = UINT32_MAX;

  void AddFile(const std::string& szPath);
  void DropCopies();
  void GroupNewLines(LogFile& aFile);
  void GroupLine(LogFile& aFile, std::uint32_t lLine);
  LogPass& PassFor(LogFile& aFile, std::uint32_t lLine);
  void CountEntry(LogFile& aFile, LogLine& aLine);
  std::uint32_t SiteOf(LogFile& aFile, const LogLine& aLine);
  std::uint32_t SiteNumber(std::string_view szSite);
  void PutInOrder();

  std::vector<LogFile> aFiles;
  std::vector<Problem> aProblems;
  std::vector<PassRef> aOrder;
  std::vector<LineRef> aRows;
  std::vector<std::string> aSites;
  std::unordered_map<std::string, std::uint32_t, NoCaseHash, NoCaseEqual> aSiteNumbers;
};
