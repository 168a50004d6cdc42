// What sockets are called here.
#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>

namespace SocketSystem {

using Number = int;
using Length = socklen_t;
using Size = std::size_t;
inline constexpr int lSendFlags = MSG_NOSIGNAL, lEndOfSending = SHUT_WR;
inline constexpr bool bReuseAddress = true;

inline Number Open(int lType) {
  return socket(AF_INET, lType | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
}
inline Number Accept(Number hListener) {
  return accept4(hListener, nullptr, nullptr, SOCK_NONBLOCK | SOCK_CLOEXEC);
}
inline void Close(Number hSocket) {
  close(hSocket);
}
inline int Poll(pollfd* pPolls, unsigned lCount, int lMilliseconds) {
  return poll(pPolls, lCount, lMilliseconds);
}
inline int LastError() {
  return errno;
}
inline bool TryLater() {
  return errno == EAGAIN || errno == EWOULDBLOCK || errno == EINTR;
}

}  // namespace SocketSystem
