#include "support/Display.h"

#include <memory>
#include <string>

#include "support/ChildProcess.h"
#include "support/Environment.h"

namespace {
std::unique_ptr<ChildProcess> pServer, pManager, pTray;
}

bool Display::Start() {
  pServer = std::make_unique<ChildProcess>(
      "Xvfb", std::vector<std::string>{"-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                                       "-terminate"});
  if (!pServer->WaitForOutput("\n", 20)) return false;
  Environment::Set("DISPLAY", ":" + pServer->Output().substr(0, pServer->Output().find('\n')));
  Environment::Set("GDK_BACKEND", "x11");
  Environment::Set("NO_AT_BRIDGE", "1");
  Environment::Set("GSETTINGS_BACKEND", "memory");  // the user's own desktop settings stay as they are
  pManager =
      std::make_unique<ChildProcess>("metacity", std::vector<std::string>{"--sm-disable", "--no-composite"});
  return true;
}

bool Display::StartTray() {
  pTray = std::make_unique<ChildProcess>(
      "trayer", std::vector<std::string>{"--edge", "bottom", "--align", "left", "--widthtype", "request"});
  return pTray->Wait(0) == ChildProcess::lRunning;
}

void Display::StopTray() {
  pTray.reset();
}

void Display::Stop() {
  pTray.reset();
  pManager.reset();
  pServer.reset();
}
