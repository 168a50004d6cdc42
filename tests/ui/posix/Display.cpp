#include "ui/Display.h"

#include <dlfcn.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/Environment.h"
#include "support/ChildProcess.h"

namespace {

std::unique_ptr<ChildProcess> pServer, pManager, pTray;

// A helper that ends with this process even when it crashes: util-linux's setpriv asks the kernel for that.
std::unique_ptr<ChildProcess> StartHelper(std::vector<std::string> aWords) {
  aWords.insert(aWords.begin(), {"--pdeathsig", "KILL"});
  return std::make_unique<ChildProcess>("setpriv", aWords);
}

}  // namespace

bool Display::Start() {
  pServer = StartHelper(
      {"Xvfb", "-displayfd", "1", "-screen", "0", "1280x1024x24", "-nolisten", "tcp", "-noreset"});
  if (!pServer->WaitForOutput("\n", 20)) return false;
  Environment::Set("DISPLAY", ":" + pServer->Output().substr(0, pServer->Output().find('\n')));
  Environment::Set("GDK_BACKEND", "x11");
  Environment::Set("NO_AT_BRIDGE", "1");
  Environment::Set("GSETTINGS_BACKEND", "memory");  // the user's own desktop settings stay as they are
  pManager = StartHelper({"metacity", "--sm-disable", "--no-composite"});
  return true;
}

// wxWidgets has loaded GDK but does not pass this on.
void Display::Sync() {
  const auto aDefault = reinterpret_cast<void* (*)()>(dlsym(RTLD_DEFAULT, "gdk_display_get_default"));
  const auto aSync = reinterpret_cast<void (*)(void*)>(dlsym(RTLD_DEFAULT, "gdk_display_sync"));
  if (aDefault && aSync) aSync(aDefault());
}

// The window manager sees to it.
bool Display::HasKeyboard() {
  return true;
}

bool Display::StartTray() {
  pTray = StartHelper({"trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request"});
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
