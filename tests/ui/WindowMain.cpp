// The main function of the tests that open windows: a display of their own, the application object, an event
// loop that the tests pump themselves.
#include <gtest/gtest.h>
#include <wx/evtloop.h>
#include <wx/init.h>

#include <cstdio>

#include "ui/Display.h"
#include "ui/main/App.h"

class TestApp : public App {
 public:
  bool OnInit() override { return PrepareWindows(); }
};

namespace {

void ReportAssert(const wxString& szFile, int lLine, const wxString&, const wxString& szCondition,
                  const wxString& szMessage) {
  ADD_FAILURE_AT(szFile.utf8_str(), lLine) << szCondition.utf8_string() << ": " << szMessage.utf8_string();
}

}  // namespace

wxIMPLEMENT_APP_NO_MAIN(TestApp);

int main(int lCount, char** aArguments) {
  testing::InitGoogleTest(&lCount, aArguments);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  if (!Display::Start()) {
    std::fputs("No display can be started: is Xvfb installed?\n", stderr);
    return 2;
  }
  int lResult = 2;
  if (wxEntryStart(lCount, aArguments) && wxTheApp->CallOnInit()) {
    wxSetAssertHandler(ReportAssert);
    wxEventLoop aLoop;
    wxEventLoopActivator aActive(&aLoop);
    lResult = RUN_ALL_TESTS();
  }
  wxEntryCleanup();
  Display::Stop();
  return lResult;
}
