// The HTTP client control, answered by the machine's surroundings.
#include "platform/Inet.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "simulated/Machine.h"

using namespace Simulated;

namespace {

constexpr std::int16_t iError = 11;
constexpr std::int32_t lTimedOut = 28;  // the client's number for a limit that was passed
constexpr double dExecute = 0.0004;     // a call takes its time, so that no two moments are the same

}  // namespace

class Inet::Impl {
 public:
  std::string szURL, szHeader, szInfo;
  std::int32_t lCode = 0;
  std::int32_t lTimeout = 60;
  bool bExecuting = false, bDelivering = false, bReached = false;
  Conversation aAnswer;
  std::size_t lNext = 0;  // step not yet delivered
  double dStart = 0;      // on the boot clock
  double dLimit = 0;      // on the steady clock
  std::uint64_t lRequest = 0;

  bool Lives() const { return bExecuting && !ThisMachine().Dead(); }
  // On the boot clock; for ever where the server stays silent.
  double NextAt() const {
    return lNext < aAnswer.aSteps.size() ? dStart + aAnswer.aSteps[lNext].dAt : HUGE_VAL;
  }
  void Wait() const;
  void Finish(std::int16_t iState) {
    bExecuting = false;
    ThisMachine().pWitness->Answered(iState, lCode == lTimedOut);
  }
};

// Nothing happens between here and the next step, limit or tick of the program's timers: a wait may as well
// end there. The time until then is what a busy machine could take too.
void Inet::Impl::Wait() const {
  auto& aMachine = ThisMachine();
  if (aMachine.dStall > 0) {
    aMachine.Pass(std::exchange(aMachine.dStall, 0));
    return aMachine.pWitness->Awake();
  }
  const double dUntil = std::min(
      {aMachine.dNextTick - aMachine.Boot(), NextAt() - aMachine.Boot(), dLimit - aMachine.Steady()});
  if (dUntil > 0) aMachine.Pass(dUntil);
}

Inet::Inet() : pImpl(std::make_unique<Impl>()) {
}
Inet::~Inet() = default;

void Inet::RequestTimeout(std::int32_t lSeconds) {
  pImpl->lTimeout = std::max(lSeconds, 1);
}

void Inet::AcceptCookies(bool) {
}

void Inet::ForgetCookies() {
}

void Inet::Execute(const std::string& szURL, const std::string&) {
  auto& a = *pImpl;
  auto& aMachine = ThisMachine();
  const Call aCall;
  Cancel();
  a.szURL = szURL;
  a.szHeader = a.szInfo = "";
  a.lCode = 0;
  a.bReached = false;
  ++a.lRequest;
  if (aCall.bGone) return;
  a.bExecuting = true;
  a.aAnswer = aMachine.pSurroundings->Answer(szURL);
  a.lNext = 0;
  a.dStart = aMachine.Boot();
  a.dLimit = aMachine.Steady() + a.lTimeout;
  aMachine.pWitness->Requested(szURL, a.aAnswer);
  aMachine.Pass(dExecute);
}

bool Inet::StillExecuting() const {
  return pImpl->Lives();
}

// Ended without an outcome.
void Inet::Cancel() {
  if (std::exchange(pImpl->bExecuting, false) && !ThisMachine().Dead()) ThisMachine().pWitness->Cancelled();
}

void Inet::Poll(std::int32_t lMilliseconds) {
  auto& a = *pImpl;
  const Call aCall;
  if (a.bDelivering || aCall.bGone) return;
  if (a.bExecuting && lMilliseconds > 0) a.Wait();
  a.bDelivering = true;
  const auto lNumber = a.lRequest;
  const auto SameLives = [&] { return a.Lives() && lNumber == a.lRequest; };
  while (SameLives() && a.NextAt() <= ThisMachine().Boot()) {
    const auto iState = a.aAnswer.aSteps[a.lNext++].iState;
    a.bReached = a.bReached || (iState >= Connected && iState < iError);
    if (iState >= iError) {
      a.szHeader = a.aAnswer.szHeader;
      a.szInfo = a.aAnswer.szInfo;
      a.lCode = a.aAnswer.lCode;
      a.Finish(iState);
    }
    if (StateChanged) StateChanged(iState);
  }
  // What has arrived is heard before the limit is looked at.
  if (SameLives() && ThisMachine().Steady() >= a.dLimit) {
    a.szInfo = "Timeout was reached";
    a.lCode = lTimedOut;
    a.Finish(iError);
    if (StateChanged) StateChanged(iError);
  }
  a.bDelivering = false;
}

const std::string& Inet::URL() const {
  return pImpl->szURL;
}

std::int32_t Inet::ResponseCode() const {
  return pImpl->lCode;
}

const std::string& Inet::ResponseInfo() const {
  return pImpl->szInfo;
}

const std::string& Inet::GetHeader() const {
  return pImpl->szHeader;
}

bool Inet::TimedOut() const {
  return pImpl->lCode == lTimedOut;
}

bool Inet::OwnFault() const {
  return pImpl->aAnswer.bOwnFault;
}

bool Inet::Reached() const {
  return pImpl->bReached;
}
