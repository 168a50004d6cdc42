// The peers of a pass: the least that a client can do for one URL after the other.
#pragma once

#include <curl/curl.h>

#include <string>
#include <vector>

namespace BareLoop {

inline std::size_t Discard(char*, std::size_t lSize, std::size_t lCount, void*) {
  return lSize * lCount;
}

// On libcurl: a new handle and a new connection each, as the monitor has it, and nothing else. The number of
// those that were answered.
inline std::int32_t OnCurl(const std::vector<std::string>& aURLs) {
  std::int32_t lAnswered = 0;
  CURLM* pMulti = curl_multi_init();
  for (const auto& szURL : aURLs) {
    CURL* pEasy = curl_easy_init();
    curl_easy_setopt(pEasy, CURLOPT_URL, szURL.c_str());
    curl_easy_setopt(pEasy, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(pEasy, CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(pEasy, CURLOPT_FORBID_REUSE, 1L);
    curl_easy_setopt(pEasy, CURLOPT_WRITEFUNCTION, Discard);
    curl_multi_add_handle(pMulti, pEasy);
    int lRunning = 1;
    while (lRunning > 0) {
      curl_multi_perform(pMulti, &lRunning);
      if (lRunning > 0) curl_multi_poll(pMulti, nullptr, 0, 10, nullptr);
    }
    long lStatus = 0;
    curl_easy_getinfo(pEasy, CURLINFO_RESPONSE_CODE, &lStatus);
    lAnswered += lStatus == 200 ? 1 : 0;
    curl_multi_remove_handle(pMulti, pEasy);
    curl_easy_cleanup(pEasy);
  }
  curl_multi_cleanup(pMulti);
  return lAnswered;
}

}  // namespace BareLoop
