// LogLine: what one line of a check log says. Reading never fails: a line that is torn, forged or from
// another program is "Unread" and kept as it is.
//
// The fields of an entry are not quoted, so a comma inside one shifts the others. They are read from both
// ends, where the writer's own texts leave no doubt:
//
// - The time is what stands before the first comma, the class is the one digit behind the last.
// - The elapsed seconds are the rightmost whole field of one or two digits (0 to 59) that still leaves an
//   address and a text before it. The remarks are all between them and the class.
// - What remains is address and text, with one comma or more. The text begins where one of the results that
//   the engine can record begins (ResultText). Where none does, an empty text ends the field, else the first
//   comma parts them. The address of an IP check runs at least to its second half.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/DateTime.h"

enum class LineKind : std::uint8_t { Entry, StartManual, StartAuto, End, Unread };

// What an entry says of its site, by its class (CheckLog.h).
enum class Outcome : std::uint8_t {
  None,      // no class set, or the check was stopped by hand: says nothing about the site
  Up,        // succeeded
  Down,      // failed again, or down already
  Disabled,  // not checked
  Warning,   // failed for the first time
  Unread,    // not an entry that could be read
};

constexpr bool IsFailure(Outcome iOutcome) {
  return iOutcome == Outcome::Warning || iOutcome == Outcome::Down;
}

// No texts, which LogReader keeps: a history holds millions of these.
struct LogLine {
  DateTime dtMoment = 0;  // start line: the pass's start; entry: the check's start; local time
  std::uint32_t lOwn = 0, lOwnLength = 0;  // what the line shares with no other one, see LogReader
  std::uint32_t lShared = 0;               // entries: number of the text that it shares
  std::uint32_t lSite = 0;                 // entries: number in LogHistory::Sites
  std::uint32_t lPass = 0;                 // number among the passes of its file
  LineKind iKind = LineKind::Unread;
  Outcome iOutcome = Outcome::Unread;
  std::uint8_t iSeconds = 0;  // elapsed, as logged: the seconds part only
  // False: the line gives no time of its own; an entry then has that of its neighbour.
  bool bTimeKnown = false;
};

// With the first byte of each field of an entry.
struct PlacedLine : LogLine {
  std::uint32_t lAddress = 0, lStatus = 0, lElapsed = 0, lComment = 0;
};

struct LogFields {
  std::string_view CheckTime, Address, StatusText, Elapsed, Comment, ResultClass;
};

// Reads one line (without its line end): what it is, its moment, its outcome and the places of its fields.
void ReadLogLine(std::string_view szLine, PlacedLine& aLine);

// The moment that the first field of an entry or a start line tells; false where it tells none. What else an
// entry is and says hangs on the text behind that field alone.
bool ReadLogMoment(std::string_view szText, DateTime& dtMoment);

// The fields of an entry that ReadLogLine has read from that same line.
LogFields SplitLogLine(std::string_view szLine, const PlacedLine& aLine);

// True for a line that means to be a start line, readable or not.
bool LooksLikeStart(std::string_view szLine);

// The site an address stands for: without scheme and outer blanks, and of an IP check the first address.
std::string_view SiteOfAddress(std::string_view szAddress);
