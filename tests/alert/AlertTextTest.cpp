#include <random>

#include "alert/AlertFixture.h"
#include "alert/modBackUpEmailContent.h"
#include "platform/Shell.h"

namespace {

const std::vector<std::string> aNumberCodes = {"204", "301", "400", "401", "403", "404",  "405",
                                               "500", "501", "502", "503", "504", "8001", "8080"};
const std::vector<std::string> aClassCodes = {"1xx", "2xx", "3xx", "4xx", "5xx"};

using AlertTextTest = AlertFixture;

std::string Word(std::size_t lLength) {
  return std::string(lLength, 'a');
}

TEST_F(AlertTextTest, WrapsAt76AndLosesNothing) {
  const std::string aCases[][2] = {
      {"a b\r\n\r\nc\r\n", "a b\r\n\r\nc\r\n"},
      // A pair at 75, 76, 77 and far off.
      {Word(74) + "\r\nb c", Word(74) + "\r\nb c"},
      {"x " + Word(73) + "\r\nb", "x \r\n" + Word(73) + "\r\nb"},
      {Word(75) + "\r\nb", Word(75) + "\r\nb"},
      {Word(75) + " \r\nb", Word(75) + " \r\n\r\nb"},
      {"x " + Word(73) + " " + Word(5) + "\r\nb", "x " + Word(73) + " \r\n" + Word(5) + "\r\nb"},
      // 76 and 77 at the end.
      {"x " + Word(74), "x " + Word(74)},
      {"x " + Word(75), "x \r\n" + Word(75)},
      {Word(76) + " ", Word(76) + " \r\n"},
      {Word(75) + " b", Word(75) + " \r\nb"},
      // A long word stays whole; the last of several blanks is taken; a line feed alone is a character.
      {Word(100) + " b", Word(100) + " \r\nb"},
      {Word(80) + "\r\nb c", Word(80) + "\r\nb \r\nc"},
      {Word(30) + " " + Word(30) + " " + Word(30), Word(30) + " " + Word(30) + " \r\n" + Word(30)},
      {Word(40) + "\n" + Word(34) + " b", Word(40) + "\n" + Word(34) + " \r\nb"},
  };
  for (const auto& [szText, szWrapped] : aCases)
    EXPECT_EQ(Parse(szText), szWrapped);
  std::mt19937 aRandom(4711);
  const std::string aPieces[] = {" ", "\r\n", "\r", "\n", "\xC3\xA4"};
  for (int i = 0; i < 1000; ++i) {
    std::string szText;
    while (szText.size() < 400)
      szText += Word(aRandom() % 100) + aPieces[aRandom() % std::size(aPieces)];
    ASSERT_EQ(Text::Replace(Parse(szText), "\r\n", ""), Text::Replace(szText, "\r\n", ""));
  }
}

TEST_F(AlertTextTest, FillsPlaceholders) {
  const std::pair<const char*, const char*> aCases[] = {
      {"%MGRNAME%", "Ada"},
      {"%URL% %IP%", "http://www.example.org/shop http://192.0.2.7"},
      {"%TIMEOUT%", "30 sec."},
      {"%ERRORINFO% (%ERRORCODE%)", "Couldn't connect to server (7)"},
      {"%HEADER%", "HTTP/1.1 418 I'm a teapot\r\nServer: pot\r\n\r\n"},
      {"%ip%, %Ip%%iP%", "http://192.0.2.7, http://192.0.2.7http://192.0.2.7"},
      {"100 %, %NAME% %URL", "100 %, %NAME% %URL"},
      // What two replacements leave side by side is looked at again.
      {"%RESP%RESPONSECODE%ONSECODE%!", "!"},
  };
  for (const auto& [szText, szFilled] : aCases)
    EXPECT_EQ(Parse(szText), szFilled);
  aSettings.Name = "   ";
  EXPECT_EQ(Parse("%MGRNAME%"), "Kestrova manager");
  CheckedByIP(false);
  EXPECT_EQ(Parse("%URL% %IP%"), "http://www.example.org/shop http://192.0.2.7");
  aSite = {};
  EXPECT_EQ(Parse("%TIMEOUT% %IP%"), "0 sec. http://");
}

TEST_F(AlertTextTest, ValuesThatHoldPlaceholdersAndTextsThatGrow) {
  aSettings.Name = "%URL%";  // filled later, so filled
  aFacts.aByName.szURL = "http://x/%mgrname%/%Url%";
  EXPECT_EQ(Parse("%MGRNAME%"), "http://x/%mgrname%/%Url%");
  aFacts.aByName.szHeader = "X: %HEADER%%header%";
  EXPECT_EQ(Parse("%HEADER%|%HEADER%"), "X: %HEADER%%header%|X: %HEADER%%header%");
  aFacts.aByName.szHeader = "ER%x%HEAD";  // neighbours make a new placeholder of every replacement
  EXPECT_LE(Parse("%HEAD%HEADER%ER%ER%ER%").size(), 1024U);

  aSettings.Name = "Eve ";
  const auto szMany = Text::Replace(Word(10'003), "a", "%MGRNAME%");
  EXPECT_EQ(Text::Replace(Parse(szMany), "\r\n", "").size(), 10'000U * 4 + 3 * 9);
  aFacts.aByName.szHeader = Word(64 * 1024 - 1) + " ";
  const std::string szBounded = Text::Replace(Parse(Text::Replace(Word(40), "a", "%HEADER%")), "\r\n", "");
  EXPECT_TRUE(szBounded.size() > 900'000 && szBounded.size() <= 1024 * 1024) << szBounded.size();
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
    EXPECT_NE(szBody.find(aFacts.aByName.szURL), std::string::npos) << szCode;
    EXPECT_EQ(szBody.find(szCode) == std::string::npos, szCode.size() > 3) << szCode;
  }
  EXPECT_NE(Compose("999").find("as follows: \r\n\r\n" + aFacts.aByName.szHeader + "\r\n\r\nRegards,"),
            std::string::npos);
  for (const auto& szCode : aClassCodes)
    EXPECT_THROW(Compose(szCode), AlertAbandoned) << szCode;
}

TEST_F(AlertTextTest, FilesComeFirstAndAPostscriptFollowsAnIPCheck) {
  aHome.Write("Messages/Unknown.txt", "unknown %url%");
  EXPECT_EQ(Compose("0"), "unknown http://www.example.org/shop");
  aHome.Write("Messages/HTTP-3xx.txt", "");
  EXPECT_EQ(Compose("3xx"), "");
  aHome.Write("Messages/HTTP-500.txt/file", "a folder of that name is no template");
  EXPECT_EQ(Compose("500"), "unknown http://www.example.org/shop");

  aHome.Write("Messages/HTTP-404.txt", "gone: %URL%");
  const std::string szGone = "gone: http://www.example.org/shop";
  const std::string szChecked = szGone + "\r\n\r\nPS. An IP Check was performed on http://192.0.2.7,\r\n";
  CheckedByIP(true);
  EXPECT_EQ(Compose("404"), szChecked + "but the IP seemed to respond OK.");
  CheckedByIP(false);
  EXPECT_EQ(Compose("404"), szChecked + "and the IP returned an error as well.");
  aHome.Write("Messages/DT_NG.txt", "ng %IP%\r\n");
  aHome.Write("Messages/DT_OK.txt", "");
  EXPECT_EQ(Compose("404"), szGone + "\r\n\r\nng http://192.0.2.7\r\n");
  CheckedByIP(true);
  EXPECT_EQ(Compose("404"), szGone);
  // The operator's own file stands in for the one of its name, also when it is emptied.
  const auto WriteOwn = [this](const std::string& szName, const std::string& szText) {
    aHome.Write(Shell::UserDataFolder().substr(aHome.Folder().size() + 1) + "/Messages/" + szName, szText);
  };
  WriteOwn("Unknown.txt", "own");
  EXPECT_EQ(Compose("418"), "own");
  WriteOwn("DT_OK.txt", "own ok");
  EXPECT_EQ(Compose("404"), szGone + "\r\n\r\nown ok");
  WriteOwn("DT_OK.txt", "");
  EXPECT_EQ(Compose("404"), szGone);

  const std::string szMost(1024 * 1024, 'x');
  aHome.Write("Messages/HTTP-404.txt", szMost);
  EXPECT_EQ(Compose("404"), szMost);
  WriteOwn("DT_OK.txt", szMost + "x");
  EXPECT_THROW(Compose("404"), AlertAbandoned);
}

}  // namespace
