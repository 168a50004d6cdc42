// PastTrails: the check logs of the last days read into trails a piece at a time, so that neither a pass nor
// a window stands still for a month of them, and logs of any length take the same memory. A piece takes some
// ten milliseconds.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "fleet/Trails.h"

class PastTrails {
 public:
  // What the folder's logs hold at this moment of the last lDays days; what is written from now on is not
  // read.
  PastTrails(const std::string& szFolder, std::int32_t lDays);

  bool Done() const { return bDone; }
  void ReadPiece();
  // When all is done: what was read.
  Trails Take();

 private:
  struct Log {
    std::string szPath;
    std::uint64_t lBytes;
  };
  void TakeBytes();
  void TakeHistory(const LogHistory& aHistory);

  std::vector<Log> aLogs;
  std::size_t lLog = 0;   // the one that is being read
  std::uint64_t lAt = 0;  // read of it so far
  std::string szText;     // read, but not yet in the trails
  Trails aTrails;
  double dMostGap = 0;  // days behind aTrails after which nobody is taken to have watched
  bool bDone = false;
};
