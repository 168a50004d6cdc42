// Files, other programs, the lock and the desktop's folders, as a POSIX system can spoil them.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <thread>

#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "platform/SingleInstance.h"
#include "platform/Terminal.h"
#include "support/Environment.h"
#include "support/TestHome.h"
#include "support/posix/InChild.h"

namespace fs = std::filesystem;

namespace {

// Another home, another PATH; the test program's own come back.
class SystemTest : public testing::Test {
 protected:
  SystemTest() {
    Environment::Set("HOME", aHome.Path("home"));
    Environment::Unset("XDG_CONFIG_HOME");
  }
  ~SystemTest() override {
    Environment::Set("HOME", szHome);
    Environment::Set("PATH", szPath);
  }

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

  const std::string szHome = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "/";
  const std::string szPath = std::getenv("PATH") != nullptr ? std::getenv("PATH") : "/bin";
  TestHome aHome;
};

TEST_F(SystemTest, AFullDiskTearsNoLineAndKeepsTheOldFile) {
  aHome.Write("log", "first line\r\n");
  aHome.Write("list", "old");
  EXPECT_EQ(0, InChild([&] {
              signal(SIGXFSZ, SIG_IGN);
              const rlimit aLimit{20, 20};
              setrlimit(RLIMIT_FSIZE, &aLimit);
              if (Files::Append(aHome.Path("log"), "a second line, too long\r\n")) return 1;
              if (Files::WriteWhole(aHome.Path("list"), std::string(100, 'x'))) return 2;
              return Files::WriteWhole("/dev/full", "x") ? 3 : 0;
            }));
  EXPECT_EQ("first line\r\n", aHome.Read("log"));
  EXPECT_EQ("old", aHome.Read("list"));
  EXPECT_EQ((std::vector<std::string>{"list", "log"}), aHome.Names());
}

TEST_F(SystemTest, AppendingDoesNotWaitForALockNorForAPipe) {
  aHome.Write("log", "");
  const int lOther = open(aHome.Path("log").c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_EQ(0, flock(lOther, LOCK_EX));
  EXPECT_TRUE(Files::Append(aHome.Path("log"), "line\r\n"));
  close(lOther);
  EXPECT_EQ("line\r\n", aHome.Read("log"));
  ASSERT_EQ(0, mkfifo(aHome.Path("pipe").c_str(), 0600));
  EXPECT_FALSE(Files::Append(aHome.Path("pipe"), "line\r\n"));
  EXPECT_EQ(std::nullopt, Files::ReadWhole(aHome.Path("pipe"), 10));
}

TEST_F(SystemTest, ReplacingKeepsPermissionsAndLinks) {
  aHome.Write("real", "old");
  fs::permissions(aHome.Path("real"), fs::perms(0640));
  fs::create_symlink(aHome.Path("real"), aHome.Path("link"));
  EXPECT_TRUE(Files::WriteWhole(aHome.Path("link"), "new"));
  EXPECT_TRUE(fs::is_symlink(aHome.Path("link")));
  EXPECT_EQ("new", aHome.Read("real"));
  EXPECT_EQ(fs::perms(0640), fs::status(aHome.Path("real")).permissions());
}

TEST_F(SystemTest, TheLockIsRefusedToASecondProcessAndDiesWithTheFirst) {
  std::array<int, 2> aPipe{};
  ASSERT_EQ(0, pipe(aPipe.data()));
  const pid_t lFirst = fork();
  if (lFirst == 0) {
    SingleInstance aLock;
    const char chHeld = aLock.TryLock() ? 'y' : 'n';
    if (write(aPipe[1], &chHeld, 1) == 1) pause();
    _exit(0);
  }
  char chHeld = 0;
  ASSERT_EQ(1, read(aPipe[0], &chHeld, 1));
  EXPECT_EQ('y', chHeld);
  SingleInstance aSecond;
  EXPECT_FALSE(aSecond.TryLock());
  kill(lFirst, SIGKILL);
  waitpid(lFirst, nullptr, 0);
  EXPECT_TRUE(aSecond.TryLock());
  Environment::Set("KESTROVA_REGISTRY", "/proc/nowhere/registry.db");
  EXPECT_TRUE(SingleInstance().TryLock());  // no lock can be made there
  for (const int lEnd : aPipe)
    close(lEnd);
}

TEST_F(SystemTest, ProgramsStartWithTheirArgumentsAsTheyAreAndLeaveNothingBehind) {
  Program("viewer", "printf '%s|' \"$@\" > " + aHome.Path("seen") + "; echo >> " + aHome.Path("seen") + "\n");
  EXPECT_TRUE(Shell::StartProgram(aHome.Path("viewer"), {"a b", "$HOME", "'\"`;", ""}));
  EXPECT_EQ("a b|$HOME|'\"`;||\n", Await("seen"));
  EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));  // no child of ours, dead or alive
  EXPECT_FALSE(Shell::StartProgram(aHome.Path("missing"), {}));
  EXPECT_FALSE(Shell::StartProgram(aHome.Folder(), {}));
}

TEST_F(SystemTest, ADocumentIsHandedToTheDesktop) {
  aHome.Write("log.htm", "x");
  Environment::Set("PATH", aHome.Folder());
  EXPECT_EQ(31, Shell::OpenDocument(aHome.Path("log.htm")));  // there is no desktop
  Program("xdg-open", "echo \"$1\" > " + aHome.Path("seen") + "\n");
  EXPECT_EQ(2, Shell::OpenDocument(aHome.Path("missing.htm")));
  EXPECT_EQ(0, Shell::OpenDocument("http://example.com/?a=1&b=$(x)"));
  EXPECT_EQ("http://example.com/?a=1&b=$(x)\n", Await("seen"));
  Program("xdg-open", "exit 3\n");
  EXPECT_EQ(31, Shell::OpenDocument(aHome.Path("log.htm")));
  Program("xdg-open", "read x < /dev/null; exec /bin/sleep 2\n");  // a viewer that stays
  const auto aStart = std::chrono::steady_clock::now();
  EXPECT_EQ(0, Shell::OpenDocument(aHome.Path("log.htm")));
  EXPECT_LT(std::chrono::steady_clock::now() - aStart, std::chrono::milliseconds(1500));
  EXPECT_EQ(-1, waitpid(-1, nullptr, WNOHANG));
}

TEST_F(SystemTest, TheDesktopFolderIsTheOneThatTheDesktopNames) {
  using namespace Registry;
  const auto Desktop = [] {
    Key hKey = 0;
    RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                  0x3F, hKey);
    std::array<char, 1024> aText{};
    std::uint32_t lType = 0;
    std::uint32_t lSize = aText.size();
    EXPECT_EQ(lSuccess, RegQueryValueExA(hKey, "desktop", &lType, aText.data(), &lSize));
    EXPECT_EQ(REG_SZ, lType);
    EXPECT_EQ('\0', aText[lSize - 1]);
    RegCloseKey(hKey);
    return std::string(aText.data());
  };
  fs::create_directories(aHome.Path("home/.config"));
  EXPECT_EQ(aHome.Path("home"), Desktop());
  fs::create_directories(aHome.Path("home/Desktop"));
  EXPECT_EQ(aHome.Path("home/Desktop"), Desktop());
  fs::create_directories(aHome.Path("home/Mein \"Tisch"));
  aHome.Write("home/.config/user-dirs.dirs",
              "# a comment\nXDG_DOWNLOAD_DIR=\"$HOME/x\"\n XDG_DESKTOP_DIR=\"$HOME/Mein \\\"Tisch/\"\n");
  EXPECT_EQ(aHome.Path("home/Mein \"Tisch"), Desktop());
  aHome.Write("home/.config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/nowhere/at/all\"\n");
  EXPECT_EQ(aHome.Path("home/Desktop"), Desktop());
  aHome.Write("home/.config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/\"");  // switched off
  EXPECT_EQ(aHome.Path("home"), Desktop());
  Key hKey = 0;
  RegOpenKeyExA(HKEY_CURRENT_USER, "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders",
                0x3F, hKey);
  EXPECT_EQ(lSuccess, RegSetValueExA(hKey, "Desktop", REG_SZ, "/stored", 8));
  RegCloseKey(hKey);
  EXPECT_EQ("/stored", Desktop());
}

TEST_F(SystemTest, CtrlCIsNotedOnceAndObeyedTheSecondTime) {
  EXPECT_EQ(0, InChild([] {
              Terminal::CatchInterrupt();
              raise(SIGINT);
              raise(SIGTERM);  // not yet seen: still only noted
              if (!Terminal::Interrupted()) return 1;
              Terminal::ClearInterrupt();
              if (Terminal::Interrupted()) return 2;
              raise(SIGHUP);
              return Terminal::Interrupted() ? 0 : 3;
            }));
  EXPECT_EQ(-SIGINT, InChild([] {
    Terminal::CatchInterrupt();
    raise(SIGINT);
    Terminal::Interrupted();
    raise(SIGINT);
    return 0;
  }));
}

}  // namespace
