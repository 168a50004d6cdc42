// What could not be kept, as the main window tells it: on a disk that takes no more.
#include <gtest/gtest.h>
#include <wx/statusbr.h>

#include "persistence/Settings.h"
#include "servers/FaultServer.h"
#include "support/posix/InChild.h"
#include "ui/Program.h"

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
