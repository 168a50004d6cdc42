#include <winsock2.h>
// Behind it.
#include <mstcpip.h>

#include "platform/curl/CurlSupport.h"

curl_socket_t CurlSupport::OpenSocket(int iFamily, int iType, int iProtocol) {
  constexpr DWORD lFlags = WSA_FLAG_OVERLAPPED | WSA_FLAG_NO_HANDLE_INHERIT;
  return WSASocketW(iFamily, iType, iProtocol, nullptr, 0, lFlags);
}

void CurlSupport::CloseSocket(curl_socket_t hSocket) {
  closesocket(hSocket);
}

void CurlSupport::ShutSocket(curl_socket_t hSocket) {
  shutdown(hSocket, SD_BOTH);
}

bool CurlSupport::HasBytes(curl_socket_t hSocket) {
  char chFirst = 0;
  return recv(hSocket, &chFirst, 1, MSG_PEEK) > 0;
}

// Windows counts from 10 (1703) on.
bool CurlSupport::HasReceived(curl_socket_t hSocket) {
  DWORD lVersion = 0, lLength = 0;
  TCP_INFO_v0 aInfo{};
  const int iError = WSAIoctl(hSocket, SIO_TCP_INFO, &lVersion, sizeof(lVersion), &aInfo, sizeof(aInfo),
                              &lLength, nullptr, nullptr);
  return iError == 0 && aInfo.BytesIn > 0;
}

bool CurlSupport::WasAnswered(curl_socket_t) {
  return true;
}

// Windows has no such signal.
void CurlSupport::IgnoreBrokenPipes() {
}
