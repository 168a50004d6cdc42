#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "resources/Strings.h"

namespace {

struct TableEntry {
  std::int32_t lNumber;
  std::string szText;
};

const std::vector<TableEntry> aTable = {
#define STRING(name, number, text) {number, text},
#include "resources/strings/all.def"
#undef STRING
};

TEST(StringsTest, EveryNumberHasOneText) {
  std::set<std::int32_t> aNumbers;
  for (const auto& aEntry : aTable) {
    EXPECT_TRUE(aNumbers.insert(aEntry.lNumber).second) << aEntry.lNumber;
    EXPECT_FALSE(aEntry.szText.empty()) << aEntry.lNumber;
    EXPECT_EQ(LoadResString(aEntry.lNumber), aEntry.szText);
  }
  EXPECT_EQ(LoadResString(0), "");
}

bool Holds(const std::function<bool(const std::string&)>& aIsIt) {
  return std::ranges::any_of(aTable, [&](const TableEntry& aEntry) { return aIsIt(aEntry.szText); });
}

// Operators search their logs and filter their mail for these, slips included.
TEST(StringsTest, TextsThatLookWrongStayAsTheyAre) {
  std::vector<std::string> aTexts = {"Error ccured while trying to create registry for Address.",
                                     "Error ccured while trying to retrieve Addresses.",
                                     "Response Recevied; but server returned an unrecognized response code",
                                     "3xx Redirectional Response Received",
                                     "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>",
                                     "A minimum of 1 is required in the maximum log fiels field.",
                                     "Do not enter the agent, \"http://\".",
                                     "Are you sure you wish to delete the selected Site?",
                                     " (*.kvd)|*.kvd"};
  std::istringstream aShort(
      "\r\n\r\nError: |Unrecognized Reponse Code|Unrecognized Response Code|501 Not implemented|"
      "404 File Not Found|504 Gateway Time-Out|Request Timed-Out|Checking is not in progress.|"
      "Site checking in progress|Unknown Site: Site #|Manually Stopped.|ERROR: |&New Address|"
      "I&mport List|&Export List|St&art Check|E&xit|E&dit Address|Delete Address|&Options...|&Open Log|"
      "&View Current Log|&About Kestrova...|Interactive &Tour|&Help Topics|Next Check: |Import New|"
      "Import Replace| Timer Options | Manager Options | Log Options | Disk Conservation |"
      " Internet Cookies |Keep a maximum of |Accept the Cookies.|Do not accept the cookies.|");
  for (std::string szText; std::getline(aShort, szText, '|');)
    aTexts.push_back(szText);
  for (const auto& szText : aTexts)
    EXPECT_TRUE(Holds([&](const std::string& szEntry) { return szEntry == szText; })) << szText;
  for (const char* szPart : {"taklen", "suntax", "receive an response", "this response occurs the requested",
                             "HTTP Reponse Code 404", "(Gateway Time-out)",
                             "is as follows: ", "right-mouse click on", "located in the system tray"})
    EXPECT_TRUE(Holds([&](const std::string& szEntry) { return szEntry.find(szPart) != std::string::npos; }))
        << szPart;
}

}  // namespace
