// AlertText: what an alert says. A template file comes first, then the built-in table; then the placeholders
// are filled and the lines wrapped at 76 characters. A file in the folder Messages of the user's data folder
// stands in for the one of that name beside the program.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

#include "alert/CheckFacts.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"

// No text can be composed for this result; no mail is sent.
class AlertAbandoned : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

namespace AlertText {

// The finished body for a result code ("404", "3xx", "8001") and a site; of the settings the manager's name
// counts. Throws AlertAbandoned for a class code without a template file and for a template that cannot be
// read.
std::string ComposeBody(const std::string& szCode, const SiteRecord& aSite, const SettingsRecord& aSettings,
                        const CheckFacts& aFacts);

// The text for a result code, and what is put behind it after an IP check; placeholders not yet filled. Both
// throw AlertAbandoned as ComposeBody does.
std::string BodyTemplate(const std::string& szCode);
std::string PostscriptTemplate(bool bIPAnswered);

// Fills the placeholders and wraps the lines. Terminates on every input; at most 10,000 replacements and
// 1 MB.
std::string ParseEmailContent(const std::string& szText, const SiteRecord& aSite,
                              const SettingsRecord& aSettings, const CheckFacts& aFacts);

}  // namespace AlertText
