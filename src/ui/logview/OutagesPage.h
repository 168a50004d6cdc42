// OutagesPage: every outage with its start, end, length and mails; on demand also the single failures.
#pragma once

#include <wx/panel.h>

#include <functional>
#include <string>
#include <vector>

#include "history/LogSummary.h"
#include "history/LogTables.h"

class VirtualTable;
class wxChoice;
class wxTextCtrl;

class OutagesPage : public wxPanel {
 public:
  explicit OutagesPage(wxWindow* pParent);

  // nullptr: no log is open. It has to stay until the next call.
  void ShowLog(const LogSummary* pNew);
  std::function<void(const std::string& szSite, DateTime dtMoment)> OutageChosen;

  VirtualTable* lvwOutages;
  wxChoice* cboRuns;
  wxTextCtrl* txtDetails;

 private:
  void Refill();
  void ShowDetails();

  const LogSummary* pSummary = nullptr;
  std::vector<LogTables::OutageRow> aRows;
};
