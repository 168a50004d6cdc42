// The date of a mail is that of the clock which the rest of the program goes by, in the machine's time zone.
#include <gtest/gtest.h>

#include "platform/Environment.h"
#include "platform/SendForm3.h"
#include "platform/StandingClock.h"
#include "servers/SmtpServer.h"
#include "support/ReadMail.h"

TEST(MailDate, IsTheClocksWithTheOffsetOfThatDay) {
  const struct {
    const char* szZone;  // as POSIX writes it
    DateParts aMoment;
    const char* szDate;
  } aCases[] = {
      {"UTC0", {1999, 11, 15, 17, 44, 21}, "Mon, 15 Nov 1999 17:44:21 +0000"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", {2026, 1, 4, 0, 0, 0}, "Sun, 4 Jan 2026 00:00:00 +0100"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", {2026, 3, 29, 1, 59, 59}, "Sun, 29 Mar 2026 01:59:59 +0100"},
      {"CET-1CEST,M3.5.0,M10.5.0/3", {2026, 3, 29, 3, 0, 0}, "Sun, 29 Mar 2026 03:00:00 +0200"},
      {"NST3:30NDT,M3.2.0,M11.1.0", {2026, 7, 4, 23, 59, 59}, "Sat, 4 Jul 2026 23:59:59 -0230"},
  };
  const std::string szZoneBefore = Environment::Get("TZ");
  SmtpServer aServer;
  const std::string szTo = "ops@example.com";
  for (const auto& aCase : aCases) {
    Environment::Set("TZ", aCase.szZone);
    const StandingClock aClock(JoinDateTime(aCase.aMoment));
    MailCall aCall;
    ASSERT_EQ(
        SendForm3("", "127.0.0.1", aServer.Port(), szTo, "", szTo, szTo, "x", "x", "", 0, 0, "", "x", aCall),
        0);
    EXPECT_EQ(ReadMail(aServer.Mails().back().szText).Only("date"), aCase.szDate);
  }
  if (szZoneBefore.empty())
    Environment::Unset("TZ");
  else
    Environment::Set("TZ", szZoneBefore);
}
