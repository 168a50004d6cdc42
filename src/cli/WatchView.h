// WatchView: what watch shows. It begins with how things stand as stored, since when by the log. Then it
// tells only what changes, with the time and how long it lasted, and after each pass one line that says that
// it lives; at the end, what came of it all. Verbose, it shows every site of every pass instead. Programs are
// told by PassView alone.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "base/DateTime.h"
#include "cli/PassView.h"

class WatchView : public PassView {
 public:
  explicit WatchView(const PassOptions& aGiven)
      : PassView(aGiven, false), bJson(aGiven.bJson), bEverything(aGiven.bVerbose) {
    bHeadline = bEverything;
  }

  void ShowStart();  // when the list is loaded
  void ShowSummary() override;
  void ShowEnd();

 private:
  struct Site {
    std::uint8_t iStatus = 0;
    DateTime dtFailing = 0;  // its first failure in a row; 0: it did not fail, or nobody knows
  };
  void ShowOutcome(const Outcome& aOutcome) override;
  void ShowFailing() const;
  Site& Known(std::int32_t lSlot);

  const bool bJson, bEverything;
  std::map<std::string, Site> aKnown;  // by what is asked for: numbers change when the list does
  DateTime dtStarted = 0;              // wall time
  std::uint32_t lChanges = 0, lMailsSent = 0, lMailsFailed = 0;
};
