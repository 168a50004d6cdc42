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
  EXPECT_EQ(Settings.Interval * 100 + Settings.Warning, 6015);
}

// Each case starts from a complete set of good values with some of them replaced.
TEST(SettingsTest, RepairsWhatIsOutOfRangeAndLeavesTheRest) {
  struct Value {
    const char *szKey, *szName;
    RegistryAccess::Variant aValue;  // empty: three bytes of binary
  };
  const struct {
    const char* szWhat;
    std::vector<Value> aPut;
    std::int32_t SettingsRecord::*pLong;
    std::int16_t SettingsRecord::*pShort;
    int lMemory;
    const char* szStored;  // of the first value put
  } aCases[] = {
      {"no interval", {{szTimer, "Interval", 0}}, &SettingsRecord::Interval, nullptr, 60, "60"},
      {"interval below", {{szTimer, "Interval", -7}}, &SettingsRecord::Interval, nullptr, 60, "60"},
      {"interval as text", {{szTimer, "Interval", "45"}}, &SettingsRecord::Interval, nullptr, 45, "45"},
      {"interval no number", {{szTimer, "Interval", "x"}}, &SettingsRecord::Interval, nullptr, 60, "60"},
      {"warning", {{szTimer, "Warning", 0}}, &SettingsRecord::Warning, nullptr, 15, "15"},
      {"warning alone", {{szTimer, "Warning", 0}}, &SettingsRecord::Interval, nullptr, 30, "15"},
      {"port", {{szManager, "SMTPPort", 0}}, &SettingsRecord::SMTPPort, nullptr, 25, "0"},
      {"period 5", {{szLog, "LogPeriod", 5}}, nullptr, &SettingsRecord::LogPeriod, 1, "1"},
      {"period 3", {{szLog, "LogPeriod", 3}}, nullptr, &SettingsRecord::LogPeriod, 1, "1"},
      {"period off", {{szLog, "LogPeriod", 0}}, nullptr, &SettingsRecord::LogPeriod, 0, "0"},
      {"no files", {{szLog, "MaxLogFiles", 0}}, nullptr, &SettingsRecord::MaxLogFiles, 7, "7"},
      {"files beyond",
       {{szLog, "MaxLogFiles", 70000}},
       nullptr,
       &SettingsRecord::MaxLogFiles,
       32767,
       "70000"},
      {"disabled", {{szLog, "DiskLogDisabled", -1}}, nullptr, &SettingsRecord::DiskLogDisabled, 1, "1"},
      {"cookies refused", {{szAllowCookie, "AllowType", 2}}, nullptr, &SettingsRecord::AllowType, 2, "2"},
      {"cookies 2 keep period",
       {{szAllowCookie, "AllowType", 2}, {szLog, "LogPeriod", 0}},
       nullptr,
       &SettingsRecord::LogPeriod,
       0,
       "2"},
      {"cookies 3", {{szAllowCookie, "AllowType", 3}}, nullptr, &SettingsRecord::AllowType, 3, "1"},
      {"cookies 3 start a log",
       {{szAllowCookie, "AllowType", 3}, {szLog, "LogPeriod", 0}},
       nullptr,
       &SettingsRecord::LogPeriod,
       1,
       "1"},
      // Whether an odd DiskLogMaxFiles is mended hangs on the code of the operation before its test.
      {"max after a read",
       {{szLog, "DiskLogMaxFiles", 5}},
       nullptr,
       &SettingsRecord::DiskLogMaxFiles,
       5,
       "5"},
      {"max after a failed read",
       {{szLog, "DiskLogMaxFiles", 5}, {szLog, "DiskLogDisabled", {}}},
       nullptr,
       &SettingsRecord::DiskLogMaxFiles,
       1,
       "1"},
      {"max after the path's write",
       {{szLog, "DiskLogMaxFiles", 5}, {szLog, "DiskLogDisabled", {}}, {szLog, "LogPath", ""}},
       nullptr,
       &SettingsRecord::DiskLogMaxFiles,
       5,
       "5"},
      {"max after the period's write",
       {{szLog, "DiskLogMaxFiles", 5}, {szLog, "DiskLogDisabled", {}}, {szLog, "LogPeriod", 9}},
       nullptr,
       &SettingsRecord::DiskLogMaxFiles,
       5,
       "5"},
  };
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szWhat);
    const TestHome aHome;
    Start();
    SaveSettings({30, 10, "m@x.test", "M", "smtp.test", 2525, aHome.Folder(), 2, 0, 9, 0, 1});
    for (const auto& aValue : aCase.aPut) {
      if (aValue.aValue.index() == 0)
        Stored::PutRaw(aValue.szKey, aValue.szName, Registry::REG_BINARY, "xyz");
      else
        Stored::Put(aValue.szKey, aValue.szName, aValue.aValue);
    }
    Start();
    EXPECT_EQ(aCase.pLong != nullptr ? Settings.*aCase.pLong : Settings.*aCase.pShort, aCase.lMemory);
    EXPECT_EQ(Stored::Get(aCase.aPut[0].szKey, aCase.aPut[0].szName), aCase.szStored);
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

TEST(SettingsTest, TheScheduleNeverRunsBackToBack) {
  Settings.Interval = -3;
  Settings.Warning = 0;
  EXPECT_EQ(IntervalMinutes() + WarningMinutes(), 2);
}

}  // namespace
