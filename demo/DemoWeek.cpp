#include "demo/DemoWeek.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <stdexcept>

#include "check/CheckEngine.h"
#include "check/QuietView.h"
#include "check/Schedule.h"
#include "demo/DemoSites.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "persistence/modBasic.h"
#include "platform/Environment.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/StandingClock.h"

namespace {

// Names end in what RFC 2606 keeps free and IP addresses are of RFC 5737: all requests go to one server on
// this machine, as their proxy, which plays every site.
constexpr char szShop[] = "shop.example.com/basket", szWiki[] = "intranet.example.com/wiki",
               szHealth[] = "api.example.com/health?full=1,2", szReports[] = "reports.example.com/daily",
               szFeed[] = "partner.example.net/feed", szNameless[] = "documents.kestrova.invalid";
constexpr std::int32_t lTimeOut = 20, lPatientTimeOut = 1800;  // seconds
SiteRecord Listed(const std::string& szURL, std::int32_t lSeconds = lTimeOut, const std::string& szIP = "") {
  return {szIP, szURL, SiteStatus::iNotKnown, SiteRecord::iEnabled, lSeconds, ""};
}
const SiteRecord aList[] = {Listed(szShop),
                            Listed(szWiki),
                            Listed(szHealth),
                            Listed(szNameless, lTimeOut, "192.0.2.17"),
                            Listed(szReports, lPatientTimeOut),
                            Listed(szFeed, lPatientTimeOut),
                            Listed("www.example.com")};

constexpr double Hour(int lDay, int lHour, int lMinute) {
  return lDay * 24 + lHour + lMinute / 60.0;
}

// What a site does instead of answering well, between two hours of the week; where they are the same, in one
// pass only, the next one. lSeconds: how long the answer takes.
struct Trouble {
  std::string szSite;
  double dFrom, dTo;
  Fault::Answer aAnswer;
  double dSeconds = 0.4;
};

std::vector<Trouble> Troubles() {
  const Fault::Answer aSilent{Fault::Hang()};
  std::vector<Trouble> aAll{
      {szShop, Hour(2, 9, 40), Hour(2, 14, 15), Fault::Status("500 Internal Server Error"), 3},
      {szHealth, Hour(0, 11, 0), Hour(0, 11, 0), aSilent},
      {szHealth, Hour(1, 16, 20), Hour(1, 16, 20), aSilent},
      {szHealth, Hour(3, 10, 0), Hour(3, 12, 0), Fault::Ok(), 8},
      {szHealth, Hour(3, 13, 10), Hour(3, 13, 10), aSilent},
      {szHealth, Hour(3, 15, 40), Hour(3, 16, 30), aSilent},
      {szHealth, Hour(5, 20, 5), Hour(5, 20, 5), aSilent},
      {szFeed, Hour(4, 18, 40), Hour(5, 13, 30), {Fault::Reset()}}};
  for (int lDay = 0; lDay < 7; ++lDay) {  // a backup, and a table that grows from day to day
    aAll.push_back({szWiki, Hour(lDay, 2, 0), Hour(lDay, 2, 35), Fault::Status("503 Service Unavailable")});
    aAll.push_back({szReports, Hour(lDay, 0, 0), Hour(lDay + 1, 0, 0), Fault::Ok(), 1 + 1.3 * lDay});
  }
  // Both ask patience of who asks them, and one afternoon they need it: the pass is longer than its interval.
  aAll.push_back({szReports, Hour(5, 15, 0), Hour(5, 15, 0), Fault::Ok(), 1790});
  aAll.push_back({szFeed, Hour(5, 15, 0), Hour(5, 15, 0), Fault::Ok(), 420});
  return aAll;
}

constexpr double dByHand[] = {Hour(2, 10, 20), Hour(2, 14, 20), Hour(3, 9, 0)};
constexpr double dSwitchedOff = Hour(4, 21, 10), dSwitchedOn = Hour(5, 9, 5);
constexpr double dMailDown = Hour(4, 18, 0), dMailUp = Hour(4, 21, 0);
constexpr double dNameLost = Hour(6, 17, 20);
constexpr double dEnd = Hour(6, 23, 45);

class Week : QuietView {
 public:
  Week(const std::string& szFolder, DateTime dtTheMonday)
      : szInside(szFolder + Files::chSeparator), dtMonday(dtTheMonday), aClock(dtTheMonday) {}

  std::size_t Play() {
    Prepare();
    SwitchOn();
    for (bool bSlept = false;;) {
      // The timer ticks once a second; what fell due in a pass comes at the first tick behind it.
      const double dDue =
          static_cast<double>(SecondsBetween(dtMonday, std::max(NextCheckTime, Clock::Now())) + 1) / 3600;
      if (!bSlept && dDue > dSwitchedOff) {
        bSlept = true;
        GoTo(dSwitchedOn);
        SwitchOn();
      } else if (lByHand < std::size(dByHand) && dByHand[lByHand] < dDue) {
        Pass(dByHand[lByHand++], &CheckEngine::mF_StartCheck_Click);
      } else if (dDue < dEnd) {
        Pass(dDue, &CheckEngine::TimerAutoCheck_Timer);
      } else {
        break;
      }
    }
    DemoSites::KeepMails(aMailServer, szInside + "mails", 0);
    Registry::RemoveOwnStore();
    for (const char* szName : {"http_proxy", "no_proxy"})
      Environment::Unset(szName);
    return lPasses;
  }

 private:
  void Prepare() {
    for (const char* szName : {"mails", "Logs"})
      if (modBasic::MakeFolderPath(szInside + szName) != 0)
        throw std::runtime_error("cannot make the folder " + szInside + szName);
    Environment::Set("KESTROVA_REGISTRY", szInside + "registry.db");
    Environment::Set("http_proxy", "http://" + aServer.Address());
    Settings = {};
    LoadSettings();
    auto aNew = Settings;
    aNew.Interval = 30;
    aNew.Warning = 5;
    aNew.Email = "manager@kestrova.invalid";
    aNew.Name = "Demo Manager";
    aNew.SMTP = "127.0.0.1";
    aNew.SMTPPort = aMailServer.Port();
    aNew.LogPath = szInside + "Logs";
    aNew.LogPeriod = 1;
    SaveSettings(aNew);
    for (std::int32_t i = 0; const auto& aSite : aList)
      modAddress::WriteSiteRecord(aSite, ++i);
    modAddress::RebuildSiteIndex();
  }

  // As the monitor starts: nothing is remembered but the list, and the first pass comes soon.
  void SwitchOn() {
    LoadSettings();
    if (modAddress::LoadSites(false, false) != 0) throw std::runtime_error("cannot load the list");
    pEngine = std::make_unique<CheckEngine>(static_cast<CheckView&>(*this));
    Schedule::SetNextCheck(WarningMinutes());
  }

  void Pass(double dNow, void (CheckEngine::*Start)()) {
    GoTo(dNow);
    aPresent.clear();
    for (const auto& aSite : aList)
      aServer.Serve("http://" + aSite.URL, Fault::Ok());
    for (const auto& aTrouble : aTroubles)
      if (aTrouble.dFrom <= dNow &&
          (aTrouble.dTo > dNow || (aTrouble.dTo == aTrouble.dFrom && aTrouble.dFrom > dLast))) {
        aPresent[aTrouble.szSite] = &aTrouble;
        aServer.Serve("http://" + aTrouble.szSite, aTrouble.aAnswer);
      }
    Environment::Set("no_proxy", dNow < dNameLost ? "127.0.0.1" : szNameless);  // which no one can resolve
    const bool bMail = dNow < dMailDown || dNow >= dMailUp;
    aMailServer.At(SmtpServer::Stage::Recipient, Smtp::Say(bMail ? "250 ok" : "451 4.3.0 try again later"));
    (*pEngine.*Start)();
    dLast = dNow;
    ++lPasses;
  }

  void GoTo(double dHours) {
    aClock.Advance(dHours * 3600 - static_cast<double>(SecondsBetween(dtMonday, Clock::Now())));
  }

  // A request has gone out: the clock goes on by what the answer takes, or until the time-out.
  void ShowProgressSite(const std::string& /*szText*/) override {
    const auto aFound = aPresent.find(modAddress::Site(pEngine->CheckIndex()).URL);
    const auto* pTrouble = aFound == aPresent.end() ? nullptr : aFound->second;
    bSilent = pTrouble && pTrouble->aAnswer.front().iKind == Fault::Step::Kind::Hang;
    aClock.Advance(pTrouble ? pTrouble->dSeconds : 0.4);
    lPolls = 0;
  }
  void PumpEvents() override {
    // A name server that hangs must not hold up the week for more than half a second.
    constexpr std::int32_t lPatience = 50;
    if (bSilent || (Clock::Now() >= dtMonday + dNameLost / 24 && ++lPolls > lPatience)) aClock.Advance(1);
    pEngine->TimerMain_Timer();
  }

  const std::string szInside;
  const DateTime dtMonday;
  StandingClock aClock;
  FaultServer aServer;
  SmtpServer aMailServer;
  std::unique_ptr<CheckEngine> pEngine;
  const std::vector<Trouble> aTroubles = Troubles();
  std::map<std::string, const Trouble*> aPresent;  // by site
  bool bSilent = false;
  std::int32_t lPolls = 0;
  double dLast = 0;  // hour of the last pass
  std::size_t lPasses = 0, lByHand = 0;
};

}  // namespace

DateTime DemoWeek::LastMonday() {
  const auto dtToday = std::floor(Clock::Now());
  return AddDays(dtToday, -7 - (SplitDateTime(dtToday).lWeekday + 5) % 7);
}

std::size_t DemoWeek::Play(const std::string& szFolder, DateTime dtMonday) {
  return Week(szFolder, dtMonday).Play();
}
