#include "platform/Terminal.h"

#include <poll.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

namespace {

volatile sig_atomic_t lCaught = 0;  // the first signal's number
volatile sig_atomic_t bAgain = 0;
volatile sig_atomic_t bSeen = 0;

void Handle(int lSignal) {
  if (lCaught != 0 && (bSeen != 0 || bAgain != 0)) {
    signal(lSignal, SIG_DFL);
    raise(lSignal);  // taken as soon as this handler returns
  }
  bAgain = lCaught != 0 ? 1 : 0;
  if (lCaught == 0) lCaught = lSignal;
}

}  // namespace

bool Terminal::OutputIsTerminal() {
  return isatty(STDOUT_FILENO) == 1;
}

bool Terminal::ErrorIsTerminal() {
  return isatty(STDERR_FILENO) == 1;
}

int Terminal::Columns() {
  winsize aSize{};
  return ioctl(STDOUT_FILENO, TIOCGWINSZ, &aSize) == 0 ? aSize.ws_col : 0;
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
  for (const int lSignal : {SIGINT, SIGHUP, SIGTERM}) {
    struct sigaction aBefore {};
    if (sigaction(lSignal, nullptr, &aBefore) == 0 && aBefore.sa_handler != SIG_IGN)
      sigaction(lSignal, &aAction, nullptr);
  }
}

bool Terminal::Interrupted() {
  if (lCaught != 0) bSeen = 1;
  return lCaught != 0;
}

int Terminal::InterruptSignal() {
  return lCaught;
}

bool Terminal::InterruptedAgain() {
  return bAgain != 0;
}

bool Terminal::OutputClosed() {
  pollfd aOutput{STDOUT_FILENO, 0, 0};  // a closed pipe is told without being asked for
  return poll(&aOutput, 1, 0) == 1 && (aOutput.revents & POLLERR) != 0;
}

void Terminal::ClearInterrupt() {
  lCaught = 0;
  bAgain = 0;
  bSeen = 0;
}
