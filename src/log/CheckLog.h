// CheckLog: which file the check log goes to, how many are kept, and one line appended at a time. It owns the
// current file and the current entry; the check engine fills the entry before each line.
// LogGrammar.h says what a line looks like.
#pragma once

#include <cstdint>
#include <string>

#include "base/DateTime.h"
#include "log/ResultText.h"

namespace CheckLog {

// The class of an entry's result, as its last field carries it; 0 is not set.
inline constexpr std::int16_t iClassSuccess = 1;
inline constexpr std::int16_t iClassFailure = 2;
inline constexpr std::int16_t iClassDisabled = 3;
inline constexpr std::int16_t iClassFirstFailure = 4;

struct Entry {
  DateTime CheckTime = 0;  // wall time at which the request was started; 0 not set
  std::string Address;
  ResultText StatusText;
  std::string Comment;  // remarks joined by "; "
  std::int16_t ResultClass = 0;
};

extern std::string CurrentLogFile;  // full path
extern Entry CurrentEntry;

// Joins a remark to the current entry's Comment, after "; " when there is one already.
void AddComment(const std::string& szRemark);

// Names the file for the present day or week. With bDeleteFiles, and where a limit is set, deletes the first
// listed log files so that MaxLogFiles remain once this pass has written its first line. Throws
// std::runtime_error when a file cannot be deleted; the name is set by then.
void GetLogFileName(bool bDeleteFiles);

// Appends the start line, else the end line, else the current entry. Silent whatever happens: a log that
// cannot be written never stops a pass. What could not be appended is counted.
void WriteLog(bool bWriteStart, bool bWriteStartManual, bool bWriteEnd);

// The lines that could not be appended since the last call of this.
std::int32_t TakeMissingLines();

}  // namespace CheckLog
