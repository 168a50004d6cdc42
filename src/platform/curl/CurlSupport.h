// What the HTTP client and the mail call share of libcurl: its start, its texts, its handles, and the socket
// calls that differ between the systems.
#pragma once

#include <curl/curl.h>

#include <memory>
#include <string>

namespace CurlSupport {

// Makes libcurl ready, once for the process. A write to a connection that the peer closed is from then on an
// error and no signal.
void Start();

// libcurl's fixed text for the error, fit for a comma-separated line: no comma, no line end.
std::string FixedText(CURLcode iError);

template <auto Release>
struct Releaser {
  template <typename Handle>
  void operator()(Handle* hHandle) const {
    Release(hHandle);
  }
};
using Easy = std::unique_ptr<CURL, Releaser<curl_easy_cleanup>>;
using Multi = std::unique_ptr<CURLM, Releaser<curl_multi_cleanup>>;
using Share = std::unique_ptr<CURLSH, Releaser<curl_share_cleanup>>;
using List = std::unique_ptr<curl_slist, Releaser<curl_slist_free_all>>;
using Url = std::unique_ptr<CURLU, Releaser<curl_url_cleanup>>;

// Sets an option and remembers a refusal, so that a series of settings is checked once.
class Options {
 public:
  explicit Options(CURL* hHandle) : hEasy(hHandle) {}
  template <typename Value>
  void Set(CURLoption iOption, Value aValue) {
    const CURLcode iResult = curl_easy_setopt(hEasy, iOption, aValue);
    if (iError == CURLE_OK) iError = iResult;
  }
  CURLcode Error() const { return iError; }

 private:
  CURL* hEasy;
  CURLcode iError = CURLE_OK;
};

// A socket that programs started from here do not inherit; CURL_SOCKET_BAD when there is none to be had.
curl_socket_t OpenSocket(int iFamily, int iType, int iProtocol);
void CloseSocket(curl_socket_t hSocket);
// Ends the connection both ways and keeps the socket: whoever reads it next reads the end.
void ShutSocket(curl_socket_t hSocket);
// Whether bytes lie ready to be read, on a socket that does not block. They stay there.
bool HasBytes(curl_socket_t hSocket);
// Whether bytes ever came over it, as far as the system counts them; false where it does not.
bool HasReceived(curl_socket_t hSocket);
void IgnoreBrokenPipes();
// Whether anything came back over it, if only a refusal; true where the system does not tell.
bool WasAnswered(curl_socket_t hSocket);

// Whether this machine has what a request takes beside its server: a few descriptors and a thread, to look up
// a name and to connect. To be asked after a request that failed and was cleaned up.
bool HasMeans();

}  // namespace CurlSupport
