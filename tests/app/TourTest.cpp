// The tour's window, turned by real keys and clicks.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wx/uiaction.h>
#include <wx/weakref.h>

#include "app/Program.h"
#include "tour/TourPages.h"
#include "tour/frmTour.h"

namespace {

class TourWindow : public testing::Test {
 protected:
  TourWindow() : pTour(new frmTour) {
    pTour->Show();
    pTour->Raise();
    EXPECT_TRUE(Until([this] { return pTour->IsActive() && wxWindow::FindFocus(); }));
  }
  ~TourWindow() override {
    if (pTour) pTour->Destroy();
    PumpFor(0.05);
  }
  bool At(std::size_t lPage) {
    return Until([&] { return pTour->Page() == lPage; }, 2);
  }
  void Press(int lKey) { aHands.Char(lKey); }
  void Click(const wxWindow* pTarget) {
    const wxPoint aMiddle(pTarget->GetSize().x / 2, pTarget->GetSize().y / 2);
    aHands.MouseMove(pTarget->ClientToScreen(aMiddle));
    PumpFor(0.05);
    aHands.MouseClick();
  }

  wxWeakRef<frmTour> pTour;
  wxUIActionSimulator aHands;
};

}  // namespace

TEST_F(TourWindow, KeysTurnThePages) {
  const std::size_t lLast = lTourPages - 1;
  const struct {
    int lKey;
    std::size_t lPage;
  } aSteps[] = {{WXK_LEFT, 0},    {WXK_RIGHT, 1},     {WXK_PAGEDOWN, 2},     {WXK_RETURN, 3},
                {WXK_SPACE, 4},   {WXK_LEFT, 3},      {WXK_PAGEUP, 2},       {WXK_BACK, 1},
                {WXK_END, lLast}, {WXK_RIGHT, lLast}, {WXK_LEFT, lLast - 1}, {WXK_HOME, 0},
                {WXK_PAGEUP, 0}};
  for (const auto& aStep : aSteps) {
    Press(aStep.lKey);
    EXPECT_TRUE(At(aStep.lPage)) << "key " << aStep.lKey << ": page " << pTour->Page();
    PumpFor(0.02);
    EXPECT_EQ(pTour->lblPage->GetLabel(),
              "Page " + std::to_string(aStep.lPage + 1) + " of " + std::to_string(lTourPages));
    EXPECT_EQ(pTour->cmdBack->IsEnabled(), aStep.lPage > 0);
    EXPECT_EQ(pTour->cmdNext->IsEnabled(), aStep.lPage < lLast);
  }
  Press(WXK_ESCAPE);
  EXPECT_TRUE(Until([this] { return !pTour; }));
}

TEST_F(TourWindow, AtTheEndEnterCloses) {
  Press(WXK_END);
  ASSERT_TRUE(At(lTourPages - 1));
  PumpFor(0.05);
  Press(WXK_RETURN);
  EXPECT_TRUE(Until([this] { return !pTour; }));
}

TEST_F(TourWindow, TheMouseTurnsThemToo) {
  Click(pTour->cmdNext);
  EXPECT_TRUE(At(1));
  Click(pTour->pixPage);
  EXPECT_TRUE(At(2));
  Click(pTour->cmdBack);
  EXPECT_TRUE(At(1));
  Click(pTour->cmdClose);
  EXPECT_TRUE(Until([this] { return !pTour; }));
}

TEST_F(TourWindow, EveryPageHasItsTextItsPictureAndRoomForThem) {
  for (const wxSize& aSize : {wxSize(1200, 900), pTour->GetMinSize()}) {
    pTour->SetSize(aSize);
    Press(WXK_HOME);
    for (std::size_t i = 0; i < lTourPages; ++i, Press(WXK_RIGHT)) {
      ASSERT_TRUE(At(i));
      PumpFor(0.03);
      const wxImage aPicture = TourPicture(aTourPages[i].szPicture);
      ASSERT_TRUE(aPicture.IsOk()) << aTourPages[i].szPicture;
      EXPECT_TRUE(wxRect(aPicture.GetSize()).Contains(aTourPages[i].aMark) || aTourPages[i].aMark.IsEmpty());
      EXPECT_FALSE(pTour->lblHeading->GetLabel().empty());
      EXPECT_LE(pTour->lblText->GetRect().GetRight(), pTour->GetClientSize().x) << "page " << i + 1;
      EXPECT_GE(pTour->pixPage->GetSize().y, 80) << "page " << i + 1;
      EXPECT_LE(pTour->cmdClose->GetRect().GetBottom(), pTour->GetClientSize().y) << "page " << i + 1;
    }
  }
}
