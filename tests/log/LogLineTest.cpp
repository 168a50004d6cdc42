// What the writer writes, the reader reads, whatever the fields hold. Names, pruning and every line of a pass
// are held against the simulated machine's book.
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
  const auto Check = [&](const std::string& szAddress, const ResultText& aResult, std::string_view szSite) {
    const auto szLine = Written({Clock::Now(), szAddress, aResult, "sent, twice", CheckLog::iClassFailure});
    const auto aLine = Read(szLine);
    ASSERT_EQ(aLine.iKind, LineKind::Entry) << szLine;
    const auto aFields = SplitLogLine(szLine, aLine);
    EXPECT_EQ(aFields.Address, szAddress);
    EXPECT_EQ(aFields.StatusText, aResult.Text());
    EXPECT_EQ(aFields.Comment, "sent, twice");
    EXPECT_EQ(SiteOfAddress(aFields.Address), szSite);
  };
  const auto szSite = szURL.substr(7);
  const ResultText aLate(IDS_RESULT_TIMED_OUT);
  for (const auto& aResult : ResultText::All()) {
    Check(szURL, aResult, szSite);
    Check(LogGrammar::Numbered(szURL, szIP), ResultText::Both(aResult, aLate), szSite);
    Check(LogGrammar::Numbered(szURL, szIP), ResultText::Both(aLate, aResult), szSite);
  }
  Check(szURL, ResultText(IDS_RESULT_ERROR, " 7 odd, text, 12 parts"), szSite);
  Check(LogGrammar::Numbered("http://a.com/,Site OK", szIP), ResultText::Both(aLate, aLate),
        "a.com/,Site OK");
  Check("Unknown Site: Site #3", ResultText(IDS_MISSING_ADDRESS), "Unknown Site: Site #3");
}

TEST(LogLine, AnEntryIsOneLineWhateverItHolds) {
  const StandingClock aClock(JoinDateTime({1999, 11, 15, 17, 44, 21}));
  EXPECT_EQ(Written({Clock::Now(), "a,b\r\n[END CHECK]\x1B", ResultText(IDS_RESULT_ERROR, "<BR>\xE4\n"),
                     "c\n", CheckLog::iClassFailure}),
            "11/15/1999 5:44:21 PM,a,b??[END CHECK]?,ERROR: <BR>\xE4?,0,c?,2");
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
