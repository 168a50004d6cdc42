// The commands' answers: exit codes, output, and one plain line for whatever is wrong.
#include "cli/Cli.h"
#include "platform/Environment.h"

using namespace testing;

TEST_F(Cli, WhateverIsWrongIsOneLineAndChangesNothing) {
  ImportList(ListOf({"good.invalid"}));
  aHome.Write("broken.kvd", "good.invalid,,4,1,60\r\nbad.invalid,1.2.3,4,1,60\r\n");
  aHome.Write("binary.kvd", std::string("a\0b,,4,1,60", 11));
  aHome.Write("torn.reg", "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_LOCAL_MACHINE\\Softw");
  aHome.Write("there.kvd", "mine");
  aHome.Write("many.kvd", ListOf(1001));
  const struct {
    std::vector<std::string> aArguments;
    const char* szReason;
  } aCases[] = {
      {{}, "Say what to do"},
      {{"frob"}, "no command \"frob\""},
      {{"fr\033[31mob"}, "no command \"fr?[31mob\""},
      {{"check", "--frob"}, "--frob"},
      {{"import", "list.kvd"}, "--replace"},
      {{"import", "--add", "--replace", aHome.Path("list.kvd")}, "--replace"},
      {{"import", "--add"}, "FILE"},
      {{"import", "--add", aHome.Path("missing.kvd")}, "missing.kvd\" cannot be read"},
      {{"import", "--add", aHome.Path("broken.kvd")}, "line 2"},
      {{"import", "--add", aHome.Path("binary.kvd")}, "not a text file"},
      {{"import", "--add", aHome.Path("many.kvd")}, "beyond 1000 sites"},
      {{"export", aHome.Path("no/such/folder/x.kvd")}, "cannot be written"},
      {{"export", aHome.Path("there")}, "there already"},
      {{"export"}, ""},
      {{"export", "--shards", "2", "x.kvd"}, "--prometheus"},
      {{"export", "--prometheus", aHome.Path("o"), "x.kvd"}, "--prometheus"},
      {{"export", "--prometheus", aHome.Path("o"), "--shards", "0"}, "--shards"},
      {{"export", "--prometheus", aHome.Path("o"), "--from", "missing.kvd"}, "missing.kvd"},
      {{"export", "--prometheus", aHome.Path("there.kvd")}, "there.kvd"},
      {{"export", "--prometheus", aHome.Path("no/such/folder")}, "folder"},
      {{"registry"}, "subcommand"},
      {{"registry", "import", aHome.Path("torn.reg")}, "is not imported"},
      {{"registry", "export", aHome.Path("no/such/folder/x.reg")}, "cannot be written"},
      {{"log", aHome.Path("missing.kvl")}, "cannot be read"},
      {{"alert"}, "--preview"},
      {{"alert", "--preview", "808"}, "no result code"},
      {{"alert", "--preview", "404", "--site", "2"}, "no site 2"},
      {{"alert", "--preview", "418"}, "no alert text"},  // the home folder has no message files
      {{"alert", "--test"}, "mail server are not set"},
  };
  const std::string szBefore = Run({"list", "--json"}).szOutput;
  for (const auto& aCase : aCases)
    EXPECT_THAT(Run(aCase.aArguments), Refuses(aCase.szReason));
  EXPECT_EQ(Run({"list", "--json"}).szOutput, szBefore);
  EXPECT_EQ(aHome.Read("there.kvd"), "mine");
}

TEST_F(Cli, AnImportTellsWhatCanNeverAnswer) {
  aHome.Write("list.kvd", ListOf({"https://a.test", "HTTPS:b.test", "c.test\\x", "d.test/\\x"}));
  EXPECT_THAT(Run({"import", "--add", aHome.Path("list.kvd")}),
              FieldsAre(0, _,
                        AllOf(HasSubstr("2 of its addresses begin with \"https:\""),
                              HasSubstr("1 of its addresses have a backslash"))));
}

TEST_F(Cli, StoreThatCannotBeUsedFails) {
  ::Environment::Set("KESTROVA_REGISTRY",
                     aHome.Path(std::string(300, 'x')));  // a name too long for either system
  for (const char* szVerb : {"list", "check", "watch"})
    EXPECT_THAT(Run({szVerb}), Refuses()) << szVerb;
}
