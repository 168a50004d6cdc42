#include "support/TalkServer.h"

#include <chrono>
#include <utility>

using Sockets::Event;
using std::chrono::milliseconds;
using SteadyClock = std::chrono::steady_clock;

bool TalkServer::Client::Send(std::string_view szBytes) {
  while (!szBytes.empty()) {
    const auto lTaken = Sockets::Send(hSocket, szBytes);
    if (lTaken < 0 || Sockets::Wait(aBell, hSocket, true, lTaken > 0 ? 0 : -1) == Event::Rung) return false;
    szBytes.remove_prefix(static_cast<std::size_t>(lTaken));
  }
  return true;
}

bool TalkServer::Client::Receive(std::string& szInput) {
  if (Sockets::Wait(aBell, hSocket, false, -1) == Event::Rung) return false;
  char aBuffer[16384];
  const auto lGot = Sockets::Receive(hSocket, aBuffer, sizeof aBuffer);
  if (lGot > 0) szInput.append(aBuffer, static_cast<std::size_t>(lGot));
  return lGot >= 0;
}

bool TalkServer::Client::Pause(std::int32_t lMilliseconds) {
  const auto aEnd = SteadyClock::now() + milliseconds(lMilliseconds);
  for (;;) {
    const auto aRest = std::chrono::ceil<milliseconds>(aEnd - SteadyClock::now()).count();
    if (lMilliseconds >= 0 && aRest <= 0) return true;
    const auto lWait = lMilliseconds < 0 ? -1 : static_cast<std::int32_t>(aRest);
    const auto iEvent = Sockets::Wait(aBell, hSocket, false, lWait);
    char aLost[4096];
    if (iEvent == Event::Rung) return false;
    if (iEvent == Event::Ready && Sockets::Receive(hSocket, aLost, sizeof aLost) < 0) return false;
  }
}

void TalkServer::Client::Reset() {
  Sockets::Reset(std::exchange(hSocket, Sockets::hNone));
}

TalkServer::TalkServer(std::uint16_t iWanted, std::function<void(Client&)> aConversation)
    : iPort(iWanted), hListener(Sockets::Listen(iPort)), aTalk(std::move(aConversation)) {
  aThread = std::thread([this] { Run(); });
}

TalkServer::~TalkServer() {
  aBell.Ring();
  aThread.join();
  std::unique_lock aGuard(aLock);
  aEnded.wait(aGuard, [this] { return lOpen == 0; });
  Sockets::Close(hListener);
}

std::size_t TalkServer::Open() const {
  const std::lock_guard aGuard(aLock);
  return lOpen;
}

bool TalkServer::WaitUntilIdle(std::int32_t lMilliseconds) const {
  std::unique_lock aGuard(aLock);
  return aEnded.wait_for(aGuard, milliseconds(lMilliseconds), [this] { return lOpen == 0; });
}

void TalkServer::Run() {
  while (Sockets::Wait(aBell, hListener, false, -1) != Event::Rung) {
    const auto hAccepted = Sockets::Accept(hListener);
    if (hAccepted == Sockets::hNone) continue;
    {
      const std::lock_guard aGuard(aLock);
      ++lOpen;
    }
    std::thread([this, hAccepted] {
      {
        Client aClient(aBell, hAccepted);
        aTalk(aClient);
      }
      const std::lock_guard aGuard(aLock);
      --lOpen;
      aEnded.notify_all();
    }).detach();
  }
}
