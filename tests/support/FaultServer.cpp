#include "support/FaultServer.h"

#include <algorithm>
#include <chrono>
#include <utility>

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

FaultServer::FaultServer(std::uint16_t iPort) : aServer(iPort, [this](auto& aClient) { Talk(aClient); }) {
  Serve("*", Fault::Ok());
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
  return aChanged.wait_for(aGuard, std::chrono::milliseconds(lMilliseconds),
                           [&] { return lCount >= lWanted; });
}

std::uint16_t FaultServer::RefusingPort() {
  std::uint16_t iFree = 0;
  Sockets::Close(Sockets::Listen(iFree));
  return iFree;
}

void FaultServer::Talk(TalkServer::Client& aClient) {
  std::string szHead;
  while (szHead.find("\r\n\r\n") == std::string::npos)
    if (!aClient.Receive(szHead)) return;
  const auto lFrom = szHead.find(' ') + 1;
  const auto szPath = szHead.substr(lFrom, szHead.find(' ', lFrom) - lFrom);
  SharedAnswer aAnswer;
  {
    const std::lock_guard aGuard(aLock);
    aAnswer = Choose(szPath);
    ++lCount;
    if (bKeepRequests) aRequests.push_back({szPath, std::move(szHead)});
    aChanged.notify_all();
  }
  for (const Fault::Step& aStep : *aAnswer)
    if (!Do(aStep, aClient)) return;
}

FaultServer::SharedAnswer FaultServer::Choose(const std::string& szPath) {
  auto pFound = aAnswers.find(szPath);
  if (pFound == aAnswers.end()) pFound = aAnswers.find("*");
  std::deque<SharedAnswer>& aOrder = pFound->second;
  SharedAnswer aChosen = aOrder.front();
  if (aOrder.size() > 1) aOrder.pop_front();
  return aChosen;
}

// False when the conversation is over.
bool FaultServer::Do(const Fault::Step& aStep, TalkServer::Client& aClient) {
  using Kind = Fault::Step::Kind;
  switch (aStep.iKind) {
    case Kind::Send:
      return aClient.Send(aStep.szBytes);
    case Kind::Drip:
      return std::ranges::all_of(aStep.szBytes, [&](const char& ch) {
        return aClient.Send({&ch, 1}) && aClient.Pause(aStep.lMilliseconds);
      });
    case Kind::Endless:
      while (aClient.Send(aStep.szBytes)) {
      }
      return false;
    case Kind::Delay:
    case Kind::Hang:
      return aClient.Pause(aStep.lMilliseconds);
    case Kind::HalfClose:
      aClient.HalfClose();
      return true;
    case Kind::Reset:
      aClient.Reset();
  }
  return false;
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
