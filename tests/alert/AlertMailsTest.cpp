// Every mail that can go out, as the manager reads it: each failure, alone and with each result of the IP
// check.
#include <algorithm>
#include <set>
#include <sstream>

#include "alert/AlertFixture.h"
#include "alert/IPCheckMeaning.h"
#include "base/Strings.h"
#include "platform/Environment.h"
#include "platform/Files.h"

namespace {

RequestFacts Answer(const std::string& szCode, const std::string& szResult, const std::string& szStatus) {
  return {
      .szCode = szCode, .szResult = szResult, .szHeader = "HTTP/1.1 " + szStatus + "\r\nServer: example\r\n"};
}

RequestFacts NoAnswer(std::int32_t lError, const std::string& szText, const std::string& szHeader = "") {
  return {.szCode = "8080",
          .szResult = "ERROR:  " + std::to_string(lError) + " " + szText,
          .szErrorText = szText,
          .lErrorNumber = lError,
          .szHeader = szHeader};
}

RequestFacts TooLate(const std::string& szHeader = "") {
  return {.szCode = "8001", .szResult = "Request Timed-Out", .szHeader = szHeader};
}

const RequestFacts aGood = Answer("", "Site OK", "200 OK");
const RequestFacts aNameUnknown = NoAnswer(6, "Couldn't resolve host name");

// What can become of a request by name or by IP address. An IP address has no name that could be unknown.
const std::vector<RequestFacts> aFailures = {
    Answer("204", "204 No Content", "204 No Content"),
    Answer("301", "301 Moved Permanently", "301 Moved\r\nLocation: https://www.example.org/shop"),
    Answer("400", "400 Bad Request", "400 Bad Request"),
    Answer("401", "401 Unauthorized", "401 Unauthorized"),
    Answer("403", "403 Forbidden", "403 Forbidden"),
    Answer("404", "404 File Not Found", "404 Not Found"),
    Answer("405", "405 Method Not Allowed", "405 Method Not Allowed"),
    Answer("500", "500 Internal Server Error", "500 Internal Server Error"),
    Answer("501", "501 Not implemented", "501 Not Implemented"),
    Answer("502", "502 Bad Gateway", "502 Bad Gateway"),
    Answer("503", "503 Service Unavailable", "503 Service Unavailable"),
    Answer("504", "504 Gateway Time-Out", "504 Gateway Timeout"),
    Answer("1xx", "1xx Informational Response Received", "101 Switching Protocols"),
    Answer("2xx", "2xx Success Response Received", "206 Partial Content"),
    Answer("3xx", "3xx Redirectional Response Received", "307 Temporary Redirect"),
    Answer("4xx", "4xx Request Error Response Received", "418 I'm a teapot"),
    Answer("5xx", "5xx Server Error Response Received", "507 Insufficient Storage"),
    Answer("0", "Unrecognized Response Code", "600 what"),
    {.szCode = "0", .szResult = "Unrecognized Reponse Code"},
    TooLate(),
    TooLate("HTTP/1.1 200 OK\r\n"),
    NoAnswer(7, "Couldn't connect to server"),
    NoAnswer(52, "Server returned nothing (no headers no data)"),
    NoAnswer(56, "Failure when receiving data from the peer"),
    NoAnswer(18, "Transferred a partial file", "HTTP/1.1 200 OK\r\nContent-Length: 9\r\n"),
};

bool IsStatus(const RequestFacts& aRequest) {
  return aRequest.szCode.size() == 3 || aRequest.szCode.empty();
}
// A status, junk, or the beginning of an answer: a machine must have sent it.
bool SomethingCame(const RequestFacts& aRequest) {
  return IsStatus(aRequest) || aRequest.szCode == "0" || !aRequest.szHeader.empty();
}

// Without the breaks of its lines.
std::string Flowing(const std::string& szText) {
  std::istringstream aWords(szText);
  std::string szFlowing;
  for (std::string szWord; aWords >> szWord;)
    szFlowing += (szFlowing.empty() ? "" : " ") + szWord;
  return szFlowing;
}

bool HasAny(const std::string& szText, std::initializer_list<std::string_view> aWords) {
  return std::ranges::any_of(aWords, [&](auto szWord) { return szText.find(szWord) != std::string::npos; });
}

// No placeholder left, no empty value; lines of at most 76 printable characters that end in CR LF.
void IsClean(const std::string& szText) {
  EXPECT_FALSE(HasAny(szText, {"%", "BackUp Check", "(0)", "()", "\"\""})) << szText;
  std::istringstream aLines(szText);
  for (std::string szLine; std::getline(aLines, szLine);) {
    EXPECT_TRUE(szLine.size() <= 77 && szLine.ends_with('\r')) << szLine;
    szLine.pop_back();
    EXPECT_TRUE(std::ranges::all_of(szLine, [](char ch) { return ch >= ' ' && ch <= '~'; })) << szLine;
  }
}

class AlertMailsTest : public AlertFixture {
 protected:
  AlertMailsTest() {
    Environment::Unset("KESTROVA_HOME");  // the templates lie beside the test program as beside the others
    aFacts.FirstFailure = JoinDateTime({2026, 11, 21, 2, 57, 11});
    aFacts.SecondFailure = JoinDateTime({2026, 11, 21, 3, 12, 14});
  }

  std::string Mail(const RequestFacts& aByName, const std::optional<RequestFacts>& aByIP) {
    aFacts.aByName = aByName;
    aFacts.aByName.szURL = "http://www.example.org/shop";
    aFacts.aByIP = aByIP;
    if (aByIP) aFacts.aByIP->szURL = "http://192.0.2.7";
    return Compose(aByName.szCode);
  }
  std::vector<RequestFacts> ByName() const {
    auto aAll = aFailures;
    aAll.insert(aAll.end(), {aNameUnknown, NoAnswer(3, "URL using bad/illegal format or missing URL")});
    return aAll;
  }
};

// What holds for every mail, whatever the IP check gave.
void SaysWhatHappened(const std::string& szMail, const RequestFacts& aByName) {
  IsClean(szMail);
  EXPECT_TRUE(szMail.starts_with("DOWN: http://www.example.org/shop\r\n\r\nDear Ada,\r\n"));
  for (const std::string& szPart :
       {std::string("failed two checks in a row"), std::string("First failure:   11/21/2026 2:57:11 AM\r\n"),
        std::string("Second failure:  11/21/2026 3:12:14 AM\r\n"),
        "Result:          " + aByName.szResult + "\r\n", std::string("What happened\r\n"),
        std::string("What to do first\r\n  1. "),
        std::string("No more mail comes about this site until it has recovered")})
    EXPECT_TRUE(HasAny(szMail, {szPart})) << szPart;
}

// What the postscript claims of the two requests is what they were.
void FitsThePair(const std::string& szPostscript, const RequestFacts& aByName, const RequestFacts& aByIP) {
  IsClean(szPostscript);
  const std::string szPS = Flowing(szPostscript);
  const bool bByName = SomethingCame(aByName), bByIP = SomethingCame(aByIP);
  EXPECT_TRUE(HasAny(szPS, {"by its IP address, http://192.0.2.7. That"}));
  EXPECT_TRUE(
      HasAny(szPS, {"By name: " + Flowing(aByName.szResult) + " By IP address: " + Flowing(aByIP.szResult)}));
  EXPECT_EQ(HasAny(szPS, {"That worked"}), aByIP.szCode.empty());
  EXPECT_EQ(HasAny(szPS, {"gave a good answer"}), aByIP.szCode.empty());
  EXPECT_EQ(HasAny(szPS, {"machine lives", "machine and its web server are running",
                          "Both ways something answered"}),
            bByIP);
  EXPECT_EQ(HasAny(szPS, {"by the IP address there was no answer", "no answer either way"}), !bByIP);
  EXPECT_EQ(HasAny(szPS, {"not as a web server should"}),
            (bByIP && !IsStatus(aByIP)) || (bByName && !IsStatus(aByName) && !bByIP));
  EXPECT_EQ(HasAny(szPS, {"name is not known"}), aByName.lErrorNumber == aNameUnknown.lErrorNumber);
  EXPECT_TRUE(!bByName || !HasAny(szPS, {"by the name there was no answer", "no answer either way"}));
  EXPECT_TRUE(bByName || !HasAny(szPS, {"By its name", "By the name", "Both ways", "both ways"}));
  EXPECT_EQ(HasAny(szPS, {"same kind of answer"}), aByName.szCode == aByIP.szCode && IsStatus(aByName));
  EXPECT_EQ(HasAny(szPS, {"your own connection"}), !bByIP && !bByName);
}

TEST_F(AlertMailsTest, EachSaysWhatHappenedAndContradictsNeitherResult) {
  auto aByIPs = aFailures;
  aByIPs.push_back(aGood);
  for (const auto& aByName : ByName()) {
    SCOPED_TRACE(aByName.szResult);
    const std::string szMail = Mail(aByName, {});
    SaysWhatHappened(szMail, aByName);
    for (const auto& aByIP : aByIPs) {
      SCOPED_TRACE("by IP address: " + aByIP.szResult);
      const std::string szBoth = Mail(aByName, aByIP);
      ASSERT_TRUE(szBoth.starts_with(szMail)) << "the mail about the name, whatever the IP address gave";
      FitsThePair(szBoth.substr(szMail.size()), aByName, aByIP);
      if (HasFailure()) FAIL() << szBoth;
    }
  }
}

// The page cannot be made from the texts, and nobody would notice that it says something else.
TEST_F(AlertMailsTest, TheHelpBookHasEverySentenceOfTheIPCheck) {
  const std::string szPage =
      Flowing(Files::ReadWhole(KESTROVA_SOURCE "/src/resources/help/ip-check.html", 1 << 20).value_or(""));
  std::set<StringId> aSaid;
  for (const auto& aByName : ByName()) {
    aSaid.insert(IPCheckMeaning::Of(aByName, aGood));
    for (const auto& aByIP : aFailures)
      aSaid.insert(IPCheckMeaning::Of(aByName, aByIP));
  }
  EXPECT_EQ(aSaid.size(), 17U);
  for (const StringId iSentence : aSaid)
    EXPECT_NE(szPage.find("<td>" + std::string(LoadResString(iSentence)) + "</td>"), std::string::npos)
        << LoadResString(iSentence);
}

TEST_F(AlertMailsTest, AnEarlierRunsFailureHasNoTime) {
  aFacts.FirstFailure = 0;
  EXPECT_NE(Mail(aFailures[0], {}).find("First failure:   before Kestrova was last started\r\n"),
            std::string::npos);
}

}  // namespace
