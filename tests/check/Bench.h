// What every test of the engine stands on: a store, a clock, a server, a view, an engine, and a list of
// sites.
#pragma once

#include <string>
#include <vector>

#include "check/CheckEngine.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Text.h"
#include "support/FaultServer.h"
#include "support/RecordingView.h"
#include "support/TestHome.h"

struct Bench {
  TestHome Home;
  TestBoxes Boxes;
  TestClock aClock{JoinDateTime({1999, 11, 15, 17, 44, 21})};
  FaultServer Server;
  RecordingView View;
  CheckEngine Engine{View};

  Bench() {
    Settings = {};
    Settings.Interval = 60;
    Settings.Warning = 15;
    Settings.LogPath = Home.Folder();
    Settings.LogPeriod = 1;
    Settings.DiskLogDisabled = 1;
    Settings.AllowType = 1;
    modAddress::RebuildSiteIndex();
    modAddress::LoadSites(false, false);
    CheckLog::CurrentEntry = {};
  }

  std::int32_t Add(const std::string& szURL, const std::string& szIP = "", std::uint8_t iStatus = 4) {
    if (aSites.empty()) aSites.resize(1);
    aSites.push_back(
        {.IP = szIP, .URL = szURL, .Status = iStatus, .Enabled = 1, .TimeOut = 30, .Comments = {}});
    ++lSiteCount;
    modAddress::SaveSite(lSiteCount, true);
    modAddress::SetSiteCount(lSiteCount);
    return lSiteCount;
  }
  SiteRecord& Site(std::int32_t n) { return aSites[static_cast<std::size_t>(n)]; }

  // The lines of the current log without their line ends.
  std::vector<std::string> Log() const {
    std::vector<std::string> aLines;
    std::string szText = Home.Read(CheckLog::CurrentLogFile.substr(Home.Folder().size() + 1));
    for (std::size_t lEnd = 0; (lEnd = szText.find("\r\n")) != std::string::npos; szText.erase(0, lEnd + 2)) {
      aLines.push_back(szText.substr(0, lEnd));
    }
    return aLines;
  }
  // The address, or any other text that differs from run to run, by a fixed one.
  std::string Plain(const std::string& szText) const {
    return Text::Replace(szText, Server.Address(), "SERVER");
  }
};
