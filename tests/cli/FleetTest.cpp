// What kestrova-cli gives to other tools.
#include "cli/Cli.h"

namespace {

using Fleet = Cli;

TEST_F(Fleet, ExportForPrometheusFromTheStoreAndFromAListOfAnyLength) {
  ImportList("www.a.test,,4,1,10\r\nwww.b.test,192.0.2.1,4,0,10\r\nwww.c.test,192.0.2.1,4,1,10\r\n");
  const std::string szFolder = aHome.Path("out");
  Files::MakeFolder(aHome.Path("Messages"));
  aHome.Write("Messages/HTTP-404.txt", "%URL% is gone");
  Result aResult = Run({"export", "--prometheus", szFolder});
  EXPECT_EQ(aResult.iCode, 0) << aResult.szErrors;
  EXPECT_THAT(aResult.szOutput, testing::HasSubstr("2 sites in"));
  EXPECT_THAT(aResult.szErrors, testing::HasSubstr("mailed to nobody"));
  EXPECT_THAT(aHome.Read("out/targets.json"), testing::HasSubstr("http://www.c.test"));
  EXPECT_THAT(aHome.Read("out/mail.tmpl"), testing::HasSubstr("http://{{ .Labels.site }} is gone"));

  // Longer than one piece of the file, its last line without an end.
  std::string szList = "\xEF\xBB\xBF";
  for (int i = 0; i < 60000; ++i)
    szList += "www.site" + std::to_string(i) + ".test,,4,1,10\n\n";
  aHome.Write("long.kvd", szList + "last.test,,4,1,10");
  aResult = Run({"export", "--prometheus", szFolder, "--from", aHome.Path("long.kvd"), "--shards", "2"});
  EXPECT_THAT(aResult.szOutput, testing::HasSubstr("60001 sites in")) << aResult.szErrors;
  EXPECT_FALSE(Files::FileExists(aHome.Path("out/targets.json")));

  const std::string szTargets = aHome.Read("out/targets-1.json");
  aHome.Write("bad.kvd", szList + "bad.test,not-an-address,4,1,10\n");
  aResult = Run({"export", "--prometheus", szFolder, "--from", aHome.Path("bad.kvd"), "--shards", "2"});
  EXPECT_EQ(aResult.iCode, 2);
  EXPECT_THAT(aResult.szErrors, testing::HasSubstr("120001"));
  EXPECT_EQ(aHome.Read("out/targets-1.json"), szTargets);
}

TEST_F(Fleet, ExportForPrometheusSaysWhatIsWrong) {
  aHome.Write("file", "x");
  const std::vector<std::string> aCases[] = {
      {"export", "--prometheus", aHome.Path("file")},
      {"export", "--prometheus", aHome.Path("no/such/folder")},
      {"export", "--prometheus", aHome.Path("o"), "--from", "missing.kvd"},
      {"export", "--prometheus", aHome.Path("o"), "--shards", "0"},
      {"export", "--prometheus", aHome.Path("o"), "x.kvd"},
      {"export", "--shards", "2", "x.kvd"},
      {"export"}};
  for (const auto& aArguments : aCases) {
    const Result aResult = Run(aArguments);
    EXPECT_EQ(aResult.iCode, 2) << testing::PrintToString(aArguments);
    EXPECT_EQ(std::ranges::count(aResult.szErrors, '\n'), 1) << aResult.szErrors;
  }
  EXPECT_EQ(aHome.Read("file"), "x");
}

}  // namespace
