// DemoWeek: a week of the monitor's work in a few seconds. The check engine itself runs every pass of its
// schedule, over real connections to a server on this machine, writes its daily logs and mails its alerts;
// only the clock is another: it leaps from one pass to the next.
#pragma once

#include <cstddef>
#include <string>

#include "base/DateTime.h"

namespace DemoWeek {

// Monday 0:00 of the last week that is over.
DateTime LastMonday();

// Plays the week that begins with that Monday. Into the folder, which must be new, it puts the logs (Logs/),
// the mails (mails/) and a store of its own. Throws std::runtime_error when it cannot. Returns the passes
// played.
std::size_t Play(const std::string& szFolder, DateTime dtMonday);

}  // namespace DemoWeek
