#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/Inet.h"
#include "support/Environment.h"
#include "support/FaultServer.h"

namespace {

using States = std::vector<std::int16_t>;
using SteadyClock = std::chrono::steady_clock;

double SecondsSince(SteadyClock::time_point aStart) {
  return std::chrono::duration<double>(SteadyClock::now() - aStart).count();
}

// The client under test, with everything that it reported.
class Client : public Inet {
 public:
  Client() {
    Environment::Unset("http_proxy");
    StateChanged = [this](std::int16_t iState) { aStates.push_back(iState); };
    RequestTimeout(10);
  }
  // Runs the request to its end; the last state.
  std::int16_t Get(const std::string& szURL) {
    aStates.clear();
    Execute(szURL, "GET");
    while (StillExecuting())
      Poll(10);
    return aStates.empty() ? std::int16_t{0} : aStates.back();
  }
  std::string FirstLine() const { return GetHeader().substr(0, GetHeader().find("\r\n")); }

  States aStates;
};

std::string Repeated(std::size_t lTimes, const std::string& szText) {
  std::string szAll;
  while (lTimes-- > 0)
    szAll += szText;
  return szAll;
}

const States aGood = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 12};
constexpr std::int32_t lAny = -1;

struct OddAnswer {
  const char* szName;
  Fault::Answer aAnswer;
  std::int16_t iLastState;
  std::int32_t lCode;       // lAny where systems differ
  const char* szFirstLine;  // of the header; nullptr where it does not matter
};

std::vector<OddAnswer> OddAnswers() {
  using namespace Fault;
  const std::string szOk = "HTTP/1.1 200 OK\r\n";
  const std::string szChunked = szOk + "Transfer-Encoding: chunked\r\n\r\n";
  return {
      {"plain", Ok(), 12, 0, "HTTP/1.1 200 OK"},
      {"interim 100", {Send("HTTP/1.1 100 Continue\r\n\r\n" + szOk + "\r\n")}, 12, 0, "HTTP/1.1 200 OK"},
      {"interim 103 with fields",
       {Send("HTTP/1.1 103 Early Hints\r\nLink: </a>\r\n\r\nHTTP/1.1 404 No\r\nContent-Length: 0\r\n\r\n")},
       12,
       0,
       "HTTP/1.1 404 No"},
      {"101 is final",
       {Send("HTTP/1.1 101 Switching\r\nUpgrade: x\r\n\r\n")},
       12,
       0,
       "HTTP/1.1 101 Switching"},
      {"101 with bytes",
       {Send("HTTP/1.1 101 Switching\r\n\r\nxx"), Delay(300)},
       12,
       0,
       "HTTP/1.1 101 Switching"},
      {"interim and no more", {Send("HTTP/1.1 103 Hints\r\n\r\n")}, 12, 0, "HTTP/1.1 103 Hints"},
      {"interim, then a banner",
       {Send("HTTP/1.1 103 Hints\r\n\r\nSSH-2.0-x\r\n\r\n")},
       12,
       0,
       "HTTP/1.1 103 Hints"},
      {"HTTP/0.9", {Send("<html>hello</html>")}, 12, 0, ""},
      {"a mail server's banner", {Send("220 mail ESMTP\r\n"), Hang()}, 12, 0, ""},
      {"a blank line first", {Send("\r\n" + szOk + "\r\n")}, 12, 0, ""},
      {"no number", {Send("HTTP/1.1 abc\r\n\r\n")}, 12, 0, ""},
      {"two digits", {Send("HTTP/1.1 20 OK\r\n\r\n")}, 12, 0, ""},
      {"099", {Send("HTTP/1.1 099 OK\r\n\r\n")}, 12, 0, ""},
      {"000", {Send("HTTP/1.1 000 OK\r\n\r\n")}, 12, 0, ""},
      {"2000", {Send("HTTP/1.1 2000 OK\r\n\r\n")}, 12, 0, ""},
      {"NUL in the status line", {Send(std::string("HTTP/1.1 200 O\0K\r\n\r\n", 20))}, 12, 0, ""},
      {"600", {Send("HTTP/1.1 600 X\r\n\r\n")}, 12, 0, "HTTP/1.1 600 X"},
      {"999", {Send("HTTP/1.1 999 X\r\n\r\n")}, 12, 0, "HTTP/1.1 999 X"},
      {"lower case", {Send("http/1.1 404 Not Found\r\n\r\n")}, 12, 0, "http/1.1 404 Not Found"},
      {"no reason phrase", {Send("HTTP/1.1 200\r\n\r\n")}, 12, 0, "HTTP/1.1 200"},
      {"LF only", {Send("HTTP/1.0 200 OK\nA: b\n\nbody")}, 12, 0, "HTTP/1.0 200 OK\nA: b\n"},
      {"a header that looks like a status line",
       {Send(szOk + "HTTP/1.1 500: x\r\nContent-Length: 0\r\n\r\n")},
       12,
       0,
       "HTTP/1.1 200 OK"},
      {"a trailer that looks like a status line",
       {Send(szChunked + "0\r\nHTTP/1.1 500: x\r\n\r\n")},
       12,
       0,
       "HTTP/1.1 200 OK"},
      {"dripping", {Drip(szOk + "Content-Length: 2\r\n\r\nab", 1)}, 12, 0, "HTTP/1.1 200 OK"},
      {"body until the end",
       {Send(szOk + "\r\n" + Repeated(9999, "body ")), HalfClose()},
       12,
       0,
       "HTTP/1.1 200 OK"},
      {"a redirect stays",
       {Send("HTTP/1.1 302 Found\r\nLocation: /elsewhere\r\n\r\n")},
       12,
       0,
       "HTTP/1.1 302 Found"},
      {"more header than is kept",
       {Send(szOk + Repeated(1500, "X-Fill: " + std::string(80, 'x') + "\r\n") + "\r\n")},
       12,
       0,
       "HTTP/1.1 200 OK"},
      {"nothing", {}, 11, 52, ""},
      {"cut in the status line", {Send("HTTP/1.1 20")}, 11, 52, ""},
      {"cut in a header line", {Send(szOk + "Content-Ty")}, 11, 18, "HTTP/1.1 200 OK"},
      {"cut before the blank line", {Send(szOk + "Content-Type: a/b\r\n")}, 11, 18, "HTTP/1.1 200 OK"},
      {"no colon", {Send(szOk + "nonsense\r\n\r\n")}, 11, 8, nullptr},
      {"NUL in a header line", {Send(szOk + std::string("A: \0\r\n\r\n", 8))}, 11, 8, nullptr},
      {"negative length", {Send(szOk + "Content-Length: -1\r\n\r\n")}, 11, 8, nullptr},
      {"folded first header", {Send(szOk + " folded: 1\r\n\r\n")}, 11, 43, nullptr},
      {"a blank before the status line", {Send(" " + szOk + "\r\n")}, 12, 0, ""},
      {"short body", {Send(szOk + "Content-Length: 100\r\n\r\nabc")}, 11, 18, nullptr},
      {"bad chunk", {Send(szChunked + "zz\r\n")}, 11, 56, nullptr},
      {"reset at once", {Reset()}, 11, lAny, nullptr},
      {"reset in the body",
       {Send(szOk + "Content-Length: 9\r\n\r\nabc"), Delay(50), Reset()},
       11,
       lAny,
       nullptr},
      {"a 200 KB line", {Send(szOk + "A: " + std::string(204800, 'x') + "\r\n\r\n")}, 11, 27, nullptr},
      {"endless header",
       {Send(szOk), Endless("X-Fill: xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx\r\n")},
       11,
       56,
       nullptr},
      {"endless trailers", {Send(szChunked + "0\r\n"), Endless("X-Fill: xxxxxxxxxxxx\r\n")}, 11, 56, nullptr},
      {"endless interim responses", {Endless("HTTP/1.1 100 Continue\r\n\r\n")}, 11, 56, nullptr},
  };
}

// Each answer ends in exactly one last state, with one client for all, as a pass has it.
TEST(Inet, OddAnswers) {
  FaultServer aServer;
  Client aClient;
  std::size_t i = 0;
  for (const OddAnswer& aCase : OddAnswers()) {
    SCOPED_TRACE(aCase.szName);
    const std::string szPath = "/" + std::to_string(i++);
    aServer.Serve(szPath, aCase.aAnswer);
    EXPECT_EQ(aClient.Get(aServer.URL(szPath)), aCase.iLastState);
    EXPECT_TRUE(aCase.lCode == lAny || aCase.lCode == aClient.ResponseCode()) << aClient.ResponseCode();
    EXPECT_TRUE(!aCase.szFirstLine || aCase.szFirstLine == aClient.FirstLine()) << aClient.FirstLine();
    EXPECT_EQ(aClient.ResponseInfo().empty(), aCase.iLastState == 12);
    EXPECT_EQ(aClient.ResponseInfo().find_first_of(",\r\n"), std::string::npos);
    EXPECT_LE(aClient.GetHeader().size(), 64u * 1024);
    EXPECT_EQ(aClient.GetHeader().find("\r\n\r\n"), std::string::npos);
    const auto IsLast = [](std::int16_t iState) { return iState >= 11; };
    EXPECT_EQ(std::count_if(aClient.aStates.begin(), aClient.aStates.end(), IsLast), 1);
    EXPECT_TRUE(std::is_sorted(aClient.aStates.begin(), aClient.aStates.end()));
    // What ended well went through every state, the one for an error through none twice.
    if (aCase.iLastState == 12)
      EXPECT_EQ(aClient.aStates, aGood);
    else
      EXPECT_EQ(std::adjacent_find(aClient.aStates.begin(), aClient.aStates.end()), aClient.aStates.end());
  }
  EXPECT_EQ(aServer.Count(), i) << "a request was repeated or a redirect followed";
}

TEST(Inet, ConnectionsThatDoNotStand) {
  const std::string szRefused = "127.0.0.1:" + std::to_string(FaultServer::RefusingPort());
  struct {
    std::string szURL;
    std::int32_t lCode;
    States aStates;
  } const aCases[] = {
      {"http://" + szRefused + "/", 7, {1, 2, 3, 11}},
      {"http://[::1]:" + szRefused.substr(10), 7, {1, 2, 3, 11}},  // refused, or no such protocol here
      {"http://nowhere.invalid/", 6, {1, 11}},                     // the resolver says no at once
      {"https://" + szRefused, 1, {11}},
      {"ftp://" + szRefused, 1, {11}},
      {"", 3, {11}},
      {"http://", 3, {11}},
      {"http://a b/", 3, {11}},
      {std::string("http://") + szRefused + std::string("\0.example", 9), 3, {11}},
      {"http://127.0.0.1:99999/", 3, {11}},
  };
  Client aClient;
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szURL);
    EXPECT_EQ(aClient.Get(aCase.szURL), 11);
    EXPECT_EQ(aClient.ResponseCode(), aCase.lCode);
    EXPECT_EQ(aClient.aStates, aCase.aStates);
    EXPECT_EQ(aClient.GetHeader(), "");
    EXPECT_FALSE(aClient.TimedOut());
  }
  aClient.Get("http://::1/");
  EXPECT_NE(aClient.ResponseCode(), 3) << "a bare IPv6 address is an address";
}

// A request that cannot even start is reported as late as any other: never from within Execute.
TEST(Inet, NothingIsRaisedOutsidePoll) {
  Client aClient;
  aClient.Execute("http://", "GET");
  EXPECT_TRUE(aClient.aStates.empty());
  EXPECT_TRUE(aClient.StillExecuting());
  aClient.Poll(0);
  EXPECT_EQ(aClient.aStates, States{11});
  EXPECT_FALSE(aClient.StillExecuting());
  aClient.Execute("http://127.0.0.1/", "DELETE");
  aClient.Poll(0);
  EXPECT_EQ(aClient.aStates, (States{11, 11}));
}

TEST(Inet, TimeLimits) {
  using namespace Fault;
  FaultServer aServer;
  const DeafPort aDeaf;
  const std::string szOk = "HTTP/1.1 200 OK\r\n";
  aServer.Serve("/silent", {Hang()});
  aServer.Serve("/header", {Send(szOk), Hang()});
  aServer.Serve("/body", {Send(szOk + "Content-Length: 9\r\n\r\nabc"), Hang()});
  aServer.Serve("/endless", {Send(szOk + "\r\n"), Endless("all work and no play ")});
  aServer.Serve("/drip", {Drip(szOk + std::string(9999, 'x'), 20)});
  std::vector<std::string> aURLs = {"http://127.0.0.1:" + std::to_string(aDeaf.Port())};
  for (const char* szPath : {"/silent", "/header", "/body", "/endless", "/drip"})
    aURLs.push_back(aServer.URL(szPath));
  std::vector<Client> aClients(aURLs.size());
  const auto aStart = SteadyClock::now();
  for (std::size_t i = 0; i < aURLs.size(); ++i) {
    aClients[i].RequestTimeout(1);
    aClients[i].Execute(aURLs[i], "GET");
  }
  for (bool bBusy = true; bBusy && SecondsSince(aStart) < 10;) {
    bBusy = false;
    for (Client& aClient : aClients) {
      aClient.Poll(1);
      bBusy = bBusy || aClient.StillExecuting();
    }
  }
  EXPECT_LT(SecondsSince(aStart), 5);
  for (std::size_t i = 1; i < aURLs.size(); ++i) {  // a system may refuse what the deaf port leaves hanging
    SCOPED_TRACE(aURLs[i]);
    EXPECT_EQ(aClients[i].aStates.back(), 11);
    EXPECT_TRUE(aClients[i].TimedOut());
    EXPECT_EQ(aClients[i].ResponseCode(), 28);
  }
  EXPECT_EQ(aClients[0].aStates.back(), 11);
  EXPECT_TRUE(aServer.WaitUntilIdle()) << "a connection was left open";
}

// Whatever state a request is in, a cancel ends it silently, and the client is as good as new.
TEST(Inet, CancelInEveryState) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Send("HTTP/1.1 200 OK\r\n\r\n"), Fault::Hang()});
  for (std::int16_t iCancelAt = 0; iCancelAt <= 7; ++iCancelAt) {
    for (const bool bFromHandler : {false, true}) {
      SCOPED_TRACE(iCancelAt);
      Client aClient;
      bool bReached = iCancelAt == 0;
      aClient.StateChanged = [&](std::int16_t iState) {
        aClient.aStates.push_back(iState);
        if (bReached || iState != iCancelAt) return;
        bReached = true;
        if (bFromHandler) aClient.Cancel();
      };
      aClient.Execute(aServer.URL("/hang"), "GET");
      while (!bReached)
        aClient.Poll(10);
      aClient.Cancel();
      EXPECT_FALSE(aClient.StillExecuting());
      const States aBefore = aClient.aStates;
      aClient.Poll(0);
      EXPECT_EQ(aClient.aStates, aBefore);
      EXPECT_EQ(aClient.Get(aServer.URL("/")), 12);
      EXPECT_EQ(aClient.aStates, aGood);
    }
  }
  EXPECT_TRUE(aServer.WaitUntilIdle());
}

// The check against the address is started from the handler of the failure.
TEST(Inet, RequestsFromWithinTheHandler) {
  FaultServer aServer;
  aServer.Serve("/bad", Fault::Status("500 Oops"));
  Client aClient;
  States aEnds;
  aClient.StateChanged = [&](std::int16_t iState) {
    aClient.Poll(10);  // a window that repaints may come back here
    if (iState < 11) return;
    EXPECT_FALSE(aClient.StillExecuting());
    aEnds.push_back(iState);
    if (aEnds.size() == 1) aClient.Execute(aServer.URL("/"), "GET");
    if (aEnds.size() == 2) aClient.Execute("http://", "GET");
  };
  aClient.Execute(aServer.URL("/bad"), "GET");
  while (aClient.StillExecuting())
    aClient.Poll(10);
  EXPECT_EQ(aEnds, (States{12, 12, 11}));
}

// An exception in a handler costs that one event and no other.
TEST(Inet, HandlerThatThrows) {
  FaultServer aServer;
  Client aClient;
  aClient.StateChanged = [&](std::int16_t iState) {
    aClient.aStates.push_back(iState);
    throw std::runtime_error("handler");
  };
  aClient.Execute(aServer.URL("/"), "GET");
  while (aClient.StillExecuting())
    try {
      aClient.Poll(10);
    } catch (const std::runtime_error&) {
    }
  EXPECT_EQ(aClient.aStates, aGood);
}

TEST(Inet, WhatIsAsked) {
  FaultServer aServer;
  Client aClient;
  const struct {
    const char* szURL;
    const char* szAsked;
  } aCases[] = {
      {"", "/"},
      {"/a b", "/a%20b"},
      {"/a%20b", "/a%20b"},
      {"/\xC3\xA4\xE4?q=\xC3\xA4 1", "/%C3%A4%E4?q=%C3%A4%201"},
      {"/tab\there\x7F", "/tab%09here%7F"},
      {"/x\r\nEvil: 1", "/x%0D%0AEvil:%201"},
      {"?q=1#part", "/?q=1"},
  };
  for (const auto& aCase : aCases) {
    EXPECT_EQ(aClient.Get(aServer.URL(aCase.szURL)), 12) << aCase.szURL;
    EXPECT_EQ(aServer.Requests().back().szPath, aCase.szAsked);
  }
  const std::string szHead = aServer.Requests().back().szHead;
  EXPECT_NE(szHead.find("Host: " + aServer.Address() + "\r\n"), std::string::npos);
  EXPECT_EQ(szHead.find("Accept-Encoding"), std::string::npos);
}

TEST(Inet, Cookies) {
  FaultServer aServer;
  aServer.Serve("/set", {Fault::Send("HTTP/1.1 200 OK\r\nSet-Cookie: a=1\r\nContent-Length: 0\r\n\r\n")});
  Client aClient;
  const auto Sent = [&] {
    aClient.Get(aServer.URL("/"));
    return aServer.Requests().back().szHead.find("Cookie: a=1") != std::string::npos;
  };
  const auto Receive = [&] { aClient.Get(aServer.URL("/set")); };
  Receive();
  EXPECT_FALSE(Sent()) << "none are kept unless told";
  aClient.AcceptCookies(true);
  EXPECT_FALSE(Sent());
  Receive();
  EXPECT_TRUE(Sent());
  aClient.ForgetCookies();
  EXPECT_FALSE(Sent());
  Receive();
  aClient.AcceptCookies(false);
  EXPECT_FALSE(Sent());
  aClient.AcceptCookies(true);
  EXPECT_FALSE(Sent()) << "refusing forgets";
}

TEST(Inet, ProxyFromTheEnvironment) {
  FaultServer aServer, aProxy;
  Client aClient;
  Environment::Set("http_proxy", aProxy.URL(""));
  EXPECT_EQ(aClient.Get("http://somewhere.invalid/x"), 12);
  EXPECT_EQ(aProxy.Requests().back().szPath, "http://somewhere.invalid/x");
  Environment::Set("no_proxy", "127.0.0.1");
  EXPECT_EQ(aClient.Get(aServer.URL("/direct")), 12);
  EXPECT_EQ(aServer.Count("/direct"), 1u);
  Environment::Unset("no_proxy");
  Environment::Unset("http_proxy");
}

// A slow server must neither keep the caller busy nor, once it answers, waiting.
TEST(Inet, PollWaitsAndWakes) {
  FaultServer aServer;
  aServer.Serve("/slow", {Fault::Delay(300), Fault::Send("HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n")});
  Client aClient;
  const auto aStart = SteadyClock::now();
  int lPolls = 0;
  aClient.Execute(aServer.URL("/slow"), "GET");
  for (; aClient.StillExecuting(); ++lPolls)
    aClient.Poll(5000);
  EXPECT_LT(lPolls, 20);
  EXPECT_LT(SecondsSince(aStart), 2);
}

}  // namespace
