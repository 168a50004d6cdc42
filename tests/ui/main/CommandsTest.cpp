// The commands that lead out of the main window: export and import, the logs, the help book, the tour and the
// update page. A small program that writes down its arguments stands in the viewer's place.
#include <gtest/gtest.h>

#include <filesystem>

#include "base/Text.h"
#include "persistence/Settings.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "support/ChildProcess.h"
#include "support/Stored.h"
#include "ui/Program.h"
#include "ui/common/HelpCommands.h"
#include "ui/common/TextGlue.h"
#include "ui/common/frmHelp.h"

namespace fs = std::filesystem;

TEST(Exchange, ExportCompletesTheNameAndAsksBeforeItReplaces) {
  Program aProgram({Site("a.test", 1, 2, "1.2.3.4"), Site("b.test", 0, 0)});
  const std::string szSave = "Export Data File|KVList-20260315.kvd|Kestrova Data File (*.kvd)|*.kvd";
  const std::string szLines = "a.test,1.2.3.4,2,1,60\r\nb.test,,4,0,60\r\n";
  const auto szChosen = aProgram.aHome.Path("mylist");
  const std::string szDone = "The address list has been exported.|2 sites in " + szChosen + ".kvd.";
  const std::string szExists = szChosen + ".kvd already exists.\nDo you want to replace it?";
  const struct {
    Texts aAnswers, aSaid;
    std::string szBefore, szAfter;
  } aCases[] = {{{"cancel"}, {szSave}, "", ""},
                {{szChosen, "ok"}, {szSave, szDone}, "", szLines},
                {{szChosen, "no"}, {szSave, szExists}, "old", "old"},
                {{szChosen, "yes", "ok"}, {szSave, szExists, szDone}, "old", szLines}};
  for (const auto& aCase : aCases) {
    Files::Delete(szChosen + ".kvd");
    if (!aCase.szBefore.empty()) aProgram.aHome.Write("mylist.kvd", aCase.szBefore);
    Answers aAnswers(aCase.aAnswers);
    aProgram.Run(mF_Export);
    EXPECT_EQ(aAnswers.aSaid, aCase.aSaid);
    EXPECT_EQ(aProgram.aHome.Read("mylist.kvd"), aCase.szAfter);
  }
  EXPECT_EQ(Stored::Get(ProductKeys::szLastLoc, "imex"), aProgram.aHome.Folder());
}

TEST(Exchange, ImportTakesGoodFilesAndRefusesTheRestWhole) {
  const auto Done = [](const char* szCame, int lNew, const char* szNow) {
    return std::string("The list has been imported.|") + szCame + " from FILE, " + std::to_string(lNew) +
           " of them new. The list now holds " + szNow + ".";
  };
  const auto szAsked =
      "Do you want to replace existing records with the import file?|" + FromWx(ResText(IDS_IMPORT_ANSWERS));
  const char* const szCorrupt =
      "The Data File appears to be corrupt. The file is not imported.|Line 1 is not a site.";
  const struct {
    const char* szBytes;
    Texts aAnswers, aSaid;
    const char *szUrls, *szRow1;
  } aCases[] = {
      {"A,,3,1,60\n",
       {"yes", "ok"},
       {szAsked, Done("1 site", 0, "1 site")},
       "A",
       "[x] http://A Red: Import Replace"},
      {"A,,3,1,60\nb,,1,1,60",
       {"no", "ok"},
       {szAsked, Done("2 sites", 1, "2 sites")},
       "A b",
       "[x] http://A Red: "},
      {"b,,1,1,60\n", {"cancel"}, {szAsked}, "a", "[x] http://a Green: "},
      {"Name,Address,Interval\r\n", {"ok"}, {szCorrupt}, "a", "[x] http://a Green: "},
  };
  for (auto aCase : aCases) {
    Program aProgram({Site("a", 1, 1)});
    aProgram.aHome.Write("list.kvd", aCase.szBytes);
    aCase.aAnswers.insert(aCase.aAnswers.begin(), aProgram.aHome.Path("list.kvd"));
    aCase.aSaid.insert(aCase.aSaid.begin(), "Import Data File||Kestrova Data File (*.kvd)|*.kvd");
    for (std::string& szSaid : aCase.aSaid)
      szSaid = Text::Replace(szSaid, "FILE", aProgram.aHome.Path("list.kvd"));
    Answers aAnswers(aCase.aAnswers);
    aProgram.Run(mF_Import);
    EXPECT_EQ(aAnswers.aSaid, aCase.aSaid);
    EXPECT_EQ(Stored::Urls(), aCase.szUrls);
    EXPECT_EQ(aProgram.RowText(1), aCase.szRow1);
    EXPECT_FALSE(aProgram.Main().Engine().ListBusy());
  }
}

TEST(LogCommands, OpenTheViewerWithTheLogAndThePageOrASite) {
  Program aProgram({Site("a.test/x")});
  TestHome& aHome = aProgram.aHome;
  const auto szAsk = FromWx(ResText(IDS_ASK_SAVE_HTML));
  aHome.Write("pages/keep.txt", "x");
  aHome.Write("Logs/D-20260314.kvl", "[START CHECK: MANUAL - 3/14/2026 1:00:00 PM]\r\n\t\r\n");
  aHome.Write("Logs/odd.kvl", std::string(200, 'a') + '\0');
  const auto InLogs = [&](const char* szName) { return aHome.Path("Logs") + Files::chSeparator + szName; };
  const auto SaveAs = [](const std::string& szName) {
    return "Save Log As HTML|" + szName + "|HTML File (*.htm; *html)|*.htm;*.html";
  };
  const auto szLog = InLogs("D-20260314.kvl");
  const auto szPage = aHome.Path("pages") + Files::chSeparator + "a \"b\" 'c'";
  Settings.LogPath = aHome.Path("Logs");
  Settings.LogPeriod = 1;
  fs::copy_file(ChildProcess::BuiltProgram("recorder"), aHome.Path(Shell::ProgramFileName("LogView")));
  const struct {
    MenuCommand iCommand;
    Texts aAnswers;
    std::string szLastSaid, szStarted;
  } aCases[] = {
      {mnuLog_Open, {szLog, "no"}, szAsk, szLog + "\n"},
      {mnuLog_Open, {szLog, "yes", szPage}, SaveAs("KV_Log-20260315.htm"), szLog + "\n" + szPage + ".htm\n"},
      {mnuLog_Open, {szLog, "yes", szLog, "ok", "cancel"}, SaveAs("D-20260314.kvl"), szLog + "\n"},
      {mnuLog_Open, {szLog, "yes", InLogs("new.KVL"), "ok", "cancel"}, SaveAs("new.KVL"), szLog + "\n"},
      {mnuLog_Open, {InLogs("odd.kvl"), "ok"}, "The Log File appears to be corrupt.", ""},
      {mnuLogs_ViewCur, {"yes", szLog, "no"}, szAsk, szLog + "\n"}};
  for (const auto& aCase : aCases) {
    Answers aAnswers(aCase.aAnswers);
    aProgram.Run(aCase.iCommand);
    EXPECT_EQ(aAnswers.aSaid.back(), aCase.szLastSaid);
    const auto szWritten = aCase.szStarted.empty() ? "" : "LogView\n" + aCase.szStarted;
    Until([&] { return aHome.Read("started.txt") == szWritten; });
    EXPECT_EQ(aHome.Read("started.txt"), szWritten);
    fs::remove(aHome.Path("started.txt"));
  }
  EXPECT_EQ(Stored::Get(ProductKeys::szLastLoc, "hmlg"), aHome.Path("pages"));
  aHome.Write("Logs/D-20260315.kvl", "x");
  Answers aNone({});
  aProgram.Main().lvwMain->SelectSlot(1);
  for (const auto& [iCommand, szSite] :
       {std::pair{mnuLogs_ViewCur, ""}, std::pair{mE_SiteLog, "--site\nhttp://a.test/x\n"}}) {
    aProgram.Run(iCommand);
    const auto szStarted = "LogView\n" + (szSite + InLogs("D-20260315.kvl")) + "\n";
    EXPECT_TRUE(Until([&] { return aHome.Read("started.txt") == szStarted; })) << iCommand;
    fs::remove(aHome.Path("started.txt"));
  }
}

TEST(Help, EveryTopicOpensItsPageAndABookThatIsNoneIsSaid) {
  Program aProgram;
  const auto szBook =
      (fs::path(ChildProcess::BuiltProgram("kestrova")).parent_path() / "Kestrova.hlp").string();
  const auto szWhole = *Files::ReadWhole(szBook, 100'000'000);
  for (const std::string& szBytes : {std::string(), szWhole.substr(0, szWhole.size() / 2)}) {
    aProgram.aHome.Write("Kestrova.hlp", szBytes);
    Answers aAnswers({"ok"});
    aProgram.Main().RunCommand(mH_Topics);
    EXPECT_EQ(aAnswers.aSaid, Texts{FromWx(ResText(IDS_HELP_MISSING))});
    EXPECT_EQ(frmHelp::Window(), nullptr);
  }
  aProgram.aHome.Write("Kestrova.hlp", szWhole);
  const auto Shows = [](const std::string& szPage) {
    return Until([&] { return frmHelp::Window() && frmHelp::Window()->Page() == szPage; });
  };
  const std::pair<std::int32_t, const char*> aTopics[] = {
      {20000, "index.html"}, {20003, "options-logs.html"}, {4711, "index.html"}};
  for (const auto& [lTopic, szPage] : aTopics) {
    HelpCommands::ShowContext(aProgram.Main(), lTopic);
    EXPECT_TRUE(Shows(szPage)) << lTopic;
  }
  EXPECT_TRUE(Until([] {
    if (frmHelp::Window()->IsActive()) return true;
    frmHelp::Window()->Raise();
    return false;
  }));
  Key(WXK_ESCAPE);
  EXPECT_TRUE(Until([] { return !frmHelp::Window(); }));
  aProgram.Run(mE_Options);
  ASSERT_TRUE(Until([] { return Open<wxDialog>() && Open<wxDialog>()->IsActive(); }));
  Key(WXK_F1);
  EXPECT_TRUE(Shows("options-timer.html"));
  // And the program ends with both open.
}

TEST(Help, OnlyWebAddressesAreOpenedAsTheUpdatePage) {
  Program aProgram;
  for (const char* szAddress :
       {"file:///etc/passwd", "C:\\Windows\\notepad.exe", "http://", "http://a\"b/"}) {
    Stored::Put(ProductKeys::szUpdates, "Updates", std::string(szAddress));
    Answers aAnswers({"ok"});
    aProgram.Main().RunCommand(mH_Updates);
    EXPECT_TRUE(aAnswers.aSaid.at(0).starts_with(FromWx(ResText(IDS_UPDATES_REFUSED)) + szAddress));
  }
  Stored::Put(ProductKeys::szUpdates, "Updates", std::string());
  Answers aAnswers({"ok"});
  aProgram.Main().RunCommand(mH_Updates);
  EXPECT_TRUE(aAnswers.aSaid.at(0).starts_with("This is Kestrova, version " KESTROVA_VERSION " ("));
}
