// Report: how the terminal program speaks: answers on standard output, everything that is the matter as one
// line on standard error. Whatever comes from a file or a server is made printable on its way.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace Report {

// The contract with scripts.
inline constexpr int iAllUp = 0;     // also: the command did what it was asked to
inline constexpr int iNotAllUp = 1;  // at least one enabled site is not up
inline constexpr int iFailed = 2;    // the command failed; standard error says why

// "1 site", "12 sites"
std::string SiteNumber(std::int32_t lNumber);

// One line on standard output.
void Say(std::string_view szText);
// One line on standard error, behind the program's name; line breaks within it become blanks.
void Complain(std::string_view szText);
// The same, and the exit code for it.
int Fail(std::string_view szText);

// Opens the store and tells what is the matter with it, if anything. False when it is unusable.
bool OpenStore();
// Opens the store and loads settings and sites as they are, for commands that only look.
bool LoadAll();

}  // namespace Report
