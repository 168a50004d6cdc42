// Inet: the HTTP client control. One GET at a time over plain http, no redirect followed, no body kept, no
// connection reused, cookies only in memory. It never blocks but in Poll, and calls StateChanged only from
// Poll, never from Execute or Cancel.
//
// The states come in the order of their numbers, some of them left out, and exactly one of Error and
// ResponseCompleted comes last. When that is delivered the control is idle, so a handler may Execute the next
// request. After Cancel nothing more of the cancelled request is delivered.
//
// ResponseCompleted with an empty header: something answered, but not with an HTTP status line (RFC 9112
// section 4). A header is bounded to 256 KB on the wire and 64 KB kept; a body of any length costs constant
// memory.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

class Inet {
 public:
  Inet();
  ~Inet();
  Inet(const Inet&) = delete;
  Inet& operator=(const Inet&) = delete;

  enum State : std::int16_t {
    None,
    ResolvingHost,
    HostResolved,
    Connecting,
    Connected,
    Requesting,
    RequestSent,
    ReceivingResponse,
    ResponseReceived,
    Disconnecting,
    Disconnected,
    Error,
    ResponseCompleted
  };
  // Of the error numbers, which are libcurl's on every system, those that others tell apart: no such name,
  // and nobody listens or no way leads there.
  static constexpr std::int32_t lNameUnknown = 6, lNoConnection = 7;

  std::function<void(std::int16_t)> StateChanged;

  // The limit for the whole request in seconds (1 at least, 60 unless set), used by the next Execute. A
  // request that passes it ends in Error with TimedOut() true.
  void RequestTimeout(std::int32_t lSeconds);
  // Whether cookies that servers set are kept in memory and sent back; false (as at first) also forgets those
  // kept.
  void AcceptCookies(bool bAccept);
  void ForgetCookies();

  // Starts a request; a request still executing is cancelled first. A URL that cannot be requested ends in
  // Error from the next Poll. Blanks and other bytes that may not stand in a request line are escaped.
  void Execute(const std::string& szURL, const std::string& szMethod);
  bool StillExecuting() const;
  // The control is idle on return and nothing is raised. Never waits for a name look-up.
  void Cancel();

  // Lets the request in flight proceed for at most this time, then delivers the state changes that came up.
  // Returns at once when idle, or when called from within StateChanged.
  void Poll(std::int32_t lMilliseconds);

  const std::string& URL() const;           // of the last Execute, as given
  std::int32_t ResponseCode() const;        // the client's error number of the last request; 0 for none
  const std::string& ResponseInfo() const;  // its fixed text, without comma or line end; empty for none
  const std::string& GetHeader() const;     // header of the final response, raw, without the blank line
  bool TimedOut() const;
  // The last request failed for want of means of this machine: a descriptor, memory, a thread. It says
  // nothing about the server.
  bool OwnFault() const;
  // The request in flight, or the last one, met a machine: it was connected, or refused.
  bool Reached() const;

 private:
  class Impl;
  std::unique_ptr<Impl> pImpl;
};
