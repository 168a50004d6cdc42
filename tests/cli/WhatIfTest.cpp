// log --what-if, against logs of sites whose outages are known.
#include <nlohmann/json.hpp>

#include "base/DateTime.h"
#include "cli/Cli.h"

namespace {

struct Outage {
  int lFrom, lPast;  // minutes
};

constexpr int lMinutes = 3 * 24 * 60;
// Long enough for a check of each log: one that no check meets moves the passes behind it, and nobody could
// know.
constexpr Outage aOutages[] = {{100, 290}, {611, 681}, {1203, 1275}, {2007, 2099}, {2500, 2900}};
const DateTime dtStart = JoinDateTime({.lYear = 2026, .lMonth = 11, .lDay = 2});

std::string Entry(int lMinute, const char* szSite, const char* szRest) {
  return FormatGeneral(AddMinutes(dtStart, lMinute)) + ",http://" + szSite + "," + szRest + "\r\n";
}

// What a monitor with those intervals logs of a good site and of one that has these outages; when it mails
// goes into aMails, as minutes.
std::string LogOf(int lInterval, int lWarning, std::vector<int>& aMails) {
  std::string szLog;
  int lFailures = 0;
  for (int lNow = 0, lNext = 0; lNow < lMinutes; lNow = lNext) {
    lNext = lNow + lInterval;
    szLog += "[START CHECK: AUTO - " + FormatGeneral(AddMinutes(dtStart, lNow)) + "]\r\n" +
             Entry(lNow, "good.invalid", "Site OK,0,,1");
    const bool bDown = std::ranges::any_of(
        aOutages, [&](const Outage& aOutage) { return aOutage.lFrom <= lNow && lNow < aOutage.lPast; });
    lFailures = bDown ? lFailures + 1 : 0;
    if (lFailures == 1) lNext = lNow + lWarning;
    if (lFailures == 2) aMails.push_back(lNow);
    szLog += Entry(lNow, "bad.invalid",
                   lFailures == 0   ? "Site OK,0,,1"
                   : lFailures == 1 ? "404 File Not Found,0,,4"
                   : lFailures == 2 ? "404 File Not Found,0,E-mail Notification Sent,2"
                                    : "404 File Not Found,0,,2");
    szLog += "[END CHECK]\r\n";
  }
  return szLog;
}

// As the answer tells a time.
std::string Iso(int lMinute) {
  const auto aTime = SplitDateTime(AddMinutes(dtStart, lMinute));
  const auto Two = [](std::int32_t lNumber) { return std::to_string(100 + lNumber).substr(1); };
  return "2026-11-" + Two(aTime.lDay) + " " + Two(aTime.lHour) + ":" + Two(aTime.lMinute) + ":00";
}

// Whether that mail lies in the range of one of the failures.
bool Told(const nlohmann::json& aFailures, int lMail) {
  return std::ranges::any_of(aFailures, [&](const nlohmann::json& aFailure) {
    const std::string szEarliest = aFailure["earliest"], szLatest = aFailure["latest"];
    return szEarliest <= Iso(lMail + 1) && Iso(lMail - 1) <= szLatest;
  });
}

}  // namespace

// The monitor with the other intervals is asked too: what it did lies in what was said of it.
TEST_F(Cli, WhatOtherIntervalsWouldHaveDoneHoldsTheTruth) {
  const struct {
    int lInterval, lWarning, lOtherInterval, lOtherWarning;
  } aCases[] = {{30, 5, 30, 5}, {30, 5, 5, 2}, {30, 5, 60, 5}, {10, 5, 30, 15}, {60, 30, 15, 5}};
  for (const auto& aCase : aCases) {
    const auto szAsked =
        testing::PrintToString(std::vector{aCase.lInterval, aCase.lOtherInterval, aCase.lOtherWarning});
    std::vector<int> aMails, aOtherMails;
    aHome.Write("D.kvl", LogOf(aCase.lInterval, aCase.lWarning, aMails));
    LogOf(aCase.lOtherInterval, aCase.lOtherWarning, aOtherMails);
    const Result aResult = Run({"log", aHome.Path("D.kvl"), "--json", "--what-if",
                                "Interval=" + std::to_string(aCase.lOtherInterval), "--what-if",
                                "Warning=" + std::to_string(aCase.lOtherWarning)});
    ASSERT_EQ(aResult.iCode, 0) << szAsked << aResult.szErrors;
    const auto aTold = nlohmann::json::parse(aResult.szOutput)["whatIf"];
    EXPECT_EQ(aTold["log"]["interval"], aCase.lInterval) << szAsked;
    EXPECT_EQ(aTold["log"]["warning"], aCase.lWarning) << szAsked;
    EXPECT_EQ(aTold["mailsInLog"], aMails.size()) << szAsked;
    EXPECT_LE(aTold["mails"][0], aOtherMails.size()) << szAsked;
    for (const int lMail : aOtherMails)
      EXPECT_TRUE(Told(aTold["failures"], lMail))
          << szAsked << FormatGeneral(AddMinutes(dtStart, lMail)) << aResult.szOutput;
    if (aCase.lInterval == aCase.lOtherInterval) {
      EXPECT_EQ(aTold["passes"][1], aTold["passesInLog"]) << szAsked;
      EXPECT_EQ(aTold["mails"][0], aMails.size()) << szAsked;
    }
  }
}

TEST_F(Cli, WhatIfRefusesWhatItCannotTry) {
  aHome.Write("D.kvl", "[START CHECK: AUTO - 11/21/2026 5:44:21 PM]\r\n[END CHECK]\r\n");
  for (const char* szWrong :
       {"Interval", "Interval=", "Interval=0", "Interval=5x", "Interval=99999999999", "TimeOut=5"})
    EXPECT_THAT(Run({"log", aHome.Path("D.kvl"), "--what-if", szWrong}), Refuses("cannot be tried"));
  EXPECT_THAT(Run({"log", aHome.Path("D.kvl"), "--what-if", "warning=5"}).szOutput,
              testing::HasSubstr("shows no schedule"));
}
