#include "ui/common/WindowPlace.h"

#include <wx/display.h>
#include <wx/fileconf.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/stdpaths.h>
#include <wx/toplevel.h>

namespace {

class Fields : public wxTopLevelWindow::GeometrySerializer {
 public:
  explicit Fields(const wxString& szWindow) : szGroup("/" + szWindow + "/") {}

  bool SaveField(const wxString& szName, int lValue) const override {
    return IsKept(szName) && wxConfigBase::Get(false)->Write(szGroup + szName, lValue);
  }
  bool RestoreField(const wxString& szName, int* pValue) override {
    if (!IsKept(szName) || !wxConfigBase::Get(false)->Read(szGroup + szName, pValue)) return false;
    if (szName == "w") aSize.x = *pValue;
    if (szName == "h") aSize.y = *pValue;
    return true;
  }

  wxSize aSize;  // that was restored; the default: none

 private:
  // A program that was ended from the tray shows its window when it starts again.
  static bool IsKept(const wxString& szName) { return szName != "Iconized"; }

  const wxString szGroup;
};

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

void WindowPlace::Restore(wxTopLevelWindow& aWindow, const wxString& szName) {
  if (!wxConfigBase::Get(false)) return;
  const wxRect aBefore = aWindow.GetRect();
  Fields aFields(szName);
  if (!aWindow.RestoreToGeometry(aFields) || aWindow.IsMaximized()) return;
  // GTK's toolkit takes the size that the window has just now for what its contents need, and never restores
  // a smaller one.
  wxSize aSize = aFields.aSize;
  aSize.SetDefaults(aBefore.GetSize());
  aSize.IncTo(aWindow.GetMinSize());
  aSize.DecTo(wxDisplay(&aWindow).GetClientArea().GetSize());
  if (aSize != aWindow.GetSize()) aWindow.SetSize(aSize);
  // Its caption at least, by which it can be moved.
  const wxRect aNow = aWindow.GetRect();
  constexpr int lGrip = 60;  // pixels
  if (!IsSeen(wxRect(aNow.x + aNow.width / 2 - lGrip, aNow.y, 2 * lGrip, lGrip)))
    aWindow.SetPosition(aBefore.GetPosition());
}

void WindowPlace::Keep(const wxTopLevelWindow& aWindow, const wxString& szName) {
  if (!wxConfigBase::Get(false)) return;
  aWindow.SaveGeometry(Fields(szName));
  WriteFile();
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
