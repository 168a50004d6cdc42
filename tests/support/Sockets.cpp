#include "support/Sockets.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "SocketSystem.h"

namespace Sockets {
namespace {

using SocketSystem::Number;
using SocketSystem::Size;

sockaddr_in Loopback(std::uint16_t iPort) {
  sockaddr_in aAddress{};
  aAddress.sin_family = AF_INET;
  aAddress.sin_port = htons(iPort);
  aAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return aAddress;
}

bool Bind(Handle hSocket, std::uint16_t& iPort) {
  sockaddr_in aAddress = Loopback(iPort);
  SocketSystem::Length lSize = sizeof aAddress;
  auto* pAddress = reinterpret_cast<sockaddr*>(&aAddress);
  if (bind(static_cast<Number>(hSocket), pAddress, lSize) != 0 ||
      getsockname(static_cast<Number>(hSocket), pAddress, &lSize) != 0)
    return false;
  iPort = ntohs(aAddress.sin_port);
  return true;
}

void SetOption(Handle hSocket, int lLevel, int lOption, const auto& aValue) {
  setsockopt(static_cast<Number>(hSocket), lLevel, lOption, reinterpret_cast<const char*>(&aValue),
             sizeof aValue);
}

void BeginConnection(Handle hSocket, std::uint16_t iPort) {
  const sockaddr_in aAddress = Loopback(iPort);
  (void)connect(static_cast<Number>(hSocket), reinterpret_cast<const sockaddr*>(&aAddress), sizeof aAddress);
}

}  // namespace

Handle Listen(std::uint16_t& iPort, int lBacklog) {
  const auto hSocket = static_cast<Handle>(SocketSystem::Open(SOCK_STREAM));
  if (SocketSystem::bReuseAddress) SetOption(hSocket, SOL_SOCKET, SO_REUSEADDR, 1);
  if (!Bind(hSocket, iPort) || listen(static_cast<Number>(hSocket), lBacklog) != 0) {
    const int lError = SocketSystem::LastError();
    Close(hSocket);
    throw std::runtime_error("cannot listen on 127.0.0.1: error " + std::to_string(lError));
  }
  return hSocket;
}

Handle Accept(Handle hListener) {
  const auto hSocket = static_cast<Handle>(SocketSystem::Accept(static_cast<Number>(hListener)));
  if (hSocket != hNone) SetOption(hSocket, IPPROTO_TCP, TCP_NODELAY, 1);  // drips must leave byte by byte
  return hSocket;
}

Handle Connect(std::uint16_t iPort) {
  const auto hSocket = static_cast<Handle>(SocketSystem::Open(SOCK_STREAM));
  BeginConnection(hSocket, iPort);
  return hSocket;
}

std::ptrdiff_t Send(Handle hSocket, std::string_view szBytes) {
  const auto lSize = static_cast<Size>(std::min<std::size_t>(szBytes.size(), 1 << 20));
  const auto lSent = send(static_cast<Number>(hSocket), szBytes.data(), lSize, SocketSystem::lSendFlags);
  return lSent >= 0 ? lSent : SocketSystem::TryLater() ? 0 : -1;
}

std::ptrdiff_t Receive(Handle hSocket, char* pBuffer, std::size_t lSize) {
  const auto lReceived = recv(static_cast<Number>(hSocket), pBuffer, static_cast<Size>(lSize), 0);
  return lReceived > 0 ? lReceived : lReceived < 0 && SocketSystem::TryLater() ? 0 : -1;
}

void HalfClose(Handle hSocket) {
  shutdown(static_cast<Number>(hSocket), SocketSystem::lEndOfSending);
}

void Close(Handle hSocket) {
  if (hSocket != hNone) SocketSystem::Close(static_cast<Number>(hSocket));
}

void Reset(Handle hSocket) {
  SetOption(hSocket, SOL_SOCKET, SO_LINGER, linger{1, 0});
  Close(hSocket);
}

// A datagram socket that is connected to itself; what it received is never read.
Bell::Bell() : hSocket(static_cast<Handle>(SocketSystem::Open(SOCK_DGRAM))) {
  std::uint16_t iPort = 0;
  Bind(hSocket, iPort);
  BeginConnection(hSocket, iPort);
}

Event Wait(const Bell& aBell, Handle hSocket, bool bWrite, std::int32_t lMilliseconds) {
  pollfd aPolls[2]{};
  aPolls[0].fd = static_cast<Number>(aBell.Socket());
  aPolls[0].events = POLLRDNORM;
  aPolls[1].fd = static_cast<Number>(hSocket);
  aPolls[1].events = bWrite ? POLLWRNORM : POLLRDNORM;
  if (SocketSystem::Poll(aPolls, 2, lMilliseconds) <= 0) return Event::TimeOut;
  return aPolls[0].revents != 0 ? Event::Rung : Event::Ready;
}

}  // namespace Sockets
