// LogRows: what the viewer's list shows, row by row: every pass as a row of its own, below it its entries,
// and between passes the time in which nobody watched. Rows hold positions only; their texts are made when
// they are drawn. Void as soon as the history is opened anew or has changed: build again.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "history/LogFilter.h"
#include "history/LogHistory.h"
#include "history/LogSummary.h"

// The list's columns, from the left.
enum class LogColumn { Time, Result, Address, Answer, Seconds, Remarks };

class LogRows {
 public:
  enum class Kind : std::uint8_t { Pass, Line, Gap };
  // A piece of a field, its breaks made line ends.
  struct Run {
    std::string szText;
    bool bEmphasis = false;
  };
  struct Detail {
    std::string szName;  // without colon
    std::vector<Run> aRuns;
  };

  // The history has to stay as long as the rows are used.
  void Build(const LogHistory& aShown, const LogFilter& aFilter, bool bPasses);

  // The lines alone, without passes and gaps, in another order than that of the time; after Build.
  void SortBy(LogColumn iColumn, bool bDescending);

  std::size_t Count() const { return aRefs.size(); }
  std::size_t Entries() const { return lEntries; }  // shown, unread lines with them
  Kind KindOf(std::size_t lRow) const { return aKinds[lRow]; }
  LogHistory::LineRef RefOf(std::size_t lRow) const { return aRefs[lRow]; }
  Outcome OutcomeOf(std::size_t lRow) const;  // None for passes and gaps
  // Valid UTF-8 without control characters, of bounded length.
  std::string Cell(std::size_t lRow, LogColumn iColumn) const;
  // The whole row: every field in full, as far as a window can sensibly hold it.
  std::vector<Detail> Details(std::size_t lRow) const;

  // The next row (from lFrom, or the first) whose line holds every word, or that failed; around the end.
  std::optional<std::size_t> Find(std::optional<std::size_t> lFrom, std::string_view szWords,
                                  bool bForward) const;
  std::optional<std::size_t> FindFailure(std::optional<std::size_t> lFrom, bool bForward) const;
  // The row of that line; else, of rows in their own order, the nearest before it of the same file.
  std::optional<std::size_t> RowOf(LogHistory::LineRef aRef) const;
  // The first check, or the first failure, of that site (empty: of any) at that moment or later.
  std::optional<std::size_t> RowOf(const std::string& szSite, DateTime dtMoment, bool bFailure) const;
  // True where these rows begin with all rows of the older ones.
  bool Continues(const LogRows& aOlder) const;

 private:
  void Add(LogHistory::LineRef aRef, Kind iKind);
  void AddGaps(std::size_t lFromPass, std::size_t lToPass);
  const LogPass& PassOf(LogHistory::LineRef aRef) const;
  const StateInterval& GapOf(std::size_t lRow) const;
  bool IsLine(std::size_t lRow) const;  // a line of the log, not a row made up by us
  std::string PassCell(std::size_t lRow, LogColumn iColumn) const;
  std::string PassName(const LogPass& aPass) const;
  std::string PassCount(std::size_t lRow) const;
  std::string PassRemark(const LogPass& aPass) const;

  const LogHistory* pHistory = nullptr;
  std::vector<LogHistory::LineRef> aRefs;  // a gap's: the line before it; a pass's: its start line, or first
  std::vector<Kind> aKinds;
  std::vector<StateInterval> aGaps;  // after each pass
  std::vector<std::pair<std::size_t, StateInterval>> aGapRows;
  std::size_t lEntries = 0;
  bool bSorted = false;
};
