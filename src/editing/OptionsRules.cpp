#include "editing/OptionsRules.h"

#include <algorithm>

#include "base/Strings.h"
#include "base/Text.h"
#include "check/Schedule.h"
#include "persistence/modBasic.h"
#include "platform/Files.h"

namespace OptionsRules {
namespace {

constexpr std::int32_t lLeastMinutes = 5;
constexpr std::int32_t lMostWarning = 60;
constexpr std::int32_t lMostFiles = 3000;
constexpr std::int32_t lManyFiles = 25;
constexpr std::int16_t iCookiesAccepted = 1;
constexpr std::int16_t iCookiesRefused = 2;

Finding Found(std::int32_t lMessage) {
  return {LoadResString(lMessage)};
}

Finding FoundRelation(std::int32_t lMessage) {
  Finding aFinding = Found(lMessage);
  aFinding.bRelation = true;
  return aFinding;
}

Finding FoundPath(std::int32_t lMessage, const std::string& szPath, Buttons iButtons = Buttons::OK) {
  return {FillResString(lMessage, {szPath}), "", iButtons};
}

// Sets the number to a bound that it passes, and says so.
Finding Bound(std::string& szField, std::int32_t lLeast, std::int32_t lMost, std::int32_t lMessage) {
  const auto lNumber = Text::LeadingNumber(szField);
  if (lNumber >= lLeast && lNumber <= lMost) return {};
  szField = std::to_string(std::clamp(lNumber, lLeast, lMost));
  return {LoadResString(lMessage), FillResString(IDS_SET_TO, {szField})};
}

bool WarningIsGreater(const Form& aForm) {
  return Text::LeadingNumber(aForm.szTimerWarning) > Text::LeadingNumber(aForm.szTimerInterval);
}

// From its drive or root on, or on another machine. Where a shorter path leads depends on who started the
// program.
bool IsWhole(const std::string& szPath) {
  return Files::DriveLength(szPath) > 0 || szPath.starts_with(Files::chSeparator);
}

// A pasted text often brings a line end, which has no place in an address or a path.
std::string Plain(std::string szText) {
  std::erase_if(szText, [](char ch) {
    const auto iByte = static_cast<unsigned char>(ch);
    return iByte < 32 || iByte == 127;
  });
  return szText;
}

}  // namespace

Change ChangeNumber(Field iField, const std::string& szNew) {
  if (szNew.empty() || Text::IsDigits(szNew)) return {false, 0};
  if (iField == Field::TimerWarning) return {true, IDS_WARNING_RANGE};
  return {true, iField == Field::MaxLogFiles ? IDS_FILES_INTEGER : 0};
}

std::int32_t MailHint(const Form& aForm) {
  const auto Holds = [](const std::string& szText, const char* szAny) {
    return szText.find_first_of(szAny) != std::string::npos;
  };
  const auto& szEmail = aForm.szMgrEmail;
  if (Holds(szEmail, " ,;<>") || szEmail.find('@') != szEmail.rfind('@')) return IDS_HINT_EMAIL;
  if (Holds(aForm.szSMTP, " ,;/@")) return IDS_HINT_SMTP;
  const auto lPort = Text::LeadingNumber(aForm.szSMTPPort);
  if (lPort < 1 || lPort > 65535) return IDS_HINT_PORT;
  return szEmail.empty() || aForm.szSMTP.empty() ? IDS_HINT_NO_MAIL : 0;
}

Checks::Checks(const Form& aOpening) : lOpeningFiles(Text::LeadingNumber(aOpening.szMaxLogFiles)) {
}

Finding Checks::Leave(Field iField, Form& aForm) {
  return Check(iField, false, aForm);
}

Finding Checks::Check(Field iField, bool bConfirm, Form& aForm) const {
  switch (iField) {
    case Field::TimerInterval:
      if (WarningIsGreater(aForm)) return FoundRelation(IDS_INTERVAL_RELATION);
      return Bound(aForm.szTimerInterval, lLeastMinutes, lMostInterval, IDS_INTERVAL_RANGE);
    case Field::TimerWarning:
      if (WarningIsGreater(aForm)) return FoundRelation(IDS_WARNING_RELATION);
      return Bound(aForm.szTimerWarning, lLeastMinutes, lMostWarning, IDS_WARNING_RANGE);
    case Field::MgrEmail: {
      const auto Has = [&](char ch) { return aForm.szMgrEmail.find(ch) != std::string::npos; };
      if (aForm.szMgrEmail.empty() || (Has('@') && Has('.'))) return {};
      return {LoadResString(IDS_EMAIL_INVALID), "", Buttons::OK, true};
    }
    case Field::LogPath:
      return LeaveLogPath(aForm);
    case Field::MaxLogFiles:
      return LeaveMaxLogFiles(aForm, bConfirm);
    default:
      return {};
  }
}

Finding Checks::LeaveLogPath(Form& aForm) {
  if (!aForm.FolderEnabled()) return {};
  aForm.szLogPath = Text::Trim(Plain(aForm.szLogPath));
  if (Files::FolderExists(aForm.szLogPath)) return {};
  return FoundPath(IDS_FOLDER_CREATE, aForm.szLogPath, Buttons::YesNoCancel);
}

Finding Checks::LeaveMaxLogFiles(Form& aForm, bool bConfirm) const {
  if (!aForm.CountEnabled()) return {};
  const auto lFiles = Text::LeadingNumber(aForm.szMaxLogFiles);
  auto aBound = Bound(aForm.szMaxLogFiles, 1, lMostFiles, lFiles < 1 ? IDS_FILES_MINIMUM : IDS_FILES_MAXIMUM);
  if (!aBound.szMessage.empty()) return aBound;
  const bool bUntouched = bConfirm && lFiles == lOpeningFiles;
  if (lFiles <= lManyFiles || lFiles == lAcceptedFiles || bUntouched) return {};
  return {LoadResString(IDS_FILES_MANY), "", Buttons::YesNo};
}

Finding Checks::Confirm(Field iField, Form& aForm) {
  auto aFinding = Check(iField, true, aForm);
  if (iField != Field::LogPath || !aForm.FolderEnabled()) return aFinding;
  if (aForm.szLogPath.empty()) return Found(IDS_FOLDER_BLANK);
  if (!IsWhole(aForm.szLogPath)) return FoundPath(IDS_FOLDER_NOT_WHOLE, aForm.szLogPath);
  return aFinding;
}

bool Checks::Answered(Field iField, bool bConfirm, Answer iAnswer, Form& aForm, Finding& aFurther) {
  aFurther = {};
  if (iField == Field::MaxLogFiles && iAnswer == Answer::No) {
    lAcceptedFiles = Text::LeadingNumber(aForm.szMaxLogFiles);
    return true;
  }
  if (iField != Field::LogPath) return false;
  // The folder may yet be made by other means; what is stored must be there, or logs are lost in silence.
  if (iAnswer == Answer::No) return !bConfirm;
  if (iAnswer != Answer::Yes) return false;
  switch (modBasic::MakeFolderPath(aForm.szLogPath)) {
    case 0:
      return true;
    case 2:
      aFurther = FoundPath(IDS_FOLDER_NOT_WHOLE, aForm.szLogPath);
      return false;
    case 3:
      aFurther = Found(IDS_FOLDER_BLANK);
      return false;
    default:
      aFurther = FoundPath(IDS_FOLDER_FAILED, aForm.szLogPath);
      return false;
  }
}

Form OpeningForm(const SettingsRecord& aSettings) {
  Form aForm;
  aForm.szTimerInterval = std::to_string(aSettings.Interval);
  aForm.szTimerWarning = std::to_string(aSettings.Warning);
  aForm.szMgrEmail = aSettings.Email;
  aForm.szMgrName = aSettings.Name;
  aForm.szSMTP = aSettings.SMTP;
  aForm.szSMTPPort = std::to_string(aSettings.SMTPPort);
  aForm.szLogPath = aSettings.LogPath;
  aForm.szMaxLogFiles = std::to_string(aSettings.MaxLogFiles);
  aForm.bDiskMaxLogFiles = aSettings.DiskLogMaxFiles != 0;
  aForm.bDiskNoLogDisabled = aSettings.DiskLogDisabled != 0;
  aForm.LogPeriod =
      aSettings.LogPeriod == 0 || aSettings.LogPeriod == 2 ? aSettings.LogPeriod : std::int16_t{1};
  aForm.bCookieDisable = aSettings.AllowType == iCookiesRefused;
  return aForm;
}

SettingsRecord RecordOf(const Form& aForm) {
  SettingsRecord aRecord;
  aRecord.Interval = Text::LeadingNumber(aForm.szTimerInterval);
  aRecord.Warning = Text::LeadingNumber(aForm.szTimerWarning);
  aRecord.Email = Plain(aForm.szMgrEmail);
  aRecord.Name = Plain(aForm.szMgrName);
  aRecord.SMTP = Plain(aForm.szSMTP);
  aRecord.SMTPPort = Text::LeadingNumber(aForm.szSMTPPort);
  aRecord.LogPeriod = aForm.LogPeriod;
  aRecord.LogPath = aForm.szLogPath;
  // A greyed count was not checked, and 0 kept files would be a surprise once it is used again.
  aRecord.MaxLogFiles =
      static_cast<std::int16_t>(std::clamp(Text::LeadingNumber(aForm.szMaxLogFiles), 1, lMostFiles));
  aRecord.DiskLogMaxFiles = aForm.bDiskMaxLogFiles ? 1 : 0;
  aRecord.DiskLogDisabled = aForm.bDiskNoLogDisabled ? 1 : 0;
  aRecord.AllowType = aForm.bCookieDisable ? iCookiesRefused : iCookiesAccepted;
  return aRecord;
}

bool Store(const Form& aForm, const SettingsRecord& aOpening) {
  const auto aNew = RecordOf(aForm);
  SaveSettings(aNew);
  if (aNew.Interval == aOpening.Interval && aNew.Warning == aOpening.Warning) return false;
  Schedule::SetNextCheck(WarningMinutes());
  return true;
}

}  // namespace OptionsRules
