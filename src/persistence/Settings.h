// The operator's settings: one record for the whole process, filled once at start by LoadSettings and changed
// only by the options dialog. The fields carry the names of their registry values.
#pragma once

#include <cstdint>
#include <string>

struct SettingsRecord {
  std::int32_t Interval = 0;         // minutes between automatic passes
  std::int32_t Warning = 0;          // minutes from a first failure (or the start) to the next automatic pass
  std::string Email;                 // the manager's address, the alert recipient
  std::string Name;                  // the manager's name
  std::string SMTP;                  // host of the outgoing mail server
  std::int32_t SMTPPort = 0;         // TCP; LoadSettings puts 25 for a 0
  std::string LogPath;               // folder of the check logs
  std::int16_t LogPeriod = 0;        // 0 no log, 1 a file each day, 2 a file each week
  std::int16_t DiskLogMaxFiles = 0;  // 1: keep at most MaxLogFiles log files
  std::int16_t MaxLogFiles = 0;      // of all kinds together, today's included
  std::int16_t DiskLogDisabled = 0;  // 1: disabled sites are left out of the log
  std::int16_t AllowType = 0;        // 2: refuse cookies; any other value accepts them
};

extern SettingsRecord Settings;

// Reads every setting, repairs what is missing or out of range and writes the repairs back. Shows nothing.
void LoadSettings();

// Stores each field of the new record in Settings and writes it, one after the other. False where they are
// not stored as they are in Settings now: modAddress::SaveAgain tries once more and says so.
bool SaveSettings(const SettingsRecord& aNew);
bool SettingsAreSaved();

// What the schedule counts with: never below one minute, whatever an unchecked record holds.
std::int32_t IntervalMinutes();
std::int32_t WarningMinutes();
