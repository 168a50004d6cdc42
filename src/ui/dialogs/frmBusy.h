// frmBusy: the small notice shown while the site list is being rewritten, with a bar where the work can be
// counted. While one lives it holds the engine's starters: repainting handles events, timers among them, and
// no pass and no command may start on a half-written list. Closes when it is destroyed; always a local
// variable.
#pragma once

#include <wx/frame.h>

#include <cstdint>
#include <string>

#include "base/DateTime.h"
#include "check/CheckEngine.h"
#include "ui/common/MainHost.h"

class wxGauge;
class wxStaticText;

class frmBusy {
 public:
  // lRange: how many steps the bar has; 0 for no bar. pOver: the dialog that it belongs to, or it would lie
  // behind it; nullptr for the main window. Shown and painted on return.
  frmBusy(MainHost& aHost, const std::string& szTitle, const std::string& szMessage, std::int32_t lRange = 0,
          wxWindow* pOver = nullptr);
  ~frmBusy();
  frmBusy(const frmBusy&) = delete;
  frmBusy& operator=(const frmBusy&) = delete;

  void Message(const std::string& szMessage);
  // Moves the bar. Cheap enough for every line of an import: paints at most every 30 ms.
  void Progress(std::int32_t lDone);
  // Paints all windows. Clicks and keys are not handled and stay queued; timers tick but do nothing.
  void Repaint();

 private:
  wxFrame* pNotice;
  wxStaticText* lblMessage;
  wxGauge* pBar = nullptr;
  const CheckEngine::ListHold aHold;
  DateTime dtLastPaint = 0;  // steady
};
