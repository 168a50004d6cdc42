// Machine: the computer that the simulated platform runs on. It owns the three clocks, the power, what goes
// wrong with single calls, and who is told of what the program does. One for the whole process.
//
// A kill takes the machine away at one call: that call and all later ones of the program have no effect and
// are told to nobody, until Boot. The program's code runs on, as a ghost, until it comes back to whoever
// started it. That needs no exception, which the program might catch, and lets destructors run without harm.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "base/DateTime.h"
#include "simulated/Random.h"

namespace Simulated {

// One GET as the network answers it.
struct Conversation {
  struct Step {
    double dAt = 0;  // seconds after the request, on the clock that counts sleep
    std::int16_t iState = 0;
  };
  std::vector<Step> aSteps;  // in order; the last one is 11 or 12, or the server stays silent behind it
  std::string szHeader;
  std::int32_t lCode = 0;  // the client's error number
  std::string szInfo;
  bool bOwnFault = false;  // this machine lacks what a request takes

  // When the outcome is there; negative for never.
  double EndsAt() const { return !aSteps.empty() && aSteps.back().iState > 10 ? aSteps.back().dAt : -1; }
};

struct Mail {
  std::string szServer;
  std::int32_t lPort = 0;
  std::string szSender, szFrom, szRecipient, szSubject, szBody;
};
struct Delivery {
  double dSeconds = 0;
  std::int32_t lResult = 0;
  std::string szReply, szError;
};

// What lies beyond the machine.
class Surroundings {
 public:
  virtual ~Surroundings() = default;
  virtual Conversation Answer(const std::string& szURL) = 0;
  virtual Delivery Deliver(const Mail& aMail) = 0;
};

// Is told of every effect, right before the program sees it.
class Witness {
 public:
  virtual ~Witness() = default;
  virtual void Requested(const std::string& szURL, const Conversation& aAnswer) = 0;
  // 11 or 12. bLimit: the client's own limit ended it.
  virtual void Answered(std::int16_t iState, bool bLimit) = 0;
  virtual void Cancelled() = 0;
  virtual void Mailed(const Mail& aMail, std::int32_t lResult) = 0;
  virtual void Appended(const std::string& szFile, const std::string& szBytes, bool bKept) = 0;
  virtual void Deleted(const std::string& szFile) = 0;
  virtual void Awake() = 0;  // the machine or the process stood still until now
};

// The files as they lie on the machine, for hands that reach past the program.
struct Disk {
  std::map<std::string, std::string> aFiles;  // by path
  std::set<std::string> aFolders;
  std::set<std::string> aLocked;  // folders that take nothing new and give nothing up
  std::int64_t lRoom = -1;        // bytes; negative: enough
  bool bTears = false;            // a kill during an append leaves its first half (as a power cut may)
  std::int64_t lTorn = 0;         // how many did, since that was last forgotten
};

enum class Access : std::uint8_t { Other, StoreRead, StoreWrite, StoreCommit, FileRead, FileWrite };

// How often calls fail, of a thousand; or that one of the next calls into store and files alone (0: none).
struct Troubles {
  std::int32_t lStoreRead = 0, lStoreWrite = 0, lStoreCommit = 0;
  std::int32_t lFileRead = 0, lFileWrite = 0;
  std::int32_t lOneCall = 0;
};

class Machine;
Machine& ThisMachine();

class Machine {
 public:
  // Everything as new, at that local time.
  void Reset(std::uint64_t lSeed, DateTime dtStart);

  // The clocks. Seconds pass on all three; asleep, the steady one stands still.
  void Pass(double dSeconds) { dBoot += dSeconds; }
  void Sleep(double dSeconds) {
    dBoot += dSeconds;
    dSlept += dSeconds;
  }
  void SetBack(double dSeconds) { dSetBack += dSeconds; }  // by hand; negative: forward
  double Boot() const { return dBoot; }
  double Steady() const { return dBoot - dSlept; }
  DateTime Wall() const;
  DateTime Second() const;                                 // the one that the wall clock shows
  static std::int32_t MinutesEastOfUtc(DateTime dtLocal);  // with daylight saving

  // Until when a wait on the network may take, at most: the next tick of the program's timers. And for how
  // long the next one stands still.
  double dNextTick = 0, dStall = 0;

  // Power. lCalls: the kill comes with that one of the calls from now on; 0: none.
  void KillAt(std::int64_t lCallsFromNow, bool bAfter) {
    lKillAt = lCallsFromNow > 0 ? lCalls + lCallsFromNow : 0;
    bKillAfter = bAfter;
  }
  bool Dead() const { return bDead; }
  void PowerOn();  // what was not committed is gone, nothing is open any more

  // While one lives the calls are not the program's: they are not counted, do not fail and are no kill's
  // turn.
  class Aside {
   public:
    Aside() { ThisMachine().bAside = true; }
    ~Aside() { ThisMachine().bAside = false; }
    Aside(const Aside&) = delete;
    Aside& operator=(const Aside&) = delete;
  };

  // Single calls that fail.
  Troubles aTroubles;
  bool bReadsSpareBrackets = false;                // a read that fails in a bracket does not cost the bracket
  std::int64_t lStoreFaults = 0, lFileFaults = 0;  // so many did

  Disk aDisk;
  Surroundings* pSurroundings = nullptr;  // both are there before the first call
  Witness* pWitness = nullptr;

 private:
  friend class Call;
  bool Fails(Access iAccess);

  Random aRandom{0};
  DateTime dtStartUtc = 0;
  double dBoot = 0, dSlept = 0, dSetBack = 0;
  std::int64_t lCalls = 0, lKillAt = 0;
  bool bKillAfter = false, bDead = false, bAside = false;
};

// One call of the program into the platform, as long as it lasts.
class Call {
 public:
  explicit Call(Access iAccess = Access::Other);
  ~Call();
  Call(const Call&) = delete;
  Call& operator=(const Call&) = delete;

  bool bGone = false;     // no effect, nobody is told
  bool bFails = false;    // or gone
  bool bTheLast = false;  // the kill comes at its end
};

}  // namespace Simulated
