#include "platform/Inet.h"

#include <algorithm>
#include <deque>
#include <limits>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "platform/curl/CurlSupport.h"
#include "platform/curl/RequestUrl.h"
#include "platform/curl/ResponseHeader.h"

// One request's life: Execute makes a handle, libcurl's callbacks note how far it came, Finish turns the
// result into the last states, and Deliver hands states out once libcurl is no longer on the stack. The
// handle is new for every request: this libcurl's reused handles can be made to read freed memory by a
// server.
class Inet::Impl {
 public:
  Impl() {
    CurlSupport::Start();
    hMulti.reset(curl_multi_init());
  }
  ~Impl() { Drop(); }
  Impl(const Impl&) = delete;
  Impl& operator=(const Impl&) = delete;

  void Begin(const std::string& szMethod);
  void Drop();
  void Proceed(std::int32_t lMilliseconds);
  void Deliver(const std::function<void(std::int16_t)>& Handler);
  void ForgetCookies();

  std::string szURL;
  std::string szHeader;
  std::string szInfo;
  CURLcode iResult = CURLE_OK;
  std::int32_t lTimeout = 60;
  bool bAcceptCookies = false;
  bool bExecuting = false;
  bool bDelivering = false;
  bool bOwnFault = false;
  bool HasReached() const { return aProgress.bAnswered || aProgress.bConnected; }

 private:
  CURLcode SetOptions();
  void NoteFirstByte();
  void NoteSent();
  CURLcode Judge(CURLcode iOutcome) const;
  std::string TextOf(CURLcode iOutcome) const;
  void Finish(CURLcode iOutcome);
  void Raise(State iState) { aStates.push_back(iState); }

  static int OnResolve(void*, void*, void* pSelf);
  static curl_socket_t OnOpen(void* pSelf, curlsocktype, curl_sockaddr* pAddress);
  static int OnConnected(void* pSelf, char*, char*, int, int);
  static std::size_t OnHeader(char* pLine, std::size_t, std::size_t lSize, void* pSelf);
  static std::size_t OnBody(char*, std::size_t, std::size_t lSize, void*) { return lSize; }
  static int OnClose(void* pSelf, curl_socket_t hSocket);

  // What came up during the request in flight.
  struct Progress {
    bool bOpened = false, bConnected = false, bSent = false, bReceiving = false, bTooMuch = false;
    bool bByteCame = false;
    bool bHadTurn = false;   // libcurl, with it
    bool bAnswered = false;  // by somebody, if only with a refusal
    ResponseHeader aHeader;
  };

  CurlSupport::Multi hMulti;
  CurlSupport::Share hCookies;  // outlives the requests that share it
  CurlSupport::List aLines;     // request header lines, outlive their request
  CurlSupport::Easy hEasy;
  Progress aProgress;
  std::vector<curl_socket_t> aSockets;  // open
  std::deque<std::int16_t> aStates;     // came up, not delivered yet
  std::uint64_t lRequest = 0;           // number of the request the states belong to
};

void Inet::Impl::Begin(const std::string& szMethod) {
  Drop();
  ++lRequest;
  szHeader.clear();
  szInfo.clear();
  iResult = CURLE_OK;
  bOwnFault = false;
  aProgress = {};
  bExecuting = true;
  hEasy.reset(curl_easy_init());
  if (!hEasy || !hMulti) return Finish(CURLE_FAILED_INIT);
  if (!Text::EqualNoCase(szMethod, "GET")) return Finish(CURLE_BAD_FUNCTION_ARGUMENT);
  // A NUL would cut the address short for libcurl, and another host or path would be asked.
  if (szURL.substr(0, szURL.find('/', 7)).find('\0') != std::string::npos) return Finish(CURLE_URL_MALFORMAT);
  if (const CURLcode iError = SetOptions(); iError != CURLE_OK) return Finish(iError);
  if (curl_multi_add_handle(hMulti.get(), hEasy.get()) != CURLM_OK) Finish(CURLE_FAILED_INIT);
}

CURLcode Inet::Impl::SetOptions() {
  CurlSupport::Options aOptions(hEasy.get());
  aOptions.Set(CURLOPT_URL, RequestUrl_Escape(szURL).c_str());
  aOptions.Set(CURLOPT_PROTOCOLS_STR, "http");
  aOptions.Set(CURLOPT_HTTP_VERSION, static_cast<long>(CURL_HTTP_VERSION_1_1));
  aOptions.Set(CURLOPT_FOLLOWLOCATION, 0L);
  aOptions.Set(CURLOPT_USERAGENT, "Kestrova/" KESTROVA_VERSION);
  if (!aLines) aLines.reset(curl_slist_append(nullptr, "Connection: close"));
  aOptions.Set(CURLOPT_HTTPHEADER, aLines.get());

  // Every check sees a look-up, a connection and its end of its own.
  aOptions.Set(CURLOPT_FRESH_CONNECT, 1L);
  aOptions.Set(CURLOPT_FORBID_REUSE, 1L);
  aOptions.Set(CURLOPT_DNS_CACHE_TIMEOUT, 0L);
  aOptions.Set(CURLOPT_NOSIGNAL, 1L);
  aOptions.Set(CURLOPT_QUICK_EXIT, 1L);  // without it a cancel joins the thread that is looking up the name

  const long lLimit = std::min<long>(lTimeout, std::numeric_limits<std::int32_t>::max() / 1000) * 1000;
  aOptions.Set(CURLOPT_TIMEOUT_MS, lLimit);
  aOptions.Set(CURLOPT_CONNECTTIMEOUT_MS, lLimit);  // by itself libcurl gives up connecting after 300 s

  if (bAcceptCookies) {
    if (!hCookies) {
      hCookies.reset(curl_share_init());
      curl_share_setopt(hCookies.get(), CURLSHOPT_SHARE, CURL_LOCK_DATA_COOKIE);
    }
    aOptions.Set(CURLOPT_SHARE, hCookies.get());
    aOptions.Set(CURLOPT_COOKIEFILE, "");
  }

  aOptions.Set(CURLOPT_RESOLVER_START_FUNCTION, &OnResolve);
  aOptions.Set(CURLOPT_RESOLVER_START_DATA, this);
  aOptions.Set(CURLOPT_OPENSOCKETFUNCTION, &OnOpen);
  aOptions.Set(CURLOPT_OPENSOCKETDATA, this);
  aOptions.Set(CURLOPT_CLOSESOCKETFUNCTION, &OnClose);
  aOptions.Set(CURLOPT_CLOSESOCKETDATA, this);
  aOptions.Set(CURLOPT_PREREQFUNCTION, &OnConnected);
  aOptions.Set(CURLOPT_PREREQDATA, this);
  aOptions.Set(CURLOPT_HEADERFUNCTION, &OnHeader);
  aOptions.Set(CURLOPT_HEADERDATA, this);
  aOptions.Set(CURLOPT_WRITEFUNCTION, &OnBody);
  return aOptions.Error();
}

// Ends the request in flight, if any, and forgets what it has not delivered.
void Inet::Impl::Drop() {
  if (hEasy && hMulti) curl_multi_remove_handle(hMulti.get(), hEasy.get());
  hEasy.reset();
  aStates.clear();
  bExecuting = false;
}

void Inet::Impl::Proceed(std::int32_t lMilliseconds) {
  if (!hEasy) return;
  // A new request has nothing to wait for. Where nothing came and nothing is due, there is nothing to
  // perform, which makes a silent server cheaper to wait for.
  int lReady = 0;
  long lDue = 0;
  if (lMilliseconds > 0 && std::exchange(aProgress.bHadTurn, true)) {
    curl_multi_poll(hMulti.get(), nullptr, 0, lMilliseconds, &lReady);
    if (lReady == 0 && curl_multi_timeout(hMulti.get(), &lDue) == CURLM_OK && lDue != 0) return;
  }
  NoteFirstByte();
  int lRunning = 0, lLeft = 0;
  if (curl_multi_perform(hMulti.get(), &lRunning) != CURLM_OK) return Finish(CURLE_FAILED_INIT);
  NoteSent();
  while (const CURLMsg* pMessage = curl_multi_info_read(hMulti.get(), &lLeft))
    if (pMessage->msg == CURLMSG_DONE && pMessage->easy_handle == hEasy.get())
      return Finish(pMessage->data.result);
}

// What libcurl reads of a status line that never ends it tells nobody: so it is looked whether there is a
// first byte before libcurl takes it.
void Inet::Impl::NoteFirstByte() {
  if (!aProgress.bByteCame)
    aProgress.bByteCame = std::any_of(aSockets.begin(), aSockets.end(), &CurlSupport::HasBytes);
}

// libcurl tells that something was sent in its trace alone, which costs as much as all else that it does.
void Inet::Impl::NoteSent() {
  long lSent = 0;
  if (aProgress.bSent || !aProgress.bConnected) return;
  if (curl_easy_getinfo(hEasy.get(), CURLINFO_REQUEST_SIZE, &lSent) != CURLE_OK || lSent == 0) return;
  aProgress.bSent = true;
  Raise(RequestSent);
}

// What the outcome is for who asked a web server, rather than for libcurl.
CURLcode Inet::Impl::Judge(CURLcode iOutcome) const {
  const ResponseHeader& aHeader = aProgress.aHeader;
  // Answered, but in something that is not HTTP, or in less than a status line; or ended after an interim
  // response; or ended after 101, which libcurl takes for an interim one.
  const bool bUnreadable = iOutcome == CURLE_UNSUPPORTED_PROTOCOL || iOutcome == CURLE_WEIRD_SERVER_REPLY;
  const bool bHungUp = iOutcome == CURLE_GOT_NOTHING || iOutcome == CURLE_RECV_ERROR;
  const bool bAnswered = (bUnreadable && aProgress.bConnected) || (bHungUp && aProgress.bByteCame);
  const bool bNoStatusLine = bAnswered && !aHeader.StatusLineSeen();
  const bool bNoMore = iOutcome == CURLE_GOT_NOTHING && aHeader.Complete();
  const bool bInterimOnly = iOutcome == CURLE_UNSUPPORTED_PROTOCOL && aHeader.Complete() && aHeader.Interim();
  if (bNoStatusLine || bNoMore || bInterimOnly) return CURLE_OK;
  if (iOutcome == CURLE_OK && !(aHeader.Complete() && !aHeader.Interim()))
    return CURLE_PARTIAL_FILE;  // libcurl takes a header that was cut short for a whole one
  return aProgress.bTooMuch ? CURLE_RECV_ERROR : iOutcome;
}

// Two of libcurl's errors speak of us where it was the server: what it sent is said instead.
std::string Inet::Impl::TextOf(CURLcode iOutcome) const {
  if (iOutcome == CURLE_OK) return {};
  if (aProgress.bConnected && iOutcome == CURLE_OUT_OF_MEMORY)
    return "The server sent a header line that is too long";
  if (aProgress.bConnected && iOutcome == CURLE_BAD_FUNCTION_ARGUMENT)
    return "The server sent a header that begins with a folded line";
  return CurlSupport::FixedText(iOutcome);
}

// Only here does a request end, other than by being dropped.
void Inet::Impl::Finish(CURLcode iOutcome) {
  if (hEasy && hMulti) curl_multi_remove_handle(hMulti.get(), hEasy.get());
  const bool bMade = hEasy && hMulti;
  hEasy.reset();
  szHeader = aProgress.aHeader.Text();
  iOutcome = Judge(iOutcome);
  const bool bNobody = iOutcome == CURLE_COULDNT_RESOLVE_HOST || iOutcome == CURLE_COULDNT_CONNECT ||
                       iOutcome == CURLE_OUT_OF_MEMORY || iOutcome == CURLE_FAILED_INIT;
  bOwnFault = !bMade || (bNobody && !HasReached() && !CurlSupport::HasMeans());

  iResult = iOutcome;
  szInfo = TextOf(iOutcome);
  if (iOutcome == CURLE_OK) {
    if (!aProgress.bReceiving) Raise(ReceivingResponse);
    Raise(ResponseReceived);
  }
  if (aProgress.bConnected) {
    Raise(Disconnecting);
    Raise(Disconnected);
  }
  Raise(iOutcome == CURLE_OK ? ResponseCompleted : Error);
}

// A handler may start or cancel a request: what is left of the old one's states then goes undelivered. A
// handler that throws leaves the rest for the next time.
void Inet::Impl::Deliver(const std::function<void(std::int16_t)>& Handler) {
  struct Guard {
    bool& bFlag;
    explicit Guard(bool& bHeld) : bFlag(bHeld) { bFlag = true; }
    ~Guard() { bFlag = false; }
  } const aGuard(bDelivering);
  const auto lNumber = lRequest;
  while (!aStates.empty() && lNumber == lRequest) {
    const std::int16_t iState = aStates.front();
    aStates.pop_front();
    if (iState >= Error) bExecuting = false;
    if (Handler) Handler(iState);
  }
}

void Inet::Impl::ForgetCookies() {
  if (!hCookies) return;
  // A handle of its own, because the one in flight, if any, may be in the middle of things.
  const CurlSupport::Easy hTool(curl_easy_init());
  CurlSupport::Options aOptions(hTool.get());
  aOptions.Set(CURLOPT_SHARE, hCookies.get());
  aOptions.Set(CURLOPT_COOKIELIST, "ALL");
}

int Inet::Impl::OnResolve(void*, void*, void* pSelf) {
  static_cast<Impl*>(pSelf)->Raise(ResolvingHost);
  return 0;
}

// Called for each address that is tried; to the operator that is one attempt.
curl_socket_t Inet::Impl::OnOpen(void* pSelf, curlsocktype, curl_sockaddr* pAddress) {
  auto& aSelf = *static_cast<Impl*>(pSelf);
  if (!aSelf.aProgress.bOpened) {
    aSelf.Raise(HostResolved);
    aSelf.Raise(Connecting);
  }
  aSelf.aProgress.bOpened = true;
  const auto hSocket = CurlSupport::OpenSocket(pAddress->family, pAddress->socktype, pAddress->protocol);
  if (hSocket != CURL_SOCKET_BAD) aSelf.aSockets.push_back(hSocket);
  return hSocket;
}

int Inet::Impl::OnClose(void* pSelf, curl_socket_t hSocket) {
  auto& aSelf = *static_cast<Impl*>(pSelf);
  std::erase(aSelf.aSockets, hSocket);
  auto& aProgress = aSelf.aProgress;
  // The system is asked only where libcurl has not told already.
  if (!aSelf.HasReached()) aProgress.bAnswered = CurlSupport::WasAnswered(hSocket);
  // A server on this machine may have answered and gone before libcurl was back from sending.
  if (!aProgress.bByteCame && !aProgress.aHeader.StatusLineSeen())
    aProgress.bByteCame = CurlSupport::HasReceived(hSocket);
  CurlSupport::CloseSocket(hSocket);
  return 0;
}

int Inet::Impl::OnConnected(void* pSelf, char*, char*, int, int) {
  auto& aSelf = *static_cast<Impl*>(pSelf);
  aSelf.aProgress.bConnected = true;
  aSelf.Raise(Connected);
  aSelf.Raise(Requesting);
  return CURL_PREREQFUNC_OK;
}

std::size_t Inet::Impl::OnHeader(char* pLine, std::size_t, std::size_t lSize, void* pSelf) {
  auto& aSelf = *static_cast<Impl*>(pSelf);
  aSelf.NoteSent();
  if (!aSelf.aProgress.bReceiving) aSelf.Raise(ReceivingResponse);
  aSelf.aProgress.bReceiving = true;
  aSelf.aProgress.bTooMuch = !aSelf.aProgress.aHeader.TakeLine({pLine, lSize});
  return aSelf.aProgress.bTooMuch ? 0 : lSize;
}

Inet::Inet() : pImpl(std::make_unique<Impl>()) {
}
Inet::~Inet() = default;

void Inet::RequestTimeout(std::int32_t lSeconds) {
  pImpl->lTimeout = std::max(lSeconds, 1);
}

void Inet::AcceptCookies(bool bAccept) {
  pImpl->bAcceptCookies = bAccept;
  if (!bAccept) pImpl->ForgetCookies();
}

void Inet::ForgetCookies() {
  pImpl->ForgetCookies();
}

void Inet::Execute(const std::string& szURL, const std::string& szMethod) {
  pImpl->szURL = szURL;
  pImpl->Begin(szMethod);
}

bool Inet::StillExecuting() const {
  return pImpl->bExecuting;
}

void Inet::Cancel() {
  pImpl->Drop();
}

void Inet::Poll(std::int32_t lMilliseconds) {
  if (pImpl->bDelivering) return;
  pImpl->Proceed(lMilliseconds);
  pImpl->Deliver(StateChanged);
}

const std::string& Inet::URL() const {
  return pImpl->szURL;
}

std::int32_t Inet::ResponseCode() const {
  return pImpl->iResult;
}

const std::string& Inet::ResponseInfo() const {
  return pImpl->szInfo;
}

const std::string& Inet::GetHeader() const {
  return pImpl->szHeader;
}

bool Inet::TimedOut() const {
  return pImpl->iResult == CURLE_OPERATION_TIMEDOUT;
}

bool Inet::OwnFault() const {
  return pImpl->bOwnFault;
}

bool Inet::Reached() const {
  return pImpl->HasReached();
}
