// The options dialog: its pages by keyboard, every message where the field is left and at OK, what is stored,
// and that the schedule stands still meanwhile.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/notebook.h>
#include <wx/radiobut.h>

#include "app/Dialogs.h"
#include "dialogs/frmOptions.h"
#include "platform/Files.h"
#include "resources/TextGlue.h"
#include "support/Stored.h"

namespace {

frmOptions* OpenOptions(Program& aProgram) {
  aProgram.Run(MenuCommand::mE_Options);
  auto* pOptions = Open<frmOptions>();
  EXPECT_TRUE(pOptions && Focused(pOptions->txtTimerInterval));
  EXPECT_EQ(pOptions->txtTimerInterval->GetStringSelection(), pOptions->txtTimerInterval->GetValue());
  EXPECT_FALSE(aProgram.Main().TimerAutoCheck.IsRunning());
  return pOptions;
}

bool Closed(Program& aProgram) {
  return Until([&] { return !Open<frmOptions>() && aProgram.Main().IsEnabled(); }, 2) &&
         aProgram.Main().TimerAutoCheck.IsRunning();
}

}  // namespace

TEST(Options, MailIsSetByKeyboardAlone) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  std::vector<std::int32_t> aTopics;
  aTopics.push_back(pOptions->lHelpContext);
  Type("90");
  Key(WXK_PAGEDOWN, wxMOD_CONTROL);
  ASSERT_TRUE(Focused(pOptions->txtMgrName));
  aTopics.push_back(pOptions->lHelpContext);
  Type("Ann");
  Key(WXK_TAB);
  ASSERT_TRUE(Focused(pOptions->txtMgrEmail));
  pOptions->txtMgrEmail->WriteText("a@b.test");
  Key(WXK_TAB);
  Type("mail.test");
  Key(WXK_TAB);
  Type("2525");
  Key(WXK_PAGEDOWN, wxMOD_CONTROL);
  ASSERT_TRUE(Focused(pOptions->txtLogPath));
  aTopics.push_back(pOptions->lHelpContext);
  Key(WXK_PAGEDOWN, wxMOD_CONTROL);
  PumpFor(0.1);
  aTopics.push_back(pOptions->lHelpContext);
  EXPECT_EQ(aTopics, (std::vector<std::int32_t>{20001, 20002, 20003, 20004}));
  pOptions->optCookieDisable->SetValue(true);
  Key(WXK_RETURN);
  ASSERT_TRUE(Closed(aProgram));
  EXPECT_EQ(Settings.Name + " " + Settings.Email + " " + Settings.SMTP, "Ann a@b.test mail.test");
  EXPECT_EQ(Settings.SMTPPort, 2525);
  EXPECT_EQ(Settings.AllowType, 2);
  EXPECT_EQ(Stored::Get(ProductKeys::szTimer, "Interval"), "90");
  EXPECT_EQ(aProgram.Panel(2).find("Next: "), 0U);
}

TEST(Options, LeavingAFieldChecksIt) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  const std::string szFolder = aProgram.aHome.Path("logs2");
  const std::string szCreate = "The folder " + szFolder + " does not exist.\n\nCreate it now?";
  const std::string szHigh =
      "A number beyond 25 is very high and defeats the purpose of disk conservation.\n"
      "Would you like to change the number to a smaller number?";
  const struct {
    wxTextCtrl *pLeft, *pNext;
    std::string szTyped, szMessage;
    int lAnswer;
    std::string szCorrected;
    bool bHeld;
  } aCases[] = {
      {pOptions->txtTimerInterval, pOptions->txtMgrName, "2000",
       "Time Interval has to be between 5 minutes and 1425 minutes.", wxID_OK, "1425", true},
      {pOptions->txtTimerInterval, pOptions->txtMgrName, "14",
       "The Auto-Check Interval must be greater than the Warning Alert Interval.", wxID_OK, "14", true},
      {pOptions->txtTimerInterval, pOptions->txtTimerWarning, "14",
       "The Auto-Check Interval must be greater than the Warning Alert Interval.", wxID_OK, "14", false},
      {pOptions->txtTimerWarning, pOptions->txtTimerInterval, "15",
       "The Warning Interval must be less than the Timer Interval.", wxID_OK, "15", false},
      {pOptions->txtTimerInterval, pOptions->txtTimerWarning, "100", "", 0, "100", false},
      {pOptions->txtTimerWarning, pOptions->txtMgrName, "70", "Please enter an integer from 5 to 60.",
       wxID_OK, "60", true},
      {pOptions->txtMgrEmail, pOptions->txtMgrName, "nobody@home", "Please enter a valid e-mail address.",
       wxID_OK, "nobody@home", true},
      {pOptions->txtMgrEmail, pOptions->txtMgrName, "", "", 0, "", false},
      {pOptions->txtMaxLogFiles, pOptions->txtLogPath, "0",
       "A minimum of 1 is required in the maximum log fiels field.", wxID_OK, "1", true},
      {pOptions->txtMaxLogFiles, pOptions->txtLogPath, "5000", "A maximum of 3000 can be set in this field.",
       wxID_OK, "3000", true},
      {pOptions->txtMaxLogFiles, pOptions->txtLogPath, "30", szHigh, wxID_YES, "30", true},
      {pOptions->txtMaxLogFiles, pOptions->txtLogPath, "30", szHigh, wxID_NO, "30", false},
      {pOptions->txtLogPath, pOptions->txtMaxLogFiles, szFolder, szCreate, wxID_CANCEL, szFolder, true},
      {pOptions->txtLogPath, pOptions->txtMaxLogFiles, szFolder, szCreate, wxID_NO, szFolder, false},
      {pOptions->txtLogPath, pOptions->txtMaxLogFiles, szFolder, szCreate, wxID_YES, szFolder, false},
  };
  for (const auto& aCase : aCases) {
    for (std::size_t i = 0; i < 4; ++i)
      if (pOptions->tabOptions->GetPage(i)->IsDescendant(aCase.pLeft)) pOptions->tabOptions->SetSelection(i);
    PumpFor(0.05);
    aCase.pLeft->SetFocus();
    PumpFor(0.05);
    aCase.pLeft->ChangeValue(ToWx(aCase.szTyped));
    Replies aAnswers(aCase.szMessage.empty() ? std::vector<Replies::Reply>{}
                                             : std::vector<Replies::Reply>{{aCase.lAnswer}});
    aCase.pNext->SetFocus();
    PumpFor(0.1);
    EXPECT_EQ(aAnswers.aTexts, aCase.szMessage.empty() ? std::vector<std::string>{}
                                                       : std::vector<std::string>{aCase.szMessage});
    EXPECT_EQ(TextOf(aCase.pLeft), aCase.szCorrected) << aCase.szMessage;
    if (aCase.bHeld) {
      EXPECT_TRUE(Focused(aCase.pLeft)) << aCase.szMessage;
    }
    aCase.pLeft->ChangeValue(aCase.pLeft == pOptions->txtTimerWarning ? "15"
                             : aCase.pLeft == pOptions->txtMgrEmail   ? ""
                                                                      : aCase.pLeft->GetValue());
    if (aCase.pLeft == pOptions->txtMaxLogFiles) aCase.pLeft->ChangeValue("7");
    if (aCase.pLeft == pOptions->txtTimerInterval && aCase.bHeld) aCase.pLeft->ChangeValue("100");
    if (aCase.pLeft == pOptions->txtLogPath) aCase.pLeft->ChangeValue(ToWx(aProgram.aHome.Folder()));
  }
  EXPECT_TRUE(Files::FolderExists(szFolder));
  pOptions->txtMgrEmail->SetFocus();
  PumpFor(0.05);
  pOptions->txtMgrEmail->ChangeValue("wrong");
  pOptions->cmdCancel->SetFocus();  // asks nothing
  PumpFor(0.1);
  Key(WXK_SPACE);
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(Settings.Email, "");
}

TEST(Options, OKShowsThePageThatFailsAndStoresNothing) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  pOptions->txtMgrName->ChangeValue("Ann");
  const auto Press = [&](std::vector<Replies::Reply> aReplies) {
    Replies aAnswers(std::move(aReplies));
    wxCommandEvent aClick(wxEVT_BUTTON, pOptions->cmdOK->GetId());
    pOptions->cmdOK->ProcessWindowEvent(aClick);
    return aAnswers.aTexts.empty() ? std::string() : aAnswers.aTexts.back();
  };
  pOptions->txtMgrEmail->ChangeValue("wrong");
  EXPECT_EQ(Press({{wxID_OK}}), "Please enter a valid e-mail address.");
  EXPECT_EQ(pOptions->tabOptions->GetSelection(), 1);
  EXPECT_TRUE(Focused(pOptions->txtMgrEmail));
  EXPECT_EQ(pOptions->txtMgrEmail->GetStringSelection(), "wrong");
  pOptions->txtMgrEmail->ChangeValue("");
  pOptions->txtLogPath->ChangeValue("");
  EXPECT_EQ(Press({{wxID_OK}}), "Please enter the folder to store the log files.");
  EXPECT_EQ(pOptions->tabOptions->GetSelection(), 2);
  EXPECT_EQ(Settings.Name, "") << "stored though a check failed";
  pOptions->txtLogPath->ChangeValue(ToWx(aProgram.aHome.Path("new")));
  EXPECT_EQ(Press({{wxID_CANCEL}}).substr(0, 11), "The folder ");
  ASSERT_TRUE(Open<frmOptions>());
  Press({{wxID_YES}});
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(Settings.LogPath, aProgram.aHome.Path("new"));
  EXPECT_EQ(Stored::Get(ProductKeys::szManager, "Name"), "Ann");
}

TEST(Options, KeysThatAreNoDigitsAreTakenBack) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  pOptions->txtTimerInterval->WriteText("1x");  // a bell
  EXPECT_EQ(TextOf(pOptions->txtTimerInterval), "60");
  Replies aAnswers({{wxID_OK}, {wxID_OK}});
  pOptions->txtTimerWarning->WriteText("x");
  PumpFor(0.1);
  pOptions->txtMaxLogFiles->WriteText("-");
  PumpFor(0.1);
  EXPECT_EQ(aAnswers.aTexts, (std::vector<std::string>{"Please enter an integer from 5 to 60.",
                                                       "You can only enter Integers in this field."}));
  EXPECT_EQ(TextOf(pOptions->txtTimerWarning) + TextOf(pOptions->txtMaxLogFiles), "157");
}

TEST(Options, LogControlsFollowThePeriod) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  pOptions->tabOptions->SetSelection(2);
  ASSERT_TRUE(Focused(pOptions->txtLogPath));
  Click(pOptions->optNoLogs);
  const auto Enabled = [&] {
    std::string szOn;
    for (wxWindow* pControl :
         {static_cast<wxWindow*>(pOptions->txtLogPath), static_cast<wxWindow*>(pOptions->cmdLogDirBrowse),
          static_cast<wxWindow*>(pOptions->chkDiskMaxLogFiles),
          static_cast<wxWindow*>(pOptions->txtMaxLogFiles),
          static_cast<wxWindow*>(pOptions->chkDiskNoLogDisabled)})
      szOn += pControl->IsThisEnabled() ? "1" : "0";
    return szOn;
  };
  EXPECT_EQ(Enabled(), "00000");
  pOptions->tabOptions->SetSelection(0);
  PumpFor(0.1);
  pOptions->tabOptions->SetSelection(2);
  EXPECT_TRUE(Focused(pOptions->optNoLogs));
  Click(pOptions->optLogWeekly);
  EXPECT_EQ(Enabled(), "11111");
  Click(pOptions->chkDiskMaxLogFiles);
  EXPECT_EQ(Enabled(), "11101");
  const auto szBefore = TextOf(pOptions->txtLogPath);
  Replies aAnswers(std::vector<Replies::Reply>{{wxID_CANCEL}});
  Click(pOptions->cmdLogDirBrowse);
  EXPECT_EQ(TextOf(pOptions->txtLogPath), szBefore);
  EXPECT_EQ(aAnswers.aTexts.at(0), "Please select the folder to store the log files.");
  Click(pOptions->cmdOK);
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(Settings.LogPeriod * 10 + Settings.DiskLogMaxFiles, 20);
}

TEST(Options, EveryWayOutStartsTheScheduleAgain) {
  Program aProgram;
  for (int lWay = 0; lWay < 3; ++lWay) {
    auto* pOptions = OpenOptions(aProgram);
    pOptions->txtTimerInterval->ChangeValue("3");
    if (lWay == 0) Key(WXK_ESCAPE);
    if (lWay == 1) pOptions->Close();
    if (lWay == 2) pOptions->Destroy();
    EXPECT_TRUE(Closed(aProgram)) << lWay;
    EXPECT_EQ(Settings.Interval, 60);
  }
}
