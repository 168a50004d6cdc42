// What every test of the engine stands on: a store, a clock, a server, a view, an engine, and a list of
// sites.
#pragma once

#include <sstream>
#include <string>
#include <vector>

#include "base/Text.h"
#include "check/CheckEngine.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "servers/FaultServer.h"
#include "support/RecordingView.h"
#include "support/TestHome.h"

struct PassFixture {
  TestHome Home;
  TestBoxes Boxes;
  StandingClock aClock{JoinDateTime({1999, 11, 15, 17, 44, 21})};
  FaultServer Server;
  RecordingView View;
  CheckEngine Engine{View};

  PassFixture() {
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

  std::int32_t Add(const std::string& szURL, const std::string& szIP = "",
                   std::uint8_t iStatus = SiteStatus::iNotKnown, std::int32_t lTimeOut = 30) {
    modAddress::AddSite({szIP, szURL, iStatus, SiteRecord::iEnabled, lTimeOut, ""});
    modAddress::SaveSite(lSiteCount, true);
    modAddress::SetSiteCount(lSiteCount);
    return lSiteCount;
  }

  void AddPaths(int lCount) {
    for (int i = 1; i <= lCount; ++i)
      Add(Server.Site("/" + std::to_string(i)));
  }

  // The lines of the current log without their line ends, and with a fixed name for the server.
  std::vector<std::string> Log() const {
    std::istringstream aText(Text::Replace(
        Home.Read(CheckLog::CurrentLogFile.substr(Home.Folder().size() + 1)), Server.Address(), "SERVER"));
    std::vector<std::string> aLines;
    for (std::string szLine; std::getline(aText, szLine);)
      aLines.push_back(szLine.substr(0, szLine.find('\r')));
    return aLines;
  }
};
