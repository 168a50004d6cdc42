// The options dialog: its pages by keyboard, messages where a field is left and at OK, what is stored, and
// that the schedule stands still meanwhile.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>
#include <wx/notebook.h>
#include <wx/radiobut.h>
#include <wx/stattext.h>

#include "platform/Files.h"
#include "servers/SmtpServer.h"
#include "support/Stored.h"
#include "ui/Program.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/frmOptions.h"

namespace {

frmOptions* OpenOptions(Program& aProgram) {
  aProgram.Run(mE_Options);
  auto* pOptions = Open<frmOptions>();
  EXPECT_TRUE(pOptions && Focused(pOptions->txtTimerInterval));
  const auto* pBox = pOptions->txtTimerInterval;
  EXPECT_TRUE(Until([&] { return pBox->GetStringSelection() == pBox->GetValue(); }));
  EXPECT_FALSE(aProgram.Main().TimerAutoCheck.IsRunning());
  return pOptions;
}

// What the box says that then comes.
std::string Press(wxButton& aButton, const std::string& szAnswer) {
  Answers aAnswers({szAnswer});
  wxCommandEvent aClick(wxEVT_BUTTON, aButton.GetId());
  aButton.ProcessWindowEvent(aClick);
  return aAnswers.aSaid.at(0);
}

bool Closed(Program& aProgram) {
  return Until([&] { return !Open<frmOptions>() && aProgram.Main().IsEnabled(); }) &&
         aProgram.Main().TimerAutoCheck.IsRunning();
}

}  // namespace

TEST(Options, PagesTurnByKeysAndOKStoresAndStartsTheScheduleAgain) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  Type("90");
  Key(WXK_PAGEDOWN, wxMOD_CONTROL);
  ASSERT_TRUE(Focused(pOptions->txtMgrName));
  Type("Ann");
  Key(WXK_PAGEDOWN, wxMOD_CONTROL);
  pOptions->optLogWeekly->SetValue(true);
  Key(WXK_PAGEDOWN, wxMOD_CONTROL);
  pOptions->optCookieDisable->SetValue(true);
  EXPECT_EQ(pOptions->lHelpContext, 20004) << "the help is of the page";
  Key(WXK_RETURN);
  ASSERT_TRUE(Closed(aProgram));
  EXPECT_EQ(Stored::Get(ProductKeys::szTimer, "Interval"), "90");
  EXPECT_EQ(Stored::Get(ProductKeys::szManager, "Name"), "Ann");
  EXPECT_EQ(Settings.LogPeriod * 10 + Settings.AllowType, 22);
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
    std::size_t iPage;
    wxTextCtrl *pLeft, *pNext;
    std::string szTyped, szMessage, szAnswer, szCorrected;
    bool bHeld;
  } aCases[] = {
      {0, pOptions->txtTimerInterval, pOptions->txtMgrName, "2000",
       "Time Interval has to be between 5 minutes and 1425 minutes.|The field now says 1425.", "ok", "1425",
       true},
      {2, pOptions->txtMaxLogFiles, pOptions->txtLogPath, "30", szHigh, "yes", "30", true},
      {2, pOptions->txtLogPath, pOptions->txtMaxLogFiles, szFolder, szCreate, "cancel", szFolder, true},
      {2, pOptions->txtLogPath, pOptions->txtMaxLogFiles, szFolder, szCreate, "yes", szFolder, false}};
  for (const auto& aCase : aCases) {
    pOptions->tabOptions->SetSelection(aCase.iPage);
    Settle();
    aCase.pLeft->SetFocus();
    ASSERT_TRUE(Focused(aCase.pLeft));
    Settle();
    const auto szBefore = aCase.pLeft->GetValue();
    aCase.pLeft->ChangeValue(ToWx(aCase.szTyped));
    Answers aAnswers({aCase.szAnswer});
    aCase.pNext->SetFocus();
    EXPECT_TRUE(Until([&] { return !aAnswers.aSaid.empty(); }));
    Settle();
    EXPECT_EQ(aAnswers.aSaid, Texts{aCase.szMessage});
    EXPECT_EQ(TextOf(aCase.pLeft), aCase.szCorrected) << aCase.szMessage;
    EXPECT_TRUE(!aCase.bHeld || Focused(aCase.pLeft)) << aCase.szMessage;
    aCase.pLeft->ChangeValue(szBefore);
  }
  EXPECT_TRUE(Files::FolderExists(szFolder));
  pOptions->cmdCancel->SetFocus();  // asks nothing
  ASSERT_TRUE(Focused(pOptions->cmdCancel));
  Key(WXK_SPACE);
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(Settings.Email, "");
}

TEST(Options, OKShowsThePageThatFailsAndStoresNothing) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  pOptions->txtMgrName->ChangeValue("Ann");
  pOptions->txtMgrEmail->ChangeValue("wrong");
  EXPECT_EQ(Press(*pOptions->cmdOK, "ok"), "Please enter a valid e-mail address.");
  EXPECT_EQ(pOptions->tabOptions->GetSelection(), 1);
  EXPECT_TRUE(Focused(pOptions->txtMgrEmail));
  EXPECT_EQ(pOptions->txtMgrEmail->GetStringSelection(), "wrong");
  EXPECT_EQ(Settings.Name, "") << "stored though a check failed";
  pOptions->txtMgrEmail->ChangeValue("");
  pOptions->txtLogPath->ChangeValue(ToWx(aProgram.aHome.Path("new")));
  Press(*pOptions->cmdOK, "yes");
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(Settings.LogPath + Settings.Name, aProgram.aHome.Path("new") + "Ann");
}

// One box, about the field that was edited, with its page in front; the answer No is asked about again at OK.
TEST(Options, OKAsksOnceAboutWhatWasEdited) {
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  pOptions->tabOptions->SetSelection(2);
  ASSERT_TRUE(Focused(pOptions->txtLogPath));
  const auto szMissing = aProgram.aHome.Path("missing");
  pOptions->txtLogPath->ChangeValue(ToWx(szMissing));
  Answers aAnswers({"no", "no"});
  pOptions->tabOptions->SetSelection(0);
  EXPECT_TRUE(Focused(pOptions->txtTimerInterval)) << "No leaves the field";
  EXPECT_TRUE(Until([&] { return aAnswers.aSaid.size() == 1; }));
  Settle();
  EXPECT_EQ(pOptions->tabOptions->GetSelection(), 0);
  Key(WXK_RETURN);
  EXPECT_TRUE(Until([&] { return aAnswers.aSaid.size() == 2; }));
  EXPECT_TRUE(Focused(pOptions->txtLogPath));
  Settle();
  EXPECT_EQ(aAnswers.aSaid.size(), 2U);
  EXPECT_EQ(pOptions->tabOptions->GetSelection(), 2);
  EXPECT_NE(Settings.LogPath, szMissing);
}

TEST(Options, MailSettingsAreTriedBeforeTheyAreStored) {
  SmtpServer aServer;
  Program aProgram;
  auto* pOptions = OpenOptions(aProgram);
  EXPECT_TRUE(Press(*pOptions->cmdTestMail, "ok").starts_with("No mail is sent until"));
  pOptions->txtMgrEmail->ChangeValue("ann@example.org");
  pOptions->txtSMTP->ChangeValue("127.0.0.1");
  pOptions->txtSMTPPort->ChangeValue(std::to_string(aServer.Port()));
  EXPECT_TRUE(Press(*pOptions->cmdTestMail, "ok")
                  .starts_with("The test mail went out to ann@example.org through 127.0.0.1:"));
  EXPECT_EQ(FromWx(pOptions->lblMailHint->GetLabel()), "");
  EXPECT_EQ(aServer.Mails().size(), 1U);
  EXPECT_EQ(Settings.Email, "") << "tried, not stored";
  pOptions->Close();
  EXPECT_TRUE(Closed(aProgram));
}

TEST(Options, LogControlsFollowThePeriodAndEveryWayOutStartsTheSchedule) {
  Program aProgram;
  for (int lWay = 0; lWay < 3; ++lWay) {
    auto* pOptions = OpenOptions(aProgram);
    pOptions->txtMgrName->ChangeValue("Ann");
    pOptions->tabOptions->SetSelection(2);
    ASSERT_TRUE(Focused(pOptions->txtLogPath));
    Click(pOptions->optNoLogs);
    EXPECT_FALSE(pOptions->txtLogPath->IsEnabled() || pOptions->txtMaxLogFiles->IsEnabled());
    Click(pOptions->optLogDaily);
    EXPECT_TRUE(pOptions->txtLogPath->IsEnabled() && pOptions->txtMaxLogFiles->IsEnabled());
    if (lWay == 0) Key(WXK_ESCAPE);
    if (lWay == 1) pOptions->Close();
    if (lWay == 2) pOptions->Destroy();
    EXPECT_TRUE(Closed(aProgram)) << lWay;
    EXPECT_EQ(Settings.Name, "");
  }
}
