// GTK's own message boxes: how large they come out, and how they end. Windows' are its own affair.
#include <gtest/gtest.h>
#include <wx/uiaction.h>

#include <cstdio>

#include "support/ChildProcess.h"
#include "ui/Program.h"
#include "ui/main/modMain.h"

namespace {

// Of the window that has the keyboard; the toolkit does not measure a box.
wxSize ActiveSize() {
  ChildProcess aTeller("xdotool", {"getactivewindow", "getwindowgeometry", "--shell"});
  wxSize aFound;
  int lWindow = 0, lX = 0, lY = 0;
  if (aTeller.Wait(60) == 0)
    std::sscanf(aTeller.Output().c_str(), "WINDOW=%d X=%d Y=%d WIDTH=%d HEIGHT=%d", &lWindow, &lX, &lY,
                &aFound.x, &aFound.y);
  return aFound;
}

}  // namespace

// An address of 200 has no blank at which a line could break. The smallest window is narrower than the words
// of the question.
TEST(Box, IsNoWiderThanItsWindow) {
  Program aProgram({Site(std::string(200, 'W'))});
  frmMain& aMain = aProgram.Main();
  for (const int lWidth : {800, 10}) {
    aMain.SetSize(lWidth, 400);
    aMain.lvwMain->SelectSlot(1);
    Settle();
    const wxSize aBefore = ActiveSize();
    wxSize aBox;
    {
      const During aAct([&] {
        const wxSize aActive = ActiveSize();
        if (aActive.x == 0 || aActive == aBefore) return;
        aBox = aActive;
        wxUIActionSimulator().Char(WXK_RETURN);
      });
      aProgram.Run(mE_DelAddress);
    }
    EXPECT_GT(aBox.x, 100);
    EXPECT_LE(aBox.x, aMain.GetSize().x);
    EXPECT_EQ(aProgram.Slots(), "1*") << "Enter says No";
  }
}

// As at the end of the session, when nobody is there to answer.
TEST(Box, EndsWithTheProgram) {
  Program aProgram({Site("a.test")});
  frmMain& aMain = aProgram.Main();
  aMain.lvwMain->SelectSlot(1);
  Settle();
  const wxSize aBefore = ActiveSize();
  {
    const During aAct([&] {
      const wxSize aActive = ActiveSize();
      if (aActive.x > 0 && aActive != aBefore) modMain::RequestExit();
    });
    aProgram.Run(mE_DelAddress);
  }
  EXPECT_EQ(lSiteCount, 1) << "an unanswered question deletes nothing";
  EXPECT_TRUE(Until([&] { return aProgram.Ended(); }));
}
