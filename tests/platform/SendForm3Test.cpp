#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <memory>
#include <regex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "platform/SendForm3.h"
#include "platform/Text.h"
#include "support/FaultServer.h"
#include "support/SmtpServer.h"

namespace {

using Stage = SmtpServer::Stage;
using SteadyClock = std::chrono::steady_clock;

const std::string szAddress = "ops@example.com";

struct Limit {
  explicit Limit(std::int32_t lSeconds) { SendForm3_SetLimit(lSeconds); }
  ~Limit() { SendForm3_SetLimit(lSendForm3_DefaultLimit); }
  Limit(const Limit&) = delete;
  Limit& operator=(const Limit&) = delete;
};

std::int32_t Send(std::int32_t lPort, const std::string& szBody = "body\r\n",
                  const std::string& szTo = szAddress, const std::string& szServer = "127.0.0.1",
                  const std::string& szSubject = "Kestrova Alert") {
  return SendForm3("", szServer, lPort, szTo, "", "Kestrova <" + szTo + ">", szTo, szSubject, szBody, "", 0,
                   0, "US", "SendForm 3.0");
}

double SecondsSince(SteadyClock::time_point aStart) {
  return std::chrono::duration<double>(SteadyClock::now() - aStart).count();
}

std::string HeaderLine(const std::string& szMail, const std::string& szName) {
  const std::string szHead = "\r\n" + szMail.substr(0, szMail.find("\r\n\r\n") + 2);
  const auto lFound = szHead.find("\r\n" + szName + ": ");
  if (lFound == std::string::npos) return "(none)";
  const auto lFrom = lFound + szName.size() + 4;
  auto lEnd = szHead.find("\r\n", lFrom);
  while (szHead.substr(lEnd, 3) == "\r\n ")
    lEnd = szHead.find("\r\n", lEnd + 2);
  return szHead.substr(lFrom, lEnd - lFrom);
}

// The body as a mail reader would show it, from either encoding.
std::string Shown(const std::string& szMail) {
  std::string szBody = szMail.substr(szMail.find("\r\n\r\n") + 4);
  if (HeaderLine(szMail, "Content-Transfer-Encoding") == "7bit") return szBody;
  szBody = Text::Replace(szBody, "=\r\n", "");
  for (auto l = szBody.find('='); l != std::string::npos; l = szBody.find('=', l + 1))
    szBody.replace(l, 3, 1, static_cast<char>(std::stoi(szBody.substr(l + 1, 2), nullptr, 16)));
  return szBody;
}

TEST(SendForm3, GoodMail) {
  EXPECT_EQ(SendForm3_Limit(), 30);
  SmtpServer aServer;
  const auto aStart = SteadyClock::now();
  EXPECT_EQ(Send(aServer.Port(), "Dear all,\n\n.hidden dot\r\n..\nend"), 0);
  EXPECT_LT(SecondsSince(aStart), 2);
  ASSERT_EQ(aServer.Mails().size(), 1u);
  EXPECT_EQ(SendForm3_LastOutcome().szServerReply, "250 2.0.0 taken");
  EXPECT_EQ(SendForm3_LastOutcome().szError, "");
  const SmtpServer::Mail aMail = aServer.Mails()[0];
  EXPECT_EQ(aMail.szSender, szAddress);
  EXPECT_EQ(aMail.aRecipients, std::vector{szAddress});
  EXPECT_EQ(HeaderLine(aMail.szText, "From"), "Kestrova <ops@example.com>");
  EXPECT_EQ(HeaderLine(aMail.szText, "To"), szAddress);
  EXPECT_EQ(HeaderLine(aMail.szText, "Subject"), "Kestrova Alert");
  EXPECT_EQ(HeaderLine(aMail.szText, "X-Mailer"), "SendForm 3.0");
  EXPECT_EQ(HeaderLine(aMail.szText, "MIME-Version"), "1.0");
  EXPECT_EQ(HeaderLine(aMail.szText, "Content-Type"), "text/plain; charset=us-ascii");
  const std::string szDate = HeaderLine(aMail.szText, "Date");
  EXPECT_TRUE(std::regex_match(
      szDate, std::regex("[A-Z][a-z]{2}, \\d{1,2} [A-Z][a-z]{2} \\d{4} \\d\\d:\\d\\d:\\d\\d [-+]\\d{4}")))
      << szDate;
  EXPECT_EQ(Shown(aMail.szText), "Dear all,\r\n\r\n.hidden dot\r\n..\r\nend\r\n");
}

TEST(SendForm3, EveryMessageIsItsOwn) {
  SmtpServer aServer;
  std::set<std::string> aIDs;
  for (int i = 0; i < 5; ++i)
    EXPECT_EQ(Send(aServer.Port()), 0);
  for (const auto& aMail : aServer.Mails())
    aIDs.insert(HeaderLine(aMail.szText, "Message-ID"));
  EXPECT_EQ(aIDs.size(), 5u);
  EXPECT_TRUE(aIDs.begin()->ends_with("@example.com>"));
}

TEST(SendForm3, BodiesArriveAsTheyAre) {
  const std::string szLong(2500, 'x');
  const struct {
    const char* szName;
    std::string szBody, szShown;
    const char* szEncoding;
  } aCases[] = {
      {"empty", "", "", "7bit"},
      {"998", szLong.substr(0, 998), szLong.substr(0, 998) + "\r\n", "7bit"},
      {"999", szLong.substr(0, 999), szLong.substr(0, 999) + "\r\n", "quoted-printable"},
      {"long", szLong + "\n" + szLong, szLong + "\r\n" + szLong + "\r\n", "quoted-printable"},
      {"UTF-8",
       "Gr\xC3\xBC\xC3\x9F"
       "e =20 \xF0\x9F\x98\x80\r\n.x\r\n",
       "Gr\xC3\xBC\xC3\x9F"
       "e =20 \xF0\x9F\x98\x80\r\n.x\r\n",
       "quoted-printable"},
      {"Latin-1 among UTF-8", "\xE4 \xC3\xA4\n", "\xC3\xA4 \xC3\xA4\r\n", "quoted-printable"},
      {"overlong, surrogate, cut", "\xC0\xAF \xED\xA0\x80 \xE2\x82",
       "\xC3\x80\xC2\xAF \xC3\xAD\xC2\xA0\xC2\x80 \xC3\xA2\xC2\x82\r\n", "quoted-printable"},
      {"blanks at the end", "\xC3\xA4 \t\nb \n", "\xC3\xA4 \t\r\nb \r\n", "quoted-printable"},
      {"bare CR", "a\rb\r\n", "a\rb\r\n", "quoted-printable"},
      {"NUL", std::string("a\0b\n", 4), std::string("a\0b\r\n", 5), "quoted-printable"},
      {"dots alone", ".\r\n.\r\n", ".\r\n.\r\n", "7bit"},
      {"blank lines", "\n\n\n", "\r\n\r\n\r\n", "7bit"},
  };
  SmtpServer aServer;
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szName);
    ASSERT_EQ(Send(aServer.Port(), aCase.szBody), 0);
    const std::string szMail = aServer.Mails().back().szText;
    EXPECT_EQ(HeaderLine(szMail, "Content-Transfer-Encoding"), aCase.szEncoding);
    EXPECT_EQ(Shown(szMail), aCase.szShown);
    EXPECT_EQ(std::count(szMail.begin(), szMail.end(), '\n'), std::count(szMail.begin(), szMail.end(), '\r'));
    EXPECT_TRUE(std::all_of(szMail.begin(), szMail.end(), [](char ch) { return ch > 0; }));
    const std::size_t lMost = HeaderLine(szMail, "Content-Transfer-Encoding") == "7bit" ? 998 : 76;
    const std::string szBody = szMail.substr(szMail.find("\r\n\r\n") + 4);
    for (std::size_t l = 0, lEnd = 0; (lEnd = szBody.find("\r\n", l)) != std::string::npos; l = lEnd + 2)
      EXPECT_LE(lEnd - l, lMost);
  }
}

TEST(SendForm3, Subjects) {
  const struct {
    std::string szSubject, szSent;
  } aCases[] = {
      {"", ""},
      {"St\xC3\xB6rung", "=?UTF-8?B?U3TDtnJ1bmc=?="},
      {"St\xF6rung", "=?UTF-8?B?U3TDtnJ1bmc=?="},
      {"a\r\nBcc: x@y", "a  Bcc: x@y"},
      {"=?x", "=?UTF-8?B?PT94?="},
      {std::string(44, 'x') + "\xC3\xA4",  // the last character does not fit whole
       "=?UTF-8?B?" + Text::Replace("..............", ".", "eHh4") + "eHg=?=\r\n =?UTF-8?B?w6Q=?="},
  };
  SmtpServer aServer;
  for (const auto& aCase : aCases) {
    EXPECT_EQ(Send(aServer.Port(), "x", szAddress, "127.0.0.1", aCase.szSubject), 0);
    EXPECT_EQ(HeaderLine(aServer.Mails().back().szText, "Subject"), aCase.szSent);
  }
}

TEST(SendForm3, RefusedBeforeConnecting) {
  SmtpServer aServer;
  const std::int32_t lPort = aServer.Port();
  for (const std::string& szBad :
       {std::string("a@b\r\nRCPT TO:<c@d>"), std::string("\n"), std::string("\0", 1)}) {
    EXPECT_NE(Send(lPort, "x", szAddress + szBad), 0);
    EXPECT_NE(Send(lPort, "x", szAddress, "127.0.0.1" + szBad), 0);
  }
  EXPECT_NE(Send(lPort, "x", ""), 0);
  for (const char* szServer : {"", " ", "127.0.0.1/x", "user@127.0.0.1", "127.0.0.1:25", "127.0.0.1?", "a b"})
    EXPECT_NE(Send(lPort, "x", szAddress, szServer), 0) << szServer;
  EXPECT_NE(Send(65536), 0);
  EXPECT_NE(Send(lPort + 65536), 0);
  EXPECT_EQ(aServer.Connections(), 0u);
  EXPECT_NE(SendForm3_LastOutcome().szError, "");
  EXPECT_EQ(Send(FaultServer::RefusingPort()), 7);
  EXPECT_EQ(Send(lPort, "x", szAddress, "nowhere.invalid"), 6);
  // Blanks are an address like any other, for the server to refuse.
  aServer.At(Stage::Sender, Smtp::Say("501 5.1.7 bad address"));
  EXPECT_NE(Send(lPort, "x", "  "), 0);
  EXPECT_EQ(aServer.Connections(), 1u);
}

TEST(SendForm3, Refusals) {
  SmtpServer aServer;
  for (const Stage iStage :
       {Stage::Greeting, Stage::Hello, Stage::Sender, Stage::Recipient, Stage::Data, Stage::Text})
    for (const std::string szReply : {"421 4.3.2 not now", "550 5.7.1 not you"}) {
      SCOPED_TRACE(static_cast<int>(iStage));
      aServer.Behave();
      aServer.At(iStage, Smtp::Say(szReply));
      const std::size_t lBefore = aServer.Mails().size();
      const std::int32_t lResult = Send(aServer.Port());
      EXPECT_NE(lResult, 0);
      EXPECT_NE(lResult, 999);
      EXPECT_EQ(SendForm3_LastOutcome().szServerReply, szReply);
      EXPECT_NE(SendForm3_LastOutcome().szError, "");
      EXPECT_EQ(aServer.Mails().size() - lBefore, iStage == Stage::Text ? 1u : 0u);
    }
}

TEST(SendForm3, OddServers) {
  const Limit aLimit(4);
  const std::string szManyLines = "250-more\r\n", szNoEnd(5000, 'x');
  const struct {
    const char* szName;
    Stage iStage;
    bool bSent;
    Smtp::Act aAct;
    const char* szReply;
  } aCases[] = {
      {"slow to take it", Stage::Text, true, Smtp::Say("250 ok at last", 1500), "250 ok at last"},
      {"takes it with another number", Stage::Text, true, Smtp::Say("251 ok"), "251 ok"},
      {"many lines", Stage::Text, true, Smtp::SayRaw("250-a\r\n250-b\r\n250 c\r\n"), "250 c"},
      {"bare number", Stage::Text, true, Smtp::SayRaw("250\r\n"), "250"},
      {"takes it and goes", Stage::Text, true, Smtp::SayRaw("250 ok\r\n", true), "250 ok"},
      {"no goodbye", Stage::Quit, true, Smtp::Drop(), "250 2.0.0 taken"},
      {"goodbye by reset", Stage::Quit, true, Smtp::Reset(), "250 2.0.0 taken"},
      {"rude goodbye", Stage::Quit, true, Smtp::Say("500 what?"), "250 2.0.0 taken"},
      {"endless goodbye", Stage::Quit, true, Smtp::Endless("221-bye\r\n"), "250 2.0.0 taken"},
      {"refuses while it is sent", Stage::Data, false, Smtp::SayRaw("354 go\r\n554 no\r\n", true), ""},
      {"promises too early", Stage::Data, false, Smtp::SayRaw("250 fine\r\n"), "250 fine"},
      {"drops in the text", Stage::Data, false, Smtp::SayRaw("354 go\r\n", true), "354 go"},
      {"resets after the text", Stage::Text, false, Smtp::Reset(), "354 go on"},
      {"drops after the text", Stage::Text, false, Smtp::Drop(), "354 go on"},
      {"drops at once", Stage::Greeting, false, Smtp::Drop(), ""},
      {"no SMTP", Stage::Greeting, false, Smtp::SayRaw("SSH-2.0-x\r\n", true), "SSH-2.0-x"},
      {"bell in a reply", Stage::Sender, false, Smtp::Say("550 \x07no\x1B[2J"), "550 ?no?[2J"},
      {"endless greeting", Stage::Greeting, false, Smtp::Endless("220-more\r\n"), "220-more"},
      {"endless hello", Stage::Hello, false, Smtp::Endless(szManyLines), "250-more"},
      {"endless reply to the text", Stage::Text, false, Smtp::Endless(szManyLines), "250-more"},
      {"endless line", Stage::Sender, false, Smtp::Endless(szNoEnd), ""},
  };
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(aCase.szName);
    SmtpServer aServer;
    aServer.At(aCase.iStage, aCase.aAct);
    const auto aStart = SteadyClock::now();
    EXPECT_EQ(Send(aServer.Port()) == 0, aCase.bSent) << SendForm3_LastOutcome().szError;
    EXPECT_LT(SecondsSince(aStart), 5);
    if (aCase.szReply[0] != '\0') {
      EXPECT_EQ(SendForm3_LastOutcome().szServerReply, aCase.szReply);
    }
    EXPECT_LE(aServer.Connections(), 1u);
    EXPECT_LE(aServer.Mails().size(), 1u);
  }
  SmtpServer aServer;
  aServer.BareLineFeeds();
  EXPECT_EQ(Send(aServer.Port()), 0);
}

// All at the same time, so that the wait is one limit long.
TEST(SendForm3, SilentServers) {
  const Limit aLimit(3);
  const DeafPort aDeaf;
  struct Result {
    std::int32_t lResult = -1;
    double dSeconds = 0;
    std::string szReply;
  };
  const std::vector<Stage> aStages = {Stage::Greeting, Stage::Hello, Stage::Sender, Stage::Recipient,
                                      Stage::Data,     Stage::Text,  Stage::Quit};
  std::vector<std::unique_ptr<SmtpServer>> aServers;
  std::vector<Result> aResults(aStages.size() + 1);
  std::vector<std::thread> aThreads;
  const auto Time = [&](std::size_t i, std::int32_t lPort) {
    aThreads.emplace_back([&aResult = aResults[i], lPort] {
      const auto aStart = SteadyClock::now();
      aResult.lResult = Send(lPort);
      aResult.dSeconds = SecondsSince(aStart);
      aResult.szReply = SendForm3_LastOutcome().szServerReply;
    });
  };
  for (std::size_t i = 0; i < aStages.size(); ++i) {
    aServers.push_back(std::make_unique<SmtpServer>());
    aServers[i]->At(aStages[i], Smtp::Stall());
    Time(i, aServers[i]->Port());
  }
  Time(aStages.size(), aDeaf.Port());
  for (std::thread& aThread : aThreads)
    aThread.join();
  for (std::size_t i = 0; i < aResults.size(); ++i) {
    SCOPED_TRACE(i);
    const bool bSilentGoodbye = i == 6;
    EXPECT_EQ(aResults[i].lResult == 0, bSilentGoodbye);
    EXPECT_LT(aResults[i].dSeconds, 4);
    if (i < aServers.size()) {
      EXPECT_LE(aServers[i]->Mails().size(), 1u);
    }
  }
  EXPECT_EQ(aResults[5].szReply, "354 go on") << "taken or not is not known";
}

}  // namespace
