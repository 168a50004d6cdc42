// SummaryPage: what a history says as a whole: how things stand, what was covered, each site in a row and as
// a strip. OutagesPage: every outage with its start, end and length.
#pragma once

#include <wx/panel.h>

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "history/LogSummary.h"

class StripView;
class VirtualTable;
class wxSplitterWindow;
class wxStaticBitmap;
class wxStaticText;
class wxTextCtrl;

class SummaryPage : public wxPanel {
 public:
  explicit SummaryPage(wxWindow* pParent);

  // nullptr: no log is open. It has to stay until the next call.
  void ShowLog(const LogSummary* pNew);
  // A site was chosen to be looked at.
  std::function<void(const std::string& szSite)> SiteChosen;

  wxStaticText* lblHeadline;
  wxTextCtrl* txtFacts;
  VirtualTable* lvwSites;
  StripView* picStrips;

 private:
  std::string Cell(std::size_t lRow, int iColumn) const;
  void ShowFacts();
  void PlaceSash();

  const LogSummary* pSummary = nullptr;
  std::vector<std::size_t> aOrder;
  wxStaticBitmap* imgLight;
  wxSplitterWindow* pSplitter;
  bool bSashPlaced = false;
};

class OutagesPage : public wxPanel {
 public:
  explicit OutagesPage(wxWindow* pParent);

  void ShowLog(const LogSummary* pNew);
  std::function<void(const std::string& szSite, DateTime dtMoment)> OutageChosen;

  VirtualTable* lvwOutages;

 private:
  struct Place {
    std::size_t lSite, lOutage;
  };
  std::string Cell(std::size_t lRow, int iColumn) const;
  const Outage& OutageOf(std::size_t lRow) const;

  const LogSummary* pSummary = nullptr;
  std::vector<Place> aPlaces;  // the latest first
};
