// Recording an outcome: the site moves through its states (up, warning, down), its row and its stored record
// follow, and the second failure in a row is confirmed by IP address and reported by mail.
#include "alert/AlertSender.h"
#include "base/Strings.h"
#include "base/Text.h"
#include "check/CheckEngine.h"
#include "check/Schedule.h"
#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"

namespace {

constexpr std::uint8_t iStatusUp = 1;
constexpr std::uint8_t iStatusWarning = 2;
constexpr std::uint8_t iStatusDown = 3;

constexpr std::int16_t iCheckURL = 1;
constexpr std::int16_t iCheckIP = 2;
constexpr std::int16_t iBackupAnswered = 1;

// Good only until events are handled: the list may grow under it.
SiteRecord& Site(std::int32_t lIndex) {
  return aSites[static_cast<std::size_t>(lIndex)];
}

}  // namespace

void CheckEngine::SiteCheckOK(std::int32_t lIndex) {
  if (!modAddress::IsSite(lIndex)) return;
  if (bInetDoubleCheck && InetCheckType == iCheckIP) {
    // The URL's failure stands; the good answer of the IP address only says where to look for the fault.
    iDoubleTakeResult2 = iBackupAnswered;
    SiteCheckUpdate(lIndex, FirstCheckCode, FirstCheckText, FirstCheckClass, iBackupAnswered);
    bInetDoubleCheck = false;
    return;
  }
  const std::string szOK = LoadResString(IDS_SITE_OK);
  CheckLog::CurrentEntry.StatusText = ResultText(IDS_SITE_OK);
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassSuccess;
  View.EnsureRowVisible(lIndex);
  View.ShowLight(lIndex, iStatusUp);
  View.ShowRemark(lIndex, szOK);
  Site(lIndex).Status = iStatusUp;
  Site(lIndex).Comments = szOK;
  modAddress::SaveSite(lIndex, false);
}

void CheckEngine::SiteCheckUpdate(std::int32_t lIndex, const std::string& szCode, const ResultText& aText,
                                  std::int16_t iResultClass, std::int16_t iBackupOutcome) {
  if (!modAddress::IsSite(lIndex)) return;
  if (bInetDoubleCheck) {
    RecordBackup(lIndex, aText, iBackupOutcome);
  } else if (!StartBackup(lIndex, szCode, aText, iResultClass)) {
    RecordOrdinary(lIndex, szCode, aText, iResultClass);
  }
}

void CheckEngine::RecordBackup(std::int32_t lIndex, const ResultText& aText, std::int16_t iBackupOutcome) {
  if (iDoubleTakeResult2 != iBackupAnswered) iDoubleTakeResult2 = iBackupOutcome;
  CheckLog::CurrentEntry.StatusText = ResultText::Both(FirstCheckText, aText);
  CheckLog::CurrentEntry.ResultClass = CheckLog::iClassFailure;
  CheckLog::AddComment(LoadResString(IDS_IP_CHECK_PERFORMED));
  View.EnsureRowVisible(lIndex);
  View.ShowLight(lIndex, iStatusDown);
  const bool bAnswered = iDoubleTakeResult2 == iBackupAnswered;
  View.ShowRemark(lIndex, FirstCheckText.Text() + " (" +
                              LoadResString(bAnswered ? IDS_IP_CHECK_OK : IDS_IP_CHECK_ERROR) + ")");
  Site(lIndex).Status = iStatusDown;
  bPassFailure = true;
  SendAlert(FirstCheckCode, lIndex);
  Site(lIndex).Comments =
      FirstCheckText.Text() + " (" + LoadResString(IDS_IP_CHECK_STATUS) + " " + aText.Text() + ")";
  modAddress::SaveSite(lIndex, false);
  bInetDoubleCheck = false;
  CancelRequestFor(Site(lIndex).IP);
}

// The failure that would raise the alert is first tried once more by IP address, so that the alert can say
// whether the server is at fault or only the name or the path.
bool CheckEngine::StartBackup(std::int32_t lIndex, const std::string& szCode, const ResultText& aText,
                              std::int16_t iResultClass) {
  const SiteRecord aSite = Site(lIndex);
  if (InetCheckType != iCheckURL || Text::IsBlank(aSite.IP) || aSite.Status != iStatusWarning) return false;
  bInetDoubleCheck = true;
  iDoubleTakeResult2 = 0;
  FirstCheckClass = iResultClass;
  FirstCheckCode = szCode;
  FirstCheckText = aText;
  CheckLog::CurrentEntry.Address =
      LogGrammar::Numbered(CheckLog::CurrentEntry.Address, LoadResString(IDS_AGENT) + aSite.IP);
  if (CheckLog::CurrentEntry.StatusText.Empty()) CheckLog::CurrentEntry.StatusText = aText;
  CancelRequestFor(aSite.URL);
  View.ShowProgressSite(LoadResString(IDS_IP_CHECK_SITE) + aSite.IP);
  Request(iCheckIP, Text::Trim(aSite.IP), aSite.TimeOut);
  return true;
}

void CheckEngine::RecordOrdinary(std::int32_t lIndex, const std::string& szCode, const ResultText& aText,
                                 std::int16_t iResultClass) {
  CheckLog::Entry& aEntry = CheckLog::CurrentEntry;
  aEntry.ResultClass = iResultClass;
  // The classifier may have put a fuller wording there.
  if (aEntry.StatusText.Empty()) aEntry.StatusText = aText;
  const std::uint8_t iBefore = Site(lIndex).Status;
  Site(lIndex).Comments = aText.Text();
  if (iBefore == iStatusWarning) {
    View.EnsureRowVisible(lIndex);
    View.ShowLight(lIndex, iStatusDown);
    View.ShowRemark(lIndex, aText.Text());
    aEntry.ResultClass = CheckLog::iClassFailure;
    Site(lIndex).Status = iStatusDown;
    bPassFailure = true;
    SendAlert(szCode, lIndex);
  } else if (iBefore == iStatusDown) {
    View.ShowRemark(lIndex, aText.Text());
    aEntry.ResultClass = CheckLog::iClassFailure;
    bPassFailure = true;
  } else {
    View.ShowLight(lIndex, iStatusWarning);
    View.ShowRemark(lIndex, aText.Text());
    aEntry.ResultClass = CheckLog::iClassFirstFailure;
    Site(lIndex).Status = iStatusWarning;
    Schedule::SetNextCheck(WarningMinutes());
  }
  modAddress::SaveSite(lIndex, false);
  CancelRequestFor(Site(lIndex).URL);
}

void CheckEngine::SendAlert(const std::string& szCode, std::int32_t lIndex) {
  CheckFacts aFacts;
  aFacts.bIPCheckPerformed = bInetDoubleCheck;
  aFacts.bIPAnswered = iDoubleTakeResult2 == iBackupAnswered;
  aFacts.szRequestURL = Inet1.URL();
  aFacts.szResponseInfo = Inet1.ResponseInfo();
  aFacts.lResponseCode = Inet1.ResponseCode();
  aFacts.szHeader = Inet1.GetHeader();
  if (SendEmail(szCode, lIndex, aFacts) == 0) {
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
