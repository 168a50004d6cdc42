#include "support/FaultServer.h"

#include <algorithm>
#include <utility>

using SteadyClock = std::chrono::steady_clock;
using std::chrono::milliseconds;

namespace Fault {

Step Endless(const std::string& szBytes) {
  std::string szBlock = szBytes;  // a short text is sent in blocks, or the server would be the slow one
  while (szBlock.size() < 32768)
    szBlock += szBytes;
  return {Step::Kind::Endless, std::move(szBlock)};
}

Answer Status(const std::string& szStatus, const std::string& szBody) {
  return {Send("HTTP/1.1 " + szStatus + "\r\nContent-Type: text/plain\r\nContent-Length: " +
               std::to_string(szBody.size()) + "\r\nConnection: close\r\n\r\n" + szBody)};
}

}  // namespace Fault

struct FaultServer::Connection {
  Sockets::Handle hSocket;
  SharedAnswer aAnswer = {};  // none while the request is read
  std::string szHead = {};
  std::size_t lStep = 0;
  std::size_t lSent = 0;  // of the step
  Moment aDue{};          // when the step goes on; none: at once
  bool bBlocked = false;  // the client must read first
};

FaultServer::FaultServer(std::uint16_t iWanted) : iPort(iWanted), hListener(Sockets::Listen(iPort)) {
  Serve("*", Fault::Ok());
  aThread = std::thread([this] { Run(); });
}

FaultServer::~FaultServer() {
  {
    const std::lock_guard aGuard(aLock);
    bStop = true;
  }
  aBell.Ring();
  aThread.join();
  for (const Connection& aConnection : aConnections)
    Sockets::Close(aConnection.hSocket);
  Sockets::Close(hListener);
}

void FaultServer::Serve(const std::string& szPath, Fault::Answer aAnswer) {
  ServeInOrder(szPath, {std::move(aAnswer)});
}

void FaultServer::ServeInOrder(const std::string& szPath, std::vector<Fault::Answer> aOrder) {
  std::deque<SharedAnswer> aShared;
  for (Fault::Answer& aAnswer : aOrder)
    aShared.push_back(std::make_shared<const Fault::Answer>(std::move(aAnswer)));
  if (aShared.empty()) return;
  const std::lock_guard aGuard(aLock);
  aAnswers[szPath] = std::move(aShared);
}

std::size_t FaultServer::Count(const std::string& szPath) const {
  const std::lock_guard aGuard(aLock);
  return static_cast<std::size_t>(std::ranges::count(aRequests, szPath, &Request::szPath));
}

void FaultServer::KeepRequests(bool bKeep) {
  const std::lock_guard aGuard(aLock);
  bKeepRequests = bKeep;
  if (!bKeep) aRequests.clear();
}

bool FaultServer::WaitForRequests(std::size_t lWanted, std::int32_t lMilliseconds) const {
  std::unique_lock aGuard(aLock);
  return aChanged.wait_for(aGuard, milliseconds(lMilliseconds), [&] { return lCount >= lWanted; });
}

bool FaultServer::WaitUntilIdle(std::int32_t lMilliseconds) const {
  std::unique_lock aGuard(aLock);
  return aChanged.wait_for(aGuard, milliseconds(lMilliseconds), [&] { return lOpen == 0; });
}

std::uint16_t FaultServer::RefusingPort() {
  std::uint16_t iFree = 0;
  Sockets::Close(Sockets::Listen(iFree));
  return iFree;
}

void FaultServer::Run() {
  std::vector<Sockets::Watch> aWatches;
  for (;;) {
    const std::int32_t lWait = CollectWatches(aWatches);
    Sockets::Wait(aWatches, lWait);
    if (aWatches[0].bReadable) aBell.Silence();
    {
      const std::lock_guard aGuard(aLock);
      if (bStop) return;
    }
    // The watches stand in the order of the connections; new connections come behind them.
    std::size_t lWatch = 2;
    for (auto pConnection = aConnections.begin(); pConnection != aConnections.end(); ++lWatch) {
      const bool bAlive = Attend(*pConnection, aWatches[lWatch].bReadable);
      pConnection = bAlive ? std::next(pConnection) : aConnections.erase(pConnection);
    }
    if (aWatches[1].bReadable) AcceptAll();
    const std::lock_guard aGuard(aLock);
    lOpen = aConnections.size();
    aChanged.notify_all();
  }
}

// What to wait for, and for how long (ms; -1 for ever).
std::int32_t FaultServer::CollectWatches(std::vector<Sockets::Watch>& aWatches) const {
  aWatches.assign({{aBell.Socket(), true}, {hListener, true}});
  Moment aNext = Moment::max();
  for (const Connection& aConnection : aConnections) {
    aWatches.push_back({aConnection.hSocket, true, aConnection.bBlocked});
    if (aConnection.aDue != Moment{}) aNext = std::min(aNext, aConnection.aDue);
  }
  if (aNext == Moment::max()) return -1;
  const auto aRest = std::chrono::ceil<milliseconds>(aNext - SteadyClock::now()).count();
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(aRest, 0, 60000));
}

void FaultServer::AcceptAll() {
  for (;;) {
    const Sockets::Handle hSocket = Sockets::Accept(hListener);
    if (hSocket == Sockets::hNone) return;
    Connection aConnection{.hSocket = hSocket};
    // Most clients have sent their request by now.
    if (Attend(aConnection, true)) aConnections.push_back(std::move(aConnection));
  }
}

// False when the connection is closed and gone.
bool FaultServer::Attend(Connection& aConnection, bool bReadable) {
  if (bReadable && !ReadRequest(aConnection)) {
    Sockets::Close(aConnection.hSocket);
    return false;
  }
  return !aConnection.aAnswer || Advance(aConnection);
}

// False when the client has gone.
bool FaultServer::ReadRequest(Connection& aConnection) {
  char aBuffer[4096];
  std::ptrdiff_t lGot = 0;
  while ((lGot = Sockets::Receive(aConnection.hSocket, aBuffer, sizeof aBuffer)) > 0) {
    if (aConnection.aAnswer) continue;
    aConnection.szHead.append(aBuffer, static_cast<std::size_t>(lGot));
    if (aConnection.szHead.find("\r\n\r\n") == std::string::npos) continue;
    const auto lFrom = aConnection.szHead.find(' ') + 1;
    const auto szPath = aConnection.szHead.substr(lFrom, aConnection.szHead.find(' ', lFrom) - lFrom);
    const std::lock_guard aGuard(aLock);
    aConnection.aAnswer = Choose(szPath);
    ++lCount;
    if (bKeepRequests) aRequests.push_back({szPath, std::move(aConnection.szHead)});
    aConnection.szHead.clear();
    aChanged.notify_all();
  }
  return lGot == 0;
}

FaultServer::SharedAnswer FaultServer::Choose(const std::string& szPath) {
  auto pFound = aAnswers.find(szPath);
  if (pFound == aAnswers.end()) pFound = aAnswers.find("*");
  std::deque<SharedAnswer>& aOrder = pFound->second;
  SharedAnswer aChosen = aOrder.front();
  if (aOrder.size() > 1) aOrder.pop_front();
  return aChosen;
}

// Goes on with the answer as far as it goes without waiting. False when the connection is closed and gone.
bool FaultServer::Advance(Connection& aConnection) {
  aConnection.bBlocked = false;
  while (aConnection.lStep < aConnection.aAnswer->size()) {
    bool bDone = false;
    if (!DoStep(aConnection, (*aConnection.aAnswer)[aConnection.lStep], bDone)) return false;
    if (!bDone) return true;
    ++aConnection.lStep;
    aConnection.lSent = 0;
    aConnection.aDue = {};
  }
  Sockets::Close(aConnection.hSocket);
  return false;
}

bool FaultServer::DoStep(Connection& aConnection, const Fault::Step& aStep, bool& bDone) {
  using Kind = Fault::Step::Kind;
  const auto lRest = aStep.szBytes.size() - aConnection.lSent;
  const auto aPause = milliseconds(aStep.lMilliseconds);
  switch (aStep.iKind) {
    case Kind::Hang:
      return true;
    case Kind::HalfClose:
      Sockets::HalfClose(aConnection.hSocket);
      bDone = true;
      return true;
    case Kind::Reset:
      Sockets::Reset(aConnection.hSocket);
      return false;
    case Kind::Delay:
      if (aConnection.aDue == Moment{}) aConnection.aDue = SteadyClock::now() + aPause;
      bDone = SteadyClock::now() >= aConnection.aDue;
      return true;
    case Kind::Drip:
    case Kind::Send:
    case Kind::Endless:
      if (SteadyClock::now() < aConnection.aDue) return true;
  }
  if (lRest == 0) return bDone = true;
  const auto lPiece = aStep.iKind == Kind::Drip ? std::size_t{1} : lRest;
  const auto lTaken =
      Sockets::Send(aConnection.hSocket, std::string_view(aStep.szBytes).substr(aConnection.lSent, lPiece));
  if (lTaken < 0) {
    Sockets::Close(aConnection.hSocket);
    return false;
  }
  aConnection.lSent += static_cast<std::size_t>(lTaken);
  bDone = aConnection.lSent == aStep.szBytes.size();
  aConnection.bBlocked = !bDone && aStep.iKind != Kind::Drip;
  if (aStep.iKind == Kind::Drip) aConnection.aDue = SteadyClock::now() + aPause;
  if (aStep.iKind == Kind::Endless && bDone) {
    aConnection.lSent = 0;
    aConnection.bBlocked = true;  // the other connections have their turn first
    bDone = false;
  }
  return true;
}

DeafPort::DeafPort() : hListener(Sockets::Listen(iPort, 0)) {
  // The system keeps a few more waiting connections than it was told; these fill them.
  for (int i = 0; i < 8; ++i)
    aFillers.push_back(Sockets::Connect(iPort));
}

DeafPort::~DeafPort() {
  for (const Sockets::Handle hFiller : aFillers)
    Sockets::Close(hFiller);
  Sockets::Close(hListener);
}
