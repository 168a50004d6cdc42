#include <algorithm>
#include <cstdio>
#include <thread>

#include "editing/AddressRules.h"
#include "long/Stand.h"
#include "long/Trials.h"
#include "support/Stored.h"

namespace {

constexpr int lMany = 400;

void Pause(double dSeconds) {
  std::this_thread::sleep_for(std::chrono::duration<double>(dSeconds));
}

// Killed at any moment of the time that it takes unharmed, and a little beyond. True when it still ran.
bool RunAndKill(Stand& aStand, const std::vector<std::string>& aArguments, double dWhole) {
  ChildProcess aProgram(Stand::Program(), aArguments);
  Pause(aStand.Random() * dWhole);
  aProgram.Kill();
  return aProgram.Wait(60) == ChildProcess::lKilled;
}

double Measure(Stand& aStand, const std::vector<std::string>& aArguments) {
  const Stopwatch aWatch;
  Stand::Run(aArguments);
  const double dWhole = aWatch.Seconds();
  aStand.PutBack();
  return dWhole * 1.1;
}

// After a kill in a pass and the pass that follows: the whole list, the true statuses, a mail for each site
// that is down, and no line of the log torn.
void LookAfterPass(Stand& aStand, const Stand::List& aBefore, Tally& aTally, bool bKilled) {
  const auto aKilled = Stand::Listed();
  Must(aKilled.size() == aBefore.size(), "no site is lost");
  for (const auto& [szURL, szFacts] : aKilled)
    Must(aBefore.contains(szURL) && (szFacts == aBefore.at(szURL) || szFacts.starts_with("down|")),
         "a status is that of before the pass or of it: " + szURL + " " + szFacts);
  Must(Stand::Run({"check"}).iCode == 1, "the pass after a kill finds sites that are not up");
  int lDown = 0, lMails = 0;
  for (const auto& [szURL, szFacts] : Stand::Listed())
    lDown += szFacts.starts_with("down|") ? 1 : 0;
  Must(lDown == aStand.lSites, "all sites that failed twice are down");
  const auto aMailed = aStand.Mailed();
  for (const auto& [szURL, lTimes] : aMailed)
    lMails += lTimes;
  Must(static_cast<int>(aMailed.size()) >= aStand.lSites - (bKilled ? 1 : 0),
       "no outage goes without its mail");
  Must(lMails <= aStand.lSites + (bKilled ? 1 : 0), "no mail is repeated but the one that was under way");
  aTally["mails repeated"] += std::max(0, lMails - aStand.lSites);
  const auto szLog = aStand.aHome.Read(aStand.LogPath().substr(aStand.aHome.Folder().size() + 1));
  Must(szLog.ends_with("[END CHECK]\r\n"), "the log ends with a whole pass");
}

void InPass(int lTimes, bool bInMail) {
  constexpr int lSites = 6;
  Stand aStand(lSites);
  const auto aBefore = Stand::Listed();
  const double dWhole = Measure(aStand, {"check"});
  Tally aTally(bInMail ? "alert" : "pass");
  using Stage = SmtpServer::Stage;
  const std::pair<Stage, const char*> aStages[] = {{Stage::Greeting, "220"}, {Stage::Hello, "250"},
                                                   {Stage::Sender, "250"},   {Stage::Recipient, "250"},
                                                   {Stage::Text, "250"},     {Stage::Quit, "221"}};
  for (aTally["kills"] = lTimes; lTimes > 0; --lTimes) {
    aStand.PutBack();
    bool bKilled = false;
    if (bInMail) {
      const auto& [iStage, szCode] = aStages[aStand.Below(std::size(aStages))];
      aStand.aMail.At(iStage, {Fault::Delay(20), Fault::Send(std::string(szCode) + " fine\r\n")});
      const auto lWanted = aStand.aMail.Connections() + 1 + static_cast<std::size_t>(aStand.Below(lSites));
      ChildProcess aCheck(Stand::Program(), {"check"});
      while (aStand.aMail.Connections() < lWanted && aCheck.Wait(0.001) == ChildProcess::lRunning)
        continue;
      Pause(aStand.Random() * 0.03);
      aCheck.Kill();
      bKilled = aCheck.Wait(60) == ChildProcess::lKilled;
      aStand.aMail.At(iStage, {Fault::Send(std::string(szCode) + " fine\r\n")});
    } else {
      bKilled = RunAndKill(aStand, {"check"}, dWhole);
    }
    aTally["before its end"] += bKilled ? 1 : 0;
    LookAfterPass(aStand, aBefore, aTally, bKilled);
  }
}

void InImport(int lTimes, bool bRegistry) {
  Stand aStand(6);
  std::string szFile, szKeys = "Windows Registry Editor Version 5.00\r\n";
  for (int i = 0; i < lMany; ++i) {
    const auto szURL = "www.site" + std::to_string(i) + ".invalid";
    szFile += szURL + ",,4,1,60\r\n";
    szKeys += "[HKEY_LOCAL_MACHINE\\" + Stored::SiteKey(szURL) + "]\r\n\"URL\"=\"" + szURL + "\"\r\n";
  }
  aStand.aHome.Write("new", bRegistry ? szKeys : szFile);
  std::vector<std::string> aArguments = {"import", "--add", aStand.aHome.Path("new")};
  if (bRegistry) aArguments = {"registry", "import", aStand.aHome.Path("new")};
  const auto lBefore = Stand::Listed().size();
  const double dWhole = Measure(aStand, aArguments);
  Tally aTally(bRegistry ? "registry import" : "import");
  for (aTally["kills"] = lTimes; lTimes > 0; --lTimes) {
    aStand.PutBack();
    aTally["before its end"] += RunAndKill(aStand, aArguments, dWhole) ? 1 : 0;
    const auto lNow = Stand::Listed().size();
    Must(lNow == lBefore || lNow == lBefore + lMany,
         "the list is the old one or the new one, and not of " + std::to_string(lNow));
    aTally["with all of it stored"] += lNow > lBefore ? 1 : 0;
  }
}

// Every edit that was acknowledged is stored, and of the one after it all or nothing.
void InEdit(int lTimes) {
  Stand aStand(6);
  constexpr int lLongest = 1800;
  Tally aTally("edit");
  for (aTally["kills"] = lTimes; lTimes > 0; --lTimes) {
    aStand.PutBack();
    ChildProcess aEditor(ChildProcess::BuiltProgram("kestrova-trials"), {"edit"});
    Pause(0.02 + aStand.Random() * 0.1);
    aEditor.Kill();
    aTally["before its end"] += aEditor.Wait(60) == ChildProcess::lKilled ? 1 : 0;
    const auto szSaid = aEditor.Output();
    const auto lDone = static_cast<int>(std::count(szSaid.begin(), szSaid.end(), '\n'));
    aTally["edits acknowledged"] += lDone;
    const auto aList = Stand::Listed();
    const auto lSites = static_cast<int>(aList.size());
    Registry::CloseStore();
    modAddress::LoadSites(true, true);
    Must(lSiteCount == lSites, "no site is lost");
    for (int n = 1; n <= lSites; ++n) {
      const auto Last = [&](int lEdits) { return lEdits < n ? 10 : (lEdits - n) / lSites * lSites + n; };
      const auto lNow = modAddress::Site(n).TimeOut;
      Must(lNow == Last(std::min(lDone, lLongest)) || lNow == Last(std::min(lDone + 1, lLongest)),
           "edit " + std::to_string(lDone) + " of site " + std::to_string(n) + " is stored");
    }
    Registry::CloseStore();
  }
}

}  // namespace

void Trials::EditForEver() {
  modAddress::LoadSites(true, true);
  for (int i = 1; i <= 1800; ++i) {
    AddressRules::AddressMode = 1;
    AddressRules::AddressIndex = (i - 1) % lSiteCount + 1;
    AddressRules::EditCopy = {modAddress::Site(AddressRules::AddressIndex)};
    auto aRecord = AddressRules::EditCopy[0];
    aRecord.TimeOut = i;
    AddressRules::Store(aRecord);
    std::printf("%d\n", i);
    std::fflush(stdout);
  }
  Pause(60);
}

void Trials::Kills(int lTimes) {
  InPass(lTimes, false);
  InPass(lTimes, true);
  InImport(lTimes, false);
  InImport(lTimes, true);
  InEdit(lTimes);
}
