// LogWords: numbers, times and states in words, and the fields of a log made fit for other kinds of file.
// Used by the page, the spreadsheet and the terminal summary alike.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Strings.h"
#include "history/LogSummary.h"

namespace LogWords {

std::string Count(std::uint64_t lNumber);         // 1,234,567
std::string Length(std::int64_t lSeconds);        // 2 d 3 h, 1 h 10 min, 12 min, 3 min 5 s
std::string Moment(DateTime dtMoment);            // Tue Jan 6 2026, 2:05 PM; day 0: not known
std::string Day(DateTime dtMoment);               // Tue Jan 6 2026
std::string MomentToSecond(DateTime dtMoment);    // Tue Jan 6 2026, 2:05:44 PM
std::string MomentForSorting(DateTime dtMoment);  // 2026-01-06 14:05:44
// 99.93%, never rounded up to 100; "-" of nothing
std::string Share(std::uint64_t lPart, std::uint64_t lWhole);
std::string Share(const Availability& aAvailability);
std::string Name(const SiteSummary& aSite);   // of bounded length
std::string State(const SiteSummary& aSite);  // in words: how it stood at the end
StringId StateName(SiteState iState);
StringId OutcomeName(Outcome iOutcome);

// How an outage ended and how long it was, in words.
std::string OutageEndWords(const Outage& aOutage);
std::string OutageLength(const Outage& aOutage);
// When it was told by mail, every attempt; "-" where none was made.
std::string Mails(const Outage& aOutage);

// How many passes lack their start or end line, and what that means.
std::string BrokenOff(const LogSummary& aSummary);
// How many by hand have no end line, and why that may be.
std::string ChosenSites(const LogSummary& aSummary);
// The same of one pass that has none.
std::string NoEnd(const LogPass& aPass);
// How many checks all sites had, and how many of them were answered well.
std::string Checks(const LogSummary& aSummary);

// From, to and length; and the last ten gaps so, the others in one line before them.
std::string Gap(const StateInterval& aGap);
std::vector<std::string> Gaps(const LogSummary& aSummary);

// True where a pass should have begun by now and none has, so that what the log says is no longer how it is.
bool Overdue(const LogSummary& aSummary, DateTime dtNow);
// The time of the newest check, and how long ago that was.
std::string LastCheck(const LogSummary& aSummary, DateTime dtNow);

// What one would want to read first: how many are down, which, since when. One sentence a text, bytes as
// logged. Of a log that is overdue it says how things were.
std::string Headline(const LogSummary& aSummary, DateTime dtNow);
std::vector<std::string> Lead(const LogSummary& aSummary, DateTime dtNow);

// The order of interest: down 0, warning 1, up 2, else 3.
int Rank(SiteState iState);

// The sites in the order of interest: down, warning, then by outages; as places in aSummary.aSites.
std::vector<std::size_t> ByInterest(const LogSummary& aSummary);

// A field without the log's own marks, as valid UTF-8.
std::string PlainField(std::string_view szField);
// What a check was answered with, its marks kept. After a good answer by the IP address the log repeats the
// result by name in its place. Where only a name can give that result, it says "answered" here.
std::string Answer(std::string_view szStatusText);

}  // namespace LogWords
