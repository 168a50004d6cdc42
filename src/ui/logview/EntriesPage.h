// EntriesPage: the entries of a history in a list, the filters above it, the chosen entry in full below it,
// and a bar to find words.
#pragma once

#include <wx/panel.h>
#include <wx/timer.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "base/Strings.h"
#include "history/LogFilter.h"
#include "history/LogHistory.h"
#include "history/LogRows.h"
#include "ui/common/VirtualTable.h"

class wxChoice;
class wxSplitterWindow;
class wxStaticText;
class wxTextCtrl;

class EntriesPage : public wxPanel {
 public:
  explicit EntriesPage(wxWindow* pParent);

  // Another history: everything is shown, from its end. nullptr: none is open. It has to stay until the next
  // call.
  void Open(const LogHistory* pNew);
  // The same history has grown or was read anew (perhaps as another object): the view keeps its place, except
  // that one at the end stays at the end.
  void Follow(const LogHistory* pNew);

  void GroupByPass(bool bGroup);
  void ShowEverything();
  void ShowSite(const std::string& szSite);
  // The site's first check, or first failure, at that moment or later; empty: any site's, and all are shown.
  void ShowMoment(const std::string& szSite, DateTime dtMoment, bool bFailure);

  void ShowFindBar();
  void FindAgain(bool bForward);
  void GoToFailure(bool bForward);

  const LogRows& Rows() const { return aRows; }
  bool Filtered() const { return !aFilter.Empty(); }
  // Something to tell that belongs to no row.
  std::function<void(StringId iText)> Remarked;
  // After any change of what is shown.
  std::function<void()> Changed;

  VirtualTable* lvwEntries;
  wxChoice* cboSite;
  wxChoice* cboOutcome;
  wxTextCtrl* txtWords;
  wxTextCtrl* txtDetails;
  wxPanel* fraFind;
  wxTextCtrl* txtFind;
  wxStaticText* lblFound;

 private:
  void BuildFilterBar();
  void BuildFindBar();
  void FillSites();
  void ReadFilter();
  void Refilter();  // keeps the row in focus where it is still shown
  void Refill(bool bKeepPlace);
  void ShowDetails();
  wxString Hint() const;
  VirtualTable::Light LightOf(std::size_t lRow, int iColumn) const;
  void GoTo(std::size_t lRow, VirtualTable::Place iPlace = VirtualTable::Place::Seen);

  const LogHistory* pHistory = nullptr;
  LogFilter aFilter;
  LogRows aRows;
  bool bPasses = true;
  DateTime dtOpened = 0;  // wall time
  wxPanel* fraFilter;
  wxSplitterWindow* pSplitter;
  wxTimer tmrWords;
  struct Choice {
    std::uint32_t lOutcomes;
    LogFilter::Remark iRemark;
  };
  std::vector<Choice> aChoices;  // behind cboOutcome
};
