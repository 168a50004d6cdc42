// The commands that change the site list, from the main window.
#include <gtest/gtest.h>

#include "app/Dialogs.h"
#include "dialogs/SiteCommands.h"
#include "dialogs/frmAddress.h"
#include "dialogs/frmOptions.h"
#include "resources/TextGlue.h"
#include "support/Stored.h"

namespace {
const char szQuestion[] = "Are you sure you wish to delete the selected Site?";
}

TEST(SiteCommands, WithoutASelectionTheyRefuse) {
  for (const bool bEmpty : {true, false}) {
    Program aProgram(bEmpty ? std::vector<SiteRecord>{} : std::vector<SiteRecord>{Site("a")});
    aProgram.Main().lvwMain->SelectSlot(0);
    Replies aAnswers({{wxID_OK}, {wxID_OK}});
    aProgram.Run(MenuCommand::mE_DelAddress);
    aProgram.Run(MenuCommand::mE_EditAddress);
    EXPECT_EQ(aAnswers.aTexts, (std::vector<std::string>{"No address selected.", "No address selected."}));
    EXPECT_FALSE(Open<frmAddress>());
  }
}

TEST(SiteCommands, DeleteAsksAndRenumbers) {
  Program aProgram({Site("a"), Site("b", 1, 2), Site("c", 0, 2), Site("d", 1, 2)});
  for (std::int32_t n = 1; n <= 4; ++n)
    modAddress::SaveSite(n, false);       // the reload after a deletion takes the stored lights
  aProgram.Run(MenuCommand::mV_Warning);  // shows 2, 3 and 4
  const struct {
    std::int32_t lSlot;
    int lAnswer;
    const char *szAsked, *szUrls, *szSlots;
  } aCases[] = {{4, wxID_NO, "d", "a b c d", "2 3 4*"},
                {3, wxID_CANCEL, "c", "a b c d", "2 3* 4"},
                {3, wxID_YES, "c", "a b d", "2 3"},
                {2, wxID_YES, "b", "a d", "2"}};
  for (const auto& aCase : aCases) {
    aProgram.Main().lvwMain->SelectSlot(aCase.lSlot);
    Replies aAnswers(std::vector<Replies::Reply>{{aCase.lAnswer}});
    aProgram.Run(MenuCommand::mE_DelAddress);
    EXPECT_EQ(aAnswers.aTexts.at(0), szQuestion + std::string("|http://") + aCase.szAsked);
    EXPECT_EQ(Stored::Urls(), aCase.szUrls);
    EXPECT_EQ(aProgram.Slots(), aCase.szSlots);
    EXPECT_TRUE(aProgram.Main().IsEnabled());
  }
  EXPECT_EQ(Stored::Values(ProductKeys::szAddressKey), (std::vector<std::string>{"Domain1=a", "Domain2=d"}));
}

TEST(SiteCommands, AFullListTakesNoMore) {
  Program aProgram;
  aSites.assign(1001, Site("x"));
  lSiteCount = 1000;
  Replies aAnswers(std::vector<Replies::Reply>{{wxID_OK}});
  aProgram.Run(MenuCommand::mF_NewAddress);
  EXPECT_EQ(aAnswers.aTexts.at(0), FromWx(ResText(IDS_LIST_FULL)));
  EXPECT_FALSE(Open<frmAddress>());
}

// Keys on the list, Enter and a double click lead to the same dialogs.
TEST(SiteCommands, KeysOpenTheDialogs) {
  Program aProgram({Site("a"), Site("b")});
  ASSERT_TRUE(Focused(aProgram.Main().lvwMain));
  aProgram.Main().lvwMain->SelectSlot(2);
  Key(WXK_RETURN);
  ASSERT_TRUE(Until([] { return Open<frmAddress>(); }));
  EXPECT_EQ(TextOf(Open<frmAddress>()->txtURL), "b");
  ASSERT_TRUE(Focused(Open<frmAddress>()->txtURL));
  Key(WXK_ESCAPE);
  ASSERT_TRUE(Until([&] { return !Open<frmAddress>(); }) && Focused(aProgram.Main().lvwMain));
  Key('N', wxMOD_CONTROL);
  ASSERT_TRUE(Until([] { return Open<frmAddress>(); }) && Focused(Open<frmAddress>()->txtURL));
  Key(WXK_ESCAPE);
  ASSERT_TRUE(Until([&] { return !Open<frmAddress>(); }) && Focused(aProgram.Main().lvwMain));
  Key('O', wxMOD_CONTROL);
  ASSERT_TRUE(Until([] { return Open<frmOptions>(); }) && Focused(Open<frmOptions>()->txtTimerInterval));
  Key(WXK_ESCAPE);
  ASSERT_TRUE(Until([&] { return !Open<frmOptions>(); }) && Focused(aProgram.Main().lvwMain));
  Replies aAnswers(std::vector<Replies::Reply>{{wxID_YES}});
  Key(WXK_DELETE);
  EXPECT_TRUE(Until([] { return lSiteCount == 1; }));
}
