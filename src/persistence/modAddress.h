// modAddress owns the list of monitored sites: in memory, where all may read it and only this module writes,
// and in the registry, where SaveSite writes it one site at a time. Sites are numbered 1..lSiteCount; the
// number is the slot. Only RebuildSiteIndex renumbers. A reference into aSites does not survive a change of
// the list: hold the slot number and look again.
// Implemented in three files: how one site lies in the registry (SiteKey.cpp), in which order the sites stand
// there (SiteIndex.cpp), and the list with its loading and saving (modAddress.cpp).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

// What is known of a site, as SiteRecord::Status holds it, the registry stores it and list files carry it.
// The light that a view shows for the first three has the same number.
namespace SiteStatus {
inline constexpr std::uint8_t iNotChecked = 0;  // since the program was started; in memory only
inline constexpr std::uint8_t iUp = 1;
inline constexpr std::uint8_t iWarning = 2;  // failed once
inline constexpr std::uint8_t iDown = 3;     // failed again, and the alert was sent or tried
inline constexpr std::uint8_t iNotKnown = 4;

constexpr bool IsFailure(std::uint8_t iStatus) {
  return iStatus == iWarning || iStatus == iDown;
}

// True for a status that has a light.
constexpr bool HasLight(std::uint8_t iStatus) {
  return iStatus >= iUp && iStatus <= iDown;
}
}  // namespace SiteStatus

struct SiteRecord {
  static constexpr std::uint8_t iDisabled = 0;
  static constexpr std::uint8_t iEnabled = 1;
  static constexpr std::int32_t lShortestTimeOut = 1;
  static constexpr std::int32_t lLongestTimeOut = 1800;

  std::string IP;   // dotted address of the same server, empty when none
  std::string URL;  // without "http://"
  std::uint8_t Status = SiteStatus::iNotChecked;
  std::uint8_t Enabled = iDisabled;
  std::int32_t TimeOut = 0;  // seconds, from the shortest to the longest
  std::string Comments;      // remark of the last check

  bool TakesPart() const { return Enabled == iEnabled; }  // in passes
};

extern const std::vector<SiteRecord>& aSites;  // slot 0 is never used
extern const std::int32_t& lSiteCount;

namespace modAddress {

// The list holds this many sites at most: more would be stored but not loaded.
inline constexpr std::int32_t lSiteCapacity = 1000;
// Longest key name in bytes: the ANSI registry calls take 260 bytes of path.
inline constexpr std::size_t lKeyNameLimit = 227;

// True when n is the number of a site.
bool IsSite(std::int32_t n);

// Site n, which must be one.
const SiteRecord& Site(std::int32_t n);

// The ways to change the list in memory; what is not saved with SaveSite is gone with the process. A number
// that is no site's changes nothing. AddSite puts the record behind the last one and gives its number.
std::int32_t AddSite(const SiteRecord& aRecord);
void ReplaceSite(std::int32_t n, const SiteRecord& aRecord);
void SetStatus(std::int32_t n, std::uint8_t iStatus);
void SetComments(std::int32_t n, const std::string& szComments);
void ClearComments();  // of all sites

// The name of the site's key: "\" as "%5c", lower case, no blanks around. Empty when the URL is blank;
// nothing is ever saved or deleted under an empty name.
std::string KeyName(const std::string& szURL);

// Rebuilds the list from the registry. 0, or the code of the failure it has shown with MsgBox (the list is
// then empty).
std::int32_t LoadSites(bool bKeepStatus, bool bKeepComments);  // keep: what earlier runs found counts

// Reads one site's key into slot 1 of aTemp. 0 valid, 2 valid but stored under another number, 1 no usable
// URL.
std::int32_t ReadSite(const std::string& szKeyName, std::vector<SiteRecord>& aTemp,
                      std::int16_t iExpectedIndex);

// Writes slot n; for a new one (or one whose key name changed) its index entry and key too. A site that could
// not be saved is remembered, and saved with the next one that can be.
void SaveSite(std::int32_t n, bool bIsNew);

// The same for what the operator entered, in one bracket that is theirs. szOldKey: the site's key name until
// now, whose key goes where the name has changed; empty for a new site, which counts from now on.
void SaveEntered(std::int32_t n, const std::string& szOldKey);

// The sites whose last SaveSite failed: what is stored of them is older than what is in the list.
std::int32_t UnsavedSites();
bool IsUnsaved(std::int32_t n);  // site n is one of them
// Tries once more to save them. For who is about to have the list read back from the store: what is only in
// memory would be lost, and an outage be reported again.
void SaveUnsaved();
// The same at the end of a pass, with settings that could not be stored: a store that is locked is waited for
// once more, at most 2 seconds. Where it has lost the sites meanwhile (its file was deleted), the whole list
// and the settings are written anew. Answers what is to be said of it, empty where there is nothing.
std::string SaveAgain();

// Writes a record that is not in the list, without an index entry. Index 0 is stored as 2000, so that it
// sorts behind the numbered ones at the next rebuild. 0, or the code of the first failure.
std::int32_t WriteSiteRecord(const SiteRecord& aRecord, std::int32_t lIndex);

// What a rebuild found wrong: the names of keys, and what is to be said of them, empty where nothing is.
struct Mismatches {
  std::vector<std::string> aDropped;  // deleted: they hold no URL that gives their name
  std::vector<std::string> aMended;   // their URL was not theirs and has been taken from the last good copy

  std::string Said() const;
};

// Renumbers all sites from their keys and writes the index anew; keys whose URL does not match their name get
// it back from the last good copy, or are deleted.
Mismatches RebuildSiteIndex();

// The same, and then LoadSites, each site being read once.
std::int32_t LoadRebuilt(bool bKeepStatus, bool bKeepComments, Mismatches& aFound);

// The names of all site keys in the registry, at most one more than the list can hold. False when the store
// did not give them all.
bool ListKeyNames(std::vector<std::string>& aNames);

// The names of the keys that the loaded list has no site for: its index, or their URL, is damaged. A rebuild
// puts back what it can and drops the rest.
std::vector<std::string> HiddenSites();

void SetSiteCount(std::int32_t n);  // stores it, where another number stands

// Removes site n from the registry, renumbers the others and reloads the list. False where it is still there.
bool DeleteSite(std::int32_t n);

// Whether the registry holds a site under this URL; its record, as stored.
bool FindStoredSite(const std::string& szURL, SiteRecord& aRecord);

}  // namespace modAddress
