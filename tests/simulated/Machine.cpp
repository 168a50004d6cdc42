#include "simulated/Machine.h"

#include <array>
#include <cmath>

#include "simulated/Store.h"

namespace Simulated {

namespace {

constexpr double dHour = 3600;

// The last Sunday of that month at 1:00 universal time, when central Europe sets its clocks.
DateTime Changeover(std::int32_t lYear, std::int32_t lMonth) {
  const auto dtLast = JoinDateTime({.lYear = lYear, .lMonth = lMonth, .lDay = 31, .lHour = 1});
  return AddDays(dtLast, 1 - SplitDateTime(dtLast).lWeekday);
}

bool IsSummer(DateTime dtUtc) {
  struct Year {
    DateTime dtFrom = 0, dtTo = 0, dtSpring = 0, dtAutumn = 0;
  };
  static Year aYear;
  if (dtUtc < aYear.dtFrom || dtUtc >= aYear.dtTo) {
    const auto lYear = SplitDateTime(dtUtc - 0.5 / dSecondsPerDay).lYear;  // a split rounds
    aYear = {JoinDateTime({.lYear = lYear, .lMonth = 1, .lDay = 1}),
             JoinDateTime({.lYear = lYear + 1, .lMonth = 1, .lDay = 1}), Changeover(lYear, 3),
             Changeover(lYear, 10)};
  }
  return dtUtc >= aYear.dtSpring && dtUtc < aYear.dtAutumn;
}

}  // namespace

Machine& ThisMachine() {
  static Machine aMachine;
  return aMachine;
}

void Machine::Reset(std::uint64_t lSeed, DateTime dtStart) {
  *this = Machine();
  aRandom = Random(lSeed);
  dtStartUtc = AddSeconds(dtStart, -dHour);
  dBoot = 100;
  Store::Clear();
}

DateTime Machine::Wall() const {
  const auto dtUtc = AddSeconds(dtStartUtc, dBoot - dSetBack);
  return AddSeconds(dtUtc, IsSummer(dtUtc) ? 2 * dHour : dHour);
}

DateTime Machine::Second() const {
  return std::floor(Wall() * dSecondsPerDay + 1e-4) / dSecondsPerDay;
}

// Where the hour comes twice, the first of the two.
std::int32_t Machine::MinutesEastOfUtc(DateTime dtLocal) {
  return IsSummer(AddSeconds(dtLocal, -2 * dHour)) ? 120 : 60;
}

void Machine::PowerOn() {
  bDead = false;
  lKillAt = 0;
  Store::LosePower();
}

bool Machine::Fails(Access iAccess) {
  if (iAccess == Access::Other) return false;
  auto& a = aTroubles;
  const std::array aOfThousand = {0, a.lStoreRead, a.lStoreWrite, a.lStoreCommit, a.lFileRead, a.lFileWrite};
  const auto lOfThousand = aOfThousand[static_cast<std::size_t>(iAccess)];
  const bool bThisOne = a.lOneCall > 0 && --a.lOneCall == 0;
  if (!bThisOne && (lOfThousand == 0 || aRandom.Below(1000) >= lOfThousand)) return false;
  ++(iAccess < Access::FileRead ? lStoreFaults : lFileFaults);
  return true;
}

Call::Call(Access iAccess) {
  auto& aMachine = ThisMachine();
  if (aMachine.bAside) return;
  const bool bHit = ++aMachine.lCalls == aMachine.lKillAt;
  if (bHit && !aMachine.bKillAfter) aMachine.bDead = true;
  bGone = aMachine.bDead;
  bTheLast = bHit && !bGone;
  bFails = bGone || aMachine.Fails(iAccess);
}

Call::~Call() {
  if (bTheLast) ThisMachine().bDead = true;
}

}  // namespace Simulated
