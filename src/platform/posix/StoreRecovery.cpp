#include "platform/posix/StoreRecovery.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <chrono>
#include <optional>
#include <thread>

#include "platform/Clock.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/StoreCopy.h"
#include "platform/posix/StoreFormat.h"
#include "platform/posix/StoreSalvage.h"

namespace {

using Sqlite::Connection;
using Sqlite::Statement;
using StoreFile::Identity;
using StoreRecovery::Outcome;

constexpr auto aLongestWait = std::chrono::seconds(10);  // for a full store a second is enough
constexpr auto aPause = std::chrono::milliseconds(20);

bool LockInTime(const Descriptor& aFile) {
  const auto aEnd = std::chrono::steady_clock::now() + aLongestWait;
  while (flock(aFile.Number(), LOCK_EX | LOCK_NB) != 0) {
    if (std::chrono::steady_clock::now() >= aEnd) return false;
    std::this_thread::sleep_for(aPause);
  }
  return true;
}

// The copy into the new file. False where there is none that passes the check.
bool TakeCopy(const std::string& szStore, const std::string& szNew) {
  Connection aCopy(StoreCopy::PathOf(szStore), SQLITE_OPEN_READONLY);
  Statement aMark(aCopy.Handle(), "PRAGMA application_id");
  return aMark.Row() && aMark.Number(0) == StoreFormat::lApplication &&
         StoreCopy::CopyInto(aCopy.Handle(), szNew) == StoreCopy::Outcome::Done;
}

bool WriteNote(Connection& aNew, const std::optional<DateTime>& dtCopied, const std::string& szKept) {
  if (aNew.Execute(StoreFormat::szDropNote) != SQLITE_OK ||
      aNew.Execute(StoreFormat::szMakeNote) != SQLITE_OK)
    return false;
  Statement aNote(aNew.Handle(), dtCopied ? "INSERT INTO recovery VALUES(?1, ?2, ?4, ?3)"
                                          : "INSERT INTO recovery VALUES(?1, ?2, NULL, ?3)");
  // Without the copy nothing tells how many rows there were.
  const bool bWhole = dtCopied.has_value();
  aNote.Bind(szKept).Bind(Clock::Now()).Bind(std::int64_t{bWhole});
  if (dtCopied) aNote.Bind(*dtCopied);
  return aNote.Run();
}

// Builds the new store in aFile, which is szNew. szKept is empty where there is no damaged one. Done,
// NothingLeft or Failed.
Outcome Build(const std::string& szStore, const std::string& szNew, const Descriptor& aFile,
              const std::string& szKept, bool bBeginAnew) {
  std::optional<DateTime> dtCopied;
  std::int64_t lRows = 0;
  if (TakeCopy(szStore, szNew))
    dtCopied = StoreCopy::Made(szStore);
  else if (ftruncate(aFile.Number(), 0) != 0)
    return Outcome::Failed;
  Connection aNew(szNew, SQLITE_OPEN_READWRITE);
  if (!dtCopied && aNew.Execute(StoreFormat::szMakeTables) != SQLITE_OK) return Outcome::Failed;
  // SQLite would delete a journal that lies beside an empty file.
  if (!szKept.empty() && !StoreFile::LostItsPages(szStore)) lRows = StoreSalvage::Run(szStore, aNew);
  if (!dtCopied && lRows == 0 && !bBeginAnew) return Outcome::NothingLeft;
  if (!WriteNote(aNew, dtCopied, szKept)) return Outcome::Failed;
  Statement aCheck(aNew.Handle(), StoreFormat::szIsSound);
  return aCheck.Row() && aCheck.Number(0) == 1 ? Outcome::Done : Outcome::Failed;
}

}  // namespace

Outcome StoreRecovery::Run(const std::string& szStore, const Identity& aExamined, bool bBeginAnew) {
  // The lock is on the damaged file, or on the copy of a missing one: it goes with the file.
  const bool bDamagedIsThere = aExamined != Identity{};
  const Descriptor aLock(open((bDamagedIsThere ? szStore : StoreCopy::PathOf(szStore)).c_str(),
                              O_RDONLY | O_CLOEXEC | O_NONBLOCK));
  if (!aLock && StoreFile::Identify(szStore) != aExamined) return Outcome::ByAnother;
  if (!aLock) return Outcome::Failed;
  if (!LockInTime(aLock)) return Outcome::Busy;
  if (StoreFile::Identify(szStore) != aExamined) return Outcome::ByAnother;

  const auto szNew = szStore + ".new";
  const auto szKept = bDamagedIsThere ? StoreFile::NameToKeep(szStore) : std::string();
  auto aFile = StoreFile::MakeEmpty(szNew);
  if (!aFile) return Outcome::Failed;
  auto iOutcome = Build(szStore, szNew, aFile, szKept, bBeginAnew);
  const auto FreeThePlace = [&] {
    return bDamagedIsThere ? StoreFile::Keep(szStore, szKept) : StoreFile::DropJournal(szStore);
  };
  if (iOutcome == Outcome::Done && (!FreeThePlace() || !StoreFile::PutInPlace(aFile, szNew, szStore)))
    iOutcome = Outcome::Failed;
  if (iOutcome != Outcome::Done) unlink(szNew.c_str());
  return iOutcome;
}
