#include "support/Sockets.h"

#include <algorithm>
#include <stdexcept>
#include <string>

#include "platform/windows/System.h"

namespace Sockets {
namespace {

sockaddr_in Loopback(std::uint16_t iPort) {
  sockaddr_in aAddress{};
  aAddress.sin_family = AF_INET;
  aAddress.sin_port = htons(iPort);
  aAddress.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  return aAddress;
}

SOCKET Number(Handle hSocket) {
  return static_cast<SOCKET>(hSocket);
}

void StartOnce() {
  [[maybe_unused]] static const int lStarted = [] {
    WSADATA aData;
    return WSAStartup(MAKEWORD(2, 2), &aData);
  }();
}

void Unblock(SOCKET hSocket) {
  u_long lOn = 1;
  ioctlsocket(hSocket, FIONBIO, &lOn);
}

Handle Open(int lType) {
  StartOnce();
  const SOCKET hSocket =
      WSASocketW(AF_INET, lType, 0, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT);
  Unblock(hSocket);
  return static_cast<Handle>(hSocket);
}

bool Bind(Handle hSocket, std::uint16_t& iPort) {
  sockaddr_in aAddress = Loopback(iPort);
  int lSize = sizeof aAddress;
  auto* pAddress = reinterpret_cast<sockaddr*>(&aAddress);
  if (bind(Number(hSocket), pAddress, lSize) != 0 || getsockname(Number(hSocket), pAddress, &lSize) != 0)
    return false;
  iPort = ntohs(aAddress.sin_port);
  return true;
}

// 0 or -1, as Send and Receive answer a failure.
std::ptrdiff_t Failure() {
  return WSAGetLastError() == WSAEWOULDBLOCK ? 0 : -1;
}

// Without it drips would wait for each other; they must leave byte by byte.
void SendAtOnce(SOCKET hSocket) {
  const BOOL bOn = TRUE;
  setsockopt(hSocket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&bOn), sizeof bOn);
}

}  // namespace

// No SO_REUSEADDR, which here would let two servers share a port; a port that was just closed can be had
// anyway.
Handle Listen(std::uint16_t& iPort, int lBacklog) {
  const Handle hSocket = Open(SOCK_STREAM);
  if (!Bind(hSocket, iPort) || listen(Number(hSocket), lBacklog) != 0) {
    const std::string szWhy = std::to_string(WSAGetLastError());
    Close(hSocket);
    throw std::runtime_error("cannot listen on 127.0.0.1: error " + szWhy);
  }
  return hSocket;
}

Handle Accept(Handle hListener) {
  const SOCKET hSocket = accept(Number(hListener), nullptr, nullptr);
  if (hSocket == INVALID_SOCKET) return hNone;
  SetHandleInformation(reinterpret_cast<HANDLE>(hSocket), HANDLE_FLAG_INHERIT, 0);
  Unblock(hSocket);
  SendAtOnce(hSocket);
  return static_cast<Handle>(hSocket);
}

Handle Connect(std::uint16_t iPort) {
  const Handle hSocket = Open(SOCK_STREAM);
  const sockaddr_in aAddress = Loopback(iPort);
  connect(Number(hSocket), reinterpret_cast<const sockaddr*>(&aAddress), sizeof aAddress);
  return hSocket;
}

std::ptrdiff_t Send(Handle hSocket, std::string_view szBytes) {
  const int lSize = static_cast<int>(std::min<std::size_t>(szBytes.size(), 1 << 20));
  const int lSent = send(Number(hSocket), szBytes.data(), lSize, 0);
  return lSent >= 0 ? lSent : Failure();
}

std::ptrdiff_t Receive(Handle hSocket, char* pBuffer, std::size_t lSize) {
  const int lReceived = recv(Number(hSocket), pBuffer, static_cast<int>(lSize), 0);
  return lReceived > 0 ? lReceived : lReceived < 0 ? Failure() : -1;
}

void HalfClose(Handle hSocket) {
  shutdown(Number(hSocket), SD_SEND);
}

void Close(Handle hSocket) {
  if (hSocket != hNone) closesocket(Number(hSocket));
}

void Reset(Handle hSocket) {
  const linger aLinger{1, 0};
  setsockopt(Number(hSocket), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&aLinger), sizeof aLinger);
  Close(hSocket);
}

void Wait(std::vector<Watch>& aWatches, std::int32_t lMilliseconds) {
  std::vector<WSAPOLLFD> aPolls;
  aPolls.reserve(aWatches.size());
  for (const Watch& aWatch : aWatches)
    aPolls.push_back({Number(aWatch.hSocket),
                      static_cast<SHORT>((aWatch.bRead ? POLLRDNORM : 0) | (aWatch.bWrite ? POLLWRNORM : 0)),
                      0});
  if (aPolls.empty()) {
    Sleep(static_cast<DWORD>(lMilliseconds));  // -1 is INFINITE
  } else if (WSAPoll(aPolls.data(), static_cast<ULONG>(aPolls.size()), lMilliseconds) < 0) {
    for (WSAPOLLFD& aPoll : aPolls)
      aPoll.revents = 0;
  }
  for (std::size_t i = 0; i < aWatches.size(); ++i) {
    const bool bBroken = (aPolls[i].revents & (POLLERR | POLLHUP | POLLNVAL)) != 0;
    aWatches[i].bReadable = bBroken || (aPolls[i].revents & POLLRDNORM) != 0;
    aWatches[i].bWritable = bBroken || (aPolls[i].revents & POLLWRNORM) != 0;
  }
}

// A datagram socket that is connected to itself.
Bell::Bell() : hSocket(Open(SOCK_DGRAM)) {
  std::uint16_t iPort = 0;
  Bind(hSocket, iPort);
  const sockaddr_in aAddress = Loopback(iPort);
  connect(Number(hSocket), reinterpret_cast<const sockaddr*>(&aAddress), sizeof aAddress);
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
