// MorePages: the viewer's pages that are made when they are looked at: passes, how long sites take, two
// periods side by side, the hours in which failures begin. They keep what they show, so the history may
// change meanwhile.
#pragma once

#include <wx/panel.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "history/LogGrid.h"
#include "history/LogHistory.h"
#include "history/LogHours.h"
#include "history/LogSummary.h"

class CellView;
class VirtualTable;
class wxBoxSizer;
class wxChoice;
class wxSplitterWindow;
class wxTextCtrl;

class MorePage : public wxPanel {
 public:
  explicit MorePage(wxWindow* pParent);

  virtual void ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) = 0;
  virtual void TakeFocus() = 0;
  virtual void SelectAll() {}
  // The chosen rows; where none is, everything.
  virtual std::string CopyText() const = 0;

  // Waits for room: while windows are being built they are tiny, and GTK complains about scroll bars.
  bool Layout() override;

  // To the entries of that moment.
  std::function<void(const std::string& szSite, DateTime dtMoment)> MomentChosen;
  // Something to tell about a cell.
  std::function<void(const std::string& szWords)> Told;

  wxTextCtrl* txtWords;

 protected:
  void ShowWords(const std::vector<std::string>& aSentences, StringId iNote);
  std::string WordsText() const;
  wxBoxSizer* pPageSizer;

 private:
  void FitWords();
};

class GridPage : public MorePage {
 public:
  GridPage(wxWindow* pParent, StringId iTheNote);

  void TakeFocus() override;
  void SelectAll() override;
  std::string CopyText() const override;

  VirtualTable* lvwRows;

 protected:
  void ShowGrid(std::unique_ptr<LogGrid> pNew, const std::vector<std::string>& aSentences);
  virtual void RowChosen(std::size_t lRow) = 0;  // of the grid
  // The table's place; what a page has above or below it goes around.
  wxSplitterWindow* pSplitter;
  std::unique_ptr<LogGrid> pGrid;

 private:
  void PutInOrder();

  StringId iNote;
  std::vector<std::size_t> aOrder;
};

class PassesPage : public GridPage {
 public:
  explicit PassesPage(wxWindow* pParent) : GridPage(pParent, IDS_LOG_PASSES_NOTE) {}
  void ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) override;

 private:
  void RowChosen(std::size_t lRow) override;
};

class PacePage : public GridPage {
 public:
  explicit PacePage(wxWindow* pParent);
  void ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) override;

  CellView* picDays;

 private:
  void RowChosen(std::size_t lRow) override;
  void PlaceSash();
  bool bSashPlaced = false;
};

class PeriodsPage : public GridPage {
 public:
  explicit PeriodsPage(wxWindow* pParent);
  void ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) override;

  wxChoice* cboPeriods;
  // Another pair of periods was chosen: ShowLog is due.
  std::function<void()> PeriodsChosen;

 private:
  void RowChosen(std::size_t lRow) override;
  DateTime dtNow = 0;    // the later period's beginning
  bool bChosen = false;  // by the user; else by what the log holds
};

class HoursPage : public MorePage {
 public:
  explicit HoursPage(wxWindow* pParent);
  void ShowLog(const LogHistory& aHistory, const LogSummary& aSummary) override;
  void TakeFocus() override;
  std::string CopyText() const override;

  CellView* picHours;

 private:
  HourReport aReport;
};
