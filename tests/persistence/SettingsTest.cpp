#include <gtest/gtest.h>

#include <map>

#include "persistence/Settings.h"
#include "platform/Environment.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "support/Stored.h"
#include "support/TestHome.h"

namespace {

using namespace ProductKeys;

// As a start of the program does.
void Start() {
  Settings = {};
  LoadSettings();
}

std::map<std::string, int> InMemory() {
  return {{"Interval", Settings.Interval},       {"Warning", Settings.Warning},
          {"SMTPPort", Settings.SMTPPort},       {"LogPeriod", Settings.LogPeriod},
          {"MaxLogFiles", Settings.MaxLogFiles}, {"DiskLogMaxFiles", Settings.DiskLogMaxFiles},
          {"AllowType", Settings.AllowType},     {"DiskLogDisabled", Settings.DiskLogDisabled}};
}

const char* KeyOf(const std::string& szName) {
  if (szName == "Interval" || szName == "Warning") return szTimer;
  return szName == "SMTPPort" ? szManager : szName == "AllowType" ? szAllowCookie : szLog;
}

TEST(SettingsTest, WhereTheProgramFolderTakesNoLogsTheUsersOwnDoes) {
  const TestHome aHome;
  aHome.Write("file", "x");
  Environment::Set("KESTROVA_HOME", aHome.Path("file"));
  Start();
  EXPECT_EQ(Settings.LogPath, Shell::UserDataFolder() + Files::chSeparator + "Logs");
  EXPECT_TRUE(Files::FolderExists(Settings.LogPath));
  EXPECT_EQ(Stored::Get(szLog, "LogPath"), Settings.LogPath);
}

// Each case starts from a complete set of good values with some of them replaced.
TEST(SettingsTest, RepairsWhatIsOutOfRangeAndLeavesTheRest) {
  const RegistryAccess::Variant aBinary;
  const struct {
    std::map<std::string, RegistryAccess::Variant> aPut;
    const char* szName;
    int lMemory;
    const char* szStored;
  } aCases[] = {
      {{{"Interval", 0}}, "Interval", 60, "60"},
      {{{"Interval", "45"}}, "Interval", 45, "45"},
      {{{"Warning", 0}}, "Warning", 15, "15"},
      {{{"SMTPPort", 0}}, "SMTPPort", 25, "0"},
      {{{"LogPeriod", 3}}, "LogPeriod", 1, "1"},
      {{{"DiskLogDisabled", -1}}, "DiskLogDisabled", 1, "1"},
      {{{"MaxLogFiles", 0}}, "MaxLogFiles", 7, "7"},
      {{{"MaxLogFiles", 70000}}, "MaxLogFiles", 32767, "70000"},
      {{{"AllowType", 3}, {"LogPeriod", 0}}, "AllowType", 3, "1"},
      {{{"AllowType", 3}, {"LogPeriod", 0}}, "LogPeriod", 1, "0"},
      // An odd DiskLogMaxFiles is mended only where the operation before its test failed: the read of
      // DiskLogDisabled, or a write of LogPath or LogPeriod after it.
      {{{"DiskLogMaxFiles", 5}}, "DiskLogMaxFiles", 5, "5"},
      {{{"DiskLogMaxFiles", 5}, {"DiskLogDisabled", aBinary}}, "DiskLogMaxFiles", 1, "1"},
      {{{"DiskLogMaxFiles", 5}, {"DiskLogDisabled", aBinary}, {"LogPeriod", 9}}, "DiskLogMaxFiles", 5, "5"},
  };
  const TestHome aHome;
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(&aCase - aCases);
    Start();
    SaveSettings({30, 10, "m@x.test", "M", "smtp.test", 2525, aHome.Folder(), 2, 0, 9, 0, 1});
    for (const auto& [szName, aValue] : aCase.aPut)
      if (aValue.index() == 0)
        RawRegistry::Put(KeyOf(szName), szName, Registry::REG_BINARY, "xyz");
      else
        Stored::Put(KeyOf(szName), szName, aValue);
    Start();
    EXPECT_EQ(InMemory()[aCase.szName], aCase.lMemory);
    EXPECT_EQ(Stored::Get(KeyOf(aCase.szName), aCase.szName), aCase.szStored);
    EXPECT_EQ(Settings.Email, "m@x.test");
    EXPECT_EQ(Settings.Name, "M");
    EXPECT_EQ(Settings.SMTP, "smtp.test");
  }
  RawRegistry::Put(szTimer, "Interval", Registry::REG_DWORD, "8 bytes.");  // what cannot be read stays
  Start();
  EXPECT_EQ(RawRegistry::Get(szTimer, "Interval"), "8 bytes.");
}

}  // namespace
