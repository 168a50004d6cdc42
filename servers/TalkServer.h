// TalkServer: listens on a port of 127.0.0.1 that the system chooses, and talks to each client in a coroutine
// of its own, all on one thread. The destructor ends all conversations at once, whatever they are waiting
// for.
#pragma once

#include <asio.hpp>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <thread>

#include "servers/Fault.h"

class TalkServer {
 public:
  using Talk = asio::awaitable<void>;
  using Client = asio::ip::tcp::socket;

  // A conversation is over when aTalk returns, or throws because the client has gone.
  explicit TalkServer(std::function<Talk(Client&)> aTalk);
  ~TalkServer();
  TalkServer(const TalkServer&) = delete;
  TalkServer& operator=(const TalkServer&) = delete;

  static Talk Do(Client& aClient, const Fault::Answer& aSteps);

  std::uint16_t Port() const { return aListener.local_endpoint().port(); }
  std::size_t Accepted() const;
  std::size_t Open() const;  // conversations at present
  // True once every client has gone.
  bool WaitUntilIdle(std::int32_t lMilliseconds) const;

 private:
  Talk Accept();
  Talk Converse(Client aClient);

  std::function<Talk(Client&)> aTalk;
  mutable std::mutex aLock;
  mutable std::condition_variable aEnded;
  std::size_t lAccepted = 0, lOpen = 0;
  asio::io_context aContext;  // takes the conversations with it, which use what is above
  asio::ip::tcp::acceptor aListener;
  std::thread aThread;
};
