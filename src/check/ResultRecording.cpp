// Recording an outcome: the site moves through its states (up, warning, down), its row and its stored record
// follow, and the second failure in a row is confirmed by IP address and reported by mail.
#include "alert/AlertSender.h"
#include "base/Strings.h"
#include "base/Text.h"
#include "check/CheckEngine.h"
#include "check/Schedule.h"
#include "check/SiteCourse.h"
#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"

void CheckEngine::SiteCheckOK(std::int32_t lIndex, PassState iAsked) {
  if (!modAddress::IsSite(lIndex)) return;
  if (iAsked == PassState::CheckingIP) {
    // The URL's failure stands; the good answer of the IP address only says where to look for the fault.
    Classification aGood = FirstCheck;
    aGood.szCode.clear();
    aGood.iBackupOutcome = iServerFine;
    RecordBackup(lIndex, aGood);
    return;
  }
  aFirstFailures.erase(modAddress::Site(lIndex).URL);
  const std::string szOK = LoadResString(IDS_SITE_OK);
  CheckLog::CurrentEntry.StatusText = ResultText(IDS_SITE_OK);
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassSuccess;
  View.EnsureRowVisible(lIndex);
  View.ShowLight(lIndex, SiteStatus::iUp);
  View.ShowRemark(lIndex, szOK);
  modAddress::SetStatus(lIndex, SiteStatus::iUp);
  modAddress::SetComments(lIndex, szOK);
  modAddress::SaveSite(lIndex, false);
}

void CheckEngine::SiteCheckUpdate(std::int32_t lIndex, PassState iAsked, const Classification& aResult) {
  if (!modAddress::IsSite(lIndex)) return;
  const SiteRecord& aSite = modAddress::Site(lIndex);
  if (iAsked == PassState::CheckingIP)
    RecordBackup(lIndex, aResult);
  else if (iAsked == PassState::RequestingURL && !Text::IsBlank(aSite.IP) &&
           aSite.Status == SiteStatus::iWarning)
    StartBackup(lIndex, aResult);
  else
    RecordOrdinary(lIndex, aResult);
}

void CheckEngine::RecordBackup(std::int32_t lIndex, const Classification& aResult) {
  const ResultText& aText = aResult.aText;
  const std::string szVerdict =
      LoadResString(aResult.iBackupOutcome == iServerFine ? IDS_IP_CHECK_OK : IDS_IP_CHECK_ERROR);
  const std::string szStatus = LoadResString(IDS_IP_CHECK_STATUS) + " " + aText.Text();
  const std::string& szFirst = FirstCheck.aText.Text();
  CheckLog::CurrentEntry.StatusText = ResultText::Both(FirstCheck.aText, aText);
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassFailure;
  CheckLog::AddComment(LoadResString(IDS_IP_CHECK_PERFORMED));
  View.EnsureRowVisible(lIndex);
  View.ShowLight(lIndex, SiteStatus::iDown);
  View.ShowRemark(lIndex, szFirst + " (" + szVerdict + ")");
  modAddress::SetStatus(lIndex, SiteStatus::iDown);
  bPassFailure = true;
  SendAlert(lIndex, {.aByName = FirstRequest, .aByIP = LastRequest(aResult)});
  modAddress::SetComments(lIndex, szFirst + " (" + szStatus + ")");
  modAddress::SaveSite(lIndex, false);
  CancelRequestFor(modAddress::Site(lIndex).IP);
}

// The failure that would raise the alert is first tried once more by IP address, so that the alert can say
// whether the server is at fault or only the name or the path.
void CheckEngine::StartBackup(std::int32_t lIndex, const Classification& aResult) {
  const SiteRecord aSite = modAddress::Site(lIndex);
  FirstCheck = aResult;
  FirstRequest = LastRequest(aResult);
  CheckLog::Entry& aEntry = CheckLog::CurrentEntry;
  aEntry.Address = LogGrammar::Numbered(aEntry.Address, LoadResString(IDS_AGENT) + aSite.IP);
  aEntry.StatusText = aResult.LogText();
  CancelRequestFor(aSite.URL);
  View.ShowProgressSite(LoadResString(IDS_IP_CHECK_SITE) + aSite.IP);
  Request(PassState::CheckingIP, Text::Trim(aSite.IP), aSite.TimeOut);
}

void CheckEngine::RecordOrdinary(std::int32_t lIndex, const Classification& aResult) {
  const std::uint8_t iBefore = modAddress::Site(lIndex).Status;
  const auto aTurn = SiteCourse::AfterFailure(iBefore);
  CheckLog::Entry& aEntry = CheckLog::CurrentEntry;
  aEntry.StatusText = aResult.LogText();
  aEntry.ResultClass = aTurn.bSoon ? CheckLog::iClassFirstFailure : CheckLog::iClassFailure;
  modAddress::SetComments(lIndex, aResult.aText.Text());
  if (aTurn.bAlert) View.EnsureRowVisible(lIndex);
  if (aTurn.iStatus != iBefore) View.ShowLight(lIndex, aTurn.iStatus);
  View.ShowRemark(lIndex, aResult.aText.Text());
  modAddress::SetStatus(lIndex, aTurn.iStatus);
  if (aTurn.iStatus == SiteStatus::iDown) bPassFailure = true;
  if (aTurn.bAlert) SendAlert(lIndex, {.aByName = LastRequest(aResult)});
  if (aTurn.bSoon) {
    Schedule::SetNextCheck(WarningMinutes());
    aFirstFailures[modAddress::Site(lIndex).URL] = aEntry.CheckTime;
  }
  modAddress::SaveSite(lIndex, false);
  CancelRequestFor(modAddress::Site(lIndex).URL);
}

RequestFacts CheckEngine::LastRequest(const Classification& aResult) const {
  return {.szURL = Inet1.URL(),
          .szCode = aResult.szCode,
          .szResult = aResult.szCode.empty() ? std::string(LoadResString(IDS_SITE_OK)) : aResult.aText.Text(),
          .szErrorText = Inet1.ResponseInfo(),
          .lErrorNumber = Inet1.ResponseCode(),
          .szHeader = Inet1.GetHeader()};
}

void CheckEngine::SendAlert(std::int32_t lIndex, CheckFacts aFacts) {
  const SiteRecord& aSite = modAddress::Site(lIndex);
  if (const auto aFirst = aFirstFailures.extract(aSite.URL)) aFacts.FirstFailure = aFirst.mapped();
  aFacts.SecondFailure = CheckLog::CurrentEntry.CheckTime;
  if (SendEmail(aFacts.aByName.szCode, aSite, Settings, aFacts) == 0) {
    CheckLog::AddComment(LoadResString(IDS_MAIL_SENT));
    return;
  }
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassFailure;
  StringId iRemark = IDS_MAIL_FAILED;
  if (Settings.Email.empty()) {
    iRemark = Settings.SMTP.empty() ? IDS_MAIL_NO_ADDRESS_NO_SMTP : IDS_MAIL_NO_ADDRESS;
  } else if (Settings.SMTP.empty()) {
    iRemark = IDS_MAIL_NO_SMTP;
  }
  CheckLog::AddComment(LoadResString(iRemark));
}

// After a time-out the request is still under way.
void CheckEngine::CancelRequestFor(const std::string& szAddress) {
  if (Inet1.StillExecuting() &&
      Text::EqualNoCase(Inet1.URL(), LoadResString(IDS_AGENT) + Text::Trim(szAddress))) {
    Inet1.Cancel();
  }
}
