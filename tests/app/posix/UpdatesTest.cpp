// The update page handed to the desktop's own opener, for which a small program stands in.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

#include "app/Answers.h"
#include "app/Program.h"
#include "support/ChildProcess.h"
#include "support/Environment.h"
#include "support/Stored.h"

namespace fs = std::filesystem;

TEST(Updates, TheStoredAddressIsReadEachTime) {
  const std::string szPath = std::getenv("PATH");
  Program aProgram;
  aProgram.aHome.Write("bin/note", "");
  Environment::Set("PATH", aProgram.aHome.Path("bin"));
  {
    Answers aAnswers({"ok"});
    aProgram.Main().RunCommand(mH_Updates);
    EXPECT_EQ(aAnswers.aSaid.at(0),
              "No web browser could be started.\n\nPlease open this address in a browser yourself:\n"
              "http://www.kestrova.example/updates");
  }
  fs::copy_file(ChildProcess::BuiltProgram("recorder"), aProgram.aHome.Path("bin/xdg-open"));
  const struct {
    const char* szStored;
    const char* szOpened;
  } aCases[] = {{"", "http://www.kestrova.example/updates"},
                {"   ", "http://www.kestrova.example/updates"},
                {" http://intranet.example.com/kestrova?a=1&b=$(x) ",
                 "http://intranet.example.com/kestrova?a=1&b=$(x)"},
                {"HTTPS://intranet.example.com/", "https://intranet.example.com/"}};
  for (const auto& aCase : aCases) {
    Stored::Put(ProductKeys::szUpdates, "Updates", std::string(aCase.szStored));
    aProgram.Main().RunCommand(mH_Updates);
    EXPECT_TRUE(Until([&] {
      return aProgram.aHome.Read("started.txt") == std::string("xdg-open\n") + aCase.szOpened + "\n";
    })) << aProgram.aHome.Read("started.txt");
  }
  Environment::Set("PATH", szPath);
}
