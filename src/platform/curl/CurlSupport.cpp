#include "platform/curl/CurlSupport.h"

#include <algorithm>
#include <array>
#include <system_error>
#include <thread>

void CurlSupport::Start() {
  static const bool bStarted = [] {
    IgnoreBrokenPipes();
    return curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  }();
  (void)bStarted;  // where it failed, no handle can be made, and that is what callers look at
}

bool CurlSupport::HasMeans() {
  bool bAll = true;
  std::array<curl_socket_t, 4> aSockets{};  // two of libcurl's own and two of the system's look-up
  for (auto& hSocket : aSockets)
    hSocket = OpenSocket(AF_INET, SOCK_DGRAM, 0);
  for (const auto hSocket : aSockets) {
    bAll = bAll && hSocket != CURL_SOCKET_BAD;
    if (hSocket != CURL_SOCKET_BAD) CloseSocket(hSocket);
  }
  try {
    std::thread([] {}).join();
  } catch (const std::system_error&) {
    bAll = false;
  }
  return bAll;
}

std::string CurlSupport::FixedText(CURLcode iError) {
  std::string szText = curl_easy_strerror(iError);
  std::erase_if(szText, [](char ch) { return ch == ',' || ch == '\r' || ch == '\n'; });
  return szText;
}
