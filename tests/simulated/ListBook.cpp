#include "simulated/ListBook.h"

#include <algorithm>
#include <utility>

#include "base/Text.h"
#include "simulated/Rules.h"
#include "simulated/Store.h"
#include "simulated/Violation.h"

namespace Simulated {

namespace {

constexpr auto hRoot = Registry::HKEY_LOCAL_MACHINE;
const std::string szAddress = "Software\\Tamsel\\Kestrova\\Address";
const std::string szIndex = "Software\\Tamsel\\Kestrova\\AddressKey";
constexpr int iNotKnown = 4;
constexpr std::int32_t lImported = 2000;

// What memory gets of a stored site.
SiteRecord Loaded(const StoredSite& aStored, bool bKeep) {
  auto aSite = aStored.aSite;
  if (aSite.Status < 1 || aSite.Status > 4) aSite.Status = iNotKnown;
  if (!bKeep) aSite.Status = 0;
  if (!bKeep) aSite.Comments.clear();
  return aSite;
}

std::string Shown(const SiteRecord& aSite) {
  return aSite.URL + "|" + aSite.IP + "|status " + std::to_string(aSite.Status) + "|enabled " +
         std::to_string(aSite.Enabled) + "|time-out " + std::to_string(aSite.TimeOut) + "|" + aSite.Comments;
}

std::string Shown(const StoredSite& aStored) {
  return "number " + std::to_string(aStored.lIndex) + ": " + Shown(aStored.aSite);
}

// Alike but for what a pass writes.
bool SameEntry(const SiteRecord& aOne, const SiteRecord& aOther) {
  return aOne.URL == aOther.URL && aOne.IP == aOther.IP && aOne.Enabled == aOther.Enabled &&
         aOne.TimeOut == aOther.TimeOut;
}

bool HasBackslash(const StoredSite& aSite) {
  return aSite.aSite.URL.find('\\') != std::string::npos;
}

}  // namespace

std::vector<StoredSite> ListBook::ReadStore() {
  std::vector<StoredSite> aAll;
  for (const auto& szKey : Store::Keys(hRoot, szAddress)) {
    StoredSite aStored;
    aStored.szKey = Text::LowerCase(szKey);
    for (const auto& aValue : Store::Values(hRoot, szAddress + "\\" + szKey)) {
      const auto szName = Text::LowerCase(aValue.szName);
      if (szName == "url") aStored.aSite.URL = aValue.Text();
      if (szName == "ip") aStored.aSite.IP = aValue.Text();
      if (szName == "comments") aStored.aSite.Comments = aValue.Text();
      if (szName == "index") aStored.lIndex = aValue.Number();
      if (szName == "enabled") aStored.aSite.Enabled = static_cast<std::uint8_t>(aValue.Number());
      if (szName == "status") aStored.aSite.Status = static_cast<std::uint8_t>(aValue.Number());
      if (szName == "timeout") aStored.aSite.TimeOut = aValue.Number();
    }
    aAll.push_back(std::move(aStored));
  }
  return aAll;
}

BookedSite* ListBook::Find(std::vector<BookedSite>& aList, const std::string& szKey) const {
  const auto pFound = std::ranges::find(aList, szKey, &BookedSite::Key);
  return pFound == aList.end() ? nullptr : &*pFound;
}

void ListBook::MoveByHand(Random& aRandom) {
  const auto aKeys = Store::Keys(hRoot, szAddress);
  if (!aKeys.empty()) Store::PutNumber(hRoot, szAddress + "\\" + aRandom.Pick(aKeys), "Index", lImported);
}

void ListBook::PlanLoad(bool bKeep) {
  std::vector<BookedSite> aList;
  for (auto& aStored : ReadStore()) {
    if (Rules::KeyName(aStored.aSite.URL) != aStored.szKey) continue;  // swept away
    BookedSite aSite{Loaded(aStored, bKeep), aStored};
    const auto* const pKnown = Find(aSites, aStored.szKey);
    aSite.bAlerted = bKeep && pKnown != nullptr && pKnown->bAlerted;
    aSite.bMayRepeat = pKnown != nullptr && (pKnown->bMayRepeat || pKnown->bOwed);
    if (!bKeep) aSite.aStored.aSite.Status = iNotKnown;
    if (!bKeep) aSite.aStored.aSite.Comments.clear();
    aList.push_back(std::move(aSite));
  }
  aPlanned = std::move(aList);
  bOrdered = false;
  bForgetful = !bKeep;
}

void ListBook::PlanAdd(const SiteRecord& aNew) {
  aPlanned = aSites;
  BookedSite aSite{aNew, {Rules::KeyName(aNew.URL), aNew, static_cast<std::int32_t>(aSites.size()) + 1}};
  aPlanned->push_back(std::move(aSite));
  bOrdered = true;
  bForgetful = false;
}

void ListBook::PlanEdit(std::int32_t lSlot, const SiteRecord& aNew) {
  aPlanned = aSites;
  auto& aSite = (*aPlanned)[static_cast<std::size_t>(lSlot) - 1];
  if (aNew.URL != aSite.aNow.URL || aNew.Status != aSite.aNow.Status) aSite.bAlerted = false;
  aSite.aNow = aNew;
  aSite.aStored = {Rules::KeyName(aNew.URL), aNew, lSlot};
  aSite.bOwed = aSite.bUnsure = false;
  bOrdered = true;
  bForgetful = false;
}

// What a command that reads the list back saves first.
void ListBook::MakeUp(std::vector<BookedSite>& aList) {
  for (std::size_t i = 0; i < aList.size(); ++i) {
    auto& aSite = aList[i];
    if (aSite.bOwed) aSite.aStored = {aSite.aStored.szKey, aSite.aNow, static_cast<std::int32_t>(i) + 1};
    aSite.bOwed = aSite.bUnsure = false;
  }
}

// The rest is renumbered and read back, statuses and remarks with it.
void ListBook::PlanDelete(std::int32_t lSlot) {
  aPlanned = aSites;
  MakeUp(*aPlanned);
  aPlanned->erase(aPlanned->begin() + lSlot - 1);
  for (auto& aSite : *aPlanned)
    aSite.aNow = Loaded(aSite.aStored, true);
  bOrdered = false;
  bForgetful = false;
}

void ListBook::PlanImport(const std::vector<SiteRecord>& aRecords, bool bReplace) {
  aPlanned = aSites;
  MakeUp(*aPlanned);
  for (auto aRecord : aRecords) {
    const auto szKey = Rules::KeyName(aRecord.URL);
    auto* pSite = Find(*aPlanned, szKey);
    aRecord.Comments = pSite == nullptr ? "Import New"
                       : bReplace       ? "Import Replace"
                                        : pSite->aStored.aSite.Comments;
    if (pSite == nullptr) pSite = &aPlanned->emplace_back();
    pSite->aStored = {szKey, aRecord, lImported};
    pSite->bAlerted = false;
  }
  for (auto& aSite : *aPlanned)
    aSite.aNow = Loaded(aSite.aStored, true);
  bOrdered = false;
  bForgetful = false;
}

bool ListBook::IsTaken(const std::string& szUrl, std::int32_t lExcept) const {
  const auto pFound = std::ranges::find(aSites, Rules::KeyName(szUrl), &BookedSite::Key);
  return pFound != aSites.end() && pFound - aSites.begin() + 1 != lExcept;
}

// The program's order decides among sites of one number; else they go by their numbers.
void ListBook::Renumber() {
  std::vector<BookedSite> aOrder;
  for (std::int32_t lSlot = 1; lSlot <= lSiteCount; ++lSlot) {
    const auto aSite = modAddress::Site(lSlot);
    auto* const pBooked = Find(*aPlanned, Rules::KeyName(aSite.URL));
    if (pBooked == nullptr) Violate("the list has a site that is not known: " + Shown(aSite));
    if (!aOrder.empty() && aOrder.back().aStored.lIndex > pBooked->aStored.lIndex)
      Violate("site " + Shown(aSite) + " has changed places");
    aOrder.push_back(*pBooked);
  }
  RequireSame("the number of sites", static_cast<std::int64_t>(aOrder.size()),
              static_cast<std::int64_t>(aPlanned->size()));
  for (std::size_t i = 0; i < aOrder.size(); ++i)
    if (!HasBackslash(aOrder[i].aStored)) aOrder[i].aStored.lIndex = static_cast<std::int32_t>(i) + 1;
  aPlanned = std::move(aOrder);
}

void ListBook::Conclude() {
  if (!bOrdered) Renumber();
  aSites = std::move(*aPlanned);
  aPlanned.reset();
  SavedAgain(true);  // with what was entered, what was owed
  SetLights();
  CompareMemory();
  CompareStore();
  CompareNumbers();
}

void ListBook::SetLights() {
  for (auto& aSite : aSites)
    aSite.iLight = aSite.aNow.Enabled == 1 && aSite.aNow.Status <= 3 ? aSite.aNow.Status : 0;
}

void ListBook::CompareMemory() const {
  RequireSame("the number of sites in memory", lSiteCount, static_cast<std::int64_t>(aSites.size()));
  for (std::size_t i = 0; i < aSites.size(); ++i) {
    const auto aSite = modAddress::Site(static_cast<std::int32_t>(i) + 1);
    if (aSite != aSites[i].aNow)
      RequireSame("site " + std::to_string(i + 1) + " in memory", Shown(aSite), Shown(aSites[i].aNow));
  }
}

void ListBook::CompareStore() const {
  const auto szTo = Difference(ReadStore(), aSites, Alike::Wholly);
  if (!szTo.empty()) Violate("the store has " + szTo);
}

// 1 to n without a gap, each naming its site's key.
void ListBook::CompareNumbers() const {
  const auto& aValues = Store::Values(hRoot, szIndex);
  RequireSame("the number of index values", static_cast<std::int64_t>(aValues.size()),
              static_cast<std::int64_t>(aSites.size()));
  for (const auto& aValue : aValues) {
    const auto lSlot = static_cast<std::size_t>(std::stoi(aValue.szName.substr(6)));
    Require(lSlot >= 1 && lSlot <= aSites.size(), "the index has a number that no site has");
    RequireSame(aValue.szName, aValue.Text(), aSites[lSlot - 1].aStored.szKey);
  }
  const auto* const pCount = Store::Find(hRoot, szAddress, "NumActualDomain");
  RequireSame("the stored number of sites", pCount == nullptr ? 0 : pCount->Number(),
              static_cast<std::int64_t>(aSites.size()));
}

// What keeps the store from holding the list; empty where it does.
std::string ListBook::Difference(const std::vector<StoredSite>& aStore, const std::vector<BookedSite>& aList,
                                 Alike iAlike) const {
  if (aStore.size() != aList.size())
    return std::to_string(aStore.size()) + " instead of " + std::to_string(aList.size()) + " sites";
  for (const auto& aStored : aStore) {
    const auto pBooked = std::ranges::find(aList, aStored.szKey, &BookedSite::Key);
    if (pBooked == aList.end()) return Shown(aStored) + " too many";
    const auto& aMust = pBooked->aStored;
    const auto iStatus = aStored.aSite.Status;
    const bool bStatus = iStatus == aMust.aSite.Status || iStatus == pBooked->aNow.Status ||
                         (bForgetful && iStatus == iNotKnown);
    if (iAlike == Alike::Wholly ? aStored != aMust : !SameEntry(aStored.aSite, aMust.aSite) || !bStatus)
      return Shown(aStored) + " instead of " + Shown(aMust);
  }
  return {};
}

void ListBook::RequireDone(const std::string& szCommand, bool bSaid) const {
  const auto szTo = Difference(ReadStore(), bSaid ? *aPlanned : aSites);
  if (!szTo.empty()) Violate(szCommand + (bSaid ? " is said and not" : " is denied and") + " done: " + szTo);
}

void ListBook::ConcludeAfterTrouble() {
  const auto aStore = ReadStore();
  const auto szToBefore = Difference(aStore, aSites);
  const auto szToPlanned = aPlanned && !szToBefore.empty() ? Difference(aStore, *aPlanned) : szToBefore;
  if (!szToPlanned.empty())
    Violate("the store has neither the list before (" + szToBefore + ") nor the list after (" + szToPlanned +
            ")");
  // Half an index would hide the other half of the sites.
  const auto& aIndex = Store::Values(hRoot, szIndex);
  RequireSame("the number of index values", static_cast<std::int64_t>(aIndex.size()),
              static_cast<std::int64_t>(aStore.size()));
  for (const auto& aValue : aIndex)
    Require(Store::HasKey(hRoot, szAddress + "\\" + aValue.Text()),
            "the index names a site that is not there");
  const bool bStatusesReset = aPlanned && bForgetful;
  // An import that was done begins the outages of its sites anew.
  auto aKnown = szToBefore.empty() || !aPlanned ? std::move(aSites) : std::move(*aPlanned);
  aSites.clear();
  aPlanned.reset();
  for (const auto& aStored : aStore) {
    const auto* const pKnown = Find(aKnown, aStored.szKey);
    auto& aSite = aSites.emplace_back(BookedSite{aStored.aSite, aStored});
    if (pKnown == nullptr) continue;
    // A start that forgets statuses may have come that far: then the outage begins anew.
    aSite.bAlerted = pKnown->bAlerted && !(bStatusesReset && aStored.aSite.Status == iNotKnown);
    aSite.bMayRepeat = pKnown->bMayRepeat || pKnown->bOwed;
  }
}

void ListBook::Saved(std::int32_t lSlot, bool bClean) {
  auto& aSite = aSites[static_cast<std::size_t>(lSlot) - 1];
  aSite.bOwed = true;
  aSite.bUnsure = false;
  SavedAgain(bClean);
}

void ListBook::SavedAgain(bool bClean) {
  if (!OwesAny()) return;
  // Only where it is open what is stored: the look costs as much as the pass.
  const bool bLook = !bClean || IsUnsure();
  const auto aStore = bLook ? ReadStore() : std::vector<StoredSite>();
  for (std::size_t i = 0; i < aSites.size(); ++i) {
    auto& aSite = aSites[i];
    if (!aSite.bOwed && !aSite.bUnsure) continue;
    const StoredSite aMust{aSite.aStored.szKey, aSite.aNow, static_cast<std::int32_t>(i) + 1};
    const auto pIs = std::ranges::find(aStore, aMust.szKey, &StoredSite::szKey);
    const bool bAsBefore = pIs != aStore.end() && *pIs == aSite.aStored;
    const bool bAsNow = bLook ? pIs != aStore.end() && *pIs == aMust : true;
    if (!bAsNow && (!bAsBefore || (bClean && aSite.bOwed)))
      Violate("a stored site is " + (pIs == aStore.end() ? "gone" : Shown(pIs->aSite)) + ", was " +
              Shown(aSite.aStored.aSite) + " and must be " + Shown(aMust.aSite));
    aSite.bOwed = aSite.bOwed && !bClean && !bAsNow;
    aSite.bUnsure = !bClean && (bAsNow ? bAsBefore : aSite.bUnsure);
    if (bAsNow) aSite.aStored = aMust;
  }
  const auto lOwed = std::ranges::count(aSites, true, &BookedSite::bOwed);
  if (modAddress::UnsavedSites() < lOwed || (bClean && modAddress::UnsavedSites() > 0))
    RequireSame("the number of unsaved sites", modAddress::UnsavedSites(), lOwed);
}

}  // namespace Simulated
