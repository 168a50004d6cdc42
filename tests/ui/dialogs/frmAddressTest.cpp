// The site editor as an operator meets it: by keyboard, with its messages, and through every way out.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/checkbox.h>

#include "ui/Program.h"
#include "ui/common/TextGlue.h"
#include "ui/dialogs/frmAddress.h"

namespace {

frmAddress* OpenEditor(Program& aProgram, std::int32_t lSlot = 0) {
  if (lSlot > 0) aProgram.Main().lvwMain->SelectSlot(lSlot);
  aProgram.Run(lSlot > 0 ? mE_EditAddress : mF_NewAddress);
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
  return Until([&] { return !Open<frmAddress>() && aProgram.Main().IsEnabled(); });
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
  const std::pair<int, wxTextCtrl*> aMoves[] = {{WXK_RIGHT, pEditor->txtIP4},
                                                {WXK_LEFT, pEditor->txtIP3},
                                                {WXK_UP, pEditor->txtIP2},
                                                {WXK_DOWN, pEditor->txtIP3},
                                                {WXK_DOWN, pEditor->txtIP4}};
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
  pEditor->txtURL->ChangeValue("TAKEN.test");
  Key(WXK_RETURN);
  EXPECT_EQ(CloseNotice(), "The URL http://TAKEN.test already exists!\r\nPlease enter another URL.");
  ASSERT_TRUE(Focused(pEditor->txtURL));
  EXPECT_EQ(pEditor->txtURL->GetStringSelection(), "TAKEN.test");
  pEditor->txtURL->WriteText("HTTP://a.test/http:");
  EXPECT_EQ(CloseNotice(), "Do not enter the agent, \"http://\".");
  Settle();
  EXPECT_EQ(NoticeText(), "") << "said once";
  EXPECT_EQ(TextOf(pEditor->txtURL), "a.test/");
  pEditor->txtURL->SetValue("https://a.test/");
  EXPECT_TRUE(CloseNotice().starts_with("Only http is checked"));
  EXPECT_EQ(TextOf(pEditor->txtURL), "https://a.test/") << "kept as it was entered";
  // Enter is OK from within the box, Tab leaves it, and the click on OK does both: there is one message each.
  const std::function<void()> aWays[] = {[] { Key(WXK_RETURN); }, [] { Key(WXK_TAB); },
                                         [&] { Click(pEditor->cmdOK); }};
  pEditor->txtTimeOut->SetFocus();
  for (const auto& Leave : aWays) {
    ASSERT_TRUE(Focused(pEditor->txtTimeOut));
    pEditor->txtTimeOut->ChangeValue("5000");
    Leave();
    EXPECT_EQ(CloseNotice(), "Time Out values must be from 1 to 1800 seconds.");
    Settle();
    EXPECT_EQ(NoticeText(), "");
    EXPECT_EQ(pEditor->txtTimeOut->GetStringSelection(), "1800");
  }
  pEditor->txtTimeOut->ChangeValue("0");
  Click(pEditor->cmdCancel);  // checks nothing
  EXPECT_TRUE(Closed(aProgram));
  EXPECT_EQ(lSiteCount, 1);
}

TEST(Editor, AnAddressThatIsNoUtf8StaysUnlessItIsChanged) {
  Program aProgram({Site("caf\xE9.test", 1, 3, "1.2.3.4")});
  const std::pair<std::string, std::string> aCases[] = {
      {"", "[x] http://" + aSites[1].URL + " (1.2.3.4) Red: Edited"},  // as the store could keep it
      {"z.test", "[x] http://z.test (1.2.3.4) none: Edited"}};
  for (const auto& [szURL, szRow] : aCases) {
    auto* pEditor = OpenEditor(aProgram, 1);
    if (!szURL.empty()) pEditor->txtURL->ChangeValue(szURL);
    Key(WXK_RETURN);
    ASSERT_TRUE(Closed(aProgram)) << NoticeText();
    EXPECT_EQ(aProgram.RowText(1), szRow);
  }
}
