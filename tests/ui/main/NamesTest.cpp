#include <gtest/gtest.h>
#include <wx/notebook.h>

#include "support/LogScript.h"
#include "ui/Accessible.h"
#include "ui/Program.h"
#include "ui/dialogs/frmAddress.h"
#include "ui/dialogs/frmOptions.h"
#include "ui/logview/LogView.h"
#include "ui/logview/frmLogView.h"

TEST(Accessible, EveryControlHasAName) {
  Program aProgram({Site("a.test", 1, 1)});
  EXPECT_EQ(Nameless(aProgram.Main()), Texts{});
  aProgram.Run(mE_Options);
  for (std::size_t i = 0; i < Open<frmOptions>()->tabOptions->GetPageCount(); ++i) {
    Open<frmOptions>()->tabOptions->SetSelection(i);
    EXPECT_EQ(Nameless(*Open<frmOptions>()), Texts{}) << "page " << i;
  }
  Key(WXK_ESCAPE);
  ASSERT_TRUE(Until([] { return !Open<frmOptions>(); }));
  aProgram.Run(mF_NewAddress);
  EXPECT_EQ(Nameless(*Open<frmAddress>()), Texts{});
  Key(WXK_ESCAPE);
  ASSERT_TRUE(Until([] { return !Open<frmAddress>(); }));

  aProgram.aHome.Write("D-20260105.kvl", LogScript().Start().Up("www.example.com").End().szText);
  auto* pViewer = LogView::Start({aProgram.aHome.Path("D-20260105.kvl")});
  ASSERT_TRUE(Until([&] { return pViewer->History() != nullptr; }));
  for (std::size_t i = 0; i < pViewer->tabPages->GetPageCount(); ++i) {
    pViewer->tabPages->SetSelection(i);
    Settle();
    EXPECT_EQ(Nameless(*pViewer), Texts{}) << pViewer->tabPages->GetPageText(i);
  }
  pViewer->Destroy();
}
