// What could not be kept, as the main window tells it: on a disk that takes no more. And what must be kept
// where nobody answers a box of GTK.
#include <gtest/gtest.h>
#include <wx/statusbr.h>

#include "persistence/Settings.h"
#include "servers/FaultServer.h"
#include "support/Stored.h"
#include "support/posix/InChild.h"
#include "ui/Program.h"
#include "ui/dialogs/frmOptions.h"
#include "ui/main/modMain.h"

TEST(Kept, UnsavedResultsStandInTheStatusBarUntilTheyAreStored) {
  FaultServer aServer;
  Program aProgram({Site(aServer.Site("/a")), Site(aServer.Site("/b"))});
  Settings.LogPeriod = 0;  // the log's own note would stay
  LimitFiles(1);
  aProgram.Run(mF_StartCheck);
  LimitFiles(RLIM_INFINITY);
  ASSERT_EQ(aProgram.Main().sbrMain->GetFieldsCount(), 4);
  EXPECT_NE(aProgram.Panel(4).find("The last results of 2 sites could not be stored"), std::string::npos)
      << aProgram.Panel(4);
  aProgram.Run(mF_StartCheck);
  EXPECT_EQ(aProgram.Main().sbrMain->GetFieldsCount(), 3);
  EXPECT_EQ(modAddress::UnsavedSites(), 0);
}

TEST(Kept, OptionsThatAreNotStoredAreSaidAndASiteThatIsNotDeletedStays) {
  Program aProgram({Site("www.one.invalid")});
  const auto szBefore = Stored::Get(ProductKeys::szTimer, "Interval");
  aProgram.Run(mE_Options);
  const auto* pOptions = Open<frmOptions>();
  ASSERT_TRUE(pOptions && Focused(pOptions->txtTimerInterval));
  pOptions->txtTimerInterval->SetValue("90");
  LimitFiles(1);
  Key(WXK_RETURN);
  ASSERT_TRUE(Until([&] { return !Open<frmOptions>(); }));
  EXPECT_NE(aProgram.Panel(4).find("The options could not be stored."), std::string::npos)
      << aProgram.Panel(4);
  EXPECT_EQ(Settings.Interval, 90) << "they hold all the same";
  EXPECT_EQ(Stored::Get(ProductKeys::szTimer, "Interval"), szBefore);
  EXPECT_FALSE(modAddress::DeleteSite(1));
  EXPECT_EQ(lSiteCount, 1);
  LimitFiles(RLIM_INFINITY);
  aProgram.Run(mF_StartCheck);
  EXPECT_EQ(aProgram.Main().sbrMain->GetFieldsCount(), 3);
  EXPECT_EQ(Stored::Get(ProductKeys::szTimer, "Interval"), "90");
}

// As at the end of the session, when nobody is there to answer.
TEST(Kept, AnUnansweredQuestionEndsWithTheProgramAndDeletesNothing) {
  Program aProgram({Site("a.test")});
  aProgram.Main().lvwMain->SelectSlot(1);
  int lTicks = 0;
  {
    const During aAct([&] {
      if (++lTicks >= 5) modMain::RequestExit();
    });
    aProgram.Run(mE_DelAddress);
  }
  EXPECT_EQ(lSiteCount, 1);
  EXPECT_TRUE(Until([&] { return aProgram.Ended(); }));
}
