// A template of an alert, and behind its first NUL the header that a server sent: it ends, in bounds, and
// the mail that is made of it holds nothing that a terminal obeys.
#include "alert/AlertText.h"
#include "fuzz/Fuzz.h"
#include "platform/curl/MailMessage.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t lSize) {
  const auto szBytes = Fuzz::Bytes(pData, lSize);
  const auto lNul = std::min(szBytes.find('\0'), szBytes.size());
  SiteRecord aSite;
  aSite.URL = "www.example.com/%HEADER%";
  aSite.TimeOut = 30;
  SettingsRecord aSettings;
  aSettings.Name = "%URL%";
  CheckFacts aFacts;
  aFacts.aByName.szURL = "http://www.example.com/%HEADER%";
  aFacts.aByName.szCode = "404";
  aFacts.aByName.szHeader = szBytes.substr(std::min(lNul + 1, szBytes.size()));
  const auto szBody =
      AlertText::ParseEmailContent(std::string(szBytes.substr(0, lNul)), aSite, aSettings, aFacts);
  Fuzz::Require(szBody.size() <= std::size_t{4} * 1024 * 1024);
  const auto szMail =
      MailMessage::Compose("Kestrova <a@example.com>", "a@example.com", "Kestrova Alert", szBody, "Kestrova");
  const bool bCoded = szMail.find("quoted-printable") < szMail.find("\r\n\r\n");
  for (const char* const szObeyed : {"\x1B", "\x07", "\x7F", "=1B", "=07", "=7F", "=C2=9B"})
    Fuzz::Require(szMail.find(szObeyed) == std::string::npos || (!bCoded && szObeyed[0] == '='));
  return 0;
}
