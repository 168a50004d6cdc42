// alert: the mail as it would go out, and a test of the mail settings.
#include <algorithm>

#include "alert/AlertSender.h"
#include "alert/TestMail.h"
#include "base/Strings.h"
#include "base/Text.h"
#include "check/ResultCodes.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "persistence/ProductKeys.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"

namespace {

// Which of the mail settings are missing, as part of a sentence; empty when none.
std::string MissingSettings() {
  if (Settings.Email.empty() && Settings.SMTP.empty()) return LoadResString(IDS_CLI_MAIL_BOTH);
  if (Settings.Email.empty()) return LoadResString(IDS_CLI_MAIL_EMAIL);
  if (Settings.SMTP.empty()) return LoadResString(IDS_CLI_MAIL_SMTP);
  return {};
}

// The code that the engine gives a result: 0, 8001, 8080, a listed status, else the class of a status (418 is
// "4xx"). Empty for what is no result; bUp for a status that is no failure.
std::string ResultCode(const std::string& szCode, bool& bUp) {
  bUp = false;
  if (szCode == szCodeUnreadable || szCode == szCodeTimedOut || szCode == szCodeError) return szCode;
  if (szCode.size() != 3 || szCode[0] < '1' || szCode[0] > '5') return {};
  if (szCode.substr(1) == "xx") return szCode;
  if (!Text::IsDigits(szCode)) return {};
  const Classification aResult = ClassifyResponse("HTTP/1.1 " + szCode + "\r\n");
  bUp = aResult.bUp;
  return bUp ? szCode : aResult.szCode;
}

// What an alert is shown about while the list is empty.
SiteRecord SampleSite() {
  SiteRecord aSite;
  aSite.URL = LoadResString(IDS_CLI_SAMPLE_SITE);
  aSite.Enabled = SiteRecord::iEnabled;
  aSite.TimeOut = 60;
  return aSite;
}

// What the engine would know of such a failure, just seen, with a good answer by IP address where there is
// one.
CheckFacts SampleFacts(const std::string& szCode, const std::string& szResult, const SiteRecord& aSite) {
  const std::string szAgent = LoadResString(IDS_AGENT);
  CheckFacts aFacts;
  RequestFacts& aByName = aFacts.aByName;
  aByName.szURL = szAgent + aSite.URL;
  aByName.szCode = szResult;
  Classification aResult;
  if (szCode == szCodeError) {
    aByName.lErrorNumber = 7;  // as the client numbers it
    aByName.szErrorText = LoadResString(IDS_CLI_SAMPLE_ERROR);
    aResult = ClassifyError(aByName.lErrorNumber, aByName.szErrorText);
  } else if (szCode == szCodeTimedOut) {
    aResult = ClassifyTimeOut();
  } else {
    if (szCode != szCodeUnreadable)
      aByName.szHeader = "HTTP/1.1 " + Text::Replace(szCode, "xx", "99") + "\r\n";
    aResult = ClassifyResponse(aByName.szHeader);
  }
  aByName.szResult = aResult.aText.Text();
  if (!Text::IsBlank(aSite.IP))
    aFacts.aByIP = {.szURL = szAgent + aSite.IP, .szResult = LoadResString(IDS_SITE_OK)};
  aFacts.SecondFailure = Clock::Now();
  aFacts.FirstFailure = AddMinutes(aFacts.SecondFailure, -WarningMinutes());
  return aFacts;
}

}  // namespace

int CliCommands::AlertPreview(const std::string& szCode, std::int32_t lSite) {
  const std::string szLowered = Text::LowerCase(szCode);
  bool bUp = false;
  const std::string szResult = ResultCode(szLowered, bUp);
  if (szResult.empty()) return Report::Fail(FillResString(IDS_CLI_NO_SUCH_CODE, {szCode}));
  if (bUp) return Report::Fail(FillResString(IDS_CLI_CODE_IS_UP, {szCode}));
  if (!Report::LoadAll()) return Report::iFailed;
  if (lSite != 0 && !modAddress::IsSite(lSite)) {
    return Report::Fail(
        FillResString(IDS_CLI_NO_SUCH_SITE, {std::to_string(lSite), Report::SiteNumber(lSiteCount)}));
  }
  const SiteRecord aSite = lSiteCount < 1 ? SampleSite() : modAddress::Site(lSite == 0 ? 1 : lSite);
  std::string szBody;
  try {
    szBody = AlertText::ComposeBody(szResult, aSite, Settings, SampleFacts(szLowered, szResult, aSite));
  } catch (const AlertAbandoned& aReason) {
    return Report::Fail(FillResString(IDS_CLI_NO_ALERT_TEXT, {szCode, aReason.what()}));
  }
  const std::string szMissing = MissingSettings();
  if (!szMissing.empty()) Report::Complain(FillResString(IDS_CLI_MAIL_PREVIEW_NOTE, {szMissing}));
  Report::Say("From: " + Text::Printable(MailFrom(Settings)));
  Report::Say("To: " + Text::Printable(Settings.Email));
  Report::Say("Subject: " + LoadResString(IDS_ALERT_SUBJECT));
  Report::Say("");
  // Line by line: what a line holds may come from a template or from the list.
  const std::string szText = Text::Replace(szBody, "\r\n", "\n");
  for (std::size_t lFrom = 0; lFrom < szText.size();) {
    const std::size_t lEnd = std::min(szText.find('\n', lFrom), szText.size());
    Report::Say(Text::Printable(Text::Replace(szText.substr(lFrom, lEnd - lFrom), "\t", "  ")));
    lFrom = lEnd + 1;
  }
  return Report::iAllUp;
}

int CliCommands::AlertTest() {
  if (!Report::OpenStore()) return Report::iFailed;
  LoadSettings();
  const std::string szMissing = MissingSettings();
  if (!szMissing.empty()) {
    return Report::Fail(FillResString(IDS_CLI_MAIL_SETTINGS, {szMissing, ProductKeys::szManager}));
  }
  const auto aResult = SendTestMail(Settings);
  if (!aResult.bSent) return Report::Fail(aResult.szSaid + ". " + aResult.szReply);
  Report::Say(Text::Printable(aResult.szSaid));
  Report::Say(Text::Printable(aResult.szReply));
  return Report::iAllUp;
}
