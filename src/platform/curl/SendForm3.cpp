#include "platform/SendForm3.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <string_view>

#include "base/Text.h"
#include "platform/Terminal.h"
#include "platform/curl/CurlSupport.h"
#include "platform/curl/MailMessage.h"

namespace {

using SteadyClock = std::chrono::steady_clock;

bool HasLineEnd(const std::string& szText) {
  return szText.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos;
}

// One connection to the server: what is sent, and what the server said.
class Exchange {
 public:
  // lSeconds: limit for all of it, at least 2.
  Exchange(const std::string& szName, std::int32_t lPort, std::int32_t lSeconds)
      : szServer(Text::Trim(szName)), lServerPort(lPort), lLimit(lSeconds) {}
  Exchange(const Exchange&) = delete;
  Exchange& operator=(const Exchange&) = delete;

  CURLcode Run(const std::string& szSender, const std::string& szRecipient, std::string szMail);
  const std::string& LastReply() const { return szLastReply; }

 private:
  // libcurl waits for the reply to QUIT after its own time limit has run out, so part of the time is set
  // aside for it. By then the mail is taken or refused: a server that says goodbye late is not worth more.
  std::int32_t SecondsForQuit() const { return lLimit >= 8 ? 2 : 1; }

  CURLcode SetAddress();
  CURLcode SetOptions(const std::string& szSender, const std::string& szRecipient);
  void TakeReplyLine(std::string_view szLine);
  bool StopIfLate();

  static curl_socket_t OnOpen(void* pSelf, curlsocktype, curl_sockaddr* pAddress);
  static int OnTrace(CURL* hEasy, curl_infotype iType, char* pBytes, std::size_t lSize, void* pSelf);
  static std::size_t OnReply(char* pLine, std::size_t, std::size_t lSize, void* pSelf);
  static int OnProgress(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t);
  static std::size_t OnSend(char* pBuffer, std::size_t lSize, std::size_t lCount, void* pSelf);

  static constexpr std::size_t lMostReplies = std::size_t{64} * 1024;

  std::string szServer;
  std::int32_t lServerPort;
  std::int32_t lLimit;
  std::string szMessage;
  std::size_t lSent = 0;
  std::string szLastReply;
  std::size_t lReplies = 0;  // bytes
  bool bTextAsked = false;   // the server said 354
  bool bAnswered = false;    // and replied to the text
  bool bTaken = false;       // that it takes it
  bool bQuitting = false;
  bool bTooMuch = false;
  bool bLate = false;
  SteadyClock::time_point aDeadline;
  curl_socket_t hSocket = CURL_SOCKET_BAD;
  CurlSupport::Url hUrl;
  CurlSupport::List aRecipients;
  CurlSupport::Easy hEasy;
};

CURLcode Exchange::Run(const std::string& szSender, const std::string& szRecipient, std::string szMail) {
  szMessage = std::move(szMail);
  aDeadline = SteadyClock::now() + std::chrono::seconds(lLimit - SecondsForQuit());
  CurlSupport::Start();
  hEasy.reset(curl_easy_init());
  if (!hEasy) return CURLE_FAILED_INIT;
  if (const CURLcode iError = SetAddress(); iError != CURLE_OK) return iError;
  if (const CURLcode iError = SetOptions(szSender, szRecipient); iError != CURLE_OK) return iError;
  const CURLcode iResult = curl_easy_perform(hEasy.get());
  // What the server said to the text decides, whatever went wrong after it.
  if (bTaken) return CURLE_OK;
  if (bLate) return CURLE_OPERATION_TIMEDOUT;
  if (bTooMuch) return CURLE_RECV_ERROR;
  return iResult == CURLE_OK ? CURLE_WEIRD_SERVER_REPLY : iResult;
}

// By parts, so that nothing in the server's name can mean a user, a port or a path.
CURLcode Exchange::SetAddress() {
  hUrl.reset(curl_url());
  if (!hUrl) return CURLE_OUT_OF_MEMORY;
  const bool bBareIPv6 = std::count(szServer.begin(), szServer.end(), ':') > 1 && !szServer.starts_with('[');
  const std::string szHost = bBareIPv6 ? "[" + szServer + "]" : szServer;
  const bool bGood =
      curl_url_set(hUrl.get(), CURLUPART_SCHEME, "smtp", 0) == CURLUE_OK &&
      curl_url_set(hUrl.get(), CURLUPART_HOST, szHost.c_str(), 0) == CURLUE_OK &&
      curl_url_set(hUrl.get(), CURLUPART_PORT, std::to_string(lServerPort).c_str(), 0) == CURLUE_OK;
  return bGood ? CURLE_OK : CURLE_URL_MALFORMAT;
}

CURLcode Exchange::SetOptions(const std::string& szSender, const std::string& szRecipient) {
  CurlSupport::Options aOptions(hEasy.get());
  aOptions.Set(CURLOPT_CURLU, hUrl.get());
  aOptions.Set(CURLOPT_PROTOCOLS_STR, "smtp");
  aOptions.Set(CURLOPT_PROXY, "");  // the server named is the server asked
  aRecipients.reset(curl_slist_append(nullptr, szRecipient.c_str()));
  if (!aRecipients) return CURLE_OUT_OF_MEMORY;
  aOptions.Set(CURLOPT_MAIL_FROM, szSender.c_str());
  aOptions.Set(CURLOPT_MAIL_RCPT, aRecipients.get());
  aOptions.Set(CURLOPT_UPLOAD, 1L);
  aOptions.Set(CURLOPT_INFILESIZE_LARGE, static_cast<curl_off_t>(szMessage.size()));

  const long lSeconds = lLimit - SecondsForQuit();
  aOptions.Set(CURLOPT_TIMEOUT, lSeconds);
  aOptions.Set(CURLOPT_CONNECTTIMEOUT, lSeconds);
  aOptions.Set(CURLOPT_SERVER_RESPONSE_TIMEOUT, lSeconds);
  aOptions.Set(CURLOPT_NOSIGNAL, 1L);
  aOptions.Set(CURLOPT_QUICK_EXIT, 1L);  // a hanging look-up is left behind, not waited for
  aOptions.Set(CURLOPT_FRESH_CONNECT, 1L);
  aOptions.Set(CURLOPT_FORBID_REUSE, 1L);  // QUIT is sent now and not when the handle goes

  aOptions.Set(CURLOPT_OPENSOCKETFUNCTION, &OnOpen);
  aOptions.Set(CURLOPT_OPENSOCKETDATA, this);
  aOptions.Set(CURLOPT_DEBUGFUNCTION, &OnTrace);
  aOptions.Set(CURLOPT_DEBUGDATA, this);
  aOptions.Set(CURLOPT_VERBOSE, 1L);
  aOptions.Set(CURLOPT_HEADERFUNCTION, &OnReply);
  aOptions.Set(CURLOPT_HEADERDATA, this);
  aOptions.Set(CURLOPT_NOPROGRESS, 0L);
  aOptions.Set(CURLOPT_XFERINFOFUNCTION, &OnProgress);
  aOptions.Set(CURLOPT_READFUNCTION, &OnSend);
  aOptions.Set(CURLOPT_READDATA, this);
  return aOptions.Error();
}

// A reply is three digits and a text; "-" behind the digits says that more lines follow (RFC 5321, 4.2).
void Exchange::TakeReplyLine(std::string_view szLine) {
  constexpr std::size_t lMostShown = 500;
  szLine = szLine.substr(0, std::min(szLine.find_last_not_of("\r\n ") + 1, lMostShown));
  if (!szLine.empty()) szLastReply = Text::Printable(szLine);
  const bool bLastLine =
      szLine.size() >= 3 && Text::IsDigits(szLine.substr(0, 3)) && szLine.substr(3, 1) != "-";
  if (!bLastLine || bAnswered) return;
  if (bTextAsked) {
    bAnswered = true;
    bTaken = szLine.front() == '2' && lSent == szMessage.size();
  }
  bTextAsked = bTextAsked || szLine.starts_with("354");
}

// While replies keep pouring in, libcurl reads on and never looks at the time.
bool Exchange::StopIfLate() {
  if (!bLate && SteadyClock::now() >= aDeadline) {
    bLate = true;
    if (hSocket != CURL_SOCKET_BAD) CurlSupport::ShutSocket(hSocket);
  }
  return bLate;
}

curl_socket_t Exchange::OnOpen(void* pSelf, curlsocktype, curl_sockaddr* pAddress) {
  auto& aSelf = *static_cast<Exchange*>(pSelf);
  aSelf.hSocket = CurlSupport::OpenSocket(pAddress->family, pAddress->socktype, pAddress->protocol);
  return aSelf.hSocket;
}

int Exchange::OnTrace(CURL* hEasy, curl_infotype iType, char* pBytes, std::size_t lSize, void* pSelf) {
  auto& aSelf = *static_cast<Exchange*>(pSelf);
  if (iType == CURLINFO_HEADER_OUT && std::string_view(pBytes, lSize).starts_with("QUIT") &&
      !aSelf.bQuitting) {
    aSelf.bQuitting = true;
    const std::int32_t lSeconds = aSelf.SecondsForQuit();
    aSelf.aDeadline = SteadyClock::now() + std::chrono::seconds(lSeconds);
    curl_easy_setopt(hEasy, CURLOPT_SERVER_RESPONSE_TIMEOUT, long{lSeconds});
  }
  aSelf.StopIfLate();
  return 0;
}

std::size_t Exchange::OnReply(char* pLine, std::size_t, std::size_t lSize, void* pSelf) {
  auto& aSelf = *static_cast<Exchange*>(pSelf);
  aSelf.lReplies += lSize;
  aSelf.bTooMuch = aSelf.lReplies > lMostReplies;
  if (!aSelf.bQuitting) aSelf.TakeReplyLine({pLine, lSize});
  return aSelf.bTooMuch || aSelf.StopIfLate() ? 0 : lSize;
}

// Called at least once a second. Who interrupts twice does not want to wait for a silent server.
int Exchange::OnProgress(void*, curl_off_t, curl_off_t, curl_off_t, curl_off_t) {
  return Terminal::InterruptedAgain() ? 1 : 0;
}

std::size_t Exchange::OnSend(char* pBuffer, std::size_t lSize, std::size_t lCount, void* pSelf) {
  auto& aSelf = *static_cast<Exchange*>(pSelf);
  const std::size_t lTaken = aSelf.szMessage.copy(pBuffer, lSize * lCount, aSelf.lSent);
  aSelf.lSent += lTaken;
  return lTaken;
}

}  // namespace

std::int32_t SendForm3(const std::string&, const std::string& szServer, std::int32_t lPort,
                       const std::string& szSender, const std::string&, const std::string& szFrom,
                       const std::string& szRecipient, const std::string& szSubject,
                       const std::string& szBody, const std::string&, std::int32_t, std::int32_t,
                       const std::string&, const std::string& szMailer, MailCall& aCall) {
  aCall.szServerReply.clear();
  aCall.szError.clear();
  CURLcode iResult = CURLE_BAD_FUNCTION_ARGUMENT;
  const bool bRefused = szServer.empty() || szSender.empty() || szRecipient.empty() || lPort > 65535 ||
                        HasLineEnd(szServer) || HasLineEnd(szSender) || HasLineEnd(szRecipient) ||
                        HasLineEnd(szFrom);
  if (!bRefused) {
    Exchange aExchange(szServer, lPort < 1 ? lSmtpPort : lPort, std::max(aCall.lSeconds, 2));
    iResult = aExchange.Run(szSender, szRecipient,
                            MailMessage::Compose(szFrom, szRecipient, szSubject, szBody, szMailer));
    aCall.szServerReply = aExchange.LastReply();
  }
  if (iResult != CURLE_OK) aCall.szError = CurlSupport::FixedText(iResult);
  return iResult;
}
