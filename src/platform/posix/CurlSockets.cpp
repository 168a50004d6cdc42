#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

#include "platform/curl/CurlSupport.h"

namespace {

// What the system has counted on a connection; all 0 where it does not tell.
tcp_info InfoOf(curl_socket_t hSocket) {
  tcp_info aInfo{};
  socklen_t lSize = sizeof aInfo;
  if (getsockopt(hSocket, IPPROTO_TCP, TCP_INFO, &aInfo, &lSize) != 0) return {};
  return aInfo;
}

}  // namespace

curl_socket_t CurlSupport::OpenSocket(int iFamily, int iType, int iProtocol) {
  return socket(iFamily, iType | SOCK_CLOEXEC, iProtocol);
}

void CurlSupport::CloseSocket(curl_socket_t hSocket) {
  close(hSocket);
}

void CurlSupport::ShutSocket(curl_socket_t hSocket) {
  shutdown(hSocket, SHUT_RDWR);
}

bool CurlSupport::HasBytes(curl_socket_t hSocket) {
  char chFirst = 0;
  return recv(hSocket, &chFirst, 1, MSG_PEEK | MSG_DONTWAIT) > 0;
}

bool CurlSupport::HasReceived(curl_socket_t hSocket) {
  constexpr __u64 lEnd = 1;  // the end of the stream counts as a byte
  return InfoOf(hSocket).tcpi_bytes_received > lEnd;
}

bool CurlSupport::WasAnswered(curl_socket_t hSocket) {
  return InfoOf(hSocket).tcpi_segs_in > 0;
}

void CurlSupport::IgnoreBrokenPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}
