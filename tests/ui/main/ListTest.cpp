// The list: which rows stand in it, in which order, and the commands that change it.
#include <gtest/gtest.h>

#include "support/Stored.h"
#include "ui/Program.h"
#include "ui/common/PictureBox.h"

TEST(List, FiltersShowByResultAndState) {
  Program aProgram({Site("a", 1, 1), Site("b", 1, 2, "10.0.0.2"), Site("c", 1, 3), Site("d", 0, 2),
                    Site("e", 0, 3), Site("f", 1, 4), Site("g", 1, 0)});
  frmMain& aMain = aProgram.Main();
  const char* const aExpected[4][3] = {
      {"1 2 3 4 5 6 7", "1 2 3 6 7", "4 5"}, {"1", "1", ""}, {"2 4", "2", "4"}, {"3 5", "3", "5"}};
  for (int lResult = 0; lResult < 4; ++lResult)
    for (int lEnabled = 0; lEnabled < 3; ++lEnabled) {
      aMain.RunCommand(mV_All + lResult);
      aMain.RunCommand(mV_Both + lEnabled);
      EXPECT_EQ(aProgram.Slots(), aExpected[lResult][lEnabled]) << lResult << lEnabled;
      EXPECT_EQ(aMain.lvwMain->Hint().empty(), *aExpected[lResult][lEnabled] != '\0');
    }
  // The pictures go through the filters in turn, and the menu follows.
  aMain.imgColors->Click();
  aMain.imgEnabled->Click();
  aMain.imgEnabled->Click();
  EXPECT_TRUE(aMain.GetMenuBar()->IsChecked(mV_All) && aMain.GetMenuBar()->IsChecked(mV_Both + 1));
}

TEST(List, APassDoesNotScrollWhatTheOperatorReads) {
  Program aProgram;
  SiteList& aList = *aProgram.Main().lvwMain;
  std::vector<SiteList::Row> aRows(200);
  for (std::size_t i = 0; i < aRows.size(); ++i)
    aRows[i].lSlot = static_cast<std::int32_t>(i) + 1;
  aList.Fill(aRows);
  aList.ShowHint("");
  aList.EnsureVisible(100);
  Settle();
  const long lTop = aList.GetTopItem();
  ASSERT_GT(lTop, 0);
  aList.EnsureRowVisible(1);
  EXPECT_EQ(aList.GetTopItem(), 0) << "shown by the pass";
  aList.GiveBackPlace();
  EXPECT_NEAR(static_cast<double>(aList.GetTopItem()), static_cast<double>(lTop), 1);
  Click(&aList);
  const long lRead = aList.GetTopItem();
  aList.EnsureRowVisible(1);
  EXPECT_EQ(aList.GetTopItem(), lRead);
  aProgram.aClock.Advance(11);
  aList.EnsureRowVisible(1);
  EXPECT_EQ(aList.GetTopItem(), 0);
}

TEST(List, TypingGoesToTheAddressThatBeginsSo) {
  Program aProgram({Site("alpha.test"), Site("www.beta.test"), Site("beach.test"), Site("gamma.test")});
  ASSERT_TRUE(Focused(aProgram.Main().lvwMain));
  const std::pair<const char*, const char*> aTyped[] = {
      {"bea", "1 2 3* 4"}, {"b", "1 2* 3 4"}, {"bb", "1 2* 3 4"}, {"x", "1 2* 3 4"}};
  for (const auto& [szLetters, szSlots] : aTyped) {
    aProgram.aClock.Advance(2);
    Type(szLetters);
    EXPECT_EQ(aProgram.Slots(), szSlots) << szLetters;
  }
}

TEST(List, DeletesInAFilteredViewAndRefusesWithoutASelection) {
  Program aProgram({Site("a"), Site("b", 1, 2), Site("c", 0, 2), Site("d", 1, 2)});
  for (std::int32_t n = 1; n <= 4; ++n)
    modAddress::SaveSite(n, false);  // the reload after a deletion takes the stored lights
  aProgram.Run(mV_Warning);          // shows 2, 3 and 4
  const struct {
    std::int32_t lSlot;
    const char *szAnswer, *szAsked, *szUrls, *szSlots;
  } aCases[] = {{4, "no", "d", "a b c d", "2 3 4*"},
                {3, "cancel", "c", "a b c d", "2 3* 4"},
                {3, "yes", "c", "a b d", "2 3"},
                {2, "yes", "b", "a d", "2"}};
  for (const auto& aCase : aCases) {
    aProgram.Main().lvwMain->SelectSlot(aCase.lSlot);
    Answers aAnswers({aCase.szAnswer});
    aProgram.Run(mE_DelAddress);
    EXPECT_EQ(aAnswers.aSaid.at(0),
              std::string("Are you sure you wish to delete the selected Site?|http://") + aCase.szAsked);
    EXPECT_EQ(Stored::Urls(), aCase.szUrls);
    EXPECT_EQ(aProgram.Slots(), aCase.szSlots);
  }
  EXPECT_EQ(Stored::Values(ProductKeys::szAddressKey), (Texts{"Domain1=a", "Domain2=d"}));
  aProgram.Main().lvwMain->SelectSlot(0);
  Answers aAnswers({"ok", "ok"});
  aProgram.Run(mE_DelAddress);
  aProgram.Run(mE_EditAddress);
  EXPECT_EQ(aAnswers.aSaid, (Texts{"No address selected.", "No address selected."}));
}
