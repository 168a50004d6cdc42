// What sockets are called here.
#pragma once

#include "platform/windows/System.h"

namespace SocketSystem {

using Number = SOCKET;
using Length = int;
using Size = int;
inline constexpr int lSendFlags = 0, lEndOfSending = SD_SEND;
inline constexpr bool bReuseAddress = false;  // two servers could then share a port

inline Number Unblocked(Number hSocket) {
  u_long lOn = 1;
  ioctlsocket(hSocket, FIONBIO, &lOn);
  return hSocket;
}
inline Number Open(int lType) {
  [[maybe_unused]] static const int lStarted = [] {
    WSADATA aData;
    return WSAStartup(MAKEWORD(2, 2), &aData);
  }();
  return Unblocked(
      WSASocketW(AF_INET, lType, 0, nullptr, 0, WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT));
}
inline Number Accept(Number hListener) {
  const Number hSocket = accept(hListener, nullptr, nullptr);
  SetHandleInformation(reinterpret_cast<HANDLE>(hSocket), HANDLE_FLAG_INHERIT, 0);
  return hSocket == INVALID_SOCKET ? hSocket : Unblocked(hSocket);
}
inline void Close(Number hSocket) {
  closesocket(hSocket);
}
inline int Poll(pollfd* pPolls, unsigned lCount, int lMilliseconds) {
  return WSAPoll(pPolls, lCount, lMilliseconds);
}
inline int LastError() {
  return WSAGetLastError();
}
inline bool TryLater() {
  return WSAGetLastError() == WSAEWOULDBLOCK;
}

}  // namespace SocketSystem
