// What the writer writes, the reader reads, whatever the fields hold.
#include <gtest/gtest.h>

#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "log/LogLine.h"
#include "persistence/Settings.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "support/TestHome.h"

using namespace std::string_literals;

namespace {

constexpr const char* szTime = "1/5/2026 8:00:00 AM";

PlacedLine Read(std::string_view szLine) {
  PlacedLine aLine;
  ReadLogLine(szLine, aLine);
  return aLine;
}

// The entry as WriteLog puts it into a file.
std::string Written(const CheckLog::Entry& aEntry) {
  const TestHome aHome;
  Settings.LogPath = aHome.Folder();
  Settings.LogPeriod = 1;
  CheckLog::GetLogFileName(false);
  CheckLog::CurrentEntry = aEntry;
  CheckLog::WriteLog(false, false, false);
  const auto szLine = Files::ReadPiece(CheckLog::CurrentLogFile, 0, 10000).value_or("");
  EXPECT_TRUE(szLine.ends_with("\r\n"));
  return szLine.substr(0, szLine.size() - 2);
}

}  // namespace

TEST(LogLine, EveryResultIsReadBackBehindAnAddressFullOfCommas) {
  const StandingClock aClock(JoinDateTime({2026, 1, 5, 8, 0, 0}));
  const std::string szURL = "http://a.com/,1,2,Site,OK,,,?x=40,3,", szIP = "http://192.0.2.17";
  const auto Check = [&](const std::string& szAddress, const ResultText& aResult) {
    const auto szLine = Written({Clock::Now(), szAddress, aResult, "sent, twice", CheckLog::iClassFailure});
    const auto aLine = Read(szLine);
    ASSERT_EQ(aLine.iKind, LineKind::Entry) << szLine;
    const auto aFields = SplitLogLine(szLine, aLine);
    EXPECT_EQ(aFields.Address, szAddress);
    EXPECT_EQ(aFields.StatusText, aResult.Text());
    EXPECT_EQ(aFields.Comment, "sent, twice");
    EXPECT_EQ(SiteOfAddress(aFields.Address), szURL.substr(7));
  };
  for (const auto& aResult : ResultText::All()) {
    Check(szURL, aResult);
    const ResultText aTimedOut(IDS_RESULT_TIMED_OUT);
    Check(LogGrammar::Numbered(szURL, szIP), ResultText::Both(aResult, aTimedOut));
    Check(LogGrammar::Numbered(szURL, szIP), ResultText::Both(aTimedOut, aResult));
  }
  Check(szURL, ResultText(IDS_RESULT_ERROR, " 7 odd, text, 12 parts"));
}

TEST(LogLine, ReadsEntriesFromBothEnds) {
  const struct {
    std::string szAddress, szStatus, szTail, szComment, szSite;
  } aCases[] = {
      {"http://a.com", "Site OK", "1,,1", "", "a.com"},
      {"http://a.com/x,1,2?", "Site OK", "1,,1", "", "a.com/x,1,2?"},
      {"http://a.com", "404 File Not Found", "0,sent, twice,2", "sent, twice", "a.com"},
      {"http://a.com", "ERROR:  7 odd, text, 12 parts", "3,,4", "", "a.com"},
      {"(1) http://a.com/x,y<BR>(2) http://10.0.0.1", "(1) Request Timed-Out<BR>(2) Site OK",
       "5,<SPAN class=\"Emphasis\">IP</SPAN>,2", "<SPAN class=\"Emphasis\">IP</SPAN>", "a.com/x,y"},
      {"Unknown Site: Site #3", "Missing Site Address", "0,,2", "", "Unknown Site: Site #3"},
  };
  for (const auto& aCase : aCases) {
    const auto szLine =
        std::string(szTime) + "," + aCase.szAddress + "," + aCase.szStatus + "," + aCase.szTail;
    const auto aLine = Read(szLine);
    ASSERT_EQ(aLine.iKind, LineKind::Entry) << szLine;
    const auto aFields = SplitLogLine(szLine, aLine);
    EXPECT_EQ(aFields.Address, aCase.szAddress);
    EXPECT_EQ(aFields.StatusText, aCase.szStatus);
    EXPECT_EQ(aFields.Comment, aCase.szComment);
    EXPECT_EQ(SiteOfAddress(aFields.Address), aCase.szSite);
  }
  EXPECT_FALSE(Read("12/30/1899 12:00:00 AM,http://10.0.0.1,Site OK,7,,1").bTimeKnown);
}

TEST(LogLine, KeepsWhatIsNoLineOfOursAsUnread) {
  const std::string szGood = szTime + ",http://a.com,Site OK,1,"s;
  const std::string aLines[] = {",,,,,",
                                "[START CHECK: AUTO - 13/45/2026 9:00:00 AM]",
                                szGood + ",7",
                                szTime + ",http://a.com,Site OK,60,,1"s,
                                szTime + ",http://a.co1/5/2026 8:00:02 AM,http://b.com,Site OK,1,,1"s,
                                std::string(10, '\0'),
                                std::string(100'000, ',')};
  for (const auto& szLine : aLines)
    EXPECT_EQ(Read(szLine).iKind, LineKind::Unread) << szLine.substr(0, 90);
}
