// The HTTP client control, answered by the machine's surroundings.
#include "platform/Inet.h"

#include <algorithm>
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
  void Begin();
  void Proceed(std::int32_t lMilliseconds);
  void Deliver(const std::function<void(std::int16_t)>& Handler);
  void Drop();

  std::string szURL, szHeader, szInfo;
  std::int32_t lCode = 0;
  std::int32_t lTimeout = 60;
  bool bExecuting = false, bDelivering = false, bReached = false;
  Conversation aAnswer;

 private:
  bool Due() const {
    return lNext < aAnswer.aSteps.size() && dStart + aAnswer.aSteps[lNext].dAt <= ThisMachine().Boot();
  }
  void Finish(std::int16_t iState);

  std::size_t lNext = 0;  // step not yet delivered
  double dStart = 0;      // on the boot clock
  double dLimit = 0;      // on the steady clock
  std::uint64_t lRequest = 0;
};

void Inet::Impl::Begin() {
  auto& aMachine = ThisMachine();
  const Call aCall;
  Drop();
  ++lRequest;
  szHeader.clear();
  szInfo.clear();
  lCode = 0;
  bReached = false;
  if (aCall.Gone()) return;
  bExecuting = true;
  aAnswer = aMachine.pSurroundings->Answer(szURL);
  lNext = 0;
  dStart = aMachine.Boot();
  dLimit = aMachine.Steady() + lTimeout;
  aMachine.pWitness->Requested(szURL, aAnswer);
  aMachine.Pass(dExecute);
}

// Ended without an outcome.
void Inet::Impl::Drop() {
  if (!bExecuting) return;
  bExecuting = false;
  if (!ThisMachine().Dead()) ThisMachine().pWitness->Cancelled();
}

// Nothing happens between here and the next step, limit or tick of the program's timers: a wait may as well
// end there. The time until then is what a busy machine could take too.
void Inet::Impl::Proceed(std::int32_t lMilliseconds) {
  auto& aMachine = ThisMachine();
  if (!bExecuting || lMilliseconds <= 0) return;
  if (aMachine.dStall > 0) {
    aMachine.Pass(std::exchange(aMachine.dStall, 0));
    return aMachine.pWitness->Awake();
  }
  double dUntil = aMachine.dNextTick - aMachine.Boot();
  if (lNext < aAnswer.aSteps.size())
    dUntil = std::min(dUntil, dStart + aAnswer.aSteps[lNext].dAt - aMachine.Boot());
  dUntil = std::min(dUntil, dLimit - aMachine.Steady());
  if (dUntil > 0) aMachine.Pass(dUntil);
}

void Inet::Impl::Finish(std::int16_t iState) {
  bExecuting = false;
  ThisMachine().pWitness->Answered(iState, lCode == lTimedOut);
}

void Inet::Impl::Deliver(const std::function<void(std::int16_t)>& Handler) {
  bDelivering = true;
  const auto lNumber = lRequest;
  while (bExecuting && lNumber == lRequest && !ThisMachine().Dead() && Due()) {
    const auto iState = aAnswer.aSteps[lNext++].iState;
    bReached = bReached || (iState >= Inet::Connected && iState < iError);
    if (iState >= iError) {
      szHeader = aAnswer.szHeader;
      szInfo = aAnswer.szInfo;
      lCode = aAnswer.lCode;
      Finish(iState);
    }
    if (Handler) Handler(iState);
  }
  // What has arrived is heard before the limit is looked at.
  if (bExecuting && lNumber == lRequest && !ThisMachine().Dead() && ThisMachine().Steady() >= dLimit) {
    szInfo = "Timeout was reached";
    lCode = lTimedOut;
    Finish(iError);
    if (Handler) Handler(iError);
  }
  bDelivering = false;
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
  pImpl->szURL = szURL;
  pImpl->Begin();
}

bool Inet::StillExecuting() const {
  return pImpl->bExecuting && !ThisMachine().Dead();
}

void Inet::Cancel() {
  pImpl->Drop();
}

void Inet::Poll(std::int32_t lMilliseconds) {
  const Call aCall;
  if (pImpl->bDelivering || aCall.Gone()) return;
  pImpl->Proceed(lMilliseconds);
  pImpl->Deliver(StateChanged);
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
