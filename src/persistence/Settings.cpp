#include "persistence/Settings.h"

#include <algorithm>
#include <set>

#include "persistence/ProductKeys.h"
#include "persistence/RegistryAccess.h"
#include "persistence/modBasic.h"
#include "platform/Files.h"
#include "platform/SendForm3.h"
#include "platform/Shell.h"

SettingsRecord Settings;

using RegistryAccess::lTypeNumber;
using RegistryAccess::lTypeText;

namespace {

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;

bool bUnsaved = false;  // what SaveSettings was given last

// The reads and writes of one LoadSettings. lResult is the code of whichever ran last; one of the repairs
// asks for it.
class SettingsLoader {
 public:
  void Timer();
  void Manager();
  void Log();
  void Cookies();

 private:
  template <typename Field>
  void Read(const char* szKey, const char* szName, Field& aField) {
    std::int32_t lType = 0;
    lResult = RegistryAccess::RegReadValue(hRoot, szKey, szName, aField, lType);
    if (lResult == Registry::lSuccess || lResult == Registry::lNotFound ||
        lResult == Registry::lInvalidHandle || lResult == -1)
      return;
    aUnread.insert(szName);
  }

  // What could not be read may well be stored and good: its repair stays in memory.
  void Write(const char* szKey, const char* szName, const RegistryAccess::Variant& aValue,
             std::int32_t lType) {
    if (aUnread.count(szName) == 0)
      lResult = RegistryAccess::RegWriteValue(hRoot, szKey, szName, aValue, lType);
  }

  template <typename Field>
  void Repair(const char* szKey, const char* szName, Field& aField, Field aRepaired) {
    aField = aRepaired;
    Write(szKey, szName, std::int32_t{aRepaired}, lTypeNumber);
  }

  void ReadOrOne(const char* szName, std::int16_t& iField) {
    Read(ProductKeys::szLog, szName, iField);
    if (lResult == Registry::lNotFound) Repair<std::int16_t>(ProductKeys::szLog, szName, iField, 1);
  }

  void DefaultLogPath();

  std::int32_t lResult = 0;
  std::set<std::string> aUnread;
};

void SettingsLoader::Timer() {
  Read(ProductKeys::szTimer, "Interval", Settings.Interval);
  Read(ProductKeys::szTimer, "Warning", Settings.Warning);
  if (Settings.Interval >= 1 && Settings.Warning >= 1) return;
  RegistryAccess::RegCreatePath(hRoot, ProductKeys::szTimer);
  if (Settings.Interval < 1) Repair(ProductKeys::szTimer, "Interval", Settings.Interval, 60);
  if (Settings.Warning < 1) Repair(ProductKeys::szTimer, "Warning", Settings.Warning, 15);
}

void SettingsLoader::Manager() {
  Read(ProductKeys::szManager, "Email", Settings.Email);
  Read(ProductKeys::szManager, "Name", Settings.Name);
  Read(ProductKeys::szManager, "SMTP", Settings.SMTP);
  Read(ProductKeys::szManager, "SMTPPort", Settings.SMTPPort);
  if (Settings.SMTPPort == 0) Settings.SMTPPort = lSmtpPort;
  if (Settings.Email.empty()) RegistryAccess::RegCreatePath(hRoot, ProductKeys::szManager);
}

void SettingsLoader::DefaultLogPath() {
  Settings.LogPath = Shell::DefaultLogFolder();
  modBasic::MakeFolderPath(Settings.LogPath);
  if (!Files::FolderExists(Settings.LogPath)) {
    // The program's folder may be the system's, and a log that cannot be written is never missed.
    Settings.LogPath = Shell::UserDataFolder() + Files::chSeparator + "Logs";
    modBasic::MakeFolderPath(Settings.LogPath);
  }
  Write(ProductKeys::szLog, "LogPath", Settings.LogPath, lTypeText);
}

void SettingsLoader::Log() {
  // Nothing of the log is read yet, so a start always makes the key.
  if (Settings.LogPath.empty() || Settings.LogPeriod < 1 || Settings.MaxLogFiles < 1)
    RegistryAccess::RegCreatePath(hRoot, ProductKeys::szLog);
  Read(ProductKeys::szLog, "LogPath", Settings.LogPath);
  ReadOrOne("LogPeriod", Settings.LogPeriod);
  ReadOrOne("DiskLogMaxFiles", Settings.DiskLogMaxFiles);
  Read(ProductKeys::szLog, "MaxLogFiles", Settings.MaxLogFiles);
  ReadOrOne("DiskLogDisabled", Settings.DiskLogDisabled);
  if (Settings.LogPath.empty()) DefaultLogPath();
  if (Settings.LogPeriod < 0 || Settings.LogPeriod > 2)
    Repair<std::int16_t>(ProductKeys::szLog, "LogPeriod", Settings.LogPeriod, 1);
  // lResult is that of the last write or read above, whichever it was.
  if (Settings.DiskLogMaxFiles != 0 && Settings.DiskLogMaxFiles != 1 && lResult != 0)
    Repair<std::int16_t>(ProductKeys::szLog, "DiskLogMaxFiles", Settings.DiskLogMaxFiles, 1);
  if (Settings.MaxLogFiles < 1)
    Repair<std::int16_t>(ProductKeys::szLog, "MaxLogFiles", Settings.MaxLogFiles, 7);
  if (Settings.DiskLogDisabled != 0 && Settings.DiskLogDisabled != 1)
    Repair<std::int16_t>(ProductKeys::szLog, "DiskLogDisabled", Settings.DiskLogDisabled, 1);
}

void SettingsLoader::Cookies() {
  Read(ProductKeys::szAllowCookie, "AllowType", Settings.AllowType);
  if (Settings.AllowType == 1 || Settings.AllowType == 2) return;
  // Only the stored value is mended, for the next start; and a log is kept in this run.
  Settings.LogPeriod = 1;
  RegistryAccess::RegCreatePath(hRoot, ProductKeys::szAllowCookie);
  Write(ProductKeys::szAllowCookie, "AllowType", 1, lTypeNumber);
}

}  // namespace

void LoadSettings() {
  bUnsaved = false;
  const Registry::Transaction aOneCommit;
  SettingsLoader aLoader;
  aLoader.Timer();
  aLoader.Manager();
  aLoader.Log();
  aLoader.Cookies();
}

bool SaveSettings(const SettingsRecord& aNew) {
  Registry::Transaction aOneCommit(Registry::Written::ByTheOperator);
  bool bRefused = false, bMissing = false;
  const auto Note = [&](std::int32_t lCode) {
    (lCode == Registry::lAccessDenied ? bRefused : bMissing) |= lCode != Registry::lSuccess;
  };
  const auto SaveNumber = [&](const char* szKey, const char* szName, auto& aField, auto aValue) {
    aField = aValue;
    Note(RegistryAccess::RegWriteValue(hRoot, szKey, szName, std::int32_t{aField}, lTypeNumber));
  };
  const auto SaveText = [&](const char* szKey, const char* szName, std::string& szField,
                            const std::string& szValue) {
    szField = szValue;
    Note(RegistryAccess::RegWriteValue(hRoot, szKey, szName, szField, lTypeText));
  };
  SaveNumber(ProductKeys::szTimer, "Interval", Settings.Interval, aNew.Interval);
  SaveNumber(ProductKeys::szTimer, "Warning", Settings.Warning, aNew.Warning);
  SaveText(ProductKeys::szManager, "Email", Settings.Email, aNew.Email);
  SaveText(ProductKeys::szManager, "Name", Settings.Name, aNew.Name);
  SaveText(ProductKeys::szManager, "SMTP", Settings.SMTP, aNew.SMTP);
  SaveNumber(ProductKeys::szManager, "SMTPPort", Settings.SMTPPort, aNew.SMTPPort);
  SaveNumber(ProductKeys::szLog, "LogPeriod", Settings.LogPeriod, aNew.LogPeriod);
  SaveText(ProductKeys::szLog, "LogPath", Settings.LogPath, aNew.LogPath);
  SaveNumber(ProductKeys::szLog, "MaxLogFiles", Settings.MaxLogFiles, aNew.MaxLogFiles);
  SaveNumber(ProductKeys::szLog, "DiskLogMaxFiles", Settings.DiskLogMaxFiles, aNew.DiskLogMaxFiles);
  SaveNumber(ProductKeys::szLog, "DiskLogDisabled", Settings.DiskLogDisabled, aNew.DiskLogDisabled);
  SaveNumber(ProductKeys::szAllowCookie, "AllowType", Settings.AllowType, aNew.AllowType);
  if (bRefused) aOneCommit.Abandon();  // no mixture of old and new
  bUnsaved = aOneCommit.Commit() != Registry::lSuccess || bRefused || bMissing;
  return !bUnsaved;
}

bool SettingsAreSaved() {
  return !bUnsaved;
}

std::int32_t IntervalMinutes() {
  return std::max(1, Settings.Interval);
}

std::int32_t WarningMinutes() {
  return std::max(1, Settings.Warning);
}
