// TalkServer: listens on 127.0.0.1 and talks to each client on a thread of its own. The destructor ends all
// conversations at once, whatever they are waiting for.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>

#include "support/Sockets.h"

class TalkServer {
 public:
  // One conversation. What can wait answers false once the client has gone or the server stops.
  class Client {
   public:
    Client(const Sockets::Bell& aServerBell, Sockets::Handle hAccepted)
        : aBell(aServerBell), hSocket(hAccepted) {}
    ~Client() { Sockets::Close(hSocket); }
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    bool Send(std::string_view szBytes);
    bool Receive(std::string& szInput);      // waits for more and appends it
    bool Pause(std::int32_t lMilliseconds);  // what comes meanwhile is lost; -1: for ever
    void HalfClose() { Sockets::HalfClose(hSocket); }
    void Reset();  // ends it

   private:
    const Sockets::Bell& aBell;
    Sockets::Handle hSocket;
  };

  // Port 0: the system chooses. Throws std::runtime_error when the port cannot be had. aTalk is called on
  // many threads; the connection is closed when it returns.
  TalkServer(std::uint16_t iPort, std::function<void(Client&)> aTalk);
  ~TalkServer();
  TalkServer(const TalkServer&) = delete;
  TalkServer& operator=(const TalkServer&) = delete;

  std::uint16_t Port() const { return iPort; }
  std::size_t Open() const;  // conversations at present
  // True once every client has gone.
  bool WaitUntilIdle(std::int32_t lMilliseconds) const;

 private:
  void Run();

  std::uint16_t iPort;
  Sockets::Handle hListener;
  std::function<void(Client&)> aTalk;
  Sockets::Bell aBell;
  mutable std::mutex aLock;
  mutable std::condition_variable aEnded;
  std::size_t lOpen = 0;
  std::thread aThread;
};
