// FaultServer: a web server on 127.0.0.1 that answers as it is told, rightly or wrongly. The destructor stops
// all conversations at once, whatever they are doing.
//
// An answer is a list of steps, done in order once the request's header is in; after the last one the
// connection is closed. Answers are chosen by the request's path:
//
//   FaultServer aServer;
//   aServer.Serve("/torn", {Fault::Send("HTTP/1.1 200 OK\r\nContent-Le"), Fault::Reset()});
//   aServer.ServeInOrder("/flaps", {Fault::Status("500 Oops"), Fault::Ok()});
//   aInet.Execute(aServer.URL("/torn"), "GET");
//
// All members may be called from any thread, at any time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "servers/Fault.h"

namespace Fault {

// A whole answer with that status ("404 Not Found") and body, its length declared.
Answer Status(const std::string& szStatus, const std::string& szBody = "");
inline const auto Ok = [](const std::string& szBody = "fine") { return Status("200 OK", szBody); };

}  // namespace Fault

class FaultServer {
 public:
  FaultServer();
  ~FaultServer();
  FaultServer(const FaultServer&) = delete;
  FaultServer& operator=(const FaultServer&) = delete;

  std::string Address() const;  // with the port
  std::string URL(const std::string& szPath) const { return "http://" + Site(szPath); }
  // The same without the scheme, as a site list has it.
  std::string Site(const std::string& szPath) const { return Address() + szPath; }

  // The answer for a path (with its query, as in the request line). A path without one gets that of "*",
  // which is Ok() until it is set.
  void Serve(const std::string& szPath, Fault::Answer aAnswer) { ServeInOrder(szPath, {std::move(aAnswer)}); }
  // The first request for the path gets the first answer, and so on; the last one stays.
  void ServeInOrder(const std::string& szPath, const std::vector<Fault::Answer>& aAnswers);

  struct Request {
    std::string szPath;
    std::string szHead;  // raw, with the blank line
  };
  std::vector<Request> Requests() const;  // the latest hundred, in order of arrival
  std::size_t Count() const;              // of all requests
  std::size_t Count(const std::string& szPath) const;
  std::size_t OpenConnections() const;
  // True once so many requests have come in all; false when the time ran out first.
  bool WaitForRequests(std::size_t lWanted, std::int32_t lMilliseconds = 30000) const;
  // True once every client has gone.
  bool WaitUntilIdle(std::int32_t lMilliseconds = 30000) const;

  // A port of 127.0.0.1 on which nothing listens.
  static std::uint16_t RefusingPort();

 private:
  struct State;
  std::unique_ptr<State> pState;
};

// A port whose connections never stand: the queue of waiting connections is full and nobody accepts. A
// client hangs in connecting. (Windows itself refuses instead, with a reset.)
class DeafPort {
 public:
  DeafPort();
  ~DeafPort();
  DeafPort(const DeafPort&) = delete;
  DeafPort& operator=(const DeafPort&) = delete;
  std::uint16_t Port() const;

 private:
  struct State;
  std::unique_ptr<State> pState;
};
