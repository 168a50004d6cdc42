// PassFiles: writes the metrics file and the status page of a program that runs passes. Its view tells it
// what goes on; it looks at the list, the settings and the log entry as the engine leaves them. A file that
// cannot be written never holds a pass up.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "fleet/PassFacts.h"
#include "fleet/PastTrails.h"
#include "fleet/Trails.h"

class PassFiles {
 public:
  // Files of this run alone, in place of the stored ones; empty: as stored.
  std::string szOwnMetrics, szOwnPage;
  // This program runs one pass and ends: nobody has planned another.
  bool bSinglePass = false;

  void PassBegins();
  void RequestMoves();  // anything happens to the request in flight
  void Answered();      // its outcome is known; what follows is not the site's time
  void Stopped();       // by the operator: what is recorded next was not checked
  void SiteRecorded(std::int32_t lSlot);
  // The pass is over. Nothing happens without a PassBegins before. The files that could not be written.
  std::vector<std::string> PassEnds();

  // Of the last site recorded, in seconds; below 0: not known.
  double LastResponse() const { return dLastResponse; }

 private:
  void ReadPast(double dMostSeconds);
  double MostGap() const;
  void CountMail();
  bool WriteMetrics() const;

  PassFacts aFacts;
  Trails aTrails;
  std::optional<PastTrails> aPast;  // while the logs of before this run are being read
  std::string szMetrics, szPage;    // of this pass
  std::vector<std::string> aUnwritten;
  bool bBegun = false, bPastRead = false, bFactsTaken = false, bStopped = false;
  double dBegan = 0, dRequested = 0, dAnswered = 0;  // steady seconds; 0: not yet
  double dLastResponse = -1;
  std::int64_t lRecorded = 0;
};
