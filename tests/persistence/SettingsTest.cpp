#include <gtest/gtest.h>

#include <algorithm>

#include "persistence/Settings.h"
#include "platform/Files.h"
#include "support/Environment.h"
#include "support/Stored.h"
#include "support/TestHome.h"

namespace {

using ProductKeys::szAllowCookie;
using ProductKeys::szLog;
using ProductKeys::szManager;
using ProductKeys::szTimer;

// As a start of the program does.
void Start() {
  Settings = {};
  LoadSettings();
}

std::vector<std::string> SortedValues(const char* szKey) {
  auto aValues = Stored::Values(szKey);
  std::sort(aValues.begin(), aValues.end());
  return aValues;
}

TEST(SettingsTest, FirstStartMakesTheDefaults) {
  const TestHome aHome;
  Start();
  const auto szLogs = aHome.Path("Logs");
  EXPECT_TRUE(Files::FolderExists(szLogs));
  EXPECT_EQ(Settings.SMTPPort, 25);
  EXPECT_EQ(Settings.AllowType, 0);
  using Texts = std::vector<std::string>;
  EXPECT_EQ(SortedValues(szTimer), (Texts{"Interval=60", "Warning=15"}));
  EXPECT_EQ(SortedValues(szManager), Texts{});
  EXPECT_EQ(SortedValues(szLog), (Texts{"DiskLogDisabled=1", "DiskLogMaxFiles=1", "LogPath=" + szLogs,
                                        "LogPeriod=1", "MaxLogFiles=7"}));
  EXPECT_EQ(SortedValues(szAllowCookie), Texts{"AllowType=1"});
  Start();
  EXPECT_EQ(Settings.AllowType, 1);
  EXPECT_EQ(IntervalMinutes() * 100 + WarningMinutes(), 6015);
  Settings.Interval = -3;  // an unchecked dialog
  Settings.Warning = 0;
  EXPECT_EQ(IntervalMinutes() * 100 + WarningMinutes(), 101);
}

// What is in memory under a value's name.
int InMemory(const std::string& szName) {
  if (szName == "Interval") return Settings.Interval;
  if (szName == "Warning") return Settings.Warning;
  if (szName == "SMTPPort") return Settings.SMTPPort;
  if (szName == "LogPeriod") return Settings.LogPeriod;
  if (szName == "MaxLogFiles") return Settings.MaxLogFiles;
  if (szName == "DiskLogMaxFiles") return Settings.DiskLogMaxFiles;
  return szName == "DiskLogDisabled" ? Settings.DiskLogDisabled : Settings.AllowType;
}

const char* KeyOf(const std::string& szName) {
  if (szName == "Interval" || szName == "Warning") return szTimer;
  if (szName == "SMTPPort") return szManager;
  return szName == "AllowType" ? szAllowCookie : szLog;
}

// Each case starts from a complete set of good values with some of them replaced.
TEST(SettingsTest, RepairsWhatIsOutOfRangeAndLeavesTheRest) {
  using Variant = RegistryAccess::Variant;
  const Variant aBinary;
  const struct {
    std::vector<std::pair<const char*, Variant>> aPut;
    const char* szName;
    int lMemory;
    const char* szStored;
  } aCases[] = {
      {{{"Interval", 0}}, "Interval", 60, "60"},
      {{{"Interval", -7}}, "Interval", 60, "60"},
      {{{"Interval", "45"}}, "Interval", 45, "45"},
      {{{"Interval", "x"}}, "Interval", 60, "60"},
      {{{"Warning", 0}}, "Warning", 15, "15"},
      {{{"Warning", 0}}, "Interval", 30, "30"},
      {{{"SMTPPort", 0}}, "SMTPPort", 25, "0"},
      {{{"LogPeriod", 5}}, "LogPeriod", 1, "1"},
      {{{"LogPeriod", 3}}, "LogPeriod", 1, "1"},
      {{{"LogPeriod", 0}}, "LogPeriod", 0, "0"},
      {{{"MaxLogFiles", 0}}, "MaxLogFiles", 7, "7"},
      {{{"MaxLogFiles", 70000}}, "MaxLogFiles", 32767, "70000"},
      {{{"DiskLogDisabled", -1}}, "DiskLogDisabled", 1, "1"},
      {{{"AllowType", 2}, {"LogPeriod", 0}}, "AllowType", 2, "2"},
      {{{"AllowType", 2}, {"LogPeriod", 0}}, "LogPeriod", 0, "0"},
      {{{"AllowType", 3}, {"LogPeriod", 0}}, "AllowType", 3, "1"},
      {{{"AllowType", 3}, {"LogPeriod", 0}}, "LogPeriod", 1, "0"},
      // An odd DiskLogMaxFiles is mended only where the operation before its test failed: the read of
      // DiskLogDisabled, or a write of LogPath or LogPeriod after it.
      {{{"DiskLogMaxFiles", 5}}, "DiskLogMaxFiles", 5, "5"},
      {{{"DiskLogMaxFiles", 5}, {"DiskLogDisabled", aBinary}}, "DiskLogMaxFiles", 1, "1"},
      {{{"DiskLogMaxFiles", 5}, {"DiskLogDisabled", aBinary}, {"LogPath", ""}}, "DiskLogMaxFiles", 5, "5"},
      {{{"DiskLogMaxFiles", 5}, {"DiskLogDisabled", aBinary}, {"LogPeriod", 9}}, "DiskLogMaxFiles", 5, "5"},
  };
  const TestHome aHome;
  for (const auto& aCase : aCases) {
    Start();
    SaveSettings({30, 10, "m@x.test", "M", "smtp.test", 2525, aHome.Folder(), 2, 0, 9, 0, 1});
    for (const auto& [szName, aValue] : aCase.aPut) {
      if (aValue.index() == 0)
        Stored::PutRaw(KeyOf(szName), szName, Registry::REG_BINARY, "xyz");
      else
        Stored::Put(KeyOf(szName), szName, aValue);
    }
    Start();
    const auto nCase = &aCase - aCases;
    EXPECT_EQ(InMemory(aCase.szName), aCase.lMemory) << nCase;
    EXPECT_EQ(Stored::Get(KeyOf(aCase.szName), aCase.szName), aCase.szStored) << nCase;
    EXPECT_EQ(Settings.Email + Settings.Name + Settings.SMTP, "m@x.testMsmtp.test");
  }
}

TEST(SettingsTest, LogsGoToTheUsersFolderWhereTheProgramsCannotBeWritten) {
  const TestHome aHome;
  aHome.Write("file", "x");
  Environment::Set("KESTROVA_HOME", aHome.Path("file"));
  Start();
  EXPECT_TRUE(Settings.LogPath.ends_with(std::string(1, Files::chSeparator) + "Logs"));
  EXPECT_TRUE(Files::FolderExists(Settings.LogPath)) << Settings.LogPath;
  EXPECT_EQ(Stored::Get(szLog, "LogPath"), Settings.LogPath);
}

}  // namespace
