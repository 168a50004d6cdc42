// The tour's window, turned by real keys and clicks.
#include <gtest/gtest.h>
#include <wx/button.h>
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
  const std::pair<int, std::size_t> aKeys[] = {{WXK_LEFT, 0},      {WXK_RIGHT, 1},        {WXK_PAGEDOWN, 2},
                                               {WXK_RETURN, 3},    {WXK_SPACE, 4},        {WXK_LEFT, 3},
                                               {WXK_PAGEUP, 2},    {WXK_BACK, 1},         {WXK_END, lLast},
                                               {WXK_RIGHT, lLast}, {WXK_LEFT, lLast - 1}, {WXK_HOME, 0}};
  for (const auto& [lKey, lPage] : aKeys) {
    Key(lKey);
    EXPECT_TRUE(Until([&, lNow = lPage] { return pTour->Page() == lNow; })) << lKey << " " << pTour->Page();
    EXPECT_EQ(pTour->cmdBack->IsEnabled(), lPage > 0);
    EXPECT_EQ(pTour->cmdNext->IsEnabled(), lPage < lLast);
    const TourPage& aPage = aTourPages[lPage];
    const wxImage aPicture = TourPicture(aPage.szPicture);
    EXPECT_TRUE(aPicture.IsOk());
    const wxRect aMark = TourMark(aPage.szPicture, aPage.szMark);
    EXPECT_NE(aMark.IsEmpty(), *aPage.szMark != 0) << aPage.szMark;
    EXPECT_TRUE(aMark.IsEmpty() || wxRect(aPicture.GetSize()).Contains(aMark)) << aPage.szMark;
  }
  const std::pair<wxWindow*, std::size_t> aClicks[] = {
      {pTour->cmdNext, 1}, {pTour->pixPage, 2}, {pTour->cmdBack, 1}};
  for (const auto& [pTarget, lPage] : aClicks) {
    Click(pTarget);
    EXPECT_TRUE(Until([&, lNow = lPage] { return pTour->Page() == lNow; })) << pTour->Page();
  }
  Key(WXK_ESCAPE);
  EXPECT_TRUE(Until([&] { return !pTour; }));
}
