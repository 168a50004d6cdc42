// AlertSender: one alert mail about one site's failed check, to the manager.
#pragma once

#include <cstdint>
#include <string>

#include "alert/AlertText.h"

inline constexpr std::int32_t lMailSettingsMissing = 999;

// 0 sent; 999 not tried because the mail server or the manager's address is not set; any other number is the
// mail call's. Blocks for at most 30 seconds. Throws AlertAbandoned when there is no text to send.
std::int32_t SendEmail(const std::string& szCode, std::int32_t lSite, const CheckFacts& aFacts);
