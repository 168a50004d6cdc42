// The tour's window, turned by real keys and clicks.
#include <gtest/gtest.h>
#include <wx/panel.h>
#include <wx/weakref.h>

#include "ui/Operator.h"
#include "ui/tour/TourPages.h"
#include "ui/tour/frmTour.h"

TEST(Tour, KeysAndClicksTurnThePages) {
  wxWeakRef<frmTour> pTour = new frmTour;
  pTour->Show();
  pTour->Raise();
  ASSERT_TRUE(Until([&] { return pTour->IsActive() && wxWindow::FindFocus(); }));
  const std::size_t lLast = lTourPages - 1;
  const std::pair<int, std::size_t> aKeys[] = {{WXK_LEFT, 0},    {WXK_RIGHT, 1},     {WXK_PAGEDOWN, 2},
                                               {WXK_SPACE, 3},   {WXK_BACK, 2},      {WXK_LEFT, 1},
                                               {WXK_END, lLast}, {WXK_RIGHT, lLast}, {WXK_HOME, 0}};
  for (const auto& [lKey, lPage] : aKeys) {
    Key(lKey);
    EXPECT_TRUE(Until([&, lNow = lPage] { return pTour->Page() == lNow; })) << lKey << " " << pTour->Page();
    EXPECT_TRUE(TourPicture(aTourPages[lPage].szPicture).IsOk());
  }
  Click(pTour->pixPage);
  EXPECT_TRUE(Until([&] { return pTour->Page() == 1; })) << pTour->Page();
  Key(WXK_ESCAPE);
  EXPECT_TRUE(Until([&] { return !pTour; }));
}
