// AlertSender: the mails to the manager: one about a failed check, and the envelope of them all.
#pragma once

#include <cstdint>
#include <string>

#include "alert/AlertText.h"
#include "platform/SendForm3.h"

inline constexpr std::int32_t lMailSettingsMissing = 999;

// One alert about one site's failed check. 0 sent; 999 not tried because the mail server or the manager's
// address is not set; any other number is the mail call's. Blocks for at most 30 seconds. Throws
// AlertAbandoned when there is no text to send.
std::int32_t SendEmail(const std::string& szCode, const SiteRecord& aSite, const SettingsRecord& aSettings,
                       const CheckFacts& aFacts);

// Any mail from the program to its manager: 0, or the number of the mail call, which is not spared where the
// settings are missing. Lines of the body end in CR LF.
std::int32_t SendToManager(const SettingsRecord& aSettings, const std::string& szBody, MailCall& aCall);

// The From line of such a mail: "Kestrova <manager@example.org>".
std::string MailFrom(const SettingsRecord& aSettings);
