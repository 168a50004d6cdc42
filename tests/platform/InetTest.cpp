#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "base/Text.h"
#include "platform/Environment.h"
#include "platform/Inet.h"
#include "servers/FaultServer.h"
#include "support/TestHome.h"

using namespace std::string_literals;

namespace {

using States = std::vector<std::int16_t>;

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
    return aStates.empty() ? std::int16_t{Inet::None} : aStates.back();
  }
  States aStates;
};

const States aGood = {Inet::ResolvingHost,     Inet::HostResolved,     Inet::Connecting,
                      Inet::Connected,         Inet::Requesting,       Inet::RequestSent,
                      Inet::ReceivingResponse, Inet::ResponseReceived, Inet::Disconnecting,
                      Inet::Disconnected,      Inet::ResponseCompleted};
constexpr std::int32_t lAny = -1;

struct OddAnswer {
  Fault::Answer aAnswer;
  std::optional<std::string> szFirstLine = {};  // of the header; none where it does not matter
  std::int32_t lCode = 0;                       // lAny where systems differ
};

std::vector<OddAnswer> OddAnswers() {
  using namespace Fault;
  const std::string szOk = "HTTP/1.1 200 OK\r\n", szLine = "HTTP/1.1 200 OK";
  const std::string szChunked = szOk + "Transfer-Encoding: chunked\r\n\r\n";
  const Step aFill = Endless("X-Fill: xxxxxxxxxxxxxxxxxxxxxxxx\r\n");
  std::vector<OddAnswer> aRows = {
      {Ok(), szLine},
      {{Send("HTTP/1.1 100 Continue\r\n\r\n" + szOk + "\r\n")}, szLine},
      {{Send("HTTP/1.1 101 Switch\r\n\r\nxx"), Delay(300)}, "HTTP/1.1 101 Switch"},
      {{Send("220 mail ESMTP\r\n"), Hang()}, ""},
      {{Send(szOk + "\r\n" + std::string(50000, 'b')), HalfClose()}, szLine},
      {{}, "", 52},
      // Not before the client is back from sending: what comes earlier not every system counts.
      {{Delay(30), Send("HTTP/1.1 503 Bu")}, ""},
      {{Delay(30), Send("H"), Delay(30), HalfClose()}, ""},
      {{Send(szOk + "Content-Ty")}, szLine, 18},
      {{Send(szOk + "Content-Length: 100\r\n\r\nabc")}, std::nullopt, 18},
      {{Send(szChunked + "zz\r\n")}, std::nullopt, 56},
      {{Reset()}, std::nullopt, lAny},
      {{Send(szOk + "Content-Length: 9\r\n\r\nabc"), Delay(50), Reset()}, std::nullopt, lAny},
      {{Send(szOk + "A: " + std::string(204800, 'x') + "\r\n\r\n")}, std::nullopt, 27},
      {{Send(szOk), aFill}, std::nullopt, 56},
      {{Endless("HTTP/1.1 100 Continue\r\n\r\n")}, std::nullopt, 56},
  };
  // What is no HTTP is an answer without a header.
  for (const std::string& szFirst :
       {"<html>hello</html>"s, "\r\n" + szOk, "HTTP/1.1 abc\r\n"s, "HTTP/1.1 099 OK\r\n"s,
        "HTTP/1.1 2000 OK\r\n"s, "HTTP/1.1 200 O\0K\r\n"s})
    aRows.push_back({{Send(szFirst + "\r\n")}, ""});
  // What follows the first line does not change it: no redirect, no later line that looks like one.
  for (const std::string& szAnswer :
       {"HTTP/1.1 103 Hints\r\n\r\nSSH-2.0-x\r\n\r\n"s, "HTTP/1.1 999 X\r\n\r\n"s,
        "http/1.1 404 Not Found\r\n\r\n"s, "HTTP/1.1 200\r\n\r\n"s,
        szChunked + "0\r\nHTTP/1.1 500: x\r\n\r\n", "HTTP/1.1 302 Found\r\nLocation: /else\r\n\r\n"s})
    aRows.push_back({{Send(szAnswer)}, szAnswer.substr(0, szAnswer.find("\r\n"))});
  for (const std::string& szField : {"nonsense"s, "A: \0"s, "Content-Length: -1"s})
    aRows.push_back({{Send(szOk + szField + "\r\n\r\n")}, std::nullopt, 8});
  return aRows;
}

// Each answer ends in exactly one last state, with one client for all, as a pass has it.
TEST(Inet, OddAnswers) {
  FaultServer aServer;
  Client aClient;
  std::size_t lRow = 0;
  for (const OddAnswer& aCase : OddAnswers()) {
    SCOPED_TRACE("row " + std::to_string(++lRow));
    aServer.Serve("*", aCase.aAnswer);
    EXPECT_EQ(aClient.Get(aServer.URL("/")), aCase.lCode == 0 ? Inet::ResponseCompleted : Inet::Error);
    EXPECT_TRUE(aCase.lCode == lAny || aClient.ResponseCode() == aCase.lCode) << aClient.ResponseCode();
    const auto szHeader = aClient.GetHeader();
    if (aCase.szFirstLine) {
      EXPECT_EQ(szHeader.substr(0, szHeader.find("\r\n")), *aCase.szFirstLine);
    }
    EXPECT_LE(szHeader.size(), 64u * 1024);
    EXPECT_EQ(szHeader.find("\r\n\r\n"), std::string::npos);
    EXPECT_EQ(aClient.ResponseInfo().find_first_of(",\r\n"), std::string::npos);
    // What ended well went through every state, an error through none twice and into one last state.
    if (aCase.lCode == 0)
      EXPECT_EQ(aClient.aStates, aGood);
    else
      EXPECT_TRUE(std::ranges::is_sorted(aClient.aStates, std::less_equal()));
    EXPECT_EQ(std::ranges::count_if(aClient.aStates, [](auto iState) { return iState >= Inet::Error; }), 1);
  }
  EXPECT_EQ(aServer.Count(), lRow) << "a request was repeated or a redirect followed";
}

// What libcurl puts down to us the server did.
TEST(Inet, AnErrorThatTheServerMadeIsItsOwn) {
  FaultServer aServer;
  Client aClient;
  const std::pair<std::string, std::string> aCases[] = {
      {"A: " + std::string(110000, 'x') + "\r\n", "The server sent a header line that is too long"},
      {" folded: x\r\n", "The server sent a header that begins with a folded line"}};
  for (const auto& [szField, szInfo] : aCases) {
    aServer.Serve("*", {Fault::Send("HTTP/1.1 200 OK\r\n" + szField + "\r\n")});
    EXPECT_EQ(aClient.Get(aServer.URL("/")), Inet::Error);
    EXPECT_EQ(aClient.ResponseInfo(), szInfo);
    EXPECT_TRUE(aClient.Reached() && !aClient.OwnFault());
  }
  EXPECT_EQ(aClient.Get("http://127.0.0.1:" + std::to_string(FaultServer::RefusingPort())), Inet::Error);
  EXPECT_TRUE(aClient.Reached()) << "who refuses is there";
  EXPECT_EQ(aClient.Get("http://nowhere.invalid/"), Inet::Error);
  EXPECT_TRUE(!aClient.Reached() && !aClient.OwnFault());
}

TEST(Inet, ConnectionsThatDoNotStand) {
  const std::string szPort = std::to_string(FaultServer::RefusingPort());
  struct {
    std::int32_t lCode;
    States aStates;
    std::vector<std::string> aURLs;
  } const aCases[] = {
      {7,
       {Inet::ResolvingHost, Inet::HostResolved, Inet::Connecting, Inet::Error},
       {"http://127.0.0.1:" + szPort + "/", "http://[::1]:" + szPort}},
      {6, {Inet::ResolvingHost, Inet::Error}, {"http://nowhere.invalid/"}},  // the resolver says no at once
      {1, {Inet::Error}, {"https://127.0.0.1:" + szPort, "ftp://127.0.0.1:" + szPort}},
      {3,
       {Inet::Error},
       {"", "http://", "http://a b/", "http://127.0.0.1\0.example"s, "http://127.0.0.1:99999/"}},
  };
  Client aClient;
  for (const auto& aCase : aCases)
    for (const auto& szURL : aCase.aURLs) {
      EXPECT_EQ(aClient.Get(szURL), Inet::Error) << szURL;
      EXPECT_EQ(aClient.ResponseCode(), aCase.lCode) << szURL;
      EXPECT_EQ(aClient.aStates, aCase.aStates) << szURL;
      EXPECT_TRUE(aClient.GetHeader().empty() && !aClient.TimedOut());
    }
}

// All at once, so that the wait is one limit long.
TEST(Inet, TimeLimits) {
  using namespace Fault;
  FaultServer aServer;
  const DeafPort aDeaf;
  const std::string szOk = "HTTP/1.1 200 OK\r\n";
  Answer aDrip{Send(szOk)};
  for (int i = 0; i < 500; ++i)
    aDrip.insert(aDrip.end(), {Send("x"), Delay(20)});
  const Answer aAnswers[] = {{Hang()},
                             {Send(szOk), Hang()},
                             {Send(szOk + "Content-Length: 9\r\n\r\nabc"), Hang()},
                             {Send(szOk + "\r\n"), Endless("all work and no play ")},
                             aDrip};
  std::vector<Client> aClients(std::size(aAnswers) + 1);
  for (std::size_t i = 0; i < aClients.size(); ++i) {
    const auto szPath = "/" + std::to_string(i);
    if (i > 0) aServer.Serve(szPath, aAnswers[i - 1]);
    aClients[i].RequestTimeout(1);
    aClients[i].Execute(i > 0 ? aServer.URL(szPath) : "http://127.0.0.1:" + std::to_string(aDeaf.Port()),
                        "GET");
  }
  const Stopwatch aWatch;
  while (std::ranges::any_of(aClients, &Client::StillExecuting) && aWatch.Seconds() < 30)
    for (Client& aClient : aClients)
      aClient.Poll(1);
  for (std::size_t i = 0; i < aClients.size(); ++i) {
    EXPECT_TRUE(!aClients[i].aStates.empty() && aClients[i].aStates.back() == Inet::Error) << i;
    if (i == 0) continue;  // a system may refuse what the deaf port leaves hanging
    EXPECT_TRUE(aClients[i].TimedOut() && aClients[i].ResponseCode() == 28) << i;
  }
  EXPECT_TRUE(aServer.WaitUntilIdle()) << "a connection was left open";
}

// Whatever state a request is in, a cancel ends it silently, and the client is as good as new.
TEST(Inet, CancelInEveryState) {
  FaultServer aServer;
  aServer.Serve("/hang", {Fault::Send("HTTP/1.1 200 OK\r\n\r\n"), Fault::Hang()});
  for (std::int16_t iCancelAt = Inet::None; iCancelAt <= Inet::ReceivingResponse; ++iCancelAt) {
    for (const bool bFromHandler : {false, true}) {
      SCOPED_TRACE(iCancelAt);
      Client aClient;
      bool bReached = iCancelAt == Inet::None;
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
      EXPECT_TRUE(!bFromHandler || aBefore.size() == static_cast<std::size_t>(iCancelAt));
      aClient.Poll(0);
      EXPECT_EQ(aClient.aStates, aBefore);
      EXPECT_EQ(aClient.Get(aServer.URL("/")), Inet::ResponseCompleted);
      EXPECT_EQ(aClient.aStates, aGood);
    }
  }
  EXPECT_TRUE(aServer.WaitUntilIdle());
}

// The check against the address is started from the handler of the failure; an exception in a handler costs
// that one event and no other.
TEST(Inet, HandlersMayStartRequestsAndThrow) {
  FaultServer aServer;
  aServer.Serve("/bad", Fault::Status("500 Oops"));
  Client aClient;
  States aEnds;
  aClient.StateChanged = [&](std::int16_t iState) {
    aClient.Poll(10);  // a window that repaints may come back here
    if (iState >= Inet::Error) {
      EXPECT_FALSE(aClient.StillExecuting());
      aEnds.push_back(iState);
      if (aEnds.size() == 1) aClient.Execute(aServer.URL("/"), "GET");
      if (aEnds.size() == 2) aClient.Execute("http://", "GET");
    }
    throw std::runtime_error("handler");
  };
  aClient.Execute(aServer.URL("/bad"), "GET");
  while (aClient.StillExecuting())
    try {
      aClient.Poll(10);
    } catch (const std::runtime_error&) {
    }
  EXPECT_EQ(aEnds, (States{Inet::ResponseCompleted, Inet::ResponseCompleted, Inet::Error}));
}

TEST(Inet, WhatIsAsked) {
  FaultServer aServer;
  Client aClient;
  const std::pair<const char*, const char*> aCases[] = {
      {"", "/"},
      {"/a b%20c", "/a%20b%20c"},
      {"/\xC3\xA4\xE4?q=\xC3\xA4 1", "/%C3%A4%E4?q=%C3%A4%201"},
      {"/x\t\x7F\r\nEvil: 1", "/x%09%7F%0D%0AEvil:%201"},
      {"?q=1#part", "/?q=1"},
  };
  for (const auto& [szURL, szAsked] : aCases) {
    EXPECT_EQ(aClient.Get(aServer.URL(szURL)), Inet::ResponseCompleted) << szURL;
    EXPECT_EQ(aServer.Requests().back().szPath, szAsked);
  }
}

}  // namespace
