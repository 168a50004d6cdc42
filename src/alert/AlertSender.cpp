#include "alert/AlertSender.h"

#include "base/Strings.h"
#include "persistence/Settings.h"
#include "platform/SendForm3.h"

std::int32_t SendEmail(const std::string& szCode, std::int32_t lSite, const CheckFacts& aFacts) {
  if (Settings.SMTP.empty() || Settings.Email.empty()) return lMailSettingsMissing;
  const std::string szBody = AlertText::ComposeBody(szCode, lSite, aFacts);
  return SendForm3("", Settings.SMTP, Settings.SMTPPort, Settings.Email, "",
                   LoadResString(IDS_ALERT_FROM) + Settings.Email + ">", Settings.Email,
                   LoadResString(IDS_ALERT_SUBJECT), szBody, "", 0, 0, "US", LoadResString(IDS_ALERT_MAILER));
}
