// WhatIf: what other intervals would have made of a log. The states that it holds are replayed by the
// monitor's own schedule and rules many times: with each failure as short as the log allows, from its first
// failed check to its last; as long, from the good check before to the good check behind; and with ends drawn
// between the two. What comes of them is a range, because nobody knows a site's state between two checks.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "check/Replay.h"
#include "history/LogGrid.h"
#include "history/LogHistory.h"
#include "history/LogSummary.h"

class WhatIf : public LogGrid {
 public:
  // Minutes from pass to pass, and to the next after a first failure; 0: not said, or not known.
  struct Minutes {
    std::int32_t lInterval = 0, lWarning = 0;
  };
  // Of "Interval=5" and "Warning=2". Else a sentence that says what is wrong.
  static std::string Read(const std::vector<std::string>& aWords, Minutes& aAsked);

  static constexpr std::size_t lAllReplays = 32;

  // Over all replays.
  struct Range {
    std::size_t lLeast = 0, lMost = 0;
  };
  // Failed checks in a row of one site.
  struct Failure {
    std::uint32_t lSite = 0;  // number in LogHistory::Sites
    DateTime dtGood = 0;      // the good check before it; 0: none is known
    DateTime dtFirst = 0, dtLast = 0;
    DateTime dtPast = 0;    // the good check behind it; without one, past the log's end
    DateTime dtMailed = 0;  // in the log, the first try; 0: none was made
    bool bSent = false;     // that one
    // When it would have been mailed; 0: in no replay. Certain: in all of them, or in none.
    DateTime dtEarliest = 0, dtLatest = 0;
    std::size_t lReplays = 0;  // in so many

    bool Certain() const { return lReplays == 0 || lReplays == lAllReplays; }
  };

  // What is not asked for is as in the log. aTheWanted: by number in LogHistory::Sites, whose failures and
  // mails are told; what the others do to the schedule counts all the same. The history has to stay.
  WhatIf(const LogHistory& aTheHistory, const LogSummary& aSummary, Minutes aAsked,
         const std::vector<bool>& aTheWanted);

  const std::vector<Column>& Columns() const override;
  std::size_t Rows() const override { return aFailures.size(); }
  std::string Cell(std::size_t lRow, std::size_t lColumn) const override;
  double Key(std::size_t lRow, std::size_t /*lColumn*/) const override { return aFailures[lRow].dtFirst; }

  Minutes Asked() const { return aNew; }
  Minutes OfLog() const { return aOld; }  // all 0: it shows no schedule, and nothing is replayed
  Range Passes() const { return aPasses; }
  Range Mails() const { return aMails; }
  std::size_t LoggedPasses() const { return lLoggedPasses; }
  std::size_t LoggedMails() const { return lLoggedMails; }
  // Those that were mailed, or would or might have been, in the order of their beginnings.
  const std::vector<Failure>& Failures() const { return aFailures; }
  const std::string& SiteOf(const Failure& aFailure) const { return aHistory.Sites()[aFailure.lSite]; }

  std::vector<std::string> Words() const;

 private:
  struct SiteLook {
    double dTurn = 0;
    DateTime dtChecked = 0, dtGood = 0;   // the last time
    std::optional<std::size_t> lFailing;  // in aFailures
    std::vector<Replay::Span> aAway;
  };

  void LookAtSchedule();
  void Watch(const LogPass& aPass, bool bGapBehind);
  void LookAtSites(const LogSummary& aSummary);
  void TakeCheck(std::uint32_t lSite, DateTime dtMoment, bool bFailed);
  void TakeSite(std::uint32_t lSite, const SiteSummary& aSummary);
  void TakeMail(std::uint32_t lSite, const MailAttempt& aMail);
  std::vector<Replay::Site> Turns();
  void Run();
  void Take(const Replay::Course& aCourse, bool bFirst);

  static std::string Would(const Failure& aFailure);
  static std::string Difference(const Failure& aFailure);

  const LogHistory& aHistory;
  const std::vector<bool> aWanted;
  Minutes aOld, aNew;
  std::size_t lLoggedPasses = 0, lLoggedMails = 0;
  bool bWatching = false;
  Replay::Times aTimes;
  std::vector<SiteLook> aLooks;
  std::vector<std::uint32_t> aOrder;  // numbers of sites, in the order of their turns
  std::vector<Failure> aFailures;
  Range aPasses, aMails;
};
