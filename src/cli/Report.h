// Report: how the terminal program speaks: answers on standard output, everything that is the matter as one
// line on standard error. Whatever comes from a file or a server is made printable on its way.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

struct SiteRecord;

namespace Report {

// The contract with scripts.
inline constexpr int iAllUp = 0;     // and all was kept; also: the command did what it was asked to
inline constexpr int iNotAllUp = 1;  // at least one enabled site is not up
inline constexpr int iFailed = 2;    // something failed, whatever else holds; standard error says what
// Added to the number of a signal that ended a check before its last site, as shells have it.
inline constexpr int iSignalBase = 128;

// "1 site", "12 sites"
std::string SiteNumber(std::int32_t lNumber);

// "up", "warning", "down", "unknown"
std::string StatusWord(std::uint8_t iStatus);
// "http://" and what is asked for, fit for a terminal.
std::string AddressOf(const SiteRecord& aSite);
// Filled up with blanks to that many characters.
std::string Padded(std::string szText, std::size_t lWidth);

// One line on standard output.
void Say(std::string_view szText);
// One line on standard error, behind the program's name; line breaks within it become blanks.
void Complain(std::string_view szText);
// The same, and the exit code for it.
int Fail(std::string_view szText);

// Opens the store and tells what is the matter with it, if anything. False when it cannot be written.
// bBeginAnew: for a command that enters something; of a store that nothing is left of a new one is begun.
bool OpenStore(bool bBeginAnew = false);
// The same for a command that only reads. False when it cannot be read.
bool OpenToLook();
// The store was damaged and something may be missing in it: the exit code is 2 then, whatever else was done.
bool ListMayBeIncomplete();
// Renumbers the sites and loads them. Keys that turn out to be no sites are deleted by that; they are named,
// and the exit code is 2; sites that came back from the last good copy are named too. False when the list
// cannot be loaded.
bool LoadRebuilt(bool bKeepResults);
// Opens the store to look and loads settings and sites as they are, for commands that only look. Sites that
// the list does not lead to are named, and the exit code is 2.
bool LoadAll();

}  // namespace Report
