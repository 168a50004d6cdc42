// The list: which rows stand in it, in which order, and how the view is changed.
#include <gtest/gtest.h>
#include <wx/menu.h>

#include "app/PictureBox.h"
#include "app/Program.h"
#include "dialogs/frmBusy.h"
#include "platform/WindowScale.h"
#include "resources/TextGlue.h"

TEST(List, FiltersShowByResultAndState) {
  Program aProgram({Site("a", 1, 1), Site("b", 1, 2, "10.0.0.2"), Site("c", 1, 3), Site("d", 0, 2),
                    Site("e", 0, 3), Site("f", 1, 4), Site("g", 1, 0)});
  const char* const aExpected[4][3] = {
      {"1 2 3 4 5 6 7", "1 2 3 6 7", "4 5"}, {"1", "1", ""}, {"2 4", "2", "4"}, {"3 5", "3", "5"}};
  for (int lResult = 0; lResult < 4; ++lResult)
    for (int lEnabled = 0; lEnabled < 3; ++lEnabled) {
      aProgram.Main().RunCommand(CommandNumber(MenuCommand::mV_All) + lResult);
      aProgram.Main().RunCommand(CommandNumber(MenuCommand::mV_Both) + lEnabled);
      EXPECT_EQ(aProgram.Slots(), aExpected[lResult][lEnabled]) << lResult << lEnabled;
      EXPECT_EQ(aProgram.Main().lvwMain->Hint().empty(), *aExpected[lResult][lEnabled] != '\0');
    }
  aProgram.Run(MenuCommand::mV_All);
  aProgram.Run(MenuCommand::mV_Both);
  const char* const aRows[] = {"[x] http://a Green: ", "[x] http://b (10.0.0.2) Yellow: ",
                               "[x] http://c Red: ",   "[ ] http://d none: ",
                               "[ ] http://e none: ",  "[x] http://f none: ",
                               "[x] http://g none: "};
  for (int i = 0; i < 7; ++i)
    EXPECT_EQ(aProgram.RowText(i + 1), aRows[i]);
  aProgram.Main().Display_lvwMain(5);
  EXPECT_EQ(aProgram.Main().SelectedSlot(), 5);
  aProgram.Run(MenuCommand::mV_Successful);
  EXPECT_EQ(aProgram.Slots(), "1");
  aProgram.Main().Display_lvwMain(5);
  EXPECT_EQ(aProgram.Main().SelectedSlot(), 0);
}

TEST(List, SortsAsTextFromTheStartAndByHeaders) {
  std::vector<SiteRecord> aStored;
  for (int i = 1; i <= 11; ++i)
    aStored.push_back(Site("s" + std::to_string(100 - i), 1, 4, "10.0.0." + std::to_string(i % 3)));
  aStored[4].URL = "S99X";
  Program aProgram(aStored);
  SiteList& aList = *aProgram.Main().lvwMain;
  aList.SelectSlot(2);
  EXPECT_EQ(aProgram.Slots(), "1 10 11 2* 3 4 5 6 7 8 9");
  const struct {
    int iColumn;
    const char* szSlots;
  } aClicks[] = {{3, "3 6 9 1 4 7 10 2* 5 8 11"}, {3, "2* 5 8 11 1 4 7 10 3 6 9"},
                 {3, "1 10 11 2* 3 4 5 6 7 8 9"}, {2, "11 10 9 8 7 6 4 3 2* 1 5"},
                 {3, "3 6 9 1 4 7 10 2* 5 8 11"}, {2, "11 10 9 8 7 6 4 3 2* 1 5"},
                 {2, "5 1 2* 3 4 6 7 8 9 10 11"}, {5, "1 10 11 2* 3 4 5 6 7 8 9"}};
  for (const auto& aClick : aClicks) {
    aList.ClickHeader(aClick.iColumn);
    EXPECT_EQ(aProgram.Slots(), aClick.szSlots) << "column " << aClick.iColumn;
    for (const int i : {1, 2, 3, 4, 5}) {
      wxListItem aHeader;
      aHeader.SetMask(wxLIST_MASK_IMAGE);
      aList.GetColumn(i - 1, aHeader);
      EXPECT_EQ(aHeader.GetImage() >= 0, i == aList.SortColumn() && i != 1) << "icon of column " << i;
    }
  }
  // A refill keeps the order that was chosen.
  aList.ClickHeader(2);
  aList.ClickHeader(2);
  aProgram.Main().Display_lvwMain(3);
  EXPECT_EQ(aProgram.Slots(), "5 1 2 3* 4 6 7 8 9 10 11");
}

TEST(List, PicturesCycleTheFiltersAndTheMenuFollows) {
  Program aProgram({Site("a", 1, 1), Site("b", 0, 3)});
  frmMain& aMain = aProgram.Main();
  const struct {
    std::int16_t iFilter;
    const char* szPicture;
    MenuCommand iChecked;
  } aResults[] = {{1, "Green", MenuCommand::mV_Successful},
                  {2, "Yellow", MenuCommand::mV_Warning},
                  {3, "Red", MenuCommand::mV_Unsuccessful},
                  {0, "colors_all", MenuCommand::mV_All}},
    aStates[] = {{1, "Checked", MenuCommand::mV_Enabled},
                 {2, "UnChecked", MenuCommand::mV_Disabled},
                 {0, "enable_both", MenuCommand::mV_Both}};
  for (const auto& aStep : aResults) {
    aMain.imgColors->Click();
    EXPECT_EQ(aMain.ResultFilter, aStep.iFilter);
    EXPECT_EQ(aMain.imgColors->PictureName(), aStep.szPicture);
    EXPECT_TRUE(aProgram.Checked(aStep.iChecked)) << aStep.szPicture;
    EXPECT_EQ(aMain.SelectedSlot(), aStep.iFilter == 0 || aStep.iFilter == 1 ? 1 : 0);
  }
  for (const auto& aStep : aStates) {
    aMain.imgEnabled->Click();
    EXPECT_EQ(aMain.EnabledFilter, aStep.iFilter);
    EXPECT_EQ(aMain.imgEnabled->PictureName(), aStep.szPicture);
    EXPECT_TRUE(aProgram.Checked(aStep.iChecked)) << aStep.szPicture;
  }
  for (const int lOdd : {-3, 9}) {
    aMain.ResultFilter = aMain.EnabledFilter = static_cast<std::int16_t>(lOdd);
    aMain.imgColors->Click();
    aMain.imgEnabled->Click();
    EXPECT_EQ(aMain.ResultFilter * 10 + aMain.EnabledFilter, 11) << lOdd;
  }
}

TEST(List, FollowsTheWindowInTwips) {
  Program aProgram({Site("a")});
  frmMain& aMain = aProgram.Main();
  const auto Twips = [&](int lPixels) { return WindowScale::ToTwips(aMain, lPixels); };
  const auto Pixels = [&](int lTwips) { return WindowScale::FromTwips(aMain, lTwips); };
  aMain.SetSize(Pixels(3000), Pixels(2000));
  PumpFor(0.1);
  EXPECT_EQ(aMain.GetSize(), wxSize(Pixels(5600), Pixels(4600)));
  for (const int lWidth : {5600, 9000, 15000}) {
    aMain.SetSize(Pixels(lWidth), Pixels(7000));
    ASSERT_TRUE(Until([&] { return aMain.GetSize().x == Pixels(lWidth); }));
    PumpFor(0.05);
    const int lClient = Twips(aMain.GetClientSize().x);
    const int lComments = static_cast<int>(0.3 * (lClient - 100));
    const int aWidths[] = {300, lClient - 300 - 300 - lComments - 2000, 1500, 300, lComments};
    for (int i = 0; i < 5; ++i)
      EXPECT_EQ(aMain.lvwMain->GetColumnWidth(i), Pixels(aWidths[i]))
          << "column " << i + 1 << " at " << lWidth;
    EXPECT_EQ(aMain.fraCurView->GetPosition().x, aMain.GetClientSize().x - Pixels(2100));
    EXPECT_EQ(aMain.lvwMain->GetPosition(), wxPoint(0, Pixels(600)));
    EXPECT_EQ(aMain.lvwMain->GetSize().x, Pixels(lClient - 100));
    EXPECT_LE(aMain.lvwMain->GetRect().GetBottom(), aMain.pixClient->GetSize().y) << "cut at the bottom";
  }
}

TEST(List, PopupFitsTheRows) {
  for (const bool bEmpty : {true, false}) {
    Program aProgram(bEmpty ? std::vector<SiteRecord>{} : std::vector<SiteRecord>{Site("a")});
    const std::unique_ptr<wxMenu> pMenu(aProgram.Main().MakePopup());
    const char* const aCaptions[] = {"New Address", "Edit Selected", "Delete Selected", "", "Start Check"};
    ASSERT_EQ(pMenu->GetMenuItemCount(), 5U);
    for (std::size_t i = 0; i < 5; ++i) {
      const wxMenuItem* pItem = pMenu->FindItemByPosition(i);
      EXPECT_EQ(FromWx(pItem->GetItemLabelText()), aCaptions[i]);
      EXPECT_TRUE(pItem->IsSeparator() || pItem->IsEnabled() == (!bEmpty || (i != 1 && i != 2)))
          << aCaptions[i];
    }
  }
}

// Repainting the notice lets timers tick; a pass that began there would walk a half-written list.
TEST(List, NothingStartsWhileTheBusyNoticeIsShown) {
  Program aProgram({Site("127.0.0.1:9")});
  {
    frmBusy aNotice(aProgram.Main(), "Kestrova", "Importing... please wait.", 10);
    aProgram.aClock.Advance(86400);
    for (int i = 0; i < 13; ++i) {
      wxMilliSleep(100);
      aNotice.Progress(i);
      ASSERT_FALSE(aProgram.Main().Engine().PassRunning());
    }
    EXPECT_FALSE(aProgram.Main().CommandAllowed(CommandNumber(MenuCommand::mF_StartCheck)));
    EXPECT_EQ(aProgram.Panel(3), "");
  }
  EXPECT_TRUE(Until([&] { return !aProgram.Panel(3).empty(); })) << "the overdue pass starts afterwards";
  EXPECT_TRUE(Until([&] { return !aProgram.Main().Engine().PassRunning(); }));
}

TEST(TextGlue, EveryByteSurvives) {
  std::string szAll;
  for (int i = 1; i < 256; ++i)
    szAll += static_cast<char>(i);
  for (const std::string& szText :
       {std::string("caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x9A\x80"), std::string("caf\xE9"), std::string("\xC3"),
        std::string("\xED\xA0\x80 \xC0\xAF"), std::string("\xF4\x80\x80\xE9 \xEF\x9F\xA9"), std::string(),
        szAll})
    EXPECT_EQ(FromWx(ToWx(szText)), szText);
  EXPECT_EQ(FromWx(ToWxLines("a\r\nb")), "a\nb");
}
