#include "support/Sockets.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <string>

namespace Sockets {
namespace {

int Number(Handle hSocket) {
  return static_cast<int>(hSocket);
}

sockaddr_in Loopback(std::uint16_t iPort) {
  sockaddr_in aAddress{};
  aAddress.sin_family = AF_INET;
  aAddress.sin_port = htons(iPort);
  aAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return aAddress;
}

Handle Open(int lType) {
  return socket(AF_INET, lType | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}

bool Bind(Handle hSocket, std::uint16_t& iPort) {
  sockaddr_in aAddress = Loopback(iPort);
  socklen_t lSize = sizeof aAddress;
  auto* pAddress = reinterpret_cast<sockaddr*>(&aAddress);
  if (bind(Number(hSocket), pAddress, lSize) != 0 || getsockname(Number(hSocket), pAddress, &lSize) != 0)
    return false;
  iPort = ntohs(aAddress.sin_port);
  return true;
}

bool TryLater() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace

Handle Listen(std::uint16_t& iPort, int lBacklog) {
  const Handle hSocket = Open(SOCK_STREAM);
  const int lOn = 1;
  setsockopt(Number(hSocket), SOL_SOCKET, SO_REUSEADDR, &lOn, sizeof lOn);
  if (!Bind(hSocket, iPort) || listen(Number(hSocket), lBacklog) != 0) {
    const std::string szWhy = std::strerror(errno);
    Close(hSocket);
    throw std::runtime_error("cannot listen on 127.0.0.1: " + szWhy);
  }
  return hSocket;
}

Handle Accept(Handle hListener) {
  const int hSocket = accept4(Number(hListener), nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
  const int lOn = 1;  // drips must leave byte by byte
  if (hSocket >= 0) setsockopt(hSocket, IPPROTO_TCP, TCP_NODELAY, &lOn, sizeof lOn);
  return hSocket;
}

Handle Connect(std::uint16_t iPort) {
  const Handle hSocket = Open(SOCK_STREAM);
  const sockaddr_in aAddress = Loopback(iPort);
  (void)connect(Number(hSocket), reinterpret_cast<const sockaddr*>(&aAddress), sizeof aAddress);
  return hSocket;
}

std::ptrdiff_t Send(Handle hSocket, std::string_view szBytes) {
  const auto lSent = send(Number(hSocket), szBytes.data(), szBytes.size(), MSG_NOSIGNAL);
  return lSent >= 0 ? lSent : TryLater() ? 0 : -1;
}

std::ptrdiff_t Receive(Handle hSocket, char* pBuffer, std::size_t lSize) {
  const auto lReceived = recv(Number(hSocket), pBuffer, lSize, 0);
  return lReceived > 0 ? lReceived : lReceived < 0 && TryLater() ? 0 : -1;
}

void HalfClose(Handle hSocket) {
  shutdown(Number(hSocket), SHUT_WR);
}

void Close(Handle hSocket) {
  if (hSocket != hNone) close(Number(hSocket));
}

void Reset(Handle hSocket) {
  const linger aLinger{1, 0};
  setsockopt(Number(hSocket), SOL_SOCKET, SO_LINGER, &aLinger, sizeof aLinger);
  Close(hSocket);
}

void Wait(std::vector<Watch>& aWatches, std::int32_t lMilliseconds) {
  std::vector<pollfd> aPolls;
  aPolls.reserve(aWatches.size());
  for (const Watch& aWatch : aWatches)
    aPolls.push_back({Number(aWatch.hSocket),
                      static_cast<short>((aWatch.bRead ? POLLIN : 0) | (aWatch.bWrite ? POLLOUT : 0)), 0});
  if (poll(aPolls.data(), aPolls.size(), lMilliseconds) < 0) aPolls.assign(aPolls.size(), pollfd{});
  for (std::size_t i = 0; i < aWatches.size(); ++i) {
    const bool bBroken = (aPolls[i].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    aWatches[i].bReadable = bBroken || (aPolls[i].revents & POLLIN) != 0;
    aWatches[i].bWritable = bBroken || (aPolls[i].revents & POLLOUT) != 0;
  }
}

// A datagram socket that is connected to itself.
Bell::Bell() : hSocket(Open(SOCK_DGRAM)) {
  std::uint16_t iPort = 0;
  Bind(hSocket, iPort);
  const sockaddr_in aAddress = Loopback(iPort);
  (void)connect(Number(hSocket), reinterpret_cast<const sockaddr*>(&aAddress), sizeof aAddress);
}

Bell::~Bell() {
  Close(hSocket);
}

void Bell::Ring() {
  Send(hSocket, "!");
}

void Bell::Silence() {
  char aBuffer[16];
  while (Receive(hSocket, aBuffer, sizeof aBuffer) > 0) {
  }
}

}  // namespace Sockets
