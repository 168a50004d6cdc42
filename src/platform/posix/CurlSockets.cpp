#include <sys/socket.h>
#include <unistd.h>

#include <csignal>

#include "platform/curl/CurlSupport.h"

curl_socket_t CurlSupport::OpenSocket(int iFamily, int iType, int iProtocol) {
  return socket(iFamily, iType | SOCK_CLOEXEC, iProtocol);
}

void CurlSupport::CloseSocket(curl_socket_t hSocket) {
  close(hSocket);
}

void CurlSupport::ShutSocket(curl_socket_t hSocket) {
  shutdown(hSocket, SHUT_RDWR);
}

void CurlSupport::IgnoreBrokenPipes() {
  std::signal(SIGPIPE, SIG_IGN);
}
