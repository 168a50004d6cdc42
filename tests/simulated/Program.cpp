#include "simulated/Program.h"

#include "check/CookiePolicy.h"
#include "check/Schedule.h"
#include "editing/AddressRules.h"
#include "log/CheckLog.h"
#include "persistence/Settings.h"
#include "persistence/modAddress.h"
#include "platform/Clock.h"

namespace Simulated {

std::int32_t Program::SiteCount() {
  return lSiteCount;
}

Program::Site Program::SiteIn(std::int32_t lSlot) {
  const auto& aSite = aSites[static_cast<std::size_t>(lSlot)];
  return {aSite.URL, aSite.IP, aSite.Comments, aSite.Status, aSite.Enabled, aSite.TimeOut};
}

Program::Options Program::Current() {
  return {Settings.Interval,
          Settings.Warning,
          Settings.Email,
          Settings.Name,
          Settings.SMTP,
          Settings.SMTPPort,
          Settings.LogPath,
          Settings.LogPeriod,
          Settings.DiskLogMaxFiles,
          Settings.MaxLogFiles,
          Settings.DiskLogDisabled,
          Settings.AllowType};
}

DateTime Program::NextCheck() {
  return NextCheckTime;
}

std::int32_t Program::Unsaved() {
  return modAddress::UnsavedSites();
}

std::int32_t Program::TakeMissingLines() {
  return CheckLog::TakeMissingLines();
}

void Program::Begin() {
  Settings = {};
  CheckLog::CurrentLogFile.clear();
  CheckLog::CurrentEntry = {};
  CheckLog::TakeMissingLines();
  AddressRules::EditCopy.clear();
  Clock::Replace(nullptr);
}

void Program::Load(bool bKeep) {
  CookiePolicy::RestoreAfterKill();
  LoadSettings();
  modAddress::RebuildSiteIndex();
  modAddress::LoadSites(bKeep, bKeep);
  if (!bKeep) Schedule::SetNextCheck(WarningMinutes());
}

}  // namespace Simulated
