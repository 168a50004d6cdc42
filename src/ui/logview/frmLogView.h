// frmLogView: the log viewer's window. It shows one history, made of one or several logs, as entries, as a
// summary and as a table of outages, follows it as it grows, and saves it as a web page or a table.
#pragma once

#include <wx/frame.h>
#include <wx/infobar.h>
#include <wx/timer.h>

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "history/LogHistory.h"
#include "history/LogSummary.h"
#include "ui/logview/OpenViewer.h"

class EntriesPage;
class HoursPage;
class MorePage;
class OutagesPage;
class PacePage;
class PassesPage;
class PeriodsPage;
class SummaryPage;
class wxNotebook;

class frmLogView : public wxFrame {
 public:
  frmLogView();
  ~frmLogView() override;  // the help window goes with it

  // Files and folders as one history. False, after a message, when nothing of it can be shown; what was shown
  // before stays.
  bool OpenLogs(const std::vector<std::string>& aPaths);
  // Writes the whole history, whatever the filter. False after a message.
  bool SavePage(const std::string& szPath);
  bool SaveTable(const std::string& szPath);
  // The entries of a site, by its address with or without "http://".
  void ShowSite(const std::string& szAddress);
  // The open dialog; what mF_Open does.
  void AskForLog();

  enum class Command : int {
    mF_Open = 4000,
    mF_OpenFolder,
    mF_Week,
    mF_Month,
    mF_SavePage,
    mF_SaveTable,
    mF_Exit,
    mE_Copy,
    mE_SelectAll,
    mE_Find,
    mE_FindNext,
    mE_FindPrevious,
    mE_NextFailure,
    mE_PreviousFailure,
    mV_Entries,
    mV_Summary,
    mV_Outages,
    mV_PagePasses,
    mV_PagePace,
    mV_PageHours,
    mV_PagePeriods,
    mV_FilterSite,
    mV_FilterOutcome,
    mV_FilterWords,
    mV_Everything,
    mV_Passes,
    mV_Follow,
    mV_ReadAgain,
    mH_Topics,
    lEnd
  };
  void RunCommand(Command iCommand);
  // What Ctrl+C would put on the clipboard now.
  std::string CopyText() const;
  // Reads what is new; the timer does so every second.
  void tmrFollow_Timer();
  // Does what a viewer that was started for this log asks of the one that shows it.
  void tmrAsked_Timer();

  const LogHistory* History() const { return pHistory.get(); }
  const std::string& Notice() const { return szNotice; }

  wxNotebook* tabPages;
  EntriesPage* pixEntries;
  SummaryPage* pixSummary;
  OutagesPage* pixOutages;
  PassesPage* pixPasses;
  PacePage* pixPace;
  HoursPage* pixHours;
  PeriodsPage* pixPeriods;

 private:
  void BuildMenus();
  void BuildPages();
  void BuildStatusBar();
  void FillMenu(wxMenu& aMenu) const;
  void Menu_Click(wxCommandEvent& aEvent);
  bool RunFileCommand(Command iCommand);
  bool RunViewCommand(Command iCommand);
  void RunEntriesCommand(Command iCommand);
  void ShowHelp();
  void SelectAll();
  void OpenRecent(std::int32_t lDays);
  void AskForFolder();
  void AskForTarget(bool bPage);
  std::string StartFolder() const;

  std::unique_ptr<LogHistory> ReadLogs(const std::vector<std::string>& aPaths);
  void SayWhyNot(const LogHistory& aFailed, const std::vector<std::string>& aPaths);
  void ReadAgain();
  bool Writable(const std::string& szPath);
  bool Written(bool bDone, const std::string& szPath, std::int32_t lNotice);
  std::vector<std::string> NamesInFolders() const;
  std::vector<std::string> LaterLogs() const;
  bool GoOnToNextLog();
  void FindDue(const LogHistory& aTold);
  bool OverdueNow();
  void ShowOverdue();
  const LogSummary& Summary();
  void ShowSummary();
  void BuildMorePages();
  MorePage* PageOf(Command iCommand) const;
  MorePage* MoreShown() const;  // nullptr: one of the first three pages is
  void ShowMore();
  void ShowCounts();
  void ShowNotice();
  void ShowTitle();
  void Say(std::int32_t lText, const std::string& szValue);
  wxString FittedNotice();
  void Tell(const std::string& szText, bool bWarning);
  void EnableCommands();

  std::unique_ptr<LogHistory> pHistory;
  std::unique_ptr<LogSummary> pSummary;  // made when it is looked at
  std::vector<std::string> aOpened;
  std::vector<std::string> aFolderNames;  // of the logs in the opened folders
  std::vector<std::string> aLaterLogs;    // than the last one opened, that were there when it was
  // The last moment the log tells of, and when the next pass should have begun; see LogGaps. Known until it
  // grows.
  DateTime dtLast = 0, dtNextDue = 0;
  bool bDueKnown = false;
  std::string szOverdueTold;  // the notice that was last shown about it; empty: none
  bool bFollow = true;
  std::vector<MorePage*> aMore;         // behind the first three
  std::set<const MorePage*> aUpToDate;  // those that show what is of pSummary
  bool bSummaryShown = false;           // what the pages show is of pSummary
  std::int64_t lSummaryCost = 0;        // milliseconds it took last
  std::int64_t lSummaryDone = 0;        // when, steady milliseconds
  wxInfoBar* pNotice;
  std::string szNotice;
  wxTimer tmrFollow;
  wxTimer tmrAsked;
  OpenViewer aOpenViewer;
};
