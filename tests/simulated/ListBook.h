// ListBook: what the site list must be, in memory and in the store. The commands change the book first; what
// the program then has is held against it.
#pragma once

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "persistence/modAddress.h"
#include "simulated/Random.h"

namespace Simulated {

inline bool operator==(const SiteRecord& aOne, const SiteRecord& aOther) {
  return aOne.URL == aOther.URL && aOne.IP == aOther.IP && aOne.Status == aOther.Status &&
         aOne.Enabled == aOther.Enabled && aOne.TimeOut == aOther.TimeOut && aOne.Comments == aOther.Comments;
}

// A site as it lies in the store.
struct StoredSite {
  std::string szKey;  // name of its key, lower case
  SiteRecord aSite;
  std::int32_t lIndex = 0;
  bool operator==(const StoredSite&) const = default;
};

struct BookedSite {
  SiteRecord aNow;  // in memory
  StoredSite aStored;
  std::uint8_t iLight = 0;  // 1 to 3; 0: none
  bool bAlerted = false;    // a mail was tried for the outage that lasts
  // What is stored is older than what memory has, because calls failed; bUnsure: or the same, and nobody can
  // tell.
  bool bOwed = false, bUnsure = false;
  // The mail went out and what came of it was not stored: killed in between, or said to be unsaved.
  bool bMayRepeat = false;

  const std::string& Key() const { return aStored.szKey; }
};

class ListBook {
 public:
  std::vector<BookedSite> aSites;  // by slot - 1

  static std::vector<StoredSite> ReadStore();

  // The rules of the commands; aPlanned is what must come of it.
  void PlanLoad(bool bKeep);
  void PlanAdd(const SiteRecord& aNew);
  void PlanEdit(std::int32_t lSlot, const SiteRecord& aNew);
  void PlanDelete(std::int32_t lSlot);
  void PlanImport(const std::vector<SiteRecord>& aRecords, bool bReplace);
  bool IsTaken(const std::string& szUrl, std::int32_t lExcept) const;

  // Somebody has given a site another number in the store, so that the next start numbers all anew.
  static void MoveByHand(Random& aRandom);

  // The planned list holds: in memory and in the store.
  void Conclude();
  // What the command answered is so.
  void RequireDone(const std::string& szCommand, bool bSaid) const;
  // A call failed or the machine was killed meanwhile: the store has the list before or the planned one,
  // whole. Statuses and remarks may be a pass old. The book then knows nothing until the next load.
  void ConcludeAfterTrouble();
  void Abandon() { aPlanned.reset(); }  // nothing was done

  // The site in this slot was to be saved, and with it those that are owed. Where no call failed meanwhile
  // all of them are stored now; else each is as it was or as it is in memory.
  void Saved(std::int32_t lSlot, bool bClean);
  // The same for what is owed alone.
  void SavedAgain(bool bClean);
  bool IsUnsure() const { return std::ranges::count(aSites, true, &BookedSite::bUnsure) > 0; }
  bool OwesAny() const { return IsUnsure() || std::ranges::count(aSites, true, &BookedSite::bOwed) > 0; }

  void CompareMemory() const;
  void CompareStore() const;
  void CompareNumbers() const;
  void SetLights();

 private:
  void Renumber();
  static void MakeUp(std::vector<BookedSite>& aList);
  BookedSite* Find(std::vector<BookedSite>& aList, const std::string& szKey) const;
  enum class Alike : std::uint8_t { ButForThePass, Wholly };  // what a pass writes may be one pass old
  std::string Difference(const std::vector<StoredSite>& aStore, const std::vector<BookedSite>& aList,
                         Alike iAlike = Alike::ButForThePass) const;

  std::optional<std::vector<BookedSite>> aPlanned;
  bool bOrdered = false;    // the slots of aPlanned are known; else the sites go by their old numbers
  bool bForgetful = false;  // statuses and remarks may have been reset
};

}  // namespace Simulated
