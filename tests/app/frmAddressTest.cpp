// The site editor as an operator meets it: by keyboard, with its messages, and through every way out.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>

#include "app/Program.h"
#include "dialogs/frmAddress.h"
#include "resources/TextGlue.h"

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
  EXPECT_EQ(Boxes(pEditor), " ... 60 on");
  Type("www.a.test");
  Key(WXK_TAB);
  Type("192");
  ASSERT_TRUE(Focused(pEditor->txtIP2));
  Type(".168.0.7");  // the first dot comes from habit: the focus has gone on already
  EXPECT_EQ(Boxes(pEditor), "www.a.test 192.168.0.7 60 on");
  const std::pair<int, wxTextCtrl*> aMoves[] = {
      {WXK_RIGHT, pEditor->txtIP4}, {WXK_LEFT, pEditor->txtIP3}, {WXK_UP, pEditor->txtIP2},
      {WXK_LEFT, pEditor->txtIP1},  {WXK_UP, pEditor->txtURL},   {WXK_TAB, pEditor->txtIP1},
      {WXK_DOWN, pEditor->txtIP2},  {WXK_DOWN, pEditor->txtIP3}, {WXK_DOWN, pEditor->txtIP4}};
  for (const auto& [lKey, pBox] : aMoves) {
    Key(lKey);
    ASSERT_TRUE(Focused(pBox)) << lKey;
  }
  Type("x9");
  Key(WXK_TAB);
  Type("5x0");
  Key(WXK_TAB);
  Key(WXK_SPACE);
  EXPECT_EQ(Boxes(pEditor), "www.a.test 192.168.0.9 50 off");
  Key(WXK_TAB);
  ASSERT_TRUE(Focused(pEditor->cmdOK));
  Key(WXK_RETURN);
  ASSERT_TRUE(Closed(aProgram));
  EXPECT_EQ(aProgram.RowText(1), "[ ] http://www.a.test (192.168.0.9) none: Added");
  EXPECT_EQ(aProgram.Slots(), "1*");
  EXPECT_EQ(aSites[1].TimeOut, 50);
}

TEST(Editor, RefusalsKeepItOpenAtTheirField) {
  Program aProgram({Site("taken.test")});
  auto* pEditor = OpenEditor(aProgram);
  const struct {
    const char *szURL, *szTimeOut, *szMessage, *szLeft;
    wxTextCtrl* pBox;
  } aCases[] = {
      {" ", "60", "You need to complete the URL Field.", "", pEditor->txtURL},
      {"TAKEN.test", "60", "The URL http://TAKEN.test already exists!\r\nPlease enter another URL.",
       "TAKEN.test", pEditor->txtURL},
      {"x.test", "5000", "Time Out values must be from 1 to 1800 seconds.", "1800", pEditor->txtTimeOut}};
  for (const auto& aCase : aCases) {
    pEditor->txtURL->ChangeValue(aCase.szURL);
    pEditor->txtTimeOut->ChangeValue(aCase.szTimeOut);
    Key(WXK_RETURN);  // OK from a box, which is not left first
    EXPECT_EQ(CloseNotice(), aCase.szMessage);
    ASSERT_TRUE(Focused(aCase.pBox)) << aCase.szMessage;
    EXPECT_EQ(TextOf(aCase.pBox), aCase.szLeft);
    EXPECT_EQ(aCase.pBox->GetStringSelection(), aCase.szLeft);
  }
  pEditor->txtTimeOut->ChangeValue("0");
  Key(WXK_TAB);
  EXPECT_NE(CloseNotice(), "") << "leaving the field checks it";
  ASSERT_TRUE(Focused(pEditor->txtTimeOut));
  pEditor->txtTimeOut->ChangeValue("0");
  Click(pEditor->cmdOK);  // checks by itself, so there is one message and not two
  EXPECT_NE(CloseNotice(), "");
  EXPECT_EQ(NoticeText(), "");
  pEditor->txtURL->SetFocus();
  PumpFor(0.05);
  pEditor->txtURL->ChangeValue("");
  pEditor->txtURL->WriteText("HTTP://a.test/http:");
  EXPECT_EQ(CloseNotice(), "Do not enter the agent, \"http://\".");
  EXPECT_EQ(NoticeText(), "") << "said once";
  EXPECT_EQ(TextOf(pEditor->txtURL), "a.test/");
  pEditor->txtTimeOut->ChangeValue("0");
  Click(pEditor->cmdCancel);  // checks nothing
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(lSiteCount, 1);
}

TEST(Editor, EditsRenameAndKeepWhatBelongs) {
  Program aProgram({Site("a.test", 1, 1, "1.2.3.4"), Site("x\\y", 0, 2), Site("caf\xE9.test", 1, 3)});
  const auto szNoUtf8 = aSites[3].URL;  // as the store could keep it
  const struct {
    std::int32_t lSlot;
    const char* szURL;
    std::string szRow;
  } aCases[] = {{1, nullptr, "[x] http://a.test (1.2.3.4) Green: Edited"},
                {1, "A.test", "[x] http://A.test (1.2.3.4) none: Edited"},
                {2, "X%5cy", "[ ] http://X%5cy none: Edited"},
                {3, nullptr, "[x] http://" + szNoUtf8 + " Red: Edited"},
                {3, "z.test", "[x] http://z.test none: Edited"}};
  for (const auto& aCase : aCases) {
    auto* pEditor = OpenEditor(aProgram, aCase.lSlot);
    if (aCase.szURL) pEditor->txtURL->ChangeValue(aCase.szURL);
    Key(WXK_RETURN);
    ASSERT_TRUE(Closed(aProgram)) << NoticeText();
    EXPECT_EQ(aProgram.RowText(aCase.lSlot), aCase.szRow);
  }
  auto* pEditor = OpenEditor(aProgram, 3);
  pEditor->txtURL->ChangeValue("x\\Y");
  Key(WXK_RETURN);
  EXPECT_NE(CloseNotice().find("already exists!"), std::string::npos) << "the same site, written differently";
  Key(WXK_ESCAPE);
  ASSERT_TRUE(Closed(aProgram));
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(true, true);
  EXPECT_EQ(aSites[1].URL + aSites[2].URL + aSites[3].URL, "A.testX%5cyz.test");
}
