#include "servers/TalkServer.h"

#include <chrono>
#include <exception>
#include <utility>

using asio::use_awaitable;
using asio::ip::tcp;

Fault::Step Fault::Endless(const std::string& szBytes) {
  std::string szBlock = szBytes;  // a short text is sent in blocks, or the server would be the slow one
  while (szBlock.size() < 32768)
    szBlock += szBytes;
  return {Step::Kind::Endless, std::move(szBlock)};
}

static TalkServer::Talk Do(TalkServer::Client& aClient, const Fault::Step& aStep) {
  using Kind = Fault::Step::Kind;
  asio::steady_timer aTimer(aClient.get_executor());
  const std::chrono::milliseconds aPause(aStep.lMilliseconds);
  switch (aStep.iKind) {
    case Kind::Send:
      co_await asio::async_write(aClient, asio::buffer(aStep.szBytes), use_awaitable);
      break;
    case Kind::Endless:
      for (;;)
        co_await asio::async_write(aClient, asio::buffer(aStep.szBytes), use_awaitable);
    case Kind::Delay:
      aTimer.expires_after(aPause);
      co_await aTimer.async_wait(use_awaitable);
      break;
    case Kind::HoldUntil:
      for (constexpr std::chrono::milliseconds aLook(2); !*aStep.pGo;) {
        aTimer.expires_after(aLook);
        co_await aTimer.async_wait(use_awaitable);
      }
      break;
    case Kind::Hang:
      for (char aLost[4096];;)
        co_await aClient.async_read_some(asio::buffer(aLost), use_awaitable);
    case Kind::HalfClose:
      aClient.shutdown(tcp::socket::shutdown_send);
      break;
    case Kind::Reset:
      aClient.set_option(asio::socket_base::linger(true, 0));
      [[fallthrough]];
    case Kind::Close:
      aClient.close();
  }
}

TalkServer::Talk TalkServer::Do(Client& aClient, const Fault::Answer& aSteps) {
  for (const Fault::Step& aStep : aSteps)
    co_await ::Do(aClient, aStep);
}

TalkServer::TalkServer(std::function<Talk(Client&)> aConversation)
    : aTalk(std::move(aConversation)),
      aListener(aContext, tcp::endpoint(asio::ip::address_v4::loopback(), 0), false) {
  asio::co_spawn(aContext, Accept(), asio::detached);
  aThread = std::thread([this] { aContext.run(); });
}

TalkServer::~TalkServer() {
  aContext.stop();
  aThread.join();
}

std::size_t TalkServer::Accepted() const {
  const std::lock_guard aGuard(aLock);
  return lAccepted;
}

std::size_t TalkServer::Open() const {
  const std::lock_guard aGuard(aLock);
  return lOpen;
}

bool TalkServer::WaitUntilIdle(std::int32_t lMilliseconds) const {
  std::unique_lock aGuard(aLock);
  return aEnded.wait_for(aGuard, std::chrono::milliseconds(lMilliseconds), [this] { return lOpen == 0; });
}

TalkServer::Talk TalkServer::Accept() {
  for (;;) {
    Client aClient = co_await aListener.async_accept(use_awaitable);
    {
      const std::lock_guard aGuard(aLock);
      ++lAccepted;
      ++lOpen;
    }
    asio::co_spawn(aContext, Converse(std::move(aClient)), asio::detached);
  }
}

TalkServer::Talk TalkServer::Converse(Client aClient) {
  try {
    aClient.set_option(tcp::no_delay(true));  // drips must leave byte by byte
    co_await aTalk(aClient);
  } catch (const std::exception&) {
    // The client has gone, or says what nobody understands.
  }
  std::error_code aIgnored;
  aClient.close(aIgnored);
  const std::lock_guard aGuard(aLock);
  --lOpen;
  aEnded.notify_all();
}
