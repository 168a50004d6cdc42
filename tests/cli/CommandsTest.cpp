// The commands' answers: exit codes, output, and one plain line for whatever is wrong.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "Cli.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/modAddress.h"
#include "support/Environment.h"

using testing::HasSubstr;
using testing::MatchesRegex;

TEST_F(Cli, HelpShowsAnExampleForEveryVerb) {
  const Result aTop = Run({"--help"});
  EXPECT_EQ(aTop.iCode, 0);
  for (const char* szVerb : {"check", "watch", "list", "import", "export", "registry", "log", "alert"}) {
    EXPECT_THAT(aTop.szOutput, HasSubstr(szVerb));
    const Result aVerb = Run({szVerb, "--help"});
    EXPECT_EQ(aVerb.iCode, 0) << szVerb;
    EXPECT_THAT(aVerb.szOutput, HasSubstr(std::string("  kestrova-cli ") + szVerb));
  }
  EXPECT_THAT(Run({"--version"}).szOutput, MatchesRegex("kestrova-cli [0-9.]+\n"));
}

TEST_F(Cli, WhateverIsWrongIsOneLineAndChangesNothing) {
  ImportList(ListOf({"good.invalid"}));
  aHome.Write("broken.kvd", "good.invalid,,4,1,60\r\nbad.invalid,1.2.3,4,1,60\r\n");
  aHome.Write("binary.kvd", std::string("a\0b,,4,1,60", 11));
  aHome.Write(
      "foreign.reg",
      "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\Software\\Other]\r\n\"a\"=\"b\"\r\n");
  aHome.Write("torn.reg", "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\Softw");
  aHome.Write("there.kvd", "mine");
  std::string szMany;
  for (int i = 0; i < 1001; ++i)
    szMany += "s" + std::to_string(i) + ".invalid,,4,1,60\r\n";
  aHome.Write("many.kvd", szMany);
  const struct {
    std::vector<std::string> aArguments;
    const char* szReason;
  } aCases[] = {
      {{}, "Say what to do"},
      {{"frob"}, "no command \"frob\""},
      {{"fr\033[31mob"}, "no command \"fr?[31mob\""},
      {{"check", "--frob"}, "--frob"},
      {{"check", "extra"}, "extra"},
      {{"import", "list.kvd"}, "--replace"},
      {{"import", "--add", "--replace", aHome.Path("list.kvd")}, "--replace"},
      {{"import", "--add"}, "FILE"},
      {{"import", "--add", aHome.Path("missing.kvd")}, "missing.kvd\" cannot be read"},
      {{"import", "--add", aHome.Folder()}, "cannot be read"},
      {{"import", "--add", aHome.Path("broken.kvd")}, "line 2"},
      {{"import", "--add", aHome.Path("binary.kvd")}, "not a text file"},
      {{"import", "--add", aHome.Path("many.kvd")}, "beyond 1000 sites"},
      {{"export", aHome.Path("no/such/folder/x.kvd")}, "cannot be written"},
      {{"export", aHome.Path("there")}, "there already"},
      {{"registry"}, "subcommand"},
      {{"registry", "frob"}, "subcommand"},
      {{"registry", "import", aHome.Path("missing.reg")}, "cannot be read"},
      {{"registry", "import", aHome.Path("foreign.reg")}, "is not imported"},
      {{"registry", "import", aHome.Path("torn.reg")}, "is not imported"},
      {{"registry", "import", aHome.Path("binary.kvd")}, "is not imported"},
      {{"registry", "export", aHome.Path("no/such/folder/x.reg")}, "cannot be written"},
      {{"log", aHome.Path("missing.kvl")}, "cannot be read"},
      {{"log"}, "FILE"},
      {{"alert"}, "--preview"},
      {{"alert", "--preview", "808"}, "no result code"},
      {{"alert", "--preview", "302"}, "counts as up"},
      {{"alert", "--preview", "404", "--site", "2"}, "no site 2"},
      {{"alert", "--preview", "404", "--site", "x"}, "--site"},
      {{"alert", "--preview", "418"}, "no alert text"},  // the home folder has no message files
      {{"alert", "--test"}, "mail server are not set"},
  };
  const std::string szBefore = Run({"list", "--json"}).szOutput;
  for (const auto& aCase : aCases) {
    const Result aResult = Run(aCase.aArguments);
    EXPECT_EQ(aResult.iCode, 2) << aCase.szReason;
    EXPECT_EQ(aResult.szOutput, "") << aCase.szReason;
    EXPECT_THAT(aResult.szErrors, MatchesRegex("kestrova-cli: [^\n]*\r?\n"));
    EXPECT_THAT(aResult.szErrors, HasSubstr(aCase.szReason));
  }
  EXPECT_EQ(Run({"list", "--json"}).szOutput, szBefore);
  EXPECT_EQ(aHome.Read("there.kvd"), "mine");
}

TEST_F(Cli, StoreThatCannotBeUsedFailsAndDamagedOneIsSetAside) {
  aHome.Write("registry.db", std::string(5000, 'x'));
  const Result aDamaged = Run({"list", "--json"});
  EXPECT_EQ(aDamaged.iCode, 0) << aDamaged.szErrors;
  EXPECT_EQ(aDamaged.szOutput, "[]\n");
  EXPECT_THAT(aDamaged.szErrors, MatchesRegex("kestrova-cli: [^\n]+\n"));
  bool bKept = false;
  for (const auto& szName : aHome.Names())
    bKept = bKept || (szName != "registry.db" && aHome.Read(szName) == std::string(5000, 'x'));
  EXPECT_TRUE(bKept) << "the damaged file is gone";

  Environment::Set("KESTROVA_REGISTRY", aHome.Path("registry.db/below-a-file.db"));
  for (const char* szVerb : {"list", "check", "watch"}) {
    const Result aUnusable = Run({szVerb});
    EXPECT_EQ(aUnusable.iCode, 2) << szVerb;
    EXPECT_THAT(aUnusable.szErrors, MatchesRegex("kestrova-cli: [^\n]+\n"));
  }
}

TEST_F(Cli, ListAsJsonCarriesEveryByteThatJsonCan) {
  std::vector<std::string> aURLs = {"quote\"and\\slash.invalid", "caf\xC3\xA9.invalid", "esc\x1b[2J.invalid",
                                    "latin\xE9.invalid"};
  for (std::size_t i = 0; i < aURLs.size(); ++i) {
    SiteRecord aSite;
    aSite.URL = aURLs[i];
    aSite.TimeOut = 60;
    aSite.Enabled = i % 2 == 0 ? 1 : 0;
    modAddress::WriteSiteRecord(aSite, static_cast<std::int32_t>(i) + 1);
  }
  modAddress::RebuildSiteIndex();
  const Result aResult = Run({"list", "--json"});
  EXPECT_FALSE(HasTerminalControls(aResult.szOutput));
  const auto aList = nlohmann::json::parse(aResult.szOutput);
  ASSERT_EQ(aList.size(), aURLs.size());
  aURLs[3] = "latin\xEF\xBF\xBD.invalid";  // no UTF-8: the replacement character
  for (std::size_t i = 0; i < aURLs.size(); ++i) {
    EXPECT_EQ(aList[i]["number"], i + 1);
    EXPECT_EQ(aList[i]["url"], aURLs[i]);
    EXPECT_EQ(aList[i]["enabled"], i % 2 == 0);
    EXPECT_EQ(aList[i]["status"], "unknown");
  }
  EXPECT_FALSE(HasTerminalControls(Run({"list"}).szOutput));
}

TEST_F(Cli, ListsAndSettingsMoveToAnotherStoreUnchanged) {
  ImportList("b.invalid,,1,1,60\r\na.invalid,10.0.0.1,3,0,1800\r\n");
  EXPECT_EQ(Run({"check"}).iCode, 1);  // brings settings and a remark into the store
  EXPECT_EQ(RegistryAccess::RegWriteValue(Registry::HKEY_LOCAL_MACHINE, ProductKeys::szManager, "Name",
                                          std::string("A \"B\" \\ \xC3\xA9"), 1),
            0);
  EXPECT_EQ(Run({"export", aHome.Path("one")}).iCode, 0);
  EXPECT_EQ(Run({"registry", "export", aHome.Path("one.reg")}).iCode, 0);

  Environment::Set("KESTROVA_REGISTRY", aHome.Path("second.db"));
  EXPECT_EQ(Run({"registry", "import", aHome.Path("one.reg")}).iCode, 0);
  EXPECT_EQ(Run({"registry", "export", aHome.Path("two.reg")}).iCode, 0);
  EXPECT_EQ(Run({"export", aHome.Path("two.kvd")}).iCode, 0);
  EXPECT_EQ(aHome.Read("one.reg"), aHome.Read("two.reg"));
  EXPECT_EQ(aHome.Read("one.kvd"), aHome.Read("two.kvd"));
  EXPECT_THAT(aHome.Read("two.kvd"), HasSubstr("a.invalid,10.0.0.1,3,0,1800\r\n"));

  Environment::Set("KESTROVA_REGISTRY", aHome.Path("third.db"));
  EXPECT_EQ(Run({"import", "--add", aHome.Path("two.kvd")}).iCode, 0);
  EXPECT_EQ(Run({"export", aHome.Path("three.kvd")}).iCode, 0);
  EXPECT_THAT(aHome.Read("three.kvd"), HasSubstr("a.invalid,10.0.0.1,3,0,1800\r\n"));
}

TEST_F(Cli, PreviewShowsTheMailOfTheSiteAskedFor) {
  ImportList(ListOf({"first.invalid", "second.invalid"}));
  const Result aResult = Run({"alert", "--preview", "404", "--site", "2"});
  EXPECT_EQ(aResult.iCode, 0);
  EXPECT_THAT(aResult.szOutput, HasSubstr("Subject: Kestrova Alert\n"));
  EXPECT_THAT(aResult.szOutput, HasSubstr("second.invalid"));
  EXPECT_THAT(aResult.szErrors, HasSubstr("No mail would go out"));
}
