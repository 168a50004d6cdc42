// FaultServer: a web server on 127.0.0.1 that answers as it is told, rightly or wrongly. Each
// connection has a thread of its own; the destructor stops all at once, whatever they are doing.
//
// An answer is a list of steps, done in order once the request's header is in; after the last one the
// connection is closed. Answers are chosen by the request's path:
//
//   FaultServer aServer;
//   aServer.Serve("/good", Fault::Ok());
//   aServer.Serve("/short", {Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\nabc"),
//   Fault::Reset()}); aServer.ServeInOrder("/flaps", {Fault::Status("500 Oops"), Fault::Ok()});   // the last
//   one stays aInet.Execute(aServer.URL("/good"), "GET");
//
// All members may be called from any thread, at any time.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "support/TalkServer.h"

namespace Fault {

struct Step {
  enum class Kind { Send, Drip, Endless, Delay, Hang, HalfClose, Reset };
  Kind iKind;
  std::string szBytes;
  std::int32_t lMilliseconds = 0;
};
using Answer = std::vector<Step>;

inline const auto Send = [](std::string szBytes) { return Step{Step::Kind::Send, std::move(szBytes)}; };
// Byte by byte, with that pause between.
inline const auto Drip = [](std::string szBytes, std::int32_t lMilliseconds) {
  return Step{Step::Kind::Drip, std::move(szBytes), lMilliseconds};
};
Step Endless(const std::string& szBytes);  // again and again until the client goes
inline const auto Delay = [](std::int32_t lMilliseconds) {
  return Step{Step::Kind::Delay, {}, lMilliseconds};
};
inline const auto Hang = [] { return Step{Step::Kind::Hang, {}, -1}; };  // nothing more until the client goes
// The client reads the end, the connection stays open for the next step.
inline const auto HalfClose = [] { return Step{Step::Kind::HalfClose, {}}; };
inline const auto Reset = [] { return Step{Step::Kind::Reset, {}}; };  // ends with a reset

// A whole answer with that status ("404 Not Found") and body, its length declared.
Answer Status(const std::string& szStatus, const std::string& szBody = "");
inline const auto Ok = [](const std::string& szBody = "fine") { return Status("200 OK", szBody); };

}  // namespace Fault

class FaultServer {
 public:
  // Port 0: the system chooses. Throws std::runtime_error when the port cannot be had.
  explicit FaultServer(std::uint16_t iPort = 0);

  std::uint16_t Port() const { return aServer.Port(); }
  std::string Address() const { return "127.0.0.1:" + std::to_string(Port()); }
  std::string URL(const std::string& szPath) const { return "http://" + Site(szPath); }
  // The same without the scheme, as a site list has it.
  std::string Site(const std::string& szPath) const { return Address() + szPath; }

  // The answer for a path (with its query, as in the request line). A path without one gets that of "*",
  // which is Ok() until it is set.
  void Serve(const std::string& szPath, Fault::Answer aAnswer);
  // The first request for the path gets the first answer, and so on; the last one stays.
  void ServeInOrder(const std::string& szPath, std::vector<Fault::Answer> aAnswers);

  struct Request {
    std::string szPath;
    std::string szHead;  // raw, with the blank line
  };
  std::vector<Request> Requests() const { return Locked(aRequests); }  // in order of arrival
  std::size_t Count() const { return Locked(lCount); }  // also counts what KeepRequests(false) lets go
  std::size_t Count(const std::string& szPath) const;
  void KeepRequests(bool bKeep);  // a benchmark that watches memory keeps none
  std::size_t OpenConnections() const { return aServer.Open(); }
  // True once so many requests have come in all; false when the time ran out first.
  bool WaitForRequests(std::size_t lCount, std::int32_t lMilliseconds = 5000) const;
  // True once every client has gone.
  bool WaitUntilIdle(std::int32_t lMilliseconds = 5000) const { return aServer.WaitUntilIdle(lMilliseconds); }

  // A port of 127.0.0.1 on which nothing listens.
  static std::uint16_t RefusingPort();

 private:
  using SharedAnswer = std::shared_ptr<const Fault::Answer>;

  template <typename Value>
  Value Locked(const Value& aValue) const {
    const std::lock_guard aGuard(aLock);
    return aValue;
  }
  void Talk(TalkServer::Client& aClient);
  static bool Do(const Fault::Step& aStep, TalkServer::Client& aClient);
  SharedAnswer Choose(const std::string& szPath);

  mutable std::mutex aLock;  // guards the rest
  mutable std::condition_variable aChanged;
  bool bKeepRequests = true;
  std::map<std::string, std::deque<SharedAnswer>> aAnswers;
  std::vector<Request> aRequests;
  std::size_t lCount = 0;
  TalkServer aServer;  // the last, so that it goes before what its threads use
};

// A port whose connections never stand: the queue of waiting connections is full and nobody accepts. A
// client hangs in connecting. (Windows itself refuses instead, with a reset.)
class DeafPort {
 public:
  DeafPort();
  ~DeafPort();
  DeafPort(const DeafPort&) = delete;
  DeafPort& operator=(const DeafPort&) = delete;
  std::uint16_t Port() const { return iPort; }

 private:
  std::uint16_t iPort = 0;
  Sockets::Handle hListener;
  std::vector<Sockets::Handle> aFillers;
};
