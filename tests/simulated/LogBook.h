// LogBook: which lines the log files must hold, and what they must be read back into.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "base/DateTime.h"
#include "simulated/OptionsBook.h"

namespace Simulated {

class LogBook {
 public:
  enum class Kind : std::uint8_t { Start, Up, Warning, Down, Disabled, Stopped, End };
  struct Line {
    Kind iKind = Kind::Start;
    DateTime dtMoment = 0;                // of the pass, or of the check
    std::string szSite;                   // lower case
    bool bSent = false, bFailed = false;  // the mail
  };

  // The file of the present day or week, and the room that must be made for it.
  void BeginPass(const SettingsRecord& aOptions);
  const std::string& CurrentFile() const { return szCurrent; }
  void Deleted(const std::string& szFile);
  // The folder holds as many files as are to be kept, now that the pass has written its first line.
  void RequirePruned() const;

  void Add(Line aLine);  // to the current file
  // Reads all files of the folder back, where enough has been added since the last time.
  void ReadBack(bool bNow);
  std::int64_t LineCount() const;
  void ForgetAll();  // the operator clears the folder

 private:
  std::vector<std::string> FilesOfFolder() const;  // as they lie there, by name
  std::vector<const Line*> Merged() const;

  std::map<std::string, std::vector<Line>> aFiles;  // by path
  std::string szCurrent, szFolder;
  std::int32_t lMostFiles = 0;  // 0: no limit
  std::int64_t lAdded = 0;      // lines since the last reading
};

}  // namespace Simulated
