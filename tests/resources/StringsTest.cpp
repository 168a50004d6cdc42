#include <gtest/gtest.h>

#include <algorithm>
#include <set>
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

// Operators search their logs and filter their mail for these, slips included.
TEST(StringsTest, TextsThatLookWrongStayAsTheyAre) {
  const char* const aTexts[] = {
      "Error ccured while trying to create registry for Address.",
      "Error ccured while trying to retrieve Addresses.",
      "\r\n\r\nError: ",
      "Unrecognized Reponse Code",
      "Unrecognized Response Code",
      "Response Recevied; but server returned an unrecognized response code",
      "501 Not implemented",
      "404 File Not Found",
      "504 Gateway Time-Out",
      "Request Timed-Out",
      "3xx Redirectional Response Received",
      "Checking is not in progress.",
      "Site checking in progress",
      "Unknown Site: Site #",
      "Manually Stopped.",
      "ERROR: ",
      "<SPAN class=\"Emphasis\">IP Check Performed</SPAN>",
      "&New Address",
      "I&mport List",
      "&Export List",
      "St&art Check",
      "E&xit",
      "E&dit Address",
      "Delete Address",
      "&Options...",
      "&Open Log",
      "&View Current Log",
      "&About Kestrova...",
      "Interactive &Tour",
      "&Help Topics",
      "Next Check: ",
      "Import New",
      "Import Replace",
      "A minimum of 1 is required in the maximum log fiels field.",
      " Timer Options ",
      " Manager Options ",
      " Log Options ",
      " Disk Conservation ",
      " Internet Cookies ",
      "Keep a maximum of ",
      "Accept the Cookies.",
      "Do not accept the cookies.",
      "Do not enter the agent, \"http://\".",
      "Are you sure you wish to delete the selected Site?",
      " (*.kvd)|*.kvd",
  };
  for (const char* szText : aTexts) {
    EXPECT_TRUE(std::any_of(aTable.begin(), aTable.end(), [&](const TableEntry& aEntry) {
      return aEntry.szText == szText;
    })) << szText;
  }
}

TEST(StringsTest, SlipsInsideLongTextsStay) {
  for (const char* szPart : {"taklen", "suntax", "receive an response", "this response occurs the requested",
                             "HTTP Reponse Code 404", "(Gateway Time-out)",
                             "is as follows: ", "right-mouse click on", "located in the system tray"}) {
    EXPECT_TRUE(std::any_of(aTable.begin(), aTable.end(), [&](const TableEntry& aEntry) {
      return aEntry.szText.find(szPart) != std::string::npos;
    })) << szPart;
  }
}

}  // namespace
