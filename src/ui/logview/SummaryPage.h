// SummaryPage: what a history says as a whole: how things stand, what was covered, each site in a row and as
// a strip.
#pragma once

#include <wx/panel.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "history/LogSummary.h"
#include "history/LogTables.h"

class StripView;
class VirtualTable;
class wxSplitterWindow;
class wxGenericStaticBitmap;
class wxStaticText;
class wxTextCtrl;

class SummaryPage : public wxPanel {
 public:
  explicit SummaryPage(wxWindow* pParent);

  // nullptr: no log is open. It has to stay until the next call.
  void ShowLog(const LogSummary* pNew);
  // Waits for room, as MorePage does.
  bool Layout() override;
  // What is said depends on the time too; call this when some has gone by.
  void ShowAge();
  // A site was chosen to be looked at.
  std::function<void(const std::string& szSite)> SiteChosen;
  // The same from that moment on, or from its first failure then.
  std::function<void(const std::string& szSite, DateTime dtMoment, bool bFailure)> MomentChosen;
  // Something to tell about a strip.
  std::function<void(const std::string& szWords)> Told;

  wxStaticText* lblHeadline;
  wxTextCtrl* txtFacts;
  VirtualTable* lvwSites;
  StripView* picStrips;

 private:
  const SiteSummary& SiteAt(std::size_t lRow) const { return pSummary->aSites[aOrder[lRow]]; }
  LogTables::SiteColumn ColumnAt(int iColumn) const { return aColumns[static_cast<std::size_t>(iColumn)]; }
  void FollowSizes(wxWindow& aUpper);  // of the pane above the strips, and the page's own
  void ConnectTable();
  void ConnectStrips();
  void ShowColumns();
  void PutInOrder();
  void ShowFacts();
  void FitFacts();
  void FitHeadline();
  void PlaceSash();
  int TableNeeds() const;
  int LeastFacts() const;

  const LogSummary* pSummary = nullptr;
  std::vector<std::size_t> aOrder;
  std::vector<LogTables::SiteColumn> aColumns;
  std::string szToldAge;
  int lWrappedAt = 0;  // width of the page for which the headline is broken
  wxGenericStaticBitmap* imgLight;
  wxSplitterWindow* pSplitter;
  bool bSashChosen = false;  // by the user
};
