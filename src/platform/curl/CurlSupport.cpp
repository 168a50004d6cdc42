#include "platform/curl/CurlSupport.h"

#include <algorithm>

void CurlSupport::Start() {
  static const bool bStarted = [] {
    IgnoreBrokenPipes();
    return curl_global_init(CURL_GLOBAL_DEFAULT) == CURLE_OK;
  }();
  (void)bStarted;  // where it failed, no handle can be made, and that is what callers look at
}

std::string CurlSupport::FixedText(CURLcode iError) {
  std::string szText = curl_easy_strerror(iError);
  std::erase_if(szText, [](char ch) { return ch == ',' || ch == '\r' || ch == '\n'; });
  return szText;
}
