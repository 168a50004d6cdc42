#include "ui/common/WindowPlace.h"

#include <wx/display.h>
#include <wx/fileconf.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/stdpaths.h>

namespace {

// A file that cannot be written costs the place and nothing else.
void WriteFile() {
  const wxLogNull aQuiet;
  wxConfigBase::Get(false)->Flush();
}

bool IsSeen(const wxRect& aPart) {
  for (unsigned i = 0; i < wxDisplay::GetCount(); ++i)
    if (wxDisplay(i).GetClientArea().Contains(aPart)) return true;
  return false;
}

}  // namespace

void WindowPlace::Open() {
  const wxLogNull aQuiet;
  wxStandardPaths::Get().SetFileLayout(wxStandardPaths::FileLayout_XDG);
  wxFileName aFile(wxStandardPaths::Get().GetUserConfigDir(), "kestrova-windows.ini");
  aFile.Mkdir(wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
  delete wxConfigBase::Set(new wxFileConfig("", "", aFile.GetFullPath(), "", wxCONFIG_USE_LOCAL_FILE));
}

wxPoint WindowPlace::Corner(const wxString& szName) {
  wxPoint aCorner;
  auto* pFile = wxConfigBase::Get(false);
  if (!pFile || !pFile->Read("/" + szName + "/x", &aCorner.x) ||
      !pFile->Read("/" + szName + "/y", &aCorner.y))
    return wxDefaultPosition;
  constexpr int lGrip = 60;  // pixels
  return IsSeen(wxRect(aCorner, wxSize(lGrip, lGrip))) ? aCorner : wxDefaultPosition;
}

void WindowPlace::KeepCorner(const wxPoint& aCorner, const wxString& szName) {
  auto* pFile = wxConfigBase::Get(false);
  if (!pFile || aCorner == wxDefaultPosition) return;
  pFile->Write("/" + szName + "/x", aCorner.x);
  pFile->Write("/" + szName + "/y", aCorner.y);
  WriteFile();
}
