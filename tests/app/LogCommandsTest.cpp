// Open Log and View Current Log: what is asked, what is remembered, and what the viewer is started with. A
// small program that writes down its arguments stands in the viewer's place.
#include <gtest/gtest.h>

#include <filesystem>

#include "app/Answers.h"
#include "app/Program.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "support/ChildProcess.h"
#include "support/Stored.h"

namespace fs = std::filesystem;

namespace {

constexpr char szAskHtml[] = "Do you wish to save the the log file as HTML?";
constexpr char szViewerMissing[] =
    "Unable to locate LogViewer.\n\nPlease make sure that the LogViewer program is located in the same "
    "directory "
    "as Kestrova.";
constexpr char szNoLog[] = "Current log file is unavailable.\n\nWould you like to open previous log files?";

class LogCommand : public testing::Test {
 protected:
  LogCommand() {
    PutViewer();
    Home().Write("Logs/D-20230314.kvl", "[START CHECK: MANUAL - 3/14/2023 1:00:00 PM]\r\n\t\r\n");
    Home().Write("pages/keep.txt", "x");
    Settings.LogPath = Home().Path("Logs");
  }
  TestHome& Home() { return aProgram.aHome; }
  void PutViewer() {
    fs::copy_file(ChildProcess::BuiltProgram("recorder"), Home().Path(Shell::ProgramFileName("LogView")));
  }
  std::string Log() { return Home().Path("Logs") + Files::chSeparator + "D-20230314.kvl"; }
  std::string Page(const std::string& szName) { return Home().Path("pages") + Files::chSeparator + szName; }

  // What the viewer was started with; "(not started)" when nothing was.
  std::string Started(double dSeconds = 5) {
    Until([this] { return Files::FileExists(Home().Path("started.txt")); }, dSeconds);
    const auto szStarted = Home().Read("started.txt");
    fs::remove(Home().Path("started.txt"));
    return szStarted.empty() ? "(not started)" : szStarted;
  }
  std::vector<std::string> Open(const std::vector<std::string>& aScript) {
    Answers aAnswers(aScript);
    aProgram.Run(MenuCommand::mnuLog_Open);
    aFolders = aAnswers.aFolders;
    return aAnswers.aSaid;
  }

  Program aProgram;
  std::vector<std::string> aFolders;
};

}  // namespace

TEST_F(LogCommand, OpensWithoutAPage) {
  const auto aSaid = Open({Log(), "no"});
  ASSERT_EQ(aSaid.size(), 2U);
  EXPECT_EQ(aSaid[0], "Open Kestrova Log|Kestrova Log File (*.kvl)|*.kvl|");
  EXPECT_EQ(aFolders[0], Settings.LogPath);
  EXPECT_EQ(aSaid[1], szAskHtml);
  EXPECT_EQ(Started(), "LogView\n" + Log() + "\n");
  EXPECT_EQ(Stored::Get(ProductKeys::szLastLoc, "hmlg"), "(none)");
}

TEST_F(LogCommand, SavesAPageAndRemembersItsFolder) {
  auto aSaid = Open({Log(), "yes", Page("a \"b\" 'c'.htm")});
  ASSERT_EQ(aSaid.size(), 3U);
  EXPECT_EQ(aSaid[2], "Save Log As HTML|HTML File (*.htm; *html)|*.htm;*.html|KV_Log-20230315.htm");
  EXPECT_NE(aFolders[1], Home().Path("pages"));
  EXPECT_EQ(Started(), "LogView\n" + Log() + "\n" + Page("a \"b\" 'c'.htm") + "\n");
  EXPECT_EQ(Stored::Get(ProductKeys::szLastLoc, "hmlg"), Home().Path("pages"));
  // Cancelled this time: the log is shown all the same, the folder stays known.
  Open({Log(), "yes", "cancel"});
  EXPECT_EQ(aFolders[1], Home().Path("pages"));
  EXPECT_EQ(Started(), "LogView\n" + Log() + "\n");
  EXPECT_EQ(Stored::Get(ProductKeys::szLastLoc, "hmlg"), Home().Path("pages"));
  // A name without an ending is completed; where that file is there, the dialog has to ask about it.
  Open({Log(), "yes", Page("week")});
  EXPECT_EQ(Started(), "LogView\n" + Log() + "\n" + Page("week.htm") + "\n");
  Home().Write("pages/week.htm", "old");
  aSaid = Open({Log(), "yes", Page("week"), Page("week.htm")});
  EXPECT_EQ(aSaid[3], "Save Log As HTML|HTML File (*.htm; *html)|*.htm;*.html|week.htm");
  EXPECT_EQ(Started(), "LogView\n" + Log() + "\n" + Page("week.htm") + "\n");
  fs::remove_all(Home().Path("pages"));
  Open({Log(), "yes", "cancel"});
  EXPECT_NE(aFolders[1], Home().Path("pages")) << "a folder that is gone";
  Started();
}

TEST_F(LogCommand, TheLogIsNeverThePage) {
  const auto aSaid = Open({Log(), "yes", Log(), "ok", Page("x.htm")});
  ASSERT_EQ(aSaid.size(), 5U);
  EXPECT_EQ(aSaid[3], "The page cannot be saved over the log itself.\n\nPlease choose another name.");
  EXPECT_EQ(Started(), "LogView\n" + Log() + "\n" + Page("x.htm") + "\n");
}

TEST_F(LogCommand, RefusesWhatIsNoText) {
  for (const char ch : {'\0', '\x1B', '\x7F', '\x08'}) {
    Home().Write("Logs/odd.kvl", std::string(200, 'a') + ch);
    const auto aSaid = Open({Home().Path("Logs") + Files::chSeparator + "odd.kvl", "ok"});
    EXPECT_EQ(aSaid.back(), "The Log File appears to be corrupt.") << static_cast<int>(ch);
  }
  Home().Write("Logs/late.kvl", std::string(256, 'a') + '\0');
  Open({Home().Path("Logs") + Files::chSeparator + "late.kvl", "no"});
  EXPECT_NE(Started(), "(not started)") << "only the beginning is looked at";
  Open({"cancel"});
  EXPECT_EQ(Started(0.2), "(not started)");
}

TEST_F(LogCommand, AMissingViewerIsSaidAfterTheQuestions) {
  const auto szViewer = Home().Path(Shell::ProgramFileName("LogView"));
  fs::remove(szViewer);
  EXPECT_EQ(Open({Log(), "yes", Page("x.htm"), "ok"}).back(), szViewerMissing);
  EXPECT_EQ(Open({Log(), "no", "ok"}).back(), szViewerMissing);
  fs::create_directories(szViewer);
  EXPECT_EQ(Open({Log(), "no", "ok"}).back(), szViewerMissing) << "a folder of that name is no program";
  fs::remove(szViewer);
  Home().Write(Shell::ProgramFileName("LogView"), "not a program");
  EXPECT_EQ(
      Open({Log(), "no", "ok"}).back(),
      "The LogViewer program could not be started.\n\nPlease make sure that you are allowed to run it:\n" +
          szViewer);
}

TEST_F(LogCommand, TheCurrentLog) {
  const struct {
    std::int16_t iPeriod;
    const char* szName;
  } aCases[] = {{1, "D-20230315.kvl"}, {2, "W-20230312.kvl"}};
  for (const auto& aCase : aCases) {
    Settings.LogPeriod = aCase.iPeriod;
    {
      Answers aNo({"no"});
      aProgram.Run(MenuCommand::mnuLogs_ViewCur);
      EXPECT_EQ(aNo.aSaid.back(), szNoLog);
    }
    EXPECT_EQ(Started(0.2), "(not started)");
    Home().Write(std::string("Logs/") + aCase.szName, "x");
    Answers aNone({});
    aProgram.Run(MenuCommand::mnuLogs_ViewCur);
    EXPECT_EQ(Started(), "LogView\n" + Home().Path("Logs") + Files::chSeparator + aCase.szName + "\n");
  }
  fs::remove(Home().Path("Logs") + "/D-20230315.kvl");
  Settings.LogPeriod = 1;
  Answers aEarlier({"yes", Log(), "no", "yes", "cancel"});
  aProgram.Run(MenuCommand::mnuLogs_ViewCur);
  EXPECT_EQ(Started(), "LogView\n" + Log() + "\n");
  aProgram.Run(MenuCommand::mnuLogs_ViewCur);
  EXPECT_EQ(aEarlier.aSaid.size(), 5U);
}
