#include "support/demo/DemoWeek.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <stdexcept>

#include "check/CheckEngine.h"
#include "check/Schedule.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "persistence/modBasic.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "support/Environment.h"
#include "support/FaultServer.h"
#include "support/RecordingView.h"
#include "support/SmtpServer.h"

namespace {

constexpr std::int32_t lTimeOut = 20;   // seconds
constexpr double dUsualSeconds = 0.4;   // that an answer takes
constexpr std::int32_t lPatience = 50;  // polls, half a second, after which the clock moves on by itself
constexpr char szNameless[] = "documents.kestrova.invalid";  // RFC 2606: never resolves

// The proxy is the server that plays all sites; RFC 5737 gives the IP addresses.
const SiteRecord aList[] = {{"", "www.example.com", 4, 1, lTimeOut, ""},
                            {"", "shop.example.com/basket", 4, 1, lTimeOut, ""},
                            {"", "intranet.example.com/wiki", 4, 1, lTimeOut, ""},
                            {"", "api.example.com/health?full=1,2", 4, 1, lTimeOut, ""},
                            {"192.0.2.17", szNameless, 4, 1, lTimeOut, ""},
                            {"", "partner.example.net/feed", 4, 1, lTimeOut, ""}};

constexpr double Hour(int lDay, int lHour, int lMinute) {
  return lDay * 24 + lHour + lMinute / 60.0;
}

// What a site does instead of answering well, between two hours of the week; hours that are alike: in one
// check only, the next one.
struct Trouble {
  const char* szSite;
  double dFrom, dTo;
  Fault::Answer aAnswer;
  std::int32_t lSeconds = 0;  // that the answer takes
};

std::vector<Trouble> Troubles() {
  const auto aBackup = Fault::Status("503 Service Unavailable");
  const Fault::Answer aHang{Fault::Hang()};
  std::vector<Trouble> aAll{
      {aList[1].URL.c_str(), Hour(2, 9, 40), Hour(2, 14, 15), Fault::Status("500 Internal Server Error"), 3},
      {aList[3].URL.c_str(), Hour(0, 11, 0), Hour(0, 11, 0), aHang},
      {aList[3].URL.c_str(), Hour(1, 16, 20), Hour(1, 16, 20), aHang},
      {aList[3].URL.c_str(), Hour(3, 10, 0), Hour(3, 12, 0), Fault::Ok(), 8},
      {aList[3].URL.c_str(), Hour(3, 13, 10), Hour(3, 13, 10), aHang},
      {aList[3].URL.c_str(), Hour(3, 15, 40), Hour(3, 16, 30), aHang},
      {aList[3].URL.c_str(), Hour(5, 20, 5), Hour(5, 20, 5), aHang},
      {aList[5].URL.c_str(), Hour(4, 18, 40), Hour(5, 13, 30), {Fault::Reset()}}};
  for (int lDay = 0; lDay < 7; ++lDay)
    aAll.push_back({aList[2].URL.c_str(), Hour(lDay, 2, 0), Hour(lDay, 2, 35), aBackup});
  return aAll;
}

constexpr double dByHand[] = {Hour(2, 10, 20), Hour(2, 14, 20), Hour(3, 9, 0)};
constexpr double dSwitchedOff = Hour(4, 21, 10);
constexpr double dSwitchedOn = Hour(5, 9, 5);
constexpr double dNameLost = Hour(6, 17, 20);
constexpr double dMailDown[] = {Hour(4, 18, 0), Hour(4, 21, 0)};
constexpr double dEnd = Hour(6, 23, 45);

// A clock that stands still but where it is told to go.
class Leaping : public Clock::Source {
 public:
  explicit Leaping(DateTime dtStart) : dtBegin(dtStart) { Clock::Replace(this); }
  ~Leaping() override { Clock::Replace(nullptr); }
  Leaping(const Leaping&) = delete;
  Leaping& operator=(const Leaping&) = delete;
  DateTime WallTime() override { return AddSeconds(dtBegin, dSeconds); }
  double SteadySeconds() override { return dSeconds; }
  double BootSeconds() override { return dSeconds; }
  void Wait(double dLonger) override { dSeconds += dLonger; }
  double Hours() const { return dSeconds / 3600; }
  void GoTo(double dHours) { dSeconds = std::max(dSeconds, dHours * 3600); }

 private:
  DateTime dtBegin;
  double dSeconds = 0;
};

class Week {
 public:
  Week(const std::string& szFolder, DateTime dtTheMonday);
  std::size_t Play();

 private:
  void Prepare();
  void SwitchOn();
  void Round(bool bManual);
  void SetTheScene();
  void WriteMails();

  // Lets the clock go on while a request is in flight.
  class Eyes : public RecordingView {
   public:
    explicit Eyes(Week& aPlayed) : aWeek(aPlayed) {}
    void ShowProgressSite(const std::string& szText) override;
    void PumpEvents() override;

   private:
    Week& aWeek;
    bool bHangs = false;
    std::int32_t lPolls = 0;
  };

  const std::string szInside;
  const DateTime dtMonday;
  Leaping aClock;
  FaultServer aServer;
  SmtpServer aMailServer;
  const std::vector<Trouble> aTroubles = Troubles();
  std::map<std::string, const Trouble*> aPresent;  // by site
  Eyes aView{*this};
  std::unique_ptr<CheckEngine> pEngine;
  double dLastRound = 0;  // hours
  std::size_t lRounds = 0;
};

void Week::Eyes::ShowProgressSite(const std::string& /*szText*/) {
  const auto aFound = aWeek.aPresent.find(aSites[static_cast<std::size_t>(aWeek.pEngine->lCheckIndex)].URL);
  const auto* pTrouble = aFound == aWeek.aPresent.end() ? nullptr : aFound->second;
  bHangs = pTrouble && pTrouble->aAnswer.front().iKind == Fault::Step::Kind::Hang;
  aWeek.aClock.Wait(pTrouble ? pTrouble->lSeconds : dUsualSeconds);
  lPolls = 0;
}

void Week::Eyes::PumpEvents() {
  if (++lPolls > lPatience || bHangs) aWeek.aClock.Wait(1);
  aWeek.pEngine->TimerMain_Timer();
}

Week::Week(const std::string& szFolder, DateTime dtTheMonday)
    : szInside(szFolder + Files::chSeparator), dtMonday(dtTheMonday), aClock(dtTheMonday) {
}

void Week::Prepare() {
  for (const char* szName : {"mails", "Logs"})
    if (modBasic::MakeFolderPath(szInside + szName) != 0)
      throw std::runtime_error("cannot make the folder " + szInside + szName);
  Environment::Set("KESTROVA_REGISTRY", szInside + "registry.db");
  Environment::Set("http_proxy", "http://" + aServer.Address());
  aServer.KeepRequests(false);
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

// As the monitor starts: nothing is remembered but the list, and the first round comes soon.
void Week::SwitchOn() {
  LoadSettings();
  if (modAddress::LoadSites(false, false) != 0) throw std::runtime_error("cannot load the list");
  pEngine = std::make_unique<CheckEngine>(aView);
  Schedule::SetNextCheck(WarningMinutes());
}

void Week::SetTheScene() {
  const double dNow = aClock.Hours();
  aPresent.clear();
  for (const auto& aTrouble : aTroubles) {
    const bool bOnce = aTrouble.dFrom == aTrouble.dTo;
    const bool bNow = aTrouble.dFrom <= dNow && (bOnce ? aTrouble.dFrom > dLastRound : aTrouble.dTo > dNow);
    if (bNow) aPresent[aTrouble.szSite] = &aTrouble;
  }
  for (const auto& aSite : aList)
    aServer.Serve("http://" + aSite.URL,
                  aPresent.contains(aSite.URL) ? aPresent[aSite.URL]->aAnswer : Fault::Ok());
  Environment::Set("no_proxy", dNow < dNameLost ? "127.0.0.1" : szNameless);
  const bool bMail = dNow < dMailDown[0] || dNow >= dMailDown[1];
  aMailServer.At(SmtpServer::Stage::Recipient, Smtp::Say(bMail ? "250 ok" : "451 4.3.0 try again later"));
}

void Week::Round(bool bManual) {
  SetTheScene();
  dLastRound = aClock.Hours();
  if (bManual)
    pEngine->mF_StartCheck_Click();
  else
    pEngine->TimerAutoCheck_Timer();
  ++lRounds;
}

void Week::WriteMails() {
  for (std::size_t lMail = 0; const auto& aMail : aMailServer.Mails()) {
    char szName[32];
    std::snprintf(szName, sizeof szName, "%02zu.eml", ++lMail);
    Files::WriteWhole(szInside + "mails" + Files::chSeparator + szName, aMail.szText);
  }
}

std::size_t Week::Play() {
  Prepare();
  SwitchOn();
  bool bSlept = false;
  for (std::size_t lByHand = 0;;) {
    // The timer ticks once a second.
    const double dDue = static_cast<double>(SecondsBetween(dtMonday, NextCheckTime) + 1) / 3600;
    if (!bSlept && dDue > dSwitchedOff) {
      bSlept = true;
      aClock.GoTo(dSwitchedOn);
      SwitchOn();
    } else if (lByHand < std::size(dByHand) && dByHand[lByHand] < dDue) {
      aClock.GoTo(dByHand[lByHand++]);
      Round(true);
    } else if (dDue < dEnd) {
      aClock.GoTo(dDue);
      Round(false);
    } else {
      break;
    }
  }
  WriteMails();
  Registry::CloseStore();
  return lRounds;
}

}  // namespace

DateTime DemoWeek::LastMonday() {
  const auto dtToday = std::floor(Clock::Now());
  return AddDays(dtToday, -7 - (SplitDateTime(dtToday).lWeekday + 5) % 7);
}

std::size_t DemoWeek::Play(const std::string& szFolder, DateTime dtMonday) {
  return Week(szFolder, dtMonday).Play();
}
