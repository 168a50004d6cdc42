#include "simulated/PassBook.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/Text.h"
#include "check/Schedule.h"
#include "log/CheckLog.h"
#include "simulated/Violation.h"

namespace Simulated {

namespace {

constexpr double dHair = 1e-5;    // seconds: what is lost in adding up days
constexpr double dTolerance = 2;  // a time-out comes at most so many seconds late

constexpr std::uint8_t iUp = 1, iWarning = 2, iDown = 3;
const std::string szAgent = "http://";

bool IsNumber(const std::string& szCode) {
  return szCode.find_first_not_of("0123456789") == std::string::npos;
}

const std::string szNotChecked = "Not Checked (this computer has no descriptor or memory or thread left)";

std::string Both(const std::string& szFirst, const std::string& szSecond) {
  return "(1) " + szFirst + "<BR>(2) " + szSecond;
}

}  // namespace

void PassBook::SetNext(std::int32_t lMinutes) {
  dtNextWall = AddMinutes(ThisMachine().Second(), lMinutes);
  dNextBoot = ThisMachine().Boot() + 60.0 * lMinutes;
}

// By the wall clock, or when that time has really gone by, whichever comes first.
double PassBook::SecondsToDue() const {
  return std::min((dtNextWall - ThisMachine().Wall()) * dSecondsPerDay, dNextBoot - ThisMachine().Boot());
}

void PassBook::CompareNext() const {
  if (std::abs(NextCheckTime - dtNextWall) > 1e-8)
    RequireSame("the time of the next pass", FormatGeneral(NextCheckTime), FormatGeneral(dtNextWall));
}

void PassBook::Begin(bool bByHand) {
  Require(iPhase == Phase::Idle, "a pass begins while one is running");
  ++Tallies()["passes"];
  bManual = bByHand;
  bStopped = bQuit = bFailureSeen = bEndWritten = bInFlight = bBackup = bSilent = false;
  lBells = 0;
  lSlot = 0;
  lLast = static_cast<std::int32_t>(aList.aSites.size());
  lPassStoreFaults = lStoreFaultsRecorded = ThisMachine().lStoreFaults;
  lMissingLines = lOutcomes = lUnjudged = 0;
  bUnjudgedRemark = bUnjudgedLine = false;
  bAnyReached = false;
  lPassFileFaults = ThisMachine().lFileFaults;
  bPruningDue = false;
  aLog.BeginPass(aOptions.aNow);
  SetNext(std::max(1, aOptions.aNow.Interval));
  for (auto& aSite : aList.aSites)
    aSite.aNow.Comments.clear();
  iPhase = aOptions.aNow.LogPeriod != 0 ? Phase::Starting : Phase::Walking;
}

void PassBook::End() {
  if (Traced())
    Trace("end; calls of the store that failed: " +
          std::to_string(ThisMachine().lStoreFaults - lPassStoreFaults));
  Require(iPhase == Phase::Walking, "a pass ends before its site is recorded");
  Require(!bInFlight, "a pass ends with a request in flight");
  Require(bEndWritten || !GoOn(), "a pass ends before its last site");
  Require(bEndWritten == (aOptions.aNow.LogPeriod != 0), "the end line is missing or one too many");
  RequireSame("the number of bells", lBells, bFailureSeen && !bQuit ? 1 : 0);
  iPhase = Phase::Idle;
  aList.CompareMemory();
  CompareNext();
  aList.SavedAgain(ThisMachine().lStoreFaults == lStoreFaultsRecorded);
  aList.CompareStore();
  aOptions.bCookiesOwed = ThisMachine().lStoreFaults != lPassStoreFaults;
  if (!aOptions.bCookiesOwed) aOptions.RequireOwnCookies();
}

// What is not stored, and what is missing in the log, is said; what is said has a reason.
void PassBook::Says(const std::vector<std::string>& aTroubles, bool bAllKept) const {
  RequireSame("the number of lines that the log is said to miss", CheckLog::TakeMissingLines(),
              lMissingLines);
  const auto szAll = Text::Joined(aTroubles, " ");
  const auto Said = [&](const std::string& szText) { return szAll.find(szText) != std::string::npos; };
  const bool bUnsaved = modAddress::UnsavedSites() > 0;
  Require(Said("could not be stored") == bUnsaved, "unsaved results are not said, or none and said");
  Require(Said("No site could be reached") == (lOutcomes > 1 && !bAnyReached),
          "that nobody was reached is not said, or not so and said");
  Require(Said("could not be checked") == (lUnjudged > 0) &&
              (lUnjudged == 0 || Said("thread left: " + std::to_string(lUnjudged) + ".")),
          "sites that this machine could not check are not said, or none and said");
  Require(bAllKept == (!bUnsaved && lUnjudged == 0), "the pass's own word on what was kept");
}

void PassBook::Forget() {
  if (iPhase == Phase::Recording && bMailTried) Site().bMayRepeat = true;
  iPhase = Phase::Idle;
  bInFlight = false;
}

// To the next site that is asked, or whose being disabled is logged. Sites added meanwhile wait.
bool PassBook::GoOn() {
  if (bStopped) return false;
  while (lSlot < std::min(lLast, static_cast<std::int32_t>(aList.aSites.size()))) {
    ++lSlot;
    if (Site().aNow.Enabled == 1 || LogsDisabled()) return true;
  }
  return false;
}

void PassBook::Requested(const std::string& szURL, const Conversation& aComing) {
  if (Traced()) Trace(szURL + " is asked, answer after " + std::to_string(aComing.EndsAt()));
  Require(!bUnjudgedRemark && !bUnjudgedLine, "nothing tells that a site could not be checked");
  Require(!bInFlight, "a request begins while another is in flight");
  if (std::exchange(bPruningDue, false)) aLog.RequirePruned();
  if (iPhase == Phase::AgainDue) {
    RequireSame("the request that is made once more", szURL,
                szAgent + Text::Trim(bBackup ? Site().aNow.IP : Site().aNow.URL));
    if (!bBackup) aEntry.dtChecked = ThisMachine().Second();
  } else if (iPhase == Phase::BackupDue) {
    ++Tallies()["second looks by IP address"];
    bBackup = true;
    RequireSame("the second request", szURL, szAgent + Text::Trim(Site().aNow.IP));
  } else {
    Require(iPhase == Phase::Walking, "a request begins before the outcome of the one before is recorded");
    Require(!bEndWritten && GoOn() && Site().aNow.Enabled == 1, "a request that is nobody's turn");
    RequireSame("the request", szURL, szAgent + Text::Trim(Site().aNow.URL));
    bBackup = false;
    aEntry = {ThisMachine().Second(), szAgent + Site().aNow.URL, "", "", 0, LogBook::Kind::Up};
    ++Where().lChecks;
  }
  if (ThisMachine().lStoreFaults == lPassStoreFaults) aOptions.RequireProgramCookies();
  iPhase = Phase::Asked;
  bInFlight = true;
  bSilent = bStoodStill = false;
  aAnswer = aComing;
  dAsked = ThisMachine().Boot();
  dDeadline = ThisMachine().Steady() + Site().aNow.TimeOut;
}

void PassBook::Answered(std::int16_t iState, bool bLimit) {
  if (Traced()) Trace("state " + std::to_string(iState) + (bLimit ? " by the client's limit" : ""));
  bInFlight = false;
  if (bLimit && OutcomeKnown()) return;  // the time-out is recorded already
  Require(iPhase == Phase::Asked, "an answer to no request");
  Require(ThisMachine().Steady() <= std::max(dDeadline, dAwake) + dTolerance, "a time-out is overdue");
  if (iState == 12) return Outcome(Rules::OfHeader(aAnswer.szHeader));
  if (aAnswer.bOwnFault && !bBackup) return LeaveUnjudged();
  if (ProvesNothing()) return;
  if (!bLimit) return Outcome(Rules::OfError(aAnswer.lCode, aAnswer.szInfo));
  Require(ThisMachine().Steady() >= dDeadline - dHair, "the client gave up before the time");
  ++Tallies()["time-outs"];
  Outcome(Rules::OfTimeOut());
}

void PassBook::Cancelled() {
  if (Traced()) Trace("cancelled");
  Require(bInFlight, "a cancel of no request");
  bInFlight = false;
  if (bSilent || OutcomeKnown()) return;
  Violate("a request is given up before its time");
}

// What has arrived is heard before the time is judged.
void PassBook::BeforeTick() {
  if (iPhase != Phase::Asked) return;
  if (std::abs(ThisMachine().Steady() - dDeadline) < 10 * dHair)
    ThisMachine().Pass(20 * dHair);  // no rounding shall decide
  if (ThisMachine().Steady() < dDeadline) return;
  if (aAnswer.EndsAt() >= 0 && dAsked + aAnswer.EndsAt() <= ThisMachine().Boot()) return;
  if (ProvesNothing()) return;
  ++Tallies()["time-outs"];
  Outcome(Rules::OfTimeOut());
}

void PassBook::Awake() {
  dAwake = ThisMachine().Steady();
  bStoodStill = iPhase == Phase::Asked;
}

// The request that got no answer while the machine or the process stood still.
bool PassBook::ProvesNothing() {
  if (bStoodStill) iPhase = Phase::AgainDue;
  return bStoodStill;
}

void PassBook::Outcome(const Rules::Verdict& aVerdict) {
  iPhase = Phase::Recording;
  bLineWritten = bMailDue = bMailTried = false;
  bSaved = true;
  iLightShown = 0;
  szRemarkShown = szRemark = "";
  ++lOutcomes;
  bAnyReached =
      bAnyReached || std::any_of(aAnswer.aSteps.begin(), aAnswer.aSteps.end(), [&](const auto& aStep) {
        return aStep.iState >= 4 && aStep.iState <= 10 && dAsked + aStep.dAt <= ThisMachine().Boot();
      });
  lStoreFaultsBefore = ThisMachine().lStoreFaults;
  lFileFaultsBefore = ThisMachine().lFileFaults;
  if (bBackup)
    BackupOutcome(aVerdict);
  else
    FirstOutcome(aVerdict);
}

// A remark, one line of the log for all such sites of a pass, and nothing else.
void PassBook::LeaveUnjudged() {
  iPhase = Phase::Walking;
  bUnjudgedRemark = true;
  bUnjudgedLine = ++lUnjudged == 1 && aOptions.aNow.LogPeriod != 0;
  aEntry.szStatus = szNotChecked;
}

void PassBook::FirstOutcome(const Rules::Verdict& aVerdict) {
  auto& aSite = Site();
  auto& aNow = aSite.aNow;
  if (aVerdict.bUp) {
    aEntry.szStatus = szRemark = aNow.Comments = "Site OK";
    aEntry.iClass = 1;
    aNow.Status = aSite.iLight = iUp;
    aSite.bAlerted = aSite.bMayRepeat = false;
    return;
  }
  aEntry.szStatus = aVerdict.szLogText.empty() ? aVerdict.szText : aVerdict.szLogText;
  if (aNow.Status == iWarning && !Text::Trim(aNow.IP).empty()) {
    szFirstCode = aVerdict.szCode;
    szFirstText = aVerdict.szText;
    aEntry.szAddress = Both(aEntry.szAddress, szAgent + aNow.IP);
    iPhase = Phase::BackupDue;
    return;
  }
  szRemark = aNow.Comments = aVerdict.szText;
  aEntry.iClass = 2;
  aEntry.iKind = LogBook::Kind::Down;
  if (aNow.Status == iWarning) {
    aNow.Status = aSite.iLight = iDown;
    bFailureSeen = true;
    Alert(aVerdict.szCode);
  } else if (aNow.Status == iDown) {
    bFailureSeen = true;
  } else {
    aNow.Status = aSite.iLight = iWarning;
    aEntry.iClass = 4;
    aEntry.iKind = LogBook::Kind::Warning;
    SetNext(std::max(1, aOptions.aNow.Warning));
  }
}

void PassBook::BackupOutcome(const Rules::Verdict& aVerdict) {
  auto& aSite = Site();
  const auto szSecond = aVerdict.bUp ? szFirstText : aVerdict.szText;
  aEntry.szStatus = Both(szFirstText, szSecond);
  aEntry.iClass = 2;
  aEntry.iKind = LogBook::Kind::Down;
  AddComment("<SPAN class=\"Emphasis\">IP Check Performed</SPAN>");
  szRemark = szFirstText + (aVerdict.bUp ? " (IP Check: OK)" : " (IP Check: Error)");
  aSite.aNow.Status = aSite.iLight = iDown;
  bFailureSeen = true;
  szRemarkBefore = aSite.aNow.Comments;
  Alert(szFirstCode);
  if (bSaved) aSite.aNow.Comments = szFirstText + " (IP Check Status: " + szSecond + ")";
}

// At the second failure in a row, and only there. A class of results without a text of its own makes no mail,
// and then the rest of the recording is left out too.
void PassBook::Alert(const std::string& szCode) {
  const auto& a = aOptions.aNow;
  if (a.SMTP.empty() || a.Email.empty()) {
    AddComment(a.SMTP.empty() && a.Email.empty()
                   ? "E-mail Notification Failed (Missing e-mail address and SMTP)"
               : a.Email.empty() ? "E-mail Notification Failed (Missing e-mail address)"
                                 : "E-mail Notification Failed (Missing SMTP)");
    return;
  }
  if (!IsNumber(szCode) && !bUnknownTemplate) {
    bSaved = false;
    return;
  }
  bMailDue = true;
  szMailCode = szCode;
}

void PassBook::Mailed(const Mail& aMail, std::int32_t lResult) {
  if (Traced()) Trace("mail, answer " + std::to_string(lResult));
  Require(iPhase == Phase::Recording && bMailDue, "a mail that is not due");
  Require(!bMailTried, "a mail is tried twice");
  bMailTried = true;
  ++Tallies()["mails tried"];
  const auto& a = aOptions.aNow;
  RequireSame("the mail's port", aMail.lPort, a.SMTPPort);
  RequireSame(
      "the mail's server, recipient, sender, from line and subject",
      Text::Joined({aMail.szServer, aMail.szRecipient, aMail.szSender, aMail.szFrom, aMail.szSubject}, "|"),
      Text::Joined({a.SMTP, a.Email, a.Email, "Kestrova <" + a.Email + ">", "Kestrova Alert"}, "|"));
  auto szBody = aMail.szBody;
  std::erase_if(szBody, [](char ch) { return ch == '\r' || ch == '\n'; });
  if (szBody.find(szAgent + Site().aNow.URL) == std::string::npos)
    Violate("the mail does not name the site " + Site().aNow.URL + ": " + aMail.szBody);
  if (bBackup && szBody.find(szAgent + Site().aNow.IP) == std::string::npos)
    Violate("the mail does not name the IP address: " + aMail.szBody);
  if (Site().bAlerted) {
    Require(Site().bMayRepeat, "the mail about an outage is repeated");
    ++Tallies()["mails repeated after a kill"];
  }
  Site().bAlerted = true;
  Site().bMayRepeat = false;
  if (lResult != 0) aEntry.iClass = 2;
  AddComment(lResult == 0 ? "E-mail Notification Sent" : "E-mail Notification Failed");
}

std::string PassBook::LineOf(const Entry& aOf) const {
  const auto lElapsed = std::max<std::int64_t>(0, SecondsBetween(aOf.dtChecked, ThisMachine().Second())) % 60;
  return FormatGeneral(aOf.dtChecked) + "," + aOf.szAddress + "," + aOf.szStatus + "," +
         std::to_string(lElapsed) + "," + aOf.szComment + "," + std::to_string(aOf.iClass);
}

void PassBook::TakeLine(const std::string& szBytes, const std::string& szMustBe, LogBook::Kind iKind,
                        DateTime dtMoment, bool bKept) {
  RequireSame("a log line", szBytes, szMustBe + "\r\n");
  if (!bKept) return;
  const bool bOfSite = iKind != LogBook::Kind::Start && iKind != LogBook::Kind::End;
  const auto Told = [&](const char* szText) { return aEntry.szComment.find(szText) != std::string::npos; };
  aLog.Add({iKind, dtMoment, bOfSite ? Text::LowerCase(Text::Trim(Site().aNow.URL)) : "",
            Told("Notification Sent"), Told("Notification Failed")});
}

void PassBook::Appended(const std::string& szFile, const std::string& szBytes, bool bKept) {
  if (Traced()) Trace((bKept ? "" : "LOST ") + szBytes);
  if (!bKept) ++lMissingLines;
  Require(aOptions.aNow.LogPeriod != 0, "a log line though no log is kept");
  RequireSame("the log file", szFile, aLog.CurrentFile());
  const auto dtNow = ThisMachine().Second();
  if (iPhase == Phase::Starting) {
    iPhase = Phase::Walking;
    bPruningDue =
        bKept && ThisMachine().lFileFaults == lPassFileFaults && ThisMachine().aDisk.aLocked.empty();
    const std::string szManner = bManual ? "MANUAL" : "AUTO";
    return TakeLine(szBytes, "[START CHECK: " + szManner + " - " + FormatGeneral(dtNow) + "]",
                    LogBook::Kind::Start, dtNow, bKept);
  }
  if (iPhase == Phase::Recording) {
    Require(!bLineWritten, "a log line is written twice");
    bLineWritten = true;
    return TakeLine(szBytes, LineOf(aEntry), aEntry.iKind, aEntry.dtChecked, bKept);
  }
  Require(iPhase == Phase::Walking && !bEndWritten, "a log line that is not due");
  if (std::exchange(bUnjudgedLine, false))
    return TakeLine(szBytes, LineOf(aEntry), LogBook::Kind::Stopped, aEntry.dtChecked, bKept);
  if (GoOn()) {
    Require(Site().aNow.Enabled != 1, "a log line instead of a request");
    aEntry = {dtNow, szAgent + Site().aNow.URL, "Unknown Site: Site #", "", 3, LogBook::Kind::Disabled};
    return TakeLine(szBytes, LineOf(aEntry), aEntry.iKind, dtNow, bKept);
  }
  bEndWritten = true;
  TakeLine(szBytes, "[END CHECK]", LogBook::Kind::End, dtNow, bKept);
}

void PassBook::ShowsLight(std::int32_t lOf, std::int16_t iIcon) {
  Require(iPhase == Phase::Recording && lOf == lSlot, "a light of another site");
  iLightShown = iIcon;
}

void PassBook::ShowsRemark(std::int32_t lOf, const std::string& szText) {
  if (lOf == lSlot && std::exchange(bUnjudgedRemark, false))
    return RequireSame("the remark shown", szText, szNotChecked);
  Require(iPhase == Phase::Recording && lOf == lSlot, "a remark on another site");
  szRemarkShown = szText;
}

// The operator stops the pass, or ends the program.
void PassBook::Stop(bool bQuitting) {
  if (iPhase == Phase::Idle) return;
  bStopped = true;
  bQuit = bQuitting;
  if (iPhase != Phase::Asked) return;
  bSilent = true;
  iPhase = Phase::Recording;
  bLineWritten = bMailDue = bMailTried = bSaved = false;
  iLightShown = 0;
  szRemark = "Manually Stopped.";
  AddComment("Manually Stopped.");
  aEntry.iClass = 2;
  aEntry.iKind = LogBook::Kind::Stopped;
}

void PassBook::Drop(std::int32_t lOf) {
  if (iPhase != Phase::Asked || lOf != lSlot) return;
  bSilent = true;
  iPhase = Phase::Walking;
}

// All that was owed for this site has been done.
void PassBook::Recorded(std::int32_t lOf) {
  RequireSame("the site that is recorded", lOf, lSlot);
  Require(iPhase == Phase::Recording, "a site is recorded twice");
  const bool bFilesFailed = ThisMachine().lFileFaults != lFileFaultsBefore;
  if (bMailDue && !bMailTried && !bFilesFailed)
    Violate("the mail about " + Site().aNow.URL + " was not tried");
  Require(bLineWritten == (aOptions.aNow.LogPeriod != 0), "the log line is missing");
  RequireSame("the remark shown", szRemarkShown, szRemark);
  if (aEntry.iKind != LogBook::Kind::Stopped && iLightShown != 0)
    RequireSame("the light shown", iLightShown, Site().iLight);
  iPhase = Phase::Walking;
  if (bMailDue && !bMailTried) {  // the alert's text could not be read
    bSaved = false;
    if (bBackup) Site().aNow.Comments = szRemarkBefore;
  }
  lStoreFaultsRecorded = ThisMachine().lStoreFaults;
  if (bSaved) aList.Saved(lSlot, ThisMachine().lStoreFaults == lStoreFaultsBefore);
}

}  // namespace Simulated
