#include "ui/common/frmHelp.h"

#include <wx/display.h>
#include <wx/filename.h>
#include <wx/filesys.h>
#include <wx/fs_arc.h>
#include <wx/html/helpdata.h>
#include <wx/html/helpwnd.h>
#include <wx/html/htmlproc.h>
#include <wx/html/htmlwin.h>
#include <wx/imagpng.h>
#include <wx/log.h>
#include <wx/settings.h>
#include <wx/treectrl.h>
#include <wx/weakref.h>

#include <algorithm>

#include "ui/common/Images.h"
#include "ui/common/TextGlue.h"

namespace {

wxWeakRef<frmHelp> pOpen;

// The toolkit reads archives and pictures through handlers that a program names once.
void PrepareReading() {
  static const bool bDone = [] {
    wxFileSystem::AddHandler(new wxArchiveFSHandler);
    if (!wxImage::FindHandler(wxBITMAP_TYPE_PNG)) wxImage::AddHandler(new wxPNGHandler);
    return true;
  }();
  static_cast<void>(bDone);
}

// The pages name colours for print; on the screen they get the system's, or they would glare on a dark
// desktop.
class SystemColours : public wxHtmlProcessor {
 public:
  wxString Process(const wxString& szPage) const override {
    const auto lFrom = szPage.find("<body");
    const auto lPast = szPage.find('>', lFrom);
    if (lFrom == wxString::npos || lPast == wxString::npos) return szPage;
    const auto Name = [](wxSystemColour iColour) {
      return wxSystemSettings::GetColour(iColour).GetAsString(wxC2S_HTML_SYNTAX);
    };
    // The system's own colour for links is too dark on a dark ground.
    const wxString szLink = wxSystemSettings::GetAppearance().IsDark() ? "#8ab4f8" : "#17395c";
    return szPage.substr(0, lFrom) + "<body bgcolor=\"" + Name(wxSYS_COLOUR_LISTBOX) + "\" text=\"" +
           Name(wxSYS_COLOUR_LISTBOXTEXT) + "\" link=\"" + szLink + "\"" + szPage.substr(lPast);
  }
};

}  // namespace

frmHelp::frmHelp() : aController(wxHF_EMBEDDED) {
}

frmHelp::~frmHelp() {
  // The book's window reads from the controller, which goes first.
  DestroyChildren();
}

frmHelp* frmHelp::Window() {
  return pOpen.get();
}

void frmHelp::BuildWindow(wxWindow* pOwner) {
  const wxRect aScreen = wxDisplay(pOwner).GetClientArea();
  // As wide as the text needs at the user's text size.
  const int lScale = std::max(100, GetCharHeight() * 100 / 17);
  const wxSize aSize(std::min(FromDIP(1080) * lScale / 100, aScreen.width),
                     std::min(FromDIP(700) * lScale / 100, aScreen.height));
  SetIcons(Images::ProgramIcons());
  SetSize(aSize);
  pBook = new wxHtmlHelpWindow(aController.GetHelpData());
  pBook->SetController(&aController);
  pBook->GetCfgData().sashpos = aSize.x * 3 / 11;  // wide enough for the names of all three tabs
  aController.SetHelpWindow(pBook);
  pBook->Create(this, wxID_ANY, wxDefaultPosition, GetClientSize(), wxTAB_TRAVERSAL | wxBORDER_NONE,
                wxHF_TOOLBAR | wxHF_CONTENTS | wxHF_INDEX | wxHF_SEARCH | wxHF_PRINT);
  pBook->GetHtmlWindow()->AddProcessor(new SystemColours);  // the window deletes it
  pBook->GetTreeCtrl()->ExpandAll();
  Bind(wxEVT_CHAR_HOOK, [this](wxKeyEvent& aEvent) {
    if (aEvent.GetKeyCode() == WXK_ESCAPE)
      Close();
    else
      aEvent.Skip();
  });
  Bind(wxEVT_CLOSE_WINDOW, [this](wxCloseEvent&) { Destroy(); });
  CentreOnScreen();
}

bool frmHelp::ShowTopic(wxWindow* pOwner, const std::string& szBook, std::int32_t lTopic) {
  if (!pOpen || pOpen->IsBeingDeleted()) {
    PrepareReading();
    const wxLogNull aQuiet;  // what is wrong with the file is said by the caller, once
    const wxFileName aFile(ToWx(szBook));
    if (!aFile.FileExists()) return false;
    auto* pNew = new frmHelp;
    pNew->Create(nullptr, wxID_ANY, ResText(IDS_HELP_TITLE));
    if (!pNew->aController.AddBook(wxFileSystem::FileNameToURL(aFile) + "#zip:kestrova.hhp")) {
      pNew->Destroy();
      return false;
    }
    pNew->BuildWindow(pOwner);
    pOpen = pNew;
  }
  const auto& aContents = pOpen->aController.GetHelpData()->GetContentsArray();
  bool bKnown = false;
  for (std::size_t i = 0; i < aContents.size(); ++i)
    bKnown = bKnown || aContents[i].id == lTopic;
  if (pOpen->IsIconized()) pOpen->Iconize(false);
  pOpen->Show();
  pOpen->Raise();
  if (bKnown)
    pOpen->pBook->Display(lTopic);
  else
    pOpen->pBook->DisplayContents();
  pOpen->pBook->GetHtmlWindow()->SetFocus();
  return true;
}

wxString frmHelp::Page() const {
  const wxHtmlWindow* pPage = pBook->GetHtmlWindow();
  return pPage->GetOpenedPage().AfterLast('/').AfterLast(':') +
         (pPage->GetOpenedAnchor().empty() ? "" : "#" + pPage->GetOpenedAnchor());
}
