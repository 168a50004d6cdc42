// frmCheckAnim: the progress window. It names the site being requested and the request's state, and shows a
// ray that travels between the earth and a spaceship. It takes no focus when it is shown. Created for each
// pass that is visible, destroyed when it closes.
#pragma once

#include <wx/bmpbndl.h>
#include <wx/frame.h>
#include <wx/timer.h>

#include <cstdint>
#include <functional>

class wxButton;
class wxPanel;
class wxStaticBoxSizer;
class wxStaticText;

class frmCheckAnim : public wxFrame {
 public:
  // StopAll: the main window's stop command.
  frmCheckAnim(wxWindow* pOwner, std::function<void()> StopAll);

  // A picture on the ray's field. Positions are in twips.
  struct Picture {
    const char* szImage;
    int lSide;
    int lLeft;
    int lTop;
    bool bVisible;
    wxBitmapBundle aImage = {};
  };

  // "12 of 1,000"; nothing before the first site.
  void ShowCount(std::int32_t lSite, std::int32_t lSites);

  void cmdStopAll_Click();
  void tmrCheckAnim_Timer();

  wxPanel* pixField;
  Picture pixEarth{"Earth", 780, 180, 240, true};
  Picture pixSpaceShip{"SpaceShip", 780, 5475, 240, true};
  Picture pixRayForward{"RayForward", 330, 0, 0, false};
  Picture pixRayBack{"RayBack", 330, 0, 0, false};
  wxStaticBoxSizer* fraStatus;
  wxStaticText* lblSiteName;
  wxStaticText* lblSiteStatus;
  wxStaticText* lblSiteCount;
  wxButton* cmdStopAll;
  wxTimer tmrCheckAnim;
  std::int16_t iDirection = 1;  // 1 the back ray travels, 0 the forward ray

 private:
  void ResetRayForward();
  void ResetRayBack();
  void PaintField();
  void RefreshPath();

  std::function<void()> aStopAll;
};
