#include "alert/AlertSender.h"

#include "base/Strings.h"

std::int32_t SendEmail(const std::string& szCode, const SiteRecord& aSite, const SettingsRecord& aSettings,
                       const CheckFacts& aFacts) {
  if (aSettings.SMTP.empty() || aSettings.Email.empty()) return lMailSettingsMissing;
  MailCall aCall;
  return SendToManager(aSettings, AlertText::ComposeBody(szCode, aSite, aSettings, aFacts), aCall);
}

std::int32_t SendToManager(const SettingsRecord& aSettings, const std::string& szBody, MailCall& aCall) {
  return SendForm3("", aSettings.SMTP, aSettings.SMTPPort, aSettings.Email, "", MailFrom(aSettings),
                   aSettings.Email, LoadResString(IDS_ALERT_SUBJECT), szBody, "", 0, 0, "US",
                   LoadResString(IDS_ALERT_MAILER), aCall);
}

std::string MailFrom(const SettingsRecord& aSettings) {
  return LoadResString(IDS_ALERT_FROM) + aSettings.Email + ">";
}
