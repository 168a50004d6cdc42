// frmOptions: the options dialog, four pages over the Settings. OptionsRules judges and stores; the dialog
// asks it when a field is left and at OK, and shows what it says. No pass starts while it is open.
#pragma once

#include <memory>
#include <vector>

#include "editing/OptionsRules.h"
#include "ui/common/frmDialog.h"

class wxCheckBox;
class wxNotebook;
class wxPanel;
class wxRadioButton;
class wxSizer;
class wxStaticText;

// Stops the timer that starts scheduled passes while it lives.
class AutoTimerHold {
 public:
  explicit AutoTimerHold(MainHost& aHost) : Host(aHost) { Host.EnableAutoTimer(false); }
  ~AutoTimerHold() { Host.EnableAutoTimer(true); }
  AutoTimerHold(const AutoTimerHold&) = delete;
  AutoTimerHold& operator=(const AutoTimerHold&) = delete;

 private:
  MainHost& Host;
};

class frmOptions : public frmDialog {
 public:
  // The timer is held until the dialog closes. Not shown yet.
  frmOptions(MainHost& aHost, std::unique_ptr<AutoTimerHold> pHold);

  wxNotebook* tabOptions;
  wxTextCtrl *txtTimerInterval, *txtTimerWarning;
  wxTextCtrl *txtMgrName, *txtMgrEmail, *txtSMTP, *txtSMTPPort;
  wxStaticText* lblMailHint;
  wxButton* cmdTestMail;
  wxRadioButton *optLogDaily, *optLogWeekly, *optNoLogs;
  wxTextCtrl* txtLogPath;
  wxButton* cmdLogDirBrowse;
  wxCheckBox* chkDiskMaxLogFiles;
  wxTextCtrl* txtMaxLogFiles;
  wxCheckBox* chkDiskNoLogDisabled;
  wxRadioButton *optCookieAccept, *optCookieDisable;

 protected:
  void cmdOK_Click() override;
  bool LeaveField(wxWindow* pLeft, wxWindow* pNext) override;
  void Leave() override;

 private:
  struct NumberBox {
    wxTextCtrl* pBox;
    OptionsRules::Field iField;
    std::string szLast;  // the last text that was let in
  };

  // frmOptionsPages
  wxPanel* AddPage(std::int32_t lTab);
  void BuildTimerPage();
  void BuildManagerPage();
  void BuildLogsPage();
  void BuildCookiesPage();
  void LayOutLogFrame(wxPanel* pPage, wxSizer* pColumn);
  void LayOutDiskFrame(wxPanel* pPage, wxSizer* pColumn);

  void BindControls();
  void txtNumber_Change(NumberBox& aBox);
  void cmdLogDirBrowse_Click();
  void cmdTestMail_Click();
  void ShowMailHint();
  void EnableLogControls();

  OptionsRules::Form ReadForm() const;
  void ShowForm(const OptionsRules::Form& aForm);
  void PutNumbers(const OptionsRules::Form& aForm);
  // Runs one check and the question it may lead to. False: the field has the focus again.
  bool CheckField(OptionsRules::Field iField, bool bConfirm, wxWindow* pNext);
  OptionsRules::Answer Ask(const OptionsRules::Finding& aFinding);
  wxTextCtrl* BoxOf(OptionsRules::Field iField) const;
  OptionsRules::Field FieldOf(const wxWindow* pBox) const;
  static void EnterBox(wxTextCtrl* pBox);
  void EnterPage();  // the focus goes where it belongs on the page in front
  void TurnTo(std::size_t iPage);
  // Turns to the box's page; the field that loses the focus is not checked.
  void FocusOn(wxTextCtrl* pBox, bool bSelectAll);

  std::unique_ptr<AutoTimerHold> pTimer;
  const SettingsRecord aOpening;
  OptionsRules::Checks aChecks;
  std::vector<NumberBox> aNumbers;
  const wxTextCtrl* pEdited = nullptr;  // the number box that was changed last
};
