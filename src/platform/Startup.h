// Startup: whether the monitor starts by itself, with the user's session or with the machine. Off Windows
// that is an entry among those that the desktop starts, or, where there is no desktop, a service of the
// user's own systemd that runs "kestrova-cli watch"; on Windows a value of the user's Run key.
#pragma once

#include <string>

namespace Startup {

enum class Result {
  Done,
  NotWritten,  // szWhere says what
  Untold       // all is written, but systemd could not be told: it takes effect at the next login
};

struct Answer {
  Result iResult = Result::Done;
  bool bOn = false;     // afterwards
  bool bLogin = false;  // a service: only while the user is logged in, unless the system lets services linger
  std::string szWhere;  // the file or the registry value that does it; of several the first
};

Answer Read();
Answer TurnOn();   // replaces what another way had set
Answer TurnOff();  // also what an installer has set, as far as the user may

}  // namespace Startup
