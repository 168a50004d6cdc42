// The Help menu through the real windows: the book, the about box, the tour's start, the update page.
#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/log.h>
#include <wx/stattext.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "app/Answers.h"
#include "app/Program.h"
#include "app/frmAbout.h"
#include "app/frmWelcome.h"
#include "app/modMain.h"
#include "dialogs/HelpCommands.h"
#include "dialogs/HelpHook.h"
#include "dialogs/frmHelp.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "support/ChildProcess.h"
#include "support/Stored.h"

namespace fs = std::filesystem;

namespace {

constexpr char szTourMissing[] =
    "Unable to locate Kestrova Interactive Tour Program.\nMake sure that the Interactive Tour Program is "
    "located "
    "in the same directory as Kestrova.";
constexpr char szHelpMissing[] =
    "Unable to open the Kestrova Help file.\nMake sure that the file Kestrova.hlp is located in the same "
    "directory as Kestrova.";

fs::path Built(const std::string& szFile) {
  return fs::path(ChildProcess::BuiltProgram("kestrova")).parent_path() / szFile;
}

void PutBook(const TestHome& aHome) {
  fs::copy_file(Built("Kestrova.hlp"), aHome.Path("Kestrova.hlp"), fs::copy_options::overwrite_existing);
}

bool Shows(const std::string& szPage) {
  return Until([&] { return frmHelp::Window() && frmHelp::Window()->Page() == szPage; });
}

void PressKey(wxWindow& aWindow, int lKey) {
  wxKeyEvent aKey(wxEVT_CHAR_HOOK);
  aKey.m_keyCode = lKey;
  aWindow.GetEventHandler()->ProcessEvent(aKey);
}

template <typename Window>
Window* Find() {
  for (wxWindow* pWindow : wxTopLevelWindows)
    if (auto* pFound = dynamic_cast<Window*>(pWindow); pFound && !pFound->IsBeingDeleted()) return pFound;
  return nullptr;
}

}  // namespace

TEST(Help, EveryTopicOpensItsPage) {
  Program aProgram;
  PutBook(aProgram.aHome);
  aProgram.Main().RunCommand(mH_Topics);
  ASSERT_TRUE(Shows("index.html"));
  const frmHelp* pFirst = frmHelp::Window();
  const struct {
    std::int32_t lTopic;
    const char* szPage;
  } aTopics[] = {{20001, "options-timer.html"}, {20002, "options-manager.html"},
                 {20003, "options-logs.html"},  {20004, "options-cookies.html"},
                 {20005, "site-editor.html"},   {20006, "exchange.html"},
                 {20007, "lights.html"},        {20008, "logs.html"},
                 {20009, "first-site.html"},    {4711, "index.html"}};
  for (const auto& aTopic : aTopics) {
    HelpCommands::ShowContext(aProgram.Main(), aTopic.lTopic);
    EXPECT_TRUE(Shows(aTopic.szPage))
        << aTopic.lTopic << " shows " << frmHelp::Window()->Page().utf8_string();
  }
  EXPECT_EQ(frmHelp::Window(), pFirst) << "one window";
  // Every page can be drawn: the reader reports what it cannot find as a log message.
  const auto& aContents = frmHelp::Window()->aController.GetHelpData()->GetContentsArray();
  wxLogBuffer aLog;
  wxLog* pOld = wxLog::SetActiveTarget(&aLog);
  for (std::size_t i = 0; i < aContents.size(); ++i) {
    frmHelp::Window()->aController.Display(aContents[i].name);
    EXPECT_TRUE(Shows(aContents[i].page.utf8_string())) << aContents[i].page;
  }
  wxLog::SetActiveTarget(pOld);
  EXPECT_EQ(aLog.GetBuffer(), "");
  // As the dialogs ask for it.
  EXPECT_TRUE(HelpHook::Show(HelpHook::lCookiesPage));
  EXPECT_TRUE(Shows("options-cookies.html"));
  PressKey(*frmHelp::Window(), WXK_ESCAPE);
  EXPECT_TRUE(Until([] { return !frmHelp::Window(); }));
  HelpCommands::ShowContext(aProgram.Main(), HelpContext::lLogs);
  EXPECT_TRUE(Shows("options-logs.html"));
  // And the program ends with the book open.
}

TEST(Help, ABookThatIsNoneIsSaid) {
  Program aProgram;
  const auto szWhole = [] {
    std::ostringstream aText;
    aText << std::ifstream(Built("Kestrova.hlp"), std::ios::binary).rdbuf();
    return aText.str();
  }();
  const auto Refused = [&](const char* szWhat) {
    Answers aAnswers({"ok"});
    aProgram.Main().RunCommand(mH_Topics);
    EXPECT_EQ(aAnswers.aSaid, std::vector<std::string>{szHelpMissing}) << szWhat;
    EXPECT_EQ(frmHelp::Window(), nullptr) << szWhat;
  };
  Refused("missing");
  for (const std::string& szBytes :
       {std::string(), std::string("hello"), szWhole.substr(0, szWhole.size() / 2),
        szWhole.substr(szWhole.size() / 2)}) {
    aProgram.aHome.Write("Kestrova.hlp", szBytes);
    Refused((std::to_string(szBytes.size()) + " bytes").c_str());
  }
  PutBook(aProgram.aHome);
  aProgram.Main().RunCommand(mH_Topics);
  EXPECT_TRUE(Shows("index.html")) << "found again without a new start";
}

TEST(About, SaysTheVersionHoldsTheMainWindowAndGivesItBack) {
  Program aProgram;
  PutBook(aProgram.aHome);
  aProgram.Run(MenuCommand::mH_About);
  auto* pAbout = Find<frmAbout>();
  ASSERT_TRUE(pAbout);
  EXPECT_EQ(pAbout->lblVersion->GetLabel(), "Kestrova, version " KESTROVA_VERSION);
  EXPECT_FALSE(aProgram.Main().IsEnabled());
  PressKey(*pAbout, WXK_F1);
  EXPECT_TRUE(Shows("index.html"));
  pAbout->Close();
  EXPECT_TRUE(Until([] { return !Find<frmAbout>(); }));
  EXPECT_TRUE(aProgram.Main().IsEnabled());
  aProgram.Run(MenuCommand::mH_About);
  pAbout = Find<frmAbout>();
  ASSERT_TRUE(pAbout);
  wxCommandEvent aClick(wxEVT_BUTTON, wxID_OK);
  aClick.SetEventObject(pAbout->cmdOK);
  pAbout->cmdOK->GetEventHandler()->ProcessEvent(aClick);
  EXPECT_TRUE(Until([] { return !Find<frmAbout>(); }));
  aProgram.Run(MenuCommand::mH_About);  // and the program ends with it open
}

TEST(Tour, IsStartedOrSaidToBeMissing) {
  Program aProgram({}, Program::Start::First);
  auto* pWelcome = Find<frmWelcome>();
  ASSERT_TRUE(pWelcome);
  const auto ByMenu = [&] { aProgram.Main().RunCommand(mH_Tour); };
  const auto ByButton = [&] {
    wxCommandEvent aClick(wxEVT_BUTTON, pWelcome->cmdRunTour->GetId());
    aClick.SetEventObject(pWelcome->cmdRunTour);
    pWelcome->cmdRunTour->GetEventHandler()->ProcessEvent(aClick);
  };
  const auto Both = [&](const std::function<void()>& aCheck) {
    for (const std::function<void()>& aStart :
         {std::function<void()>(ByMenu), std::function<void()>(ByButton)}) {
      aStart();
      aCheck();
    }
  };
  {
    Answers aAnswers({"ok", "ok"});
    Both([] {});
    EXPECT_EQ(aAnswers.aSaid, (std::vector<std::string>{szTourMissing, szTourMissing}));
  }
  fs::copy_file(ChildProcess::BuiltProgram("recorder"),
                aProgram.aHome.Path(Shell::ProgramFileName("KVTour")));
  Both([&] {
    EXPECT_TRUE(Until([&] { return aProgram.aHome.Read("started.txt") == "KVTour\n"; }));
    fs::remove(aProgram.aHome.Path("started.txt"));
  });
}

TEST(Updates, OnlyWebAddressesAreOpened) {
  Program aProgram;
  for (const char* szAddress :
       {"file:///etc/passwd", "C:\\Windows\\notepad.exe", "javascript:alert(1)", "http://", "http://a b/",
        "http://a\"b/", "https:/x", "ftp://x/", "http://x/\r\nrm"}) {
    Stored::Put(ProductKeys::szUpdates, "Updates", std::string(szAddress));
    Answers aAnswers({"ok"});
    aProgram.Main().RunCommand(mH_Updates);
    ASSERT_EQ(aAnswers.aSaid.size(), 1U);
    EXPECT_TRUE(aAnswers.aSaid[0].starts_with(
        "The address of the update page is not a web address, so it is not opened:"))
        << aAnswers.aSaid[0];
    EXPECT_TRUE(aAnswers.aSaid[0].ends_with("HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\URL\\Kestrova"));
  }
}
