#include "servers/FaultServer.h"

#include <deque>
#include <map>

#include "servers/TalkServer.h"

using asio::ip::tcp;

Fault::Answer Fault::Status(const std::string& szStatus, const std::string& szBody) {
  return {Send("HTTP/1.1 " + szStatus + "\r\nContent-Type: text/plain\r\nContent-Length: " +
               std::to_string(szBody.size()) + "\r\nConnection: close\r\n\r\n" + szBody)};
}

struct FaultServer::State {
  std::mutex aLock;
  std::condition_variable aChanged;
  std::map<std::string, std::deque<Fault::Answer>> aAnswers;
  std::map<std::string, std::size_t> aCounts;
  std::deque<Request> aRequests;
  std::size_t lCount = 0;
  TalkServer aServer{[this](TalkServer::Client& aClient) { return Talk(aClient); }};

  TalkServer::Talk Talk(TalkServer::Client& aClient) {
    std::string szHead;
    co_await asio::async_read_until(aClient, asio::dynamic_buffer(szHead), "\r\n\r\n", asio::use_awaitable);
    const Fault::Answer aAnswer = Choose(std::move(szHead));
    co_await TalkServer::Do(aClient, aAnswer);
  }

  Fault::Answer Choose(std::string szHead) {
    const auto lFrom = szHead.find(' ') + 1;
    const auto szPath = szHead.substr(lFrom, szHead.find(' ', lFrom) - lFrom);
    const std::lock_guard aGuard(aLock);
    ++lCount;
    ++aCounts[szPath];
    aRequests.push_back({szPath, std::move(szHead)});
    if (aRequests.size() > 100) aRequests.pop_front();
    aChanged.notify_all();
    auto& aOrder = aAnswers.contains(szPath) ? aAnswers[szPath] : aAnswers["*"];
    Fault::Answer aChosen = aOrder.front();
    if (aOrder.size() > 1) aOrder.pop_front();
    return aChosen;
  }
};

FaultServer::FaultServer() : pState(std::make_unique<State>()) {
  Serve("*", Fault::Ok());
}

FaultServer::~FaultServer() = default;

std::string FaultServer::Address() const {
  return "127.0.0.1:" + std::to_string(pState->aServer.Port());
}

void FaultServer::ServeInOrder(const std::string& szPath, const std::vector<Fault::Answer>& aAnswers) {
  const std::lock_guard aGuard(pState->aLock);
  pState->aAnswers[szPath].assign(aAnswers.begin(), aAnswers.end());
}

std::vector<FaultServer::Request> FaultServer::Requests() const {
  const std::lock_guard aGuard(pState->aLock);
  return {pState->aRequests.begin(), pState->aRequests.end()};
}

std::size_t FaultServer::Count() const {
  const std::lock_guard aGuard(pState->aLock);
  return pState->lCount;
}

std::size_t FaultServer::Count(const std::string& szPath) const {
  const std::lock_guard aGuard(pState->aLock);
  return pState->aCounts[szPath];
}

bool FaultServer::WaitForRequests(std::size_t lWanted, std::int32_t lMilliseconds) const {
  std::unique_lock aGuard(pState->aLock);
  return pState->aChanged.wait_for(aGuard, std::chrono::milliseconds(lMilliseconds),
                                   [&] { return pState->lCount >= lWanted; });
}

std::size_t FaultServer::OpenConnections() const {
  return pState->aServer.Open();
}

bool FaultServer::WaitUntilIdle(std::int32_t lMilliseconds) const {
  return pState->aServer.WaitUntilIdle(lMilliseconds);
}

std::uint16_t FaultServer::RefusingPort() {
  return TalkServer([](auto&) -> TalkServer::Talk { co_return; }).Port();
}

struct DeafPort::State {
  asio::io_context aContext;  // never run: what is begun stays so
  tcp::acceptor aListener{aContext, tcp::v4()};
  std::deque<tcp::socket> aFillers;
};

DeafPort::DeafPort() : pState(std::make_unique<State>()) {
  pState->aListener.bind({asio::ip::address_v4::loopback(), 0});
  pState->aListener.listen(0);
  // The system keeps a few more waiting connections than it was told; these fill them.
  for (int i = 0; i < 8; ++i)
    pState->aFillers.emplace_back(pState->aContext)
        .async_connect(pState->aListener.local_endpoint(), [](std::error_code) {});
}

DeafPort::~DeafPort() = default;

std::uint16_t DeafPort::Port() const {
  return pState->aListener.local_endpoint().port();
}
