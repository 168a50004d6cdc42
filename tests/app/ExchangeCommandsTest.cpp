// Export and import from the main window: file windows, questions and messages, over good, odd and hostile
// files.
#include <gtest/gtest.h>

#include "app/Dialogs.h"
#include "dialogs/ExchangeCommands.h"
#include "platform/Files.h"
#include "support/Stored.h"

namespace {

using Texts = std::vector<std::string>;
const char szOpen[] = "Import Data File||Kestrova Data File (*.kvd)|*.kvd";
const char szReplace[] = "Do you want to replace existing records with the import file?";

}  // namespace

TEST(Exchange, ExportCompletesTheNameAndAsksBeforeItReplaces) {
  Program aProgram({Site("a.test", 1, 2, "1.2.3.4"), Site("b.test", 0, 0)});
  const auto szSave = "Export Data File|KVList-20230315.kvd|Kestrova Data File (*.kvd)|*.kvd";
  const std::string szLines = "a.test,1.2.3.4,2,1,60\r\nb.test,,4,0,60\r\n";
  const auto szChosen = aProgram.aHome.Path("mylist");
  const std::string szExists = szChosen + ".kvd already exists.\nDo you want to replace it?";
  const struct {
    std::vector<Replies::Reply> aReplies;
    Texts aTexts;
    const char* szBefore;
    bool bWritten;
  } aCases[] = {
      {{{wxID_CANCEL}}, {szSave}, "", false},
      {{{wxID_OK, szChosen}, {wxID_OK}}, {szSave, "The address list has been exported."}, "", true},
      {{{wxID_OK, szChosen}, {wxID_NO}}, {szSave, szExists}, "old", false},
      {{{wxID_OK, szChosen}, {wxID_YES}, {wxID_OK}},
       {szSave, szExists, "The address list has been exported."},
       "old",
       true},
  };
  for (const auto& aCase : aCases) {
    Files::Delete(szChosen + ".kvd");
    if (*aCase.szBefore) aProgram.aHome.Write("mylist.kvd", aCase.szBefore);
    Replies aAnswers(aCase.aReplies);
    aProgram.Run(MenuCommand::mF_Export);
    EXPECT_EQ(aAnswers.aTexts, aCase.aTexts);
    EXPECT_EQ(aProgram.aHome.Read("mylist.kvd"), aCase.bWritten ? szLines : aCase.szBefore);
  }
  EXPECT_EQ(Stored::Get(ProductKeys::szLastLoc, "imex"), aProgram.aHome.Folder());
  ASSERT_TRUE(Files::MakeFolder(aProgram.aHome.Path("folder.kvd")));
  Replies aAnswers({{wxID_OK, aProgram.aHome.Path("folder")}, {wxID_OK}});
  aProgram.Run(MenuCommand::mF_Export);
  EXPECT_EQ(aAnswers.aTexts.at(1).find("The address list could not be exported to "), 0U);
}

TEST(Exchange, ImportTakesGoodFilesAndRefusesTheRestWhole) {
  std::string szMany;
  for (int i = 0; i < 100000; ++i)
    szMany += "host" + std::to_string(i) + ",,1,1,60\r\n";
  const std::string szCorrupt = "The Data File appears to be corrupt. The file is not imported.|Line ";
  const std::string szTooMany =
      "With this file the list would hold more than 1000 sites. The file is not imported.\n"
      "Please split the file, or delete sites first.";
  const std::string szDone = "The list has been imported.";
  const struct {
    const char* szWhat;
    bool bEmptyList;
    std::string szBytes;
    std::vector<int> aButtons;
    Texts aTexts;
    const char* szUrls;
    const char* szRow1;
  } aCases[] = {
      {"into an empty list",
       true,
       "new.test,1.2.3.4,2,1,60\r\n",
       {wxID_OK},
       {szDone},
       "new.test",
       "[x] http://new.test (1.2.3.4) Yellow: Import New"},
      {"replace",
       false,
       "A,,3,1,60\n",
       {wxID_YES, wxID_OK},
       {szReplace, szDone},
       "A",
       "[x] http://A Red: Import Replace"},
      {"add",
       false,
       "A,,3,1,60\nb,,1,1,60",
       {wxID_NO, wxID_OK},
       {szReplace, szDone},
       "A b",
       "[x] http://A Red: "},
      {"cancelled", false, "b,,1,1,60\n", {wxID_CANCEL}, {szReplace}, "a", "[x] http://a Green: "},
      {"a mark, no line end",
       true,
       "\xEF\xBB\xBF"
       "b,,1,1,60",
       {wxID_OK},
       {szDone},
       "b",
       "[x] http://b Green: Import New"},
      {"nothing in it", true, "", {wxID_OK}, {szDone}, "", "(no row)"},
      {"another program's table",
       false,
       "Name,Address,Interval\r\n",
       {wxID_OK},
       {szCorrupt + "1 is not a site."},
       "a",
       "[x] http://a Green: "},
      {"NUL bytes",
       false,
       std::string("b,,1,1,60\r\n\0\0", 13),
       {wxID_OK},
       {szCorrupt + "2 is not a site."},
       "a",
       "[x] http://a Green: "},
      {"a 10 MB line",
       false,
       std::string(10'000'000, 'x'),
       {wxID_OK},
       {szCorrupt + "1 is not a site."},
       "a",
       "[x] http://a Green: "},
      {"100,000 lines", false, szMany, {wxID_OK}, {szTooMany}, "a", "[x] http://a Green: "},
  };
  for (const auto& aCase : aCases) {
    Program aProgram(aCase.bEmptyList ? std::vector<SiteRecord>{} : std::vector<SiteRecord>{Site("a", 1, 1)});
    aProgram.aHome.Write("list.kvd", aCase.szBytes);
    std::vector<Replies::Reply> aReplies = {{wxID_OK, aProgram.aHome.Path("list.kvd")}};
    for (const int lButton : aCase.aButtons)
      aReplies.push_back({lButton});
    Texts aTexts = {szOpen};
    aTexts.insert(aTexts.end(), aCase.aTexts.begin(), aCase.aTexts.end());
    Replies aAnswers(aReplies);
    aProgram.Run(MenuCommand::mF_Import);
    EXPECT_EQ(aAnswers.aTexts, aTexts) << aCase.szWhat;
    EXPECT_EQ(Stored::Urls(), aCase.szUrls) << aCase.szWhat;
    EXPECT_EQ(aProgram.RowText(1), aCase.szRow1) << aCase.szWhat;
    EXPECT_FALSE(aProgram.Main().Engine().bListBusy);
  }
  Program aProgram;
  const auto szGone = aProgram.aHome.Path("gone.kvd");
  aProgram.aHome.Write("gone.kvd", "a");
  Replies aAnswers({{wxID_OK, szGone, [&] { Files::Delete(szGone); }}, {wxID_OK}, {wxID_CANCEL}});
  aProgram.Run(MenuCommand::mF_Import);
  aProgram.Run(MenuCommand::mF_Import);
  EXPECT_NE(aAnswers.aTexts.at(1).find("could not be read. The file is not imported."), std::string::npos);
}
