#include "platform/posix/Database.h"

#include <cerrno>
#include <chrono>
#include <thread>

#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/posix/StoreSound.h"

namespace {

constexpr int lBusyMilliseconds = 2000;     // the user interface waits on us
constexpr int lImpatientMilliseconds = 20;  // after one such wait came to nothing

constexpr std::array<const char*, Database::SQL_COUNT> aSql = {
    "SELECT id FROM keys WHERE parent = ? AND name = ?",
    "SELECT 1 FROM keys WHERE id = ?",
    "INSERT INTO keys(parent, name) VALUES(?, ?)",
    "DELETE FROM keys WHERE id = ?1 AND NOT EXISTS(SELECT 1 FROM keys WHERE parent = ?1)",
    "SELECT name, id FROM keys WHERE parent = ? ORDER BY name",
    "SELECT type, data FROM vals WHERE key = ? AND name = ?",
    // An unchanged value costs no write.
    "INSERT INTO vals(key, name, type, data) VALUES(?, ?, ?, ?) ON CONFLICT(key, name) DO UPDATE "
    "SET type = excluded.type, data = excluded.data WHERE type <> excluded.type OR data <> excluded.data",
    "DELETE FROM vals WHERE key = ? AND name = ?",
    "SELECT name, type, data, id FROM vals WHERE key = ?",
    "SELECT name, type, data, id, key FROM vals NOT INDEXED ORDER BY id",
    "PRAGMA data_version",
    "BEGIN",
    "BEGIN IMMEDIATE",
    "COMMIT",
    "ROLLBACK",
};

}  // namespace

Database::Condition Database::Open(const std::string& szPath, bool bCheck) {
  Close();
  if (bCheck) bImpatient = false;
  if (!StoreFile::Prepare(szPath)) return Condition::Unreachable;
  szOpenedPath = szPath;
  aOpened = StoreFile::Identify(szPath);
  if (StoreFile::LostItsPages(szPath)) return Condition::Damaged;
  auto iCondition = Judge(Connect(szPath, SQLITE_OPEN_READWRITE));
  const bool bOnlyWritingFails = iCondition == Condition::ReadOnly || iCondition == Condition::Full ||
                                 iCondition == Condition::Unreachable || iCondition == Condition::Failed;
  if (bOnlyWritingFails) {
    const auto szReason = szLastText;
    if (!ConnectForReading(szPath)) {
      Close();
      if (iCondition == Condition::ReadOnly) iCondition = Condition::Unreachable;
    }
    szLastText = szReason;
  }
  if (IsOpen() && bCheck && (iCondition == Condition::Ready || bOnlyWritingFails)) {
    if (const auto iExamined = Examine(); iExamined != Condition::Ready) iCondition = iExamined;
    if (iCondition == Condition::Ready) return TryWrite();
  }
  if (iCondition != Condition::Ready && !bOnlyWritingFails) Close();
  if (iCondition == Condition::Damaged) Close();
  if (iCondition == Condition::Locked) bImpatient = true;
  return iCondition;
}

Database::Condition Database::Examine() {
  const auto szSum = StoreSound::Sum(pConnection, szOpenedPath);
  if (szSum && StoreSound::IsKnown(szOpenedPath, *szSum)) return Condition::Ready;
  std::int64_t lSound = 0;
  const int lResult = ReadNumber(StoreFormat::szIsSound, lSound);
  if (lResult != SQLITE_OK) return Judge(lResult);
  if (lSound == 0) return Condition::Damaged;
  // Unchanged meanwhile: what was examined is what has that sum.
  if (szSum && StoreSound::Sum(pConnection, szOpenedPath) == szSum) StoreSound::Note(szOpenedPath, *szSum);
  return Condition::Ready;
}

int Database::Connect(const std::string& szUri, int lFlags) {
  const int lResult =
      sqlite3_open_v2(szUri.c_str(), &pConnection, lFlags | SQLITE_OPEN_URI | SQLITE_OPEN_NOMUTEX, nullptr);
  return lResult == SQLITE_OK ? ConfigureWhenFree() : lResult;
}

// A folder that takes no file, or a full disk, keeps SQLite from making what it wants beside a store that it
// is to write. To read, it can do with what is there; and where no journal is left, with the file alone.
bool Database::ConnectForReading(const std::string& szPath) {
  Close();
  if (Connect(szPath, SQLITE_OPEN_READONLY) == SQLITE_OK) return true;
  Close();
  if (Files::FileSize(szPath + "-wal").value_or(0) > 0) return false;
  std::string szUri = "file:";
  for (const char ch : szPath)
    szUri += ch == '%' ? "%25" : ch == '?' ? "%3f" : ch == '#' ? "%23" : std::string(1, ch);
  return Connect(szUri + "?immutable=1", SQLITE_OPEN_READONLY) == SQLITE_OK;
}

// The switch to the write-ahead journal needs the file for itself, and SQLite answers "busy" there at once,
// whatever wait it was told to allow. Two processes that make the store at the same moment would meet that
// answer, so it is asked again here until the time is up.
int Database::ConfigureWhenFree() {
  constexpr auto aPause = std::chrono::milliseconds(5);
  const auto aEnd = std::chrono::steady_clock::now() +
                    std::chrono::milliseconds(bImpatient ? lImpatientMilliseconds : lBusyMilliseconds);
  for (;;) {
    const int lResult = Configure();
    if (Judge(lResult) != Condition::Locked || std::chrono::steady_clock::now() >= aEnd) return lResult;
    FinalizeStatements();
    std::this_thread::sleep_for(aPause);
  }
}

int Database::Configure() {
  sqlite3_extended_result_codes(pConnection, 1);
  sqlite3_busy_timeout(pConnection, bImpatient ? lImpatientMilliseconds : lBusyMilliseconds);
  std::int64_t lOwner = 0;
  std::int64_t lVersion = 0;
  std::int64_t lTables = 0;
  // The tables are counted first: another process may be making them, and its mark comes with them.
  int lResult = ReadNumber("SELECT count(*) FROM sqlite_schema", lTables);
  if (lResult == SQLITE_OK) lResult = ReadNumber("PRAGMA application_id", lOwner);
  if (lResult == SQLITE_OK) lResult = ReadNumber("PRAGMA user_version", lVersion);
  if (lResult != SQLITE_OK) return lResult;
  if (lTables != 0 && (lOwner != StoreFormat::lApplication || lVersion != StoreFormat::lFormat))
    return SQLITE_MISMATCH;
  const bool bReadOnly = sqlite3_db_readonly(pConnection, "main") == 1;
  for (const char* const szSql : {"PRAGMA journal_mode = WAL", "PRAGMA synchronous = NORMAL",
                                  "PRAGMA foreign_keys = ON", "PRAGMA trusted_schema = OFF"}) {
    lResult = Execute(szSql);
    if (lResult != SQLITE_OK && !bReadOnly) return lResult;
  }
  if (bReadOnly) lResult = SQLITE_OK;
  if (lTables == 0) lResult = MakeTables();
  return lResult == SQLITE_OK ? Prepare() : lResult;
}

int Database::MakeTables() {
  int lResult = Execute("BEGIN IMMEDIATE");
  if (lResult != SQLITE_OK) return lResult;
  std::int64_t lTables = 0;  // another process may have been faster
  lResult = ReadNumber("SELECT count(*) FROM sqlite_schema", lTables);
  if (lResult == SQLITE_OK && lTables == 0) lResult = Execute(StoreFormat::szMakeTables);
  if (lResult == SQLITE_OK) lResult = Execute("COMMIT");
  if (lResult != SQLITE_OK) Execute("ROLLBACK");
  return lResult;
}

int Database::Prepare() {
  for (std::size_t i = 0; i < aSql.size(); ++i) {
    const int lResult =
        sqlite3_prepare_v3(pConnection, aSql[i], -1, SQLITE_PREPARE_PERSISTENT, &aStatements[i], nullptr);
    // A table that is not there, in a file that says it is ours.
    if (lResult != SQLITE_OK) return lResult == SQLITE_ERROR ? SQLITE_CORRUPT : lResult;
  }
  return SQLITE_OK;
}

void Database::FinalizeStatements() {
  for (auto& pStatement : aStatements) {
    sqlite3_finalize(pStatement);
    pStatement = nullptr;
  }
}

void Database::Close() {
  if (pConnection == nullptr) return;
  bBroken = lDepth > 0;
  bBegun = bReading = false;
  FinalizeStatements();
  sqlite3_close(pConnection);  // rolls an open bracket back
  pConnection = nullptr;
  bDamageSeen = false;
  bSyncSet = false;
}

bool Database::Moved() const {
  return StoreFile::Identify(szOpenedPath) != aOpened;
}

Database::Condition Database::TryWrite() {
  int lResult = Execute("BEGIN IMMEDIATE");
  if (lResult == SQLITE_OK) lResult = Execute("PRAGMA user_version = 1");
  if (lResult == SQLITE_OK) lResult = Execute("COMMIT");
  const auto aCondition = Judge(lResult);
  if (lResult != SQLITE_OK && sqlite3_get_autocommit(pConnection) == 0) Execute("ROLLBACK");
  return aCondition;
}

int Database::Execute(const char* szSql) {
  return sqlite3_exec(pConnection, szSql, nullptr, nullptr, nullptr);
}

int Database::ReadNumber(const char* szSql, std::int64_t& lNumber) {
  sqlite3_stmt* pStatement = nullptr;
  int lResult = sqlite3_prepare_v2(pConnection, szSql, -1, &pStatement, nullptr);
  if (lResult == SQLITE_OK) {
    lResult = sqlite3_step(pStatement);
    if (lResult == SQLITE_ROW) lNumber = sqlite3_column_int64(pStatement, 0);
  }
  const int lEnd = sqlite3_finalize(pStatement);
  return lResult == SQLITE_ROW || lResult == SQLITE_DONE ? SQLITE_OK : lResult != SQLITE_OK ? lResult : lEnd;
}

Database::Condition Database::Judge(int lResult) {
  if (lResult != SQLITE_OK) szLastText = sqlite3_errstr(lResult);
  switch (lResult & 0xFF) {
    case SQLITE_OK:
      return Condition::Ready;
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
    case SQLITE_PROTOCOL:
      return Condition::Locked;
    case SQLITE_READONLY:
    case SQLITE_PERM:
      return Condition::ReadOnly;
    case SQLITE_FULL:
      return Condition::Full;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      return Condition::Damaged;
    case SQLITE_CANTOPEN:
      return JudgeSystem(Condition::Unreachable);
    case SQLITE_MISMATCH:
      return Condition::Foreign;
    case SQLITE_IOERR:  // a quota or a limit of size comes as a failed write
      return JudgeSystem(lResult == SQLITE_IOERR_WRITE || lResult == SQLITE_IOERR_FSYNC ? Condition::Full
                                                                                        : Condition::Failed);
    default:
      return Condition::Failed;
  }
}

// SQLite calls many a full disk an I/O error, or a file that cannot be opened; the system's own code tells.
Database::Condition Database::JudgeSystem(Condition iElse) const {
  int lSystem = pConnection != nullptr ? sqlite3_system_errno(pConnection) : 0;
  // Where a file cannot be made beside the store, SQLite looks whether it is there, and tells that it is not.
  if (lSystem == ENOENT && Files::FileExists(szOpenedPath)) lSystem = StoreFile::WhyNoneBeside(szOpenedPath);
  switch (lSystem) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
      return Condition::Full;
    case EROFS:
    case EACCES:
    case EPERM:
      return Condition::ReadOnly;
    default:
      return iElse;
  }
}

std::int32_t Database::Translate(int lResult, bool bWritten) {
  // Hundreds of writes in a row must not each wait for a lock that someone sits on.
  const bool bBusy = (lResult & 0xFF) == SQLITE_BUSY;
  if (bBusy != bImpatient && (bBusy || bWritten)) {
    bImpatient = bBusy;
    sqlite3_busy_timeout(pConnection, bBusy ? lImpatientMilliseconds : lBusyMilliseconds);
  }
  switch (lResult & 0xFF) {
    case SQLITE_OK:
    case SQLITE_ROW:
    case SQLITE_DONE:
      return Registry::lSuccess;
    case SQLITE_TOOBIG:
      return Registry::lInvalidParameter;
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
      bDamageSeen = true;
      return Registry::lAccessDenied;
    default:
      return lResult == SQLITE_CONSTRAINT_FOREIGNKEY ? Registry::lInvalidHandle : Registry::lAccessDenied;
  }
}

Database::Use::~Use() {
  sqlite3_reset(pStatement);
  sqlite3_clear_bindings(pStatement);
}

Database::Use& Database::Use::Bind(std::int64_t lNumber) {
  sqlite3_bind_int64(pStatement, ++lBound, lNumber);
  return *this;
}

Database::Use& Database::Use::Bind(std::string_view szText) {
  sqlite3_bind_text64(pStatement, ++lBound, szText.data() != nullptr ? szText.data() : "", szText.size(),
                      SQLITE_STATIC, SQLITE_UTF8);
  return *this;
}

Database::Use& Database::Use::BindData(std::string_view szBytes) {
  lCode = aDatabase.Translate(sqlite3_bind_blob64(pStatement, ++lBound, szBytes.empty() ? "" : szBytes.data(),
                                                  szBytes.size(), SQLITE_STATIC));
  return *this;
}

bool Database::Use::Row() {
  if (lCode != 0) return false;
  const int lResult = sqlite3_step(pStatement);
  lCode = aDatabase.Translate(lResult, lResult == SQLITE_DONE && sqlite3_stmt_readonly(pStatement) == 0);
  return lResult == SQLITE_ROW;
}

std::int32_t Database::Use::Run() {
  while (Row()) {
  }
  return lCode;
}

std::string_view Database::Use::Bytes(int lColumn) const {
  const auto* const pData = static_cast<const char*>(sqlite3_column_blob(pStatement, lColumn));
  return {pData != nullptr ? pData : "", static_cast<std::size_t>(sqlite3_column_bytes(pStatement, lColumn))};
}

std::int32_t Database::BeforeWrite() {
  if (bDamageSeen) return Registry::lAccessDenied;
  if (lDepth == 0) return Registry::lSuccess;
  // A full disk makes SQLite roll back on its own.
  if (bBegun && sqlite3_get_autocommit(pConnection) != 0) Undo();
  if (bBroken) return Registry::lAccessDenied;
  if (bBegun) return Registry::lSuccess;
  EndReading();
  // Not to be changed once it has begun.
  if (bSyncWanted != bSyncSet)
    Execute(bSyncWanted ? "PRAGMA synchronous = FULL" : "PRAGMA synchronous = NORMAL");
  bSyncSet = bSyncWanted;
  const auto lCode = Use(*this, BEGIN).Run();
  bBegun = lCode == Registry::lSuccess;
  bBroken = !bBegun;
  lVersionSeen = -1;
  return lCode;
}

// A thousand looks, each with locks of its own around it, cost more than what is looked at.
void Database::BeginReading() {
  if (lDepth == 0 || bBegun || sqlite3_get_autocommit(pConnection) == 0) return;
  bReading = Use(*this, BEGIN_READING).Run() == Registry::lSuccess;
  lVersionSeen = -1;
}

void Database::EndReading() {
  if (bReading && sqlite3_get_autocommit(pConnection) == 0) Use(*this, COMMIT).Run();
  bReading = false;
}

std::int32_t Database::Version(std::int64_t& lVersion) {
  if ((!bBegun && !bReading) || lVersionSeen < 0) {
    Use aVersion(*this, DATA_VERSION);
    if (aVersion.Row()) lVersionSeen = aVersion.Number(0);
    if (aVersion.Code() != Registry::lSuccess) return aVersion.Code();
  }
  lVersion = lVersionSeen;
  return Registry::lSuccess;
}

void Database::Enter(bool bSynced) {
  if (lDepth++ == 0) bSyncWanted = bSynced;
}

void Database::BePatient() {
  bImpatient = false;
  if (pConnection != nullptr) sqlite3_busy_timeout(pConnection, lBusyMilliseconds);
}

std::int32_t Database::Leave() {
  if (lDepth == 0 || --lDepth > 0) return Registry::lSuccess;
  EndReading();
  if (bBegun && sqlite3_get_autocommit(pConnection) != 0) Undo();
  if (bBegun && Use(*this, COMMIT).Run() != Registry::lSuccess) Undo();
  const bool bLost = bBroken;
  bBegun = false;
  bBroken = false;
  return bLost ? Registry::lAccessDenied : Registry::lSuccess;
}

void Database::Break() {
  if (bBegun) Undo();
  bBroken = lDepth > 0;
}

void Database::Undo() {
  if (sqlite3_get_autocommit(pConnection) == 0) Use(*this, ROLLBACK).Run();
  bBegun = bReading = false;
  bBroken = true;
  if (RolledBack) RolledBack();
}
