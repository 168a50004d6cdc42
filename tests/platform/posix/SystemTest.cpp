// Files, other programs and the lock, as a POSIX system can spoil them.
#include <gtest/gtest.h>

#include <filesystem>
#include <thread>

#include "platform/Environment.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

namespace fs = std::filesystem;

namespace {

// Another PATH; the test program's own comes back.
class SystemTest : public testing::Test {
 protected:
  ~SystemTest() override { Environment::Set("PATH", szPath); }

  void Program(const std::string& szName, const std::string& szScript) const {
    aHome.Write(szName, "#!/bin/sh\n" + szScript);
    fs::permissions(aHome.Path(szName), fs::perms(0755));
  }
  // What a program wrote, once it has.
  std::string Await(const std::string& szName) const {
    for (int i = 0; i < 500 && aHome.Read(szName).find('\n') == std::string::npos; ++i)
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return aHome.Read(szName);
  }

  const std::string szPath = std::getenv("PATH") != nullptr ? std::getenv("PATH") : "/bin";
  TestHome aHome;
};

TEST_F(SystemTest, FilesOnAFullDiskLockedOrLinked) {
  aHome.Write("log", "first line\r\n");
  aHome.Write("list", "old");
  EXPECT_EQ(0, InChild([&] {
              LimitFiles(20);
              if (Files::Append(aHome.Path("log"), "a second line, too long\r\n")) return 1;
              return Files::WriteWhole(aHome.Path("list"), std::string(100, 'x')) ? 2 : 0;
            }));
  EXPECT_EQ("old", aHome.Read("list"));
  EXPECT_EQ((std::vector<std::string>{"list", "log"}), aHome.Names());
  EXPECT_TRUE(Files::Append(aHome.Path("log"), "line\r\n"));
  EXPECT_EQ("first line\r\nline\r\n", aHome.Read("log"));
  fs::permissions(aHome.Path("list"), fs::perms(0640));
  fs::create_symlink(aHome.Path("list"), aHome.Path("link"));
  EXPECT_TRUE(Files::WriteWhole(aHome.Path("link"), "new"));
  EXPECT_TRUE(fs::is_symlink(aHome.Path("link")));
  EXPECT_EQ("new", aHome.Read("list"));
  EXPECT_EQ(fs::perms(0640), fs::status(aHome.Path("list")).permissions());
}

TEST_F(SystemTest, ProgramsAndDocumentsAreHandedOnAsTheyAreAndLeaveNothingBehind) {
  Program("viewer", "printf '%s|' \"$@\" > " + aHome.Path("seen") + "; echo >> " + aHome.Path("seen") + "\n");
  EXPECT_TRUE(Shell::StartProgram(aHome.Path("viewer"), {"a b", "$HOME", "'\"`;", ""}));
  EXPECT_EQ("a b|$HOME|'\"`;||\n", Await("seen"));
  EXPECT_FALSE(Shell::StartProgram(aHome.Path("missing"), {}) || Shell::StartProgram(aHome.Folder(), {}));

  Environment::Set("PATH", aHome.Folder());
  EXPECT_EQ(31, Shell::OpenDocument(aHome.Path("viewer")));  // there is no desktop
  Program("xdg-open", "echo \"$PWD $1\" > " + aHome.Path("opened") + "\n");
  EXPECT_EQ(0, Shell::OpenDocument("http://example.com/?a=1&b=$(x)"));
  EXPECT_EQ("/ http://example.com/?a=1&b=$(x)\n", Await("opened"));
  aHome.Write("stay", "");
  Program("xdg-open", "while [ -e " + aHome.Path("stay") + " ]; do /bin/sleep 0.1; done\n");
  EXPECT_EQ(0, Shell::OpenDocument(aHome.Path("viewer"))) << "a viewer that stays is not waited for";
  fs::remove(aHome.Path("stay"));
  EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG)) << "a child of ours, dead or alive";
}

}  // namespace
