#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <regex>

#include "alert/AlertText.h"
#include "alert/modBackUpEmailContent.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Text.h"
#include "support/Environment.h"
#include "support/TestHome.h"

namespace {

const std::vector<std::string> aNumberCodes = {"204", "301", "400", "401", "403", "404",  "405",
                                               "500", "501", "502", "503", "504", "8001", "8080"};
const std::vector<std::string> aClassCodes = {"1xx", "2xx", "3xx", "4xx", "5xx"};
constexpr std::int32_t lSite = 2;

class AlertTextTest : public testing::Test {
 protected:
  AlertTextTest() {
    Settings = {};
    Settings.Name = "Ada";
    aSites.assign(3, {});
    aSites[lSite] = {.IP = "192.0.2.7",
                     .URL = "www.example.org/shop",
                     .Status = 2,
                     .Enabled = 1,
                     .TimeOut = 30,
                     .Comments = ""};
    lSiteCount = 2;
    aFacts.szRequestURL = "http://www.example.org/shop";
    aFacts.szResponseInfo = "Couldn't connect to server";
    aFacts.lResponseCode = 7;
    aFacts.szHeader = "HTTP/1.1 418 I'm a teapot\r\nServer: pot\r\n\r\n";
  }
  ~AlertTextTest() override {
    Settings = {};
    aSites.clear();
    lSiteCount = 0;
  }

  std::string Parse(const std::string& szText) const {
    return AlertText::ParseEmailContent(szText, lSite, aFacts);
  }
  std::string Compose(const std::string& szCode) const {
    return AlertText::ComposeBody(szCode, lSite, aFacts);
  }
  void CheckedByIP(bool bAnswered) {
    aFacts.bIPCheckPerformed = true;
    aFacts.bIPAnswered = bAnswered;
    aFacts.szRequestURL = "http://192.0.2.7";
  }

  TestHome aHome;
  CheckFacts aFacts;
};

std::string Word(std::size_t lLength, char chLetter = 'a') {
  return std::string(lLength, chLetter);
}

TEST_F(AlertTextTest, WrapsAt76) {
  const struct {
    const char* szWhat;
    std::string szText, szWrapped;
  } aCases[] = {
      {"nothing", "", ""},
      {"no line end is added", "short", "short"},
      {"short lines stay, an empty one too", "a b\r\n\r\nc\r\n", "a b\r\n\r\nc\r\n"},
      {"74 and a pair at 75", Word(74) + "\r\nb c", Word(74) + "\r\nb c"},
      {"75 and a pair at 76 is broken at its blank", "x " + Word(73) + "\r\nb",
       "x \r\n" + Word(73) + "\r\nb"},
      {"75 and a pair at 76, no blank anywhere", Word(75) + "\r\nb", Word(75) + "\r\nb"},
      {"75, a blank at 76, a pair at 77", Word(75) + " \r\nb", Word(75) + " \r\n\r\nb"},
      {"75, a blank at 76, a pair far off", "x " + Word(73) + " " + Word(5) + "\r\nb",
       "x " + Word(73) + " \r\n" + Word(5) + "\r\nb"},
      {"76 at the end", "x " + Word(74), "x " + Word(74)},
      {"77 at the end", "x " + Word(75), "x \r\n" + Word(75)},
      {"77 at the end, a blank at 77", Word(76) + " ", Word(76) + " \r\n"},
      {"77 at the end, a blank at 76, no pair", Word(75) + " b", Word(75) + " \r\nb"},
      {"a long word stays whole", Word(100), Word(100)},
      {"a long word and a later blank", Word(100) + " b", Word(100) + " \r\nb"},
      {"the first blank lies beyond line ends", Word(80) + "\r\nb c", Word(80) + "\r\nb \r\nc"},
      {"the last of several blanks", Word(30) + " " + Word(30) + " " + Word(30),
       Word(30) + " " + Word(30) + " \r\n" + Word(30)},
      {"a line feed alone is a character", Word(40) + "\n" + Word(34) + " b",
       Word(40) + "\n" + Word(34) + " \r\nb"},
  };
  for (const auto& aCase : aCases)
    EXPECT_EQ(Parse(aCase.szText), aCase.szWrapped) << aCase.szWhat;
}

// The wrapping said once more, step by step as one would do it on paper; positions count from 1.
std::string WrapOnPaper(std::string szRest) {
  std::string szDone;
  while (true) {
    const std::size_t lPair = szRest.find("\r\n") + 1;  // 0: none
    std::size_t lTake = 0;
    if (lPair >= 1 && lPair <= 75) {
      szDone += szRest.substr(0, lPair + 1);
      szRest.erase(0, lPair + 1);
      continue;
    }
    if (lPair >= 76 && szRest.substr(75, 1) == " ") {
      lTake = 76;
    } else if (lPair == 0 && szRest.size() < 77) {
      return szDone + szRest;
    } else {
      for (std::size_t lAt = 1; lAt <= 76 && lAt <= szRest.size(); ++lAt)
        if (szRest[lAt - 1] == ' ') lTake = lAt;
      if (lTake == 0) lTake = szRest.find(' ') + 1;
      if (lTake == 0) return szDone + szRest;
    }
    szDone += szRest.substr(0, lTake) + "\r\n";
    szRest.erase(0, lTake);
  }
}

TEST_F(AlertTextTest, WrapsAnyTextAsOnPaperAndLosesNothing) {
  std::mt19937 aRandom(4711);
  const std::string aPieces[] = {" ", "\r\n", "\r", "\n", "\xC3\xA4"};
  for (int i = 0; i < 5000; ++i) {
    // Words of about the lengths where the rules meet, more or less often parted.
    const auto lLongest = 1 + aRandom() % 120, lParted = 1 + aRandom() % 4;
    const std::size_t lLength = aRandom() % 600;
    std::string szText;
    while (szText.size() < lLength) {
      szText += Word(aRandom() % lLongest);
      if (aRandom() % lParted == 0) szText += aPieces[aRandom() % std::size(aPieces)];
    }
    const std::string szWrapped = Parse(szText);
    ASSERT_EQ(szWrapped, WrapOnPaper(szText)) << testing::PrintToString(szText);
    ASSERT_EQ(Text::Replace(szWrapped, "\r\n", ""), Text::Replace(szText, "\r\n", ""));
  }
}

TEST_F(AlertTextTest, FillsPlaceholders) {
  const struct {
    const char *szText, *szFilled;
  } aCases[] = {
      {"%MGRNAME%", "Ada"},
      {"%URL% %IP%", "http://www.example.org/shop http://192.0.2.7"},
      {"%TIMEOUT%", "30 sec."},
      {"%ERRORINFO% (%ERRORCODE%)", "Couldn't connect to server (7)"},
      {"(%RESPONSECODE%)", "()"},
      {"%HEADER%", "HTTP/1.1 418 I'm a teapot\r\nServer: pot\r\n\r\n"},
      {"%ip%, %Ip%%iP%", "http://192.0.2.7, http://192.0.2.7http://192.0.2.7"},
      {"100 %, %NAME% %URL", "100 %, %NAME% %URL"},
      // What two replacements leave side by side is looked at again.
      {"%RESP%RESPONSECODE%ONSECODE%!", "!"},
  };
  for (const auto& aCase : aCases)
    EXPECT_EQ(Parse(aCase.szText), aCase.szFilled);

  for (const char* szBlank : {"", "   "}) {
    Settings.Name = szBlank;
    EXPECT_EQ(Parse("%MGRNAME%"), "Kestrova manager");
  }
  Settings.Name = " Ada ";
  EXPECT_EQ(Parse("%MGRNAME%!"), " Ada !");
  CheckedByIP(false);
  EXPECT_EQ(Parse("%URL% %IP%"), "http://www.example.org/shop http://192.0.2.7");
  EXPECT_EQ(AlertText::ParseEmailContent("%TIMEOUT% %IP%", 77, aFacts), "0 sec. http://");
}

TEST_F(AlertTextTest, ValuesThatHoldPlaceholders) {
  Settings.Name = "%URL%";  // filled later, so filled
  aFacts.szRequestURL = "http://x/%mgrname%/%Url%";
  EXPECT_EQ(Parse("%MGRNAME%"), "http://x/%mgrname%/%Url%");

  aFacts.szHeader = "X: %HEADER%%header%";
  EXPECT_EQ(Parse("%HEADER%|%HEADER%"), "X: %HEADER%%header%|X: %HEADER%%header%");

  std::string szHostile;
  while (szHostile.size() < 64 * 1024)
    szHostile += "%Header%";
  aFacts.szHeader = szHostile;
  EXPECT_EQ(Parse("%HEADER%"), szHostile);
}

TEST_F(AlertTextTest, BoundsWhatATextGrowsTo) {
  Settings.Name = "Eve ";
  std::string szMany;
  for (int i = 0; i < 10'003; ++i)
    szMany += "%MGRNAME%";
  const std::string szFilled = Text::Replace(Parse(szMany), "\r\n", "");
  EXPECT_EQ(szFilled.size(), 10'000 * 4 + 3 * 9);

  aFacts.szHeader = Word(64 * 1024 - 1) + " ";
  std::string szBig;
  for (int i = 0; i < 40; ++i)
    szBig += "%HEADER%";
  const std::string szBounded = Text::Replace(Parse(szBig), "\r\n", "");
  EXPECT_GT(szBounded.size(), 900'000U);
  EXPECT_LE(szBounded.size(), 1024 * 1024U);

  // Neighbours that make a new placeholder of every replacement.
  aFacts.szHeader = "ER%x%HEAD";
  EXPECT_LE(Parse("%HEAD%HEADER%ER%ER%ER%").size(), 1024U);
}

TEST_F(AlertTextTest, BuiltInTextsWithoutMessagesFolder) {
  EXPECT_EQ(Compose("8001"),
            "Dear Ada, (BackUp Check)\r\n\r\n"
            "While checking http://www.example.org/shop, the URL timed out (within 30 \r\n"
            "sec.) before a response was obtained from the server. The server could be \r\n"
            "slow. Please check the server where the URL resides, and make sure that the \r\n"
            "server is functioning.\r\n\r\nRegards,\r\nKestrova.\r\n");
  for (const auto& szCode : aNumberCodes) {
    const std::string szBody = Compose(szCode);
    EXPECT_NE(szBody.find(aFacts.szRequestURL), std::string::npos) << szCode;
    EXPECT_EQ(szBody.find(szCode) == std::string::npos, szCode.size() > 3) << szCode;
    EXPECT_EQ(szBody.find("teapot"), std::string::npos) << szCode;
  }
  for (const char* szCode : {"0", "999"}) {
    const std::string szBody = Compose(szCode);
    EXPECT_NE(szBody.find("unrecognizable Reponse Code"), std::string::npos) << szCode;
    EXPECT_NE(szBody.find("received is as follows: \r\n\r\n" + aFacts.szHeader + "\r\n\r\nRegards,"),
              std::string::npos)
        << szBody;
  }
  for (const auto& szCode : aClassCodes)
    EXPECT_THROW(Compose(szCode), AlertAbandoned) << szCode;
}

TEST_F(AlertTextTest, PostscriptAfterAnIPCheck) {
  aHome.Write("Messages/HTTP-404.txt", "gone: %URL%");
  CheckedByIP(true);
  EXPECT_EQ(Compose("404"),
            "gone: http://www.example.org/shop\r\n\r\n"
            "PS. An IP Check was performed on http://192.0.2.7,\r\nbut the IP seemed to respond OK.");
  CheckedByIP(false);
  EXPECT_EQ(Compose("404"),
            "gone: http://www.example.org/shop\r\n\r\n"
            "PS. An IP Check was performed on http://192.0.2.7,\r\nand the IP returned an error as well.");
  aHome.Write("Messages/DT_NG.txt", "ng %IP%\r\n");
  aHome.Write("Messages/DT_OK.txt", "");
  EXPECT_EQ(Compose("404"), "gone: http://www.example.org/shop\r\n\r\nng http://192.0.2.7\r\n");
  CheckedByIP(true);
  EXPECT_EQ(Compose("404"), "gone: http://www.example.org/shop");
}

TEST_F(AlertTextTest, FilesComeFirstAndAreReadEachTime) {
  aHome.Write("Messages/Unknown.txt", "unknown %url%");
  for (const char* szCode : {"404", "3xx", "0"})
    EXPECT_EQ(Compose(szCode), "unknown http://www.example.org/shop") << szCode;
  aHome.Write("Messages/HTTP-3xx.txt", "one\ntwo");
  EXPECT_EQ(Compose("3xx"), "one\ntwo");
  aHome.Write("Messages/HTTP-3xx.txt", "");
  EXPECT_EQ(Compose("3xx"), "");
  aHome.Write("Messages/HTTP-404.txt/file", "a folder of that name is no template");
  EXPECT_EQ(Compose("404"), "unknown http://www.example.org/shop");
}

TEST_F(AlertTextTest, AnUnreadableTemplateAbandonsTheAlert) {
  const std::string szMost(1024 * 1024, 'x');
  aHome.Write("Messages/HTTP-404.txt", szMost);
  EXPECT_EQ(Compose("404"), szMost);
  aHome.Write("Messages/HTTP-404.txt", szMost + "x");
  EXPECT_THROW(Compose("404"), AlertAbandoned);
  aHome.Write("Messages/DT_OK.txt", szMost + "x");
  CheckedByIP(true);
  EXPECT_THROW(Compose("500"), AlertAbandoned);
}

TEST_F(AlertTextTest, TheShippedTemplatesReadWell) {
  Environment::Unset("KESTROVA_HOME");  // they lie beside the test program as beside the others
  auto aCodes = aNumberCodes;
  aCodes.insert(aCodes.end(), aClassCodes.begin(), aClassCodes.end());
  aCodes.push_back("0");
  aFacts.szHeader = "HTTP/1.1 418 I'm a teapot\r\n\r\n";
  for (const bool bAnswered : {false, true})
    for (const auto& szCode : aCodes) {
      CheckedByIP(bAnswered);
      const std::string szBody = Compose(szCode);
      EXPECT_EQ(szBody.find("BackUp Check"), std::string::npos) << szCode << " has no template";
      EXPECT_NE(szBody.find("PS. To find the cause"), std::string::npos) << szCode;
      EXPECT_TRUE(szBody.starts_with("Dear Ada,\r\n\r\n"));
      EXPECT_NE(szBody.find("http://www.example.org/shop\r\n"), std::string::npos) << szCode;
      EXPECT_FALSE(std::regex_search(szBody, std::regex("%[A-Za-z]+%"))) << szBody;
      EXPECT_TRUE(std::ranges::all_of(
          szBody, [](char ch) { return ch == '\r' || ch == '\n' || (ch >= ' ' && ch <= '~'); }));
      EXPECT_FALSE(std::regex_search(szBody, std::regex("[^\r]\n"))) << szCode << " has a bare line feed";
      // A line broken by the wrapping would end in a blank; longer ones break the column.
      EXPECT_FALSE(std::regex_search(szBody, std::regex(" \r\n|[^\r\n]{77}"))) << szBody;
    }
}

}  // namespace
