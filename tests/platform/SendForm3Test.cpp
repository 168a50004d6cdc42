#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "base/Text.h"
#include "platform/SendForm3.h"
#include "servers/FaultServer.h"
#include "servers/SmtpServer.h"
#include "support/ReadMail.h"
#include "support/TestHome.h"

using namespace std::string_literals;

namespace {

using Stage = SmtpServer::Stage;

const std::string szAddress = "ops@example.com";

std::int32_t Send(MailCall& aCall, std::int32_t lPort, const std::string& szBody = "body\r\n",
                  const std::string& szTo = szAddress, const std::string& szServer = "127.0.0.1",
                  const std::string& szSubject = "Kestrova Alert") {
  return SendForm3("", szServer, lPort, szTo, "", "Kestrova <" + szTo + ">", szTo, szSubject, szBody, "", 0,
                   0, "US", "SendForm 3.0", aCall);
}
std::int32_t Send(std::int32_t lPort, const std::string& szBody = "body\r\n",
                  const std::string& szTo = szAddress, const std::string& szServer = "127.0.0.1",
                  const std::string& szSubject = "Kestrova Alert") {
  MailCall aCall;
  return Send(aCall, lPort, szBody, szTo, szServer, szSubject);
}

TEST(SendForm3, BodiesAndSubjectsArriveAsTheyAre) {
  const std::string szLong(2500, 'x'), szUmlaut = "\xC3\xA4";
  const struct {
    std::string szBody;
    bool bCoded;
    std::optional<std::string> szShown = {};  // none: as it is
  } aCases[] = {
      {"", false, "\n"},
      {szLong.substr(0, 998) + "\n", false},
      {szLong + "\n", true},
      {"Gr" + szUmlaut + " =20 \xF0\x9F\x98\x80\n.x\n", true},
      {"\xE4 \xC3\xA4\n", true, szUmlaut + " " + szUmlaut + "\n"},  // Latin-1 among UTF-8
      {"\xC0\xAF \xED\xA0\x80 \xE2\x82", true,                      // overlong, surrogate, cut
       "\xC3\x80\xC2\xAF \xC3\xAD\xC2\xA0? \xC3\xA2?\n"},
      {szUmlaut + " \t\nb \n", true},
      {std::string("a\0b\rc\x1B[2J\x07\t.\n", 13), false, "a?b?c?[2J?\t.\n"},  // what a terminal obeys
      {"\x9B\xC2\x9B\n", false, "??\n"},
      {".\n.\n\n\n", false},
  };
  SmtpServer aServer;
  std::set<std::string> aIDs;
  for (const auto& aCase : aCases) {
    SCOPED_TRACE(testing::PrintToString(aCase.szBody));
    ASSERT_EQ(Send(aServer.Port(), aCase.szBody), 0);
    const std::string szMail = aServer.Mails().back().szText;
    const ReadMail aMail(szMail);
    EXPECT_TRUE(aIDs.insert(aMail.Only("message-id")).second) << "one number for two mails";
    EXPECT_EQ(aMail.Only("content-transfer-encoding"), aCase.bCoded ? "quoted-printable" : "7bit");
    EXPECT_EQ(aMail.szBody, aCase.szShown.value_or(aCase.szBody));
    EXPECT_FALSE(std::regex_search(szMail, std::regex("[^\r]\n"))) << "a bare line feed";
    EXPECT_TRUE(std::ranges::all_of(szMail, [](char ch) { return ch > 0; }));
    std::istringstream aLines(szMail.substr(szMail.find("\r\n\r\n")));
    for (std::string szLine; std::getline(aLines, szLine);)
      EXPECT_LE(szLine.size(), (aCase.bCoded ? 76U : 998U) + 1);
  }
  const std::pair<std::string, std::string> aSubjects[] = {
      {"", ""},
      {"St\xC3\xB6rung", "=?UTF-8?B?U3TDtnJ1bmc=?="},
      {"a\r\nBcc: x@y", "a  Bcc: x@y"},
      {std::string(44, 'x') + szUmlaut,  // the last character does not fit whole
       "=?UTF-8?B?" + Text::Replace("..............", ".", "eHh4") + "eHg=?= =?UTF-8?B?w6Q=?="},
  };
  for (const auto& [szSubject, szSent] : aSubjects) {
    EXPECT_EQ(Send(aServer.Port(), "x", szAddress, "127.0.0.1", szSubject), 0);
    EXPECT_EQ(ReadMail(aServer.Mails().back().szText).Only("subject"), szSent);
  }
}

TEST(SendForm3, RefusedBeforeConnecting) {
  SmtpServer aServer;
  const std::int32_t lPort = aServer.Port();
  for (const std::string& szBad : {"a@b\r\nRCPT TO:<c@d>"s, "\n"s, "\0"s}) {
    EXPECT_NE(Send(lPort, "x", szAddress + szBad), 0);
    EXPECT_NE(Send(lPort, "x", szAddress, "127.0.0.1" + szBad), 0);
  }
  for (const char* szServer : {"", "127.0.0.1/x", "user@127.0.0.1", "127.0.0.1:25"})
    EXPECT_NE(Send(lPort, "x", szAddress, szServer), 0) << szServer;
  EXPECT_TRUE(Send(lPort, "x", "") != 0 && Send(65536) != 0 && Send(lPort + 65536) != 0);
  EXPECT_EQ(aServer.Connections(), 0u);
  EXPECT_EQ(Send(FaultServer::RefusingPort()), 7);
  EXPECT_EQ(Send(lPort, "x", szAddress, "nowhere.invalid"), 6);
}

TEST(SendForm3, FaultyServers) {
  const std::string szMore = "250-more\r\n", szTaken = "250 2.0.0 taken";
  struct Case {
    Stage iStage;
    bool bSent;
    Fault::Answer aAct;
    std::optional<std::string> szReply;
  };
  std::vector<Case> aCases = {
      {Stage::Text, true, {Fault::Delay(300), Fault::Send("250 ok at last\r\n")}, "250 ok at last"},
      {Stage::Text, true, {Fault::Send("250-a\r\n250-b\r\n251 c\r\n")}, "251 c"},
      {Stage::Quit, true, {Fault::Close()}, szTaken},
      {Stage::Quit, true, {Fault::Reset()}, szTaken},
      {Stage::Quit, true, {Fault::Endless("221-bye\r\n")}, szTaken},
      {Stage::Data, false, {Fault::Send("354 go\r\n554 no\r\n"), Fault::Close()}, {}},
      {Stage::Data, false, {Fault::Send("250 fine\r\n")}, "250 fine"},
      {Stage::Text, false, {Fault::Reset()}, "354 go on"},
      {Stage::Greeting, false, {Fault::Send("SSH-2.0-x\r\n"), Fault::Close()}, "SSH-2.0-x"},
      {Stage::Sender, false, Smtp::Say("550 \x07no\x1B[2J"), "550 ?no?[2J"},
      {Stage::Text, false, {Fault::Endless(szMore)}, "250-more"},
      {Stage::Sender, false, {Fault::Endless(std::string(5000, 'x'))}, {}},
      {Stage::Quit, true, {Fault::Hang()}, szTaken},
  };
  for (const auto iStage : {Stage::Greeting, Stage::Hello, Stage::Sender, Stage::Recipient, Stage::Data})
    aCases.push_back({iStage, false, {Fault::Hang()}, {}});
  aCases.push_back({Stage::Text, false, {Fault::Hang()}, "354 go on"});  // taken or not is not known
  for (const auto iStage :
       {Stage::Greeting, Stage::Hello, Stage::Sender, Stage::Recipient, Stage::Data, Stage::Text})
    for (const char* szReply : {"421 4.3.2 not now", "550 5.7.1 not you"})
      aCases.push_back({iStage, false, Smtp::Say(szReply), szReply});

  // All at the same time, so that the wait is one limit long: long enough for a whole dialogue on a busy
  // machine.
  std::vector<std::thread> aThreads;
  for (std::size_t i = 0; i < aCases.size(); ++i)
    aThreads.emplace_back([i, &aCase = aCases[i]] {
      SCOPED_TRACE(i);
      SmtpServer aServer;
      aServer.At(aCase.iStage, aCase.aAct);
      const Stopwatch aWatch;
      MailCall aCall{.lSeconds = 8};
      const std::int32_t lResult = Send(aCall, aServer.Port());
      EXPECT_EQ(lResult == 0, aCase.bSent) << aCall.szError;
      EXPECT_EQ(aCall.szError.empty(), aCase.bSent);
      EXPECT_LT(aWatch.Seconds(), 30);
      EXPECT_EQ(aCall.szServerReply, aCase.szReply.value_or(aCall.szServerReply));
      EXPECT_LE(aServer.Connections(), 1u);
      const bool bWhole = aCase.iStage == Stage::Text || aCase.iStage == Stage::Quit;
      EXPECT_EQ(aServer.Mails().size(), bWhole ? 1u : 0u);
    });
  const DeafPort aDeaf;
  MailCall aCall{.lSeconds = 2};
  EXPECT_NE(Send(aCall, aDeaf.Port()), 0);
  for (std::thread& aThread : aThreads)
    aThread.join();
}

}  // namespace
