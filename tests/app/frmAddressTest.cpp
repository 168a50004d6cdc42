// The site editor as an operator meets it: by keyboard, with every message, beside a running pass, and
// through every way out.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>

#include "app/Dialogs.h"
#include "dialogs/frmAddress.h"
#include "dialogs/frmNotice.h"
#include "resources/TextGlue.h"
#include "support/FaultServer.h"

namespace {

frmAddress* OpenEditor(Program& aProgram, std::int32_t lSlot = 0) {
  if (lSlot > 0) aProgram.Main().lvwMain->SelectSlot(lSlot);
  aProgram.Run(lSlot > 0 ? MenuCommand::mE_EditAddress : MenuCommand::mF_NewAddress);
  auto* pEditor = Open<frmAddress>();
  EXPECT_TRUE(pEditor && Focused(pEditor->txtURL));
  return pEditor;
}

std::string Boxes(const frmAddress* pEditor) {
  return TextOf(pEditor->txtURL) + " " + TextOf(pEditor->txtIP1) + "." + TextOf(pEditor->txtIP2) + "." +
         TextOf(pEditor->txtIP3) + "." + TextOf(pEditor->txtIP4) + " " + TextOf(pEditor->txtTimeOut) +
         (pEditor->chkEnable->GetValue() ? " on" : " off");
}

bool Closed(Program& aProgram) {
  return Until([&] { return !Open<frmAddress>() && aProgram.Main().IsEnabled(); }, 2);
}

}  // namespace

TEST(Editor, ASiteIsEnteredByKeyboardAlone) {
  Program aProgram;
  auto* pEditor = OpenEditor(aProgram);
  EXPECT_EQ(FromWx(pEditor->GetTitle()), "New Site");
  EXPECT_EQ(Boxes(pEditor), " ... 60 on");
  EXPECT_FALSE(aProgram.Main().IsEnabled());
  Type("www.a.test");
  Key(WXK_TAB);
  Type("192");
  ASSERT_TRUE(Focused(pEditor->txtIP2));
  Type(".168.0.7");  // the first dot comes from habit: the focus has gone on already
  EXPECT_EQ(Boxes(pEditor), "www.a.test 192.168.0.7 60 on");
  const struct {
    int lKey;
    wxTextCtrl* pBox;
  } aMoves[] = {{WXK_RIGHT, pEditor->txtIP4}, {WXK_RETURN, pEditor->txtIP4}, {WXK_LEFT, pEditor->txtIP3},
                {WXK_UP, pEditor->txtIP2},    {WXK_LEFT, pEditor->txtIP1},   {WXK_UP, pEditor->txtURL}};
  for (const auto& aMove : aMoves) {
    Key(aMove.lKey);
    ASSERT_TRUE(Focused(aMove.pBox)) << aMove.lKey;
    if (aMove.pBox != pEditor->txtIP4) {
      EXPECT_EQ(aMove.pBox->GetStringSelection(), aMove.pBox->GetValue());
    }
  }
  Key(WXK_TAB);
  for (wxTextCtrl* pBox : {pEditor->txtIP2, pEditor->txtIP3, pEditor->txtIP4}) {
    Key(pBox == pEditor->txtIP3 ? WXK_RETURN : WXK_DOWN);
    ASSERT_TRUE(Focused(pBox));
  }
  Key('x');
  Key('9');
  Key(WXK_TAB);
  Type("5x0");
  EXPECT_EQ(Boxes(pEditor), "www.a.test 192.168.0.9 50 on");
  Key(WXK_TAB);
  Key(WXK_SPACE);
  Key(WXK_TAB);
  ASSERT_TRUE(Focused(pEditor->cmdOK));
  Key(WXK_RETURN);
  ASSERT_TRUE(Closed(aProgram));
  EXPECT_EQ(aProgram.RowText(1), "[ ] http://www.a.test (192.168.0.9) none: Added");
  EXPECT_EQ(aProgram.Slots(), "1*");
  EXPECT_EQ(aSites[1].TimeOut, 50);
  EXPECT_TRUE(Focused(aProgram.Main().lvwMain));
}

TEST(Editor, EveryRefusalKeepsItOpen) {
  Program aProgram({Site("taken.test"), Site("own.test", 1, 1)});
  const struct {
    const char *szURL, *szIP1, *szTimeOut, *szMessage, *szBoxes;
    bool bAtTimeOut;
  } aCases[] = {
      {" ", "", "60", "You need to complete the URL Field.", " ... 60 on", false},
      {"TAKEN.test", "7", "60", "The URL http://TAKEN.test already exists!\r\nPlease enter another URL.",
       "TAKEN.test 7.0.0.0 60 on", false},
      {"x.test", "", "", "The Time Out field cannot be left blank.", "x.test ... 60 on", true},
      {"x.test", "", "0", "Time Out values must be from 1 to 1800 seconds.", "x.test ... 1 on", true},
      {"x.test", "", "5000", "Time Out values must be from 1 to 1800 seconds.", "x.test ... 1800 on", true},
  };
  auto* pEditor = OpenEditor(aProgram);
  for (const auto& aCase : aCases) {
    pEditor->txtURL->ChangeValue(aCase.szURL);
    pEditor->txtIP1->ChangeValue(aCase.szIP1);
    for (wxTextCtrl* pBox : {pEditor->txtIP2, pEditor->txtIP3, pEditor->txtIP4})
      pBox->ChangeValue("");
    pEditor->txtTimeOut->ChangeValue(aCase.szTimeOut);
    Key(WXK_RETURN);  // OK from a box, which is not left first
    EXPECT_EQ(CloseNotice(), aCase.szMessage);
    EXPECT_EQ(Boxes(pEditor), aCase.szBoxes);
    auto* pBox = aCase.bAtTimeOut ? pEditor->txtTimeOut : pEditor->txtURL;
    ASSERT_TRUE(Focused(pBox)) << aCase.szMessage;
    EXPECT_EQ(pBox->GetStringSelection(), pBox->GetValue());
  }
  pEditor->txtURL->ChangeValue(wxString('k', 300));
  Key(WXK_RETURN);
  EXPECT_EQ(CloseNotice(), LoadResString(IDS_URL_TOO_LONG));
  EXPECT_EQ(lSiteCount, 2);
  Key(WXK_ESCAPE);
  EXPECT_TRUE(Closed(aProgram));
}

TEST(Editor, LeavingTheTimeOutChecksItAndCancelDoesNot) {
  Program aProgram;
  auto* pEditor = OpenEditor(aProgram);
  pEditor->txtTimeOut->SetFocus();
  for (const auto& [szTyped, szLeft] : {std::pair("", "60"), {"0", "1"}, {"9999", "1800"}}) {
    pEditor->txtTimeOut->ChangeValue(szTyped);
    Key(WXK_TAB);
    EXPECT_NE(CloseNotice(), "") << szTyped;
    ASSERT_TRUE(Focused(pEditor->txtTimeOut));
    EXPECT_EQ(TextOf(pEditor->txtTimeOut), szLeft);
  }
  pEditor->txtTimeOut->ChangeValue("0");
  pEditor->cmdCancel->SetFocus();
  EXPECT_EQ(NoticeText(), "");
  pEditor->txtTimeOut->SetFocus();
  PumpFor(0.05);
  Click(pEditor->cmdOK);  // checks by itself, so there is one message and not two
  EXPECT_EQ(CloseNotice(), "Time Out values must be from 1 to 1800 seconds.");
  EXPECT_EQ(NoticeText(), "");
  pEditor->txtTimeOut->ChangeValue("0");
  Click(pEditor->cmdCancel);
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(lSiteCount, 0);
}

TEST(Editor, TheAgentIsTakenAwayAndSaidOnce) {
  Program aProgram;
  auto* pEditor = OpenEditor(aProgram);
  pEditor->txtURL->WriteText("HTTP://a.test/http:");
  EXPECT_EQ(CloseNotice(), "Do not enter the agent, \"http://\".");
  EXPECT_EQ(NoticeText(), "");
  EXPECT_EQ(TextOf(pEditor->txtURL), "a.test/");
  ASSERT_TRUE(Focused(pEditor->txtURL));
  Type("b");
  EXPECT_EQ(TextOf(pEditor->txtURL), "a.test/b") << "the caret stands at the end";
}

TEST(Editor, EditsRenameAndKeepWhatBelongs) {
  Program aProgram({Site("a.test", 1, 1, "1.2.3.4"), Site("x\\y", 0, 2), Site("caf\xE9.test", 1, 3)});
  const struct {
    std::int32_t lSlot;
    const char *szURL, *szRow;
  } aCases[] = {{1, nullptr, "[x] http://a.test (1.2.3.4) Green: Edited"},
                {1, "A.test", "[x] http://A.test (1.2.3.4) none: Edited"},
                {2, "X%5cy", "[ ] http://X%5cy none: Edited"},
                {3, nullptr, "[x] http://caf\xE9.test Red: Edited"},
                {3, "z.test", "[x] http://z.test none: Edited"}};
  for (const auto& aCase : aCases) {
    auto* pEditor = OpenEditor(aProgram, aCase.lSlot);
    EXPECT_EQ(FromWx(pEditor->GetTitle()), "Edit Site");
    if (aCase.szURL) pEditor->txtURL->ChangeValue(aCase.szURL);
    Key(WXK_RETURN);
    ASSERT_TRUE(Closed(aProgram)) << NoticeText();
    EXPECT_EQ(aProgram.RowText(aCase.lSlot), aCase.szRow);
  }
  auto* pEditor = OpenEditor(aProgram, 3);
  pEditor->txtURL->ChangeValue("x\\Y");
  Key(WXK_RETURN);
  EXPECT_NE(CloseNotice().find("already exists!"), std::string::npos);
  Key(WXK_ESCAPE);
  ASSERT_TRUE(Closed(aProgram));
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(true, true);
  EXPECT_EQ(aSites[1].URL + aSites[2].URL + aSites[3].URL, "A.testX%5cyz.test");
}

TEST(Editor, EveryWayOutGivesTheMainWindowBack) {
  Program aProgram({Site("a.test")});
  for (int lWay = 0; lWay < 4; ++lWay) {
    auto* pEditor = OpenEditor(aProgram, 1);
    pEditor->txtURL->ChangeValue("changed");
    aProgram.Run(MenuCommand::mF_NewAddress);  // locked: there is no second one
    if (lWay == 0) Key(WXK_ESCAPE);
    if (lWay == 1) Click(pEditor->cmdCancel);
    if (lWay == 2) pEditor->Close();
    if (lWay == 3) pEditor->Destroy();
    EXPECT_TRUE(Closed(aProgram)) << lWay;
    EXPECT_EQ(aSites[1].URL, "a.test");
  }
  OpenEditor(aProgram);  // the program ends with it open
}

// The schedule goes on while the editor is open. A site that is changed while it is being asked gets no
// outcome, because the answer would be about the old address.
TEST(Editor, RunsBesideAPass) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Hang()});
  Program aProgram({Site(aServer.Site("/hang"), 1, 1), Site(aServer.Site("/second"))});
  auto* pEditor = OpenEditor(aProgram, 1);
  bool bEdited = false;
  wxTimer aTimer;
  aTimer.Bind(wxEVT_TIMER, [&](wxTimerEvent&) {
    if (bEdited || aServer.Count("/hang") == 0) return;
    bEdited = true;
    EXPECT_TRUE(aProgram.Main().Engine().PassRunning());
    ASSERT_TRUE(aProgram.Main().pProgress);
    EXPECT_TRUE(aProgram.Main().pProgress->IsEnabled());
    pEditor->txtTimeOut->ChangeValue("");
    wxCommandEvent aClick(wxEVT_BUTTON, pEditor->cmdOK->GetId());
    pEditor->cmdOK->ProcessWindowEvent(aClick);
    ASSERT_TRUE(Open<frmNotice>());
    Open<frmNotice>()->Close();
    pEditor->txtURL->ChangeValue(aServer.Site("/new"));
    pEditor->cmdOK->ProcessWindowEvent(aClick);
  });
  aTimer.Start(20);
  aProgram.aClock.Advance(86400);
  ASSERT_TRUE(Until([&] { return bEdited && !aProgram.Main().Engine().PassRunning(); }, 10));
  EXPECT_EQ(aServer.Count("/second"), 1U) << "the pass went on";
  EXPECT_NE(aProgram.RowText(1).find("/new none: Edited"), std::string::npos) << aProgram.RowText(1);
  EXPECT_NE(aProgram.RowText(2).find("Green: Site OK"), std::string::npos) << aProgram.RowText(2);
  EXPECT_TRUE(Closed(aProgram));
}
