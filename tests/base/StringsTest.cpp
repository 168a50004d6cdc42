#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "base/Strings.h"

namespace {

const std::vector<std::pair<std::int32_t, std::string>> aTable = {
#define STRING(name, number, text) {number, text},
#include "resources/strings/all.def"
#undef STRING
};

TEST(StringsTest, FillsPlacesAndNotWhatValuesHold) {
  // "1 in %2 of" and the like in an address must not take the next value's place.
  EXPECT_EQ(FillResString(IDS_REGFILE_LINE, {"%2", "%1"}), "Line %2: %1");
  EXPECT_EQ(FillResString(IDS_REGFILE_LINE, {"7"}), "Line 7: %2");
  EXPECT_EQ(LoadResString(0), "");
  EXPECT_EQ(LoadResString(999999), "");
}

// Operators search their logs and filter their mail for these, slips included.
TEST(StringsTest, TextsThatLookWrongStayAsTheyAre) {
  std::string szWhole = "~";
  for (const auto& [lNumber, szText] : aTable)
    szWhole += szText + "~";
  const std::pair<std::string, std::string> aLists[] = {
      {"~",
       "Error ccured while trying to create registry for Address.~"
       "Error ccured while trying to retrieve Addresses.~"
       "Response Recevied; but server returned an unrecognized response code~"
       "3xx Redirectional Response Received~<SPAN class=\"Emphasis\">IP Check Performed</SPAN>~"
       "A minimum of 1 is required in the maximum log fiels field.~Do not enter the agent, \"http://\".~"
       "Are you sure you wish to delete the selected Site?~ (*.kvd)|*.kvd~\r\n\r\nError: ~"
       "Unrecognized Reponse Code~Unrecognized Response Code~501 Not implemented~404 File Not Found~"
       "504 Gateway Time-Out~Request Timed-Out~Unknown Site: Site #~Manually Stopped.~ERROR: ~"
       "Import New~Import Replace~ Timer Options ~ Manager Options ~ Log Options ~ Disk Conservation ~"
       " Internet Cookies ~Keep a maximum of ~You can only enter Integers in this field."},
      {"",  // parts of longer ones
       "taklen~suntax~receive an response~this response occurs the requested~HTTP Reponse Code 404~"
       "(Gateway Time-out)~is as follows: ~right-mouse click on~located in the system tray"}};
  for (const auto& [szEdge, szTexts] : aLists) {
    std::istringstream aTexts(szTexts);
    for (std::string szText; std::getline(aTexts, szText, '~');)
      EXPECT_NE(szWhole.find(szEdge + szText + szEdge), std::string::npos) << szText;
  }
}

}  // namespace
