// The demonstration's servers, as ./run demo uses them: with the terminal program beside them.
#include "cli/Cli.h"

using testing::HasSubstr;

TEST_F(Cli, DemonstrationStartsAndHasItsFaultySites) {
  ChildProcess aDemo(ChildProcess::BuiltProgram("kestrova-demo"), {aHome.Folder()});
  for (const Stopwatch aWatch; !Files::FileExists(aHome.Path("ready")) && aWatch.Seconds() < dMostSeconds;)
    if (aDemo.Wait(0.05) != ChildProcess::lRunning) break;
  ASSERT_TRUE(Files::FileExists(aHome.Path("ready"))) << aDemo.Errors();
  ASSERT_EQ(Run({"registry", "import", aHome.Path("settings.reg")}).iCode, 0);
  ASSERT_EQ(Run({"import", "--replace", aHome.Path("demo.kvd")}).iCode, 0);

  EXPECT_THAT(Run({"check"}).szOutput, HasSubstr("3 up, 6 warning, 0 down"));
  aDemo.Interrupt();
  EXPECT_EQ(aDemo.Wait(dMostSeconds), 0);
}
