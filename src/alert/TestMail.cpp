#include "alert/TestMail.h"

#include "alert/AlertSender.h"
#include "base/Strings.h"
#include "base/Text.h"

TestMailResult SendTestMail(const SettingsRecord& aSettings) {
  const std::string szName =
      Text::IsBlank(aSettings.Name) ? LoadResString(IDS_ALERT_MANAGER) : Text::Trim(aSettings.Name);
  MailCall aCall;
  TestMailResult aResult;
  aResult.bSent = SendToManager(aSettings, FillResString(IDS_CLI_MAIL_TEST_BODY, {szName}), aCall) == 0;
  const std::string szServer =
      aSettings.SMTP + ":" + std::to_string(aSettings.SMTPPort < 1 ? lSmtpPort : aSettings.SMTPPort);
  aResult.szReply = aCall.szServerReply.empty() ? LoadResString(IDS_CLI_MAIL_NO_REPLY)
                                                : FillResString(IDS_CLI_MAIL_REPLY, {aCall.szServerReply});
  aResult.szSaid = aResult.bSent ? FillResString(IDS_CLI_MAIL_SENT, {aSettings.Email, szServer})
                                 : FillResString(IDS_CLI_MAIL_FAILED, {szServer, aCall.szError});
  return aResult;
}
