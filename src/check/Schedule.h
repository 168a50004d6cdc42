// Schedule: when the next automatic pass is due.
#pragma once

#include <cstdint>
#include <string>

#include "base/DateTime.h"

extern DateTime NextCheckTime;  // wall time, as shown

namespace Schedule {

// The next pass comes lMinutes from now.
void SetNextCheck(std::int32_t lMinutes);

// Due when the wall clock has reached NextCheckTime, or when that many minutes have gone by since it was set,
// however the wall clock was changed meanwhile.
bool IsDue();

// "Next: 5:44:21 PM"
std::string NextPanelText();

}  // namespace Schedule
