// Sockets: TCP on the loopback interface for the servers that tests, the demonstration and the benchmarks
// run. Every socket is non-blocking. No call throws but Listen; broken connections are answered.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace Sockets {

using Handle = std::intptr_t;
inline constexpr Handle hNone = -1;

// Listens on 127.0.0.1; port 0 lets the system choose, and iPort then holds its choice. lBacklog: connections
// that wait to be accepted before further ones go unanswered. Throws std::runtime_error when it cannot.
Handle Listen(std::uint16_t& iPort, int lBacklog = 1024);
// The next waiting connection, or hNone.
Handle Accept(Handle hListener);
// Begins a connection to 127.0.0.1 and does not wait for it.
Handle Connect(std::uint16_t iPort);

// Bytes taken over, 0 when the peer must read first, -1 when the connection is broken.
std::ptrdiff_t Send(Handle hSocket, std::string_view szBytes);
// Bytes received, 0 when none are there yet, -1 when the peer has ended or the connection is broken.
std::ptrdiff_t Receive(Handle hSocket, char* pBuffer, std::size_t lSize);

void HalfClose(Handle hSocket);  // the peer reads the end; it can still send
void Close(Handle hSocket);
void Reset(Handle hSocket);  // closes so that the peer sees a reset (RST)

// Once rung it wakes every thread that waits, now and later.
class Bell {
 public:
  Bell();
  ~Bell() { Close(hSocket); }
  Bell(const Bell&) = delete;
  Bell& operator=(const Bell&) = delete;
  void Ring() { Send(hSocket, "!"); }
  Handle Socket() const { return hSocket; }

 private:
  Handle hSocket;
};

enum class Event { Rung, Ready, TimeOut };
// Waits until the socket can be read, or written; a broken connection is ready for both. -1 ms waits for
// ever.
Event Wait(const Bell& aBell, Handle hSocket, bool bWrite, std::int32_t lMilliseconds);

}  // namespace Sockets
