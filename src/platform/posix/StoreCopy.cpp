#include "platform/posix/StoreCopy.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <time.h>

#include <cstdio>

#include "platform/Clock.h"
#include "platform/Registry.h"
#include "platform/RegistryRules.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/Sqlite.h"
#include "platform/posix/StoreFile.h"
#include "platform/posix/StoreFormat.h"

namespace {

constexpr double dHour = 3600;

// Seconds since the copy was made; nothing where there is none.
std::optional<double> Age(const std::string& szStore) {
  struct stat aStat {};
  if (stat(StoreCopy::PathOf(szStore).c_str(), &aStat) != 0 || !S_ISREG(aStat.st_mode)) return {};
  return difftime(time(nullptr), aStat.st_mtime);
}

bool IsDamage(int lResult) {
  return (lResult & 0xFF) == SQLITE_CORRUPT || (lResult & 0xFF) == SQLITE_NOTADB;
}

int CopyPages(sqlite3* pFrom, sqlite3* pTo) {
  sqlite3_backup* const pBackup = sqlite3_backup_init(pTo, "main", pFrom, "main");
  if (pBackup == nullptr) return SQLITE_ERROR;
  sqlite3_backup_step(pBackup, -1);
  return sqlite3_backup_finish(pBackup);
}

}  // namespace

std::string StoreCopy::PathOf(const std::string& szStore) {
  return szStore + ".good";
}

std::optional<DateTime> StoreCopy::Made(const std::string& szStore) {
  const auto dAge = Age(szStore);
  if (!dAge) return {};
  return AddSeconds(Clock::Now(), -*dAge);
}

bool StoreCopy::IsDue(const std::string& szStore) {
  const auto dAge = Age(szStore);
  return !dAge || *dAge >= dHour || *dAge < -dHour;  // far in the future: the clock was put back
}

std::optional<std::string> StoreCopy::Text(const std::string& szStore, std::string_view szPath,
                                           std::string_view szName) {
  Sqlite::Connection aCopy(PathOf(szStore), SQLITE_OPEN_READONLY);
  std::vector<std::string_view> aParts;
  if (!Registry::SplitPath(szPath, aParts)) return {};
  auto lKey = StoreFormat::lLocalMachine;
  for (const auto szPart : aParts) {
    Sqlite::Statement aKey(aCopy.Handle(), "SELECT id FROM keys WHERE parent = ? AND name = ?");
    if (!aKey.Bind(lKey).Bind(szPart).Row()) return {};
    lKey = aKey.Number(0);
  }
  Sqlite::Statement aValue(aCopy.Handle(), "SELECT data FROM vals WHERE key = ? AND name = ? AND type = ?");
  if (!aValue.Bind(lKey).Bind(szName).Bind(std::int64_t{Registry::REG_SZ}).Row()) return {};
  const auto szText = aValue.Bytes(0);
  return szText.substr(0, szText.find('\0'));
}

StoreCopy::Outcome StoreCopy::CopyInto(sqlite3* pFrom, const std::string& szTo) {
  Sqlite::Connection aTo(szTo, SQLITE_OPEN_READWRITE);
  // Synced as a whole, and thrown away where anything goes wrong: no journal is needed.
  int lResult = aTo.Execute("PRAGMA synchronous = OFF; PRAGMA journal_mode = OFF");
  if (lResult == SQLITE_OK) lResult = CopyPages(pFrom, aTo.Handle());
  if (lResult == SQLITE_OK)
    lResult = aTo.Execute("PRAGMA journal_mode = DELETE");  // one file, whole in itself
  if (lResult != SQLITE_OK) return IsDamage(lResult) ? Outcome::Damage : Outcome::Failed;
  Sqlite::Statement aCheck(aTo.Handle(), StoreFormat::szIsSound);
  if (aCheck.Row()) return aCheck.Number(0) == 1 ? Outcome::Done : Outcome::Damage;
  return IsDamage(aCheck.Result()) ? Outcome::Damage : Outcome::Failed;
}

StoreCopy::Outcome StoreCopy::Make(sqlite3* pStore, const std::string& szStore) {
  const auto szBeside = PathOf(szStore) + ".new";
  auto aFile = StoreFile::MakeEmpty(szBeside);
  if (!aFile) return Outcome::Failed;
  auto iOutcome = CopyInto(pStore, szBeside);
  if (iOutcome == Outcome::Done && !StoreFile::PutInPlace(aFile, szBeside, PathOf(szStore)))
    iOutcome = Outcome::Failed;
  if (iOutcome != Outcome::Done) unlink(szBeside.c_str());
  return iOutcome;
}
