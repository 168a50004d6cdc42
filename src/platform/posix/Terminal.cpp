#include "platform/Terminal.h"

#include <signal.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace {

volatile sig_atomic_t bCaught = 0;
volatile sig_atomic_t bSeen = 0;

void Handle(int lSignal) {
  if (bCaught != 0 && bSeen != 0) {
    signal(lSignal, SIG_DFL);
    raise(lSignal);  // taken as soon as this handler returns
  }
  bCaught = 1;
}

}  // namespace

bool Terminal::OutputIsTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}

bool Terminal::ErrorIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

bool Terminal::ColourWanted() {
  const char* const szNoColour = std::getenv("NO_COLOR");
  const char* const szTerminal = std::getenv("TERM");
  return OutputIsTerminal() && (szNoColour == nullptr || szNoColour[0] == '\0') && szTerminal != nullptr &&
         std::string_view(szTerminal) != "dumb";
}

void Terminal::CatchInterrupt() {
  struct sigaction aAction {};
  aAction.sa_handler = Handle;  // without SA_RESTART: a wait is to end at once
  sigemptyset(&aAction.sa_mask);
  for (const int lSignal : {SIGINT, SIGHUP, SIGTERM})
    sigaction(lSignal, &aAction, nullptr);
}

bool Terminal::Interrupted() {
  if (bCaught != 0) bSeen = 1;
  return bCaught != 0;
}

void Terminal::ClearInterrupt() {
  bCaught = 0;
  bSeen = 0;
}
