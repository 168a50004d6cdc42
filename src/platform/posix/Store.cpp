#include "platform/posix/Store.h"

#include <algorithm>
#include <chrono>
#include <optional>
#include <unordered_map>

#include "base/Text.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/posix/Sqlite.h"
#include "platform/posix/StoreCopy.h"
#include "platform/posix/StoreRecovery.h"

namespace {

using namespace Registry;
using Store::OpenKey;
using Condition = Database::Condition;
using Steady = std::chrono::steady_clock;

constexpr std::size_t lMostPaths = 4096;
constexpr int lManyLooks = 16;
constexpr std::size_t lUsualValues = 8;  // a site's record has seven
constexpr auto aRetryAfter = std::chrono::seconds(1);

// Where a name below a key, or a path of them, led last.
struct Place {
  std::int64_t lId = 0;       // never used twice: right while its key exists
  std::int64_t lMoment = -1;  // at which the key was there, see Moment
};

// The values of all keys, as one look found them. Holds while no other process has written; of what we write
// ourselves the key's values go.
struct Shelf {
  std::unordered_map<std::int64_t, std::shared_ptr<std::vector<Store::Value>>> aValues;
  std::int64_t lVersion = -1;  // of the database
  int lLooks = 0;              // for one key alone, in this bracket
};

struct State {
  Database aDatabase;
  std::unordered_map<Key, OpenKey> aOpen;
  Key hNext = 0x100;  // never used twice: a closed handle stays closed
  std::unordered_map<std::string, Place> aPaths;
  Shelf aShelf;
  std::vector<std::int64_t> aMadeInBracket;
  std::int64_t lKeyChanges = 0;
  std::int64_t lValueChanges = 0;
  std::optional<Steady::time_point> aFailedAt;
  Written iBracketBy = Written::ByThePass;  // of the outermost bracket
  std::int64_t lChangesBefore = 0;          // when it began
  bool bCopyOwed = false;                   // one of what the operator entered could not be made
  bool bNoteToDrop = false;                 // the store tells of a recovery
};

// What this process knows of its store.
State& Process() {
  static State aState;
  return aState;
}

void ForgetKeys() {
  auto& aState = Process();
  aState.aOpen.clear();
  aState.aOpen[HKEY_LOCAL_MACHINE].lId = Database::lLocalMachine;
  aState.aOpen[HKEY_CURRENT_USER].lId = Database::lCurrentUser;
  aState.aPaths.clear();
  aState.aShelf = {};
  aState.aMadeInBracket.clear();
}

// Keys made in a bracket that is undone are gone, and their ids will be given to others.
void ForgetMade() {
  auto& aState = Process();
  for (const auto lId : aState.aMadeInBracket) {
    std::erase_if(aState.aOpen, [&](const auto& aEntry) { return aEntry.second.lId == lId; });
    std::erase_if(aState.aPaths, [&](const auto& aEntry) { return aEntry.second.lId == lId; });
  }
  aState.aMadeInBracket.clear();
  aState.aShelf = {};
  Store::KeysChanged();
  ++aState.lValueChanges;
}

Condition Open(bool bCheck) {
  auto& aState = Process();
  ForgetKeys();
  aState.aDatabase.RolledBack = ForgetMade;
  const auto aCondition = aState.aDatabase.Open(StoreName(), bCheck);
  aState.aFailedAt.reset();
  if (!aState.aDatabase.IsOpen()) aState.aFailedAt = Steady::now();
  return aCondition;
}

// A store that was there and is gone is not begun anew in silence.
bool IsMissed(const std::string& szPath) {
  return !Files::FileExists(szPath) &&
         (Process().aDatabase.OpenedPath() == szPath || StoreCopy::Made(szPath).has_value());
}

// aExamined: the file that was found damaged, all 0 for a missing one.
Condition Recover(const StoreFile::Identity& aExamined, bool bBeginAnew) {
  Process().aDatabase.Close();
  switch (StoreRecovery::Run(StoreName(), aExamined, bBeginAnew)) {
    case StoreRecovery::Outcome::Done:
    case StoreRecovery::Outcome::ByAnother:
      return Open(true);
    case StoreRecovery::Outcome::Busy:
      return Condition::Locked;
    case StoreRecovery::Outcome::NothingLeft:
      return Condition::Lost;
    case StoreRecovery::Outcome::Failed:
      break;
  }
  return Condition::Damaged;
}

// How the store came about, while that is to be said.
void ReadNote(StoreState& aState) {
  auto& aProcess = Process();
  constexpr std::int64_t lSaidFor = 60;  // seconds
  Sqlite::Statement aNote(aProcess.aDatabase.Handle(), StoreFormat::szReadNote);
  aProcess.bNoteToDrop = aNote.Row();
  if (!aProcess.bNoteToDrop) return;
  aState.bWhole = aNote.Number(3) != 0;
  const auto lAgo = SecondsBetween(aNote.Real(1), Clock::Now());
  aState.bRecovered = !aState.bWhole || (lAgo >= 0 && lAgo < lSaidFor);
  aState.szKept = aNote.Bytes(0);
  if (aNote.Type(2) == SQLITE_FLOAT) aState.dtCopied = aNote.Real(2);
}

// After a commit: what it left is copied, at once where the operator entered something.
void TendCopy(bool bEntered) {
  auto& aProcess = Process();
  auto& aDatabase = aProcess.aDatabase;
  if (!aDatabase.IsOpen() || aDatabase.DamageSeen()) return;
  if (bEntered && aProcess.bNoteToDrop)
    aProcess.bNoteToDrop =
        sqlite3_exec(aDatabase.Handle(), StoreFormat::szDropNote, nullptr, nullptr, nullptr) != SQLITE_OK;
  if (!bEntered && !aProcess.bCopyOwed && !StoreCopy::IsDue(aDatabase.OpenedPath())) return;
  const auto iOutcome = StoreCopy::Make(aDatabase.Handle(), aDatabase.OpenedPath());
  aProcess.bCopyOwed = bEntered && iOutcome == StoreCopy::Outcome::Failed;
  if (iOutcome == StoreCopy::Outcome::Damage) aDatabase.NoteDamage();
}

// The moment that a listing shows: it changes with our own writes and with another process's commits.
std::int64_t MomentOf(std::int64_t lVersion, std::int64_t lOwnChanges) {
  return (lVersion << 32) + lOwnChanges;
}

std::int32_t Moment(Database& aDatabase, std::int64_t lOwnChanges, std::int64_t& lMoment) {
  std::int64_t lVersion = 0;
  const auto lCode = aDatabase.Version(lVersion);
  lMoment = MomentOf(lVersion, lOwnChanges);
  return lCode;
}

std::int32_t Child(Database& aDatabase, std::int64_t lParent, std::string_view szName, std::int64_t& lId) {
  Database::Use aFind(aDatabase, Database::FIND_KEY);
  if (!aFind.Bind(lParent).Bind(szName).Row()) return aFind.Code() != 0 ? aFind.Code() : lNotFound;
  lId = aFind.Number(0);
  return lSuccess;
}

std::string PathKey(std::int64_t lBase, Store::Path aParts) {
  auto szKey = std::to_string(lBase);
  for (const auto szPart : aParts)
    szKey.append("\\").append(szPart);
  return szKey;
}

void Remember(const std::string& szKey, const Place& aPlace) {
  auto& aPaths = Process().aPaths;
  if (aPaths.size() >= lMostPaths) aPaths.clear();
  aPaths[szKey] = aPlace;
}

// Where the path led last, if that key is still there. 2 where nothing is known of it.
std::int32_t Recall(Database& aDatabase, const std::string& szKey, std::int64_t& lId) {
  auto& aPaths = Process().aPaths;
  const auto aKnown = aPaths.find(szKey);
  if (aKnown == aPaths.end()) return lNotFound;
  auto& aPlace = aKnown->second;
  std::int64_t lMoment = -1;  // in a bracket it costs nothing to ask
  auto lCode = aDatabase.InBracket() ? Moment(aDatabase, Process().lKeyChanges, lMoment) : lSuccess;
  if (lCode == lSuccess && (lMoment < 0 || aPlace.lMoment != lMoment))
    lCode = Store::CheckExists(aDatabase, aPlace.lId);
  if (lCode == lSuccess) {
    lId = aPlace.lId;
    aPlace.lMoment = lMoment;
  }
  if (lCode != lInvalidHandle) return lCode;
  aPaths.erase(aKnown);
  return lNotFound;
}

std::int32_t Walk(Database& aDatabase, std::int64_t lBase, Store::Path aParts, std::int64_t& lId) {
  lId = lBase;
  auto lCode = lSuccess;
  for (std::size_t i = 0; i < aParts.size() && lCode == lSuccess; ++i)
    lCode = Child(aDatabase, lId, aParts[i], lId);
  return lCode;
}

Store::Value ValueOf(const Database::Use& aRow) {
  return {std::string(aRow.Bytes(0)), static_cast<std::uint32_t>(aRow.Number(1)), std::string(aRow.Bytes(2)),
          aRow.Number(3)};
}

std::int32_t ReadValues(Database& aDatabase, OpenKey& aKey) {
  auto pValues = std::make_shared<std::vector<Store::Value>>();
  Database::Use aList(aDatabase, Database::LIST_VALUES);
  aList.Bind(aKey.lId);
  while (aList.Row())
    pValues->push_back(ValueOf(aList));
  // In the order in which they were made; the database would take longer over so few.
  std::ranges::sort(*pValues, {}, &Store::Value::lId);
  aKey.pValues = std::move(pValues);
  return aList.Code();
}

// Who looks at that many keys in one bracket will look at them all, and reading them one after the other
// costs several times as much. What cannot be read this way is read, and reported, key by key.
void FillShelf(Database& aDatabase, std::int64_t lVersion) {
  auto& aShelf = Process().aShelf;
  Database::Use aAll(aDatabase, Database::ALL_VALUES);
  aShelf.aValues.clear();
  aShelf.lVersion = lVersion;
  while (aAll.Row()) {
    auto& pValues = aShelf.aValues[aAll.Number(4)];
    if (!pValues) {
      pValues = std::make_shared<std::vector<Store::Value>>();
      pValues->reserve(lUsualValues);
    }
    pValues->push_back(ValueOf(aAll));
  }
  if (aAll.Code() != lSuccess) aShelf.aValues.clear();
}

// Another process may have set a damaged file aside; what we wrote into that one would be lost.
void LeaveOneSetAside() {
  auto& aDatabase = Process().aDatabase;
  if (aDatabase.IsOpen() && !aDatabase.InBracket() && aDatabase.Moved()) aDatabase.Close();
}

}  // namespace

Database* Store::Get() {
  auto& aState = Process();
  if (aState.aFailedAt && Steady::now() - *aState.aFailedAt < aRetryAfter) return nullptr;
  if (!aState.aDatabase.IsOpen()) {
    if (IsMissed(StoreName()))
      aState.aFailedAt = Steady::now();
    else
      Open(false);
  }
  return aState.aDatabase.IsOpen() ? &aState.aDatabase : nullptr;
}

std::int32_t Store::Find(Key hKey, Database*& pDatabase, OpenKey*& pKey) {
  if (hKey == hUnreadable) return lAccessDenied;
  auto& aState = Process();
  const bool bRoot = hKey == HKEY_LOCAL_MACHINE || hKey == HKEY_CURRENT_USER;
  if (bRoot) LeaveOneSetAside();
  if (!bRoot && !aState.aOpen.contains(hKey)) return lInvalidHandle;
  pDatabase = Get();
  if (pDatabase == nullptr) return lAccessDenied;
  const auto aFound = aState.aOpen.find(hKey);
  if (aFound == aState.aOpen.end()) return lInvalidHandle;
  pKey = &aFound->second;
  return lSuccess;
}

Key Store::Hold(std::int64_t lId) {
  const auto hKey = Process().hNext++;
  Process().aOpen[hKey].lId = lId;
  return hKey;
}

std::int32_t Store::Release(Key hKey) {
  if (hKey == HKEY_LOCAL_MACHINE || hKey == HKEY_CURRENT_USER || hKey == hUnreadable) return lSuccess;
  return Process().aOpen.erase(hKey) == 1 ? lSuccess : lInvalidHandle;
}

std::int32_t Store::CheckExists(Database& aDatabase, std::int64_t lId) {
  Database::Use aExists(aDatabase, Database::KEY_EXISTS);
  if (aExists.Bind(lId).Row()) return lSuccess;
  return aExists.Code() != 0 ? aExists.Code() : lInvalidHandle;
}

std::int32_t Store::Resolve(Database& aDatabase, std::int64_t lBase, Path aParts, std::int64_t& lId) {
  lId = lBase;
  if (aParts.empty()) return CheckExists(aDatabase, lBase);
  // A thousand keys lie below one: the way there is walked once.
  const auto aAbove = aParts.first(aParts.size() - 1);
  auto lCode = lSuccess;
  if (!aAbove.empty()) {
    const auto szAbove = PathKey(lBase, aAbove);
    lCode = Recall(aDatabase, szAbove, lId);
    if (lCode == lNotFound) {
      lCode = Walk(aDatabase, lBase, aAbove, lId);
      if (lCode == lSuccess) Remember(szAbove, {lId});
    }
  }
  if (lCode == lSuccess) {
    const auto szKey = PathKey(lId, aParts.last(1));
    const auto lParent = lId;
    lCode = Recall(aDatabase, szKey, lId);
    if (lCode == lNotFound) {
      lCode = Child(aDatabase, lParent, aParts.back(), lId);
      if (lCode == lSuccess) Remember(szKey, {lId});
    }
  }
  return lCode == lNotFound && CheckExists(aDatabase, lBase) == lInvalidHandle ? lInvalidHandle : lCode;
}

std::int32_t Store::Make(Database& aDatabase, std::int64_t lBase, Path aParts, std::int64_t& lId) {
  auto lCode = Resolve(aDatabase, lBase, aParts, lId);
  if (lCode != lNotFound) return lCode;
  Transaction aAllParents;
  lCode = aDatabase.BeforeWrite();
  lId = lBase;
  for (const auto szPart : aParts) {
    if (lCode != lSuccess) break;
    const auto lParent = lId;
    lCode = Child(aDatabase, lParent, szPart, lId);
    if (lCode != lNotFound) continue;
    lCode = Database::Use(aDatabase, Database::ADD_KEY).Bind(lParent).Bind(szPart).Run();
    KeysChanged();
    if (lCode != lSuccess) break;
    lId = aDatabase.LastId();
    Process().aMadeInBracket.push_back(lId);
  }
  const auto lCommitted = aAllParents.Commit();
  return lCode == lSuccess ? lCommitted : lCode;
}

std::int32_t Store::ListKeys(Database& aDatabase, OpenKey& aKey) {
  std::int64_t lMoment = 0;
  auto lCode = Moment(aDatabase, Process().lKeyChanges, lMoment);
  if (lCode != lSuccess || aKey.lKeysSeen == lMoment) return lCode;
  aKey.lKeysSeen = -1;
  aKey.aKeys.clear();
  Database::Use aList(aDatabase, Database::LIST_KEYS);
  aList.Bind(aKey.lId);
  while (aList.Row()) {
    const std::string_view szName = aKey.aKeys.emplace_back(aList.Bytes(0));
    // Who lists them will open them.
    if (aKey.aKeys.size() < lMostPaths / 2)
      Remember(PathKey(aKey.lId, {&szName, 1}), {aList.Number(1), lMoment});
  }
  lCode = aList.Code();
  if (lCode == lSuccess && aKey.aKeys.empty()) lCode = CheckExists(aDatabase, aKey.lId);
  if (lCode == lSuccess) aKey.lKeysSeen = lMoment;
  return lCode;
}

std::int32_t Store::ListValues(Database& aDatabase, OpenKey& aKey) {
  auto& aState = Process();
  auto& aShelf = aState.aShelf;
  std::int64_t lVersion = 0;
  auto lCode = aDatabase.Version(lVersion);
  const auto lMoment = MomentOf(lVersion, aState.lValueChanges);
  if (lCode != lSuccess || aKey.lValuesSeen == lMoment) return lCode;
  aKey.lValuesSeen = -1;
  if (aShelf.lVersion != lVersion) aShelf.aValues.clear();
  if (aDatabase.IsLooking() && ++aShelf.lLooks == lManyLooks) FillShelf(aDatabase, lVersion);
  if (const auto aFound = aShelf.aValues.find(aKey.lId); aFound != aShelf.aValues.end()) {
    aKey.pValues = aFound->second;
  } else {
    lCode = ReadValues(aDatabase, aKey);
    if (lCode == lSuccess && aKey.pValues->empty()) lCode = CheckExists(aDatabase, aKey.lId);
  }
  if (lCode == lSuccess) aKey.lValuesSeen = lMoment;
  return lCode;
}

void Store::KeysChanged() {
  ++Process().lKeyChanges;
}

void Store::ValuesChanged(std::int64_t lKey) {
  ++Process().lValueChanges;
  Process().aShelf.aValues.erase(lKey);
}

Registry::Transaction::Transaction(Written iBy) {
  auto& aState = Process();
  if (!aState.aDatabase.InBracket()) {
    LeaveOneSetAside();
    // The first thing entered begins the store that nothing is left of. What is to be said of that is not
    // dropped with it.
    if (iBy == Written::ByTheOperator && Store::Get() == nullptr) {
      OpenStore(true);
      aState.bNoteToDrop = false;
    }
    aState.iBracketBy = iBy;
    aState.lChangesBefore = aState.aDatabase.AllChanges();
    aState.aShelf.lLooks = 0;
  }
  aState.aDatabase.Enter(iBy == Written::ByTheOperator);
}

Registry::Transaction::~Transaction() {
  Commit();
}

std::int32_t Registry::Transaction::Commit() {
  if (bEnded) return lSuccess;
  bEnded = true;
  auto& aState = Process();
  const auto lCode = aState.aDatabase.Leave();
  if (aState.aDatabase.InBracket()) return lCode;
  aState.aMadeInBracket.clear();
  if (lCode == lSuccess && aState.aDatabase.AllChanges() != aState.lChangesBefore)
    TendCopy(aState.iBracketBy == Written::ByTheOperator);
  return lCode;
}

void Registry::Transaction::Abandon() {
  if (!bEnded) Process().aDatabase.Break();
  Commit();
}

Registry::StoreState Registry::OpenStore(bool bBeginAnew) {
  auto& aDatabase = Process().aDatabase;
  StoreState aState;
  if (aDatabase.IsOpen() && !aDatabase.DamageSeen() && !aDatabase.Moved()) {
    aDatabase.BePatient();
    if (!aDatabase.InBracket()) aState.iCondition = aDatabase.TryWrite();
  } else {
    const bool bGone = !Files::FileExists(StoreName()) && StoreCopy::Made(StoreName());
    aState.iCondition = aDatabase.DamageSeen() || bGone ? Condition::Damaged : Open(true);
    if (aState.iCondition == Condition::Damaged)
      aState.iCondition = Recover(bGone ? StoreFile::Identity{} : aDatabase.Opened(), bBeginAnew);
  }
  aState.bReadable = aDatabase.IsOpen();
  if (aState.bReadable) ReadNote(aState);
  if (aState.iCondition == Condition::Failed) aState.szSystem = aDatabase.LastText();
  return aState;
}

void Registry::CloseStore() {
  Process().aDatabase.Forget();
  Process().aFailedAt.reset();
  ForgetKeys();
}

std::optional<std::string> Registry::LastGoodText(const std::string& szPath, const std::string& szName) {
  return StoreCopy::Text(StoreName(), szPath, szName);
}

Registry::StoreState Registry::ShareStore() {
  auto aState = OpenStore();
  if (aState.iCondition == Condition::Ready) aState.iCondition = Condition::Private;
  return aState;
}

// A file; whoever named it deletes it.
void Registry::RemoveOwnStore() {
  CloseStore();
}

std::string Registry::StoreName() {
  return StoreFile::Path();
}
