// LogStrip: the picture of a site's states over time: its geometry, and the picture itself as inline SVG.
#pragma once

#include <string>
#include <vector>

#include "history/LogSummary.h"

namespace LogStrip {

// Beyond two weeks an hour is narrower than anyone can see: then a strip is a row of squares, one a day, up
// to a year and a bit.
bool ByDay(const LogSummary& aSummary);
// The days that the log touches, and each day's worst state of a site; not watched only where it was not at
// all.
int DayCount(const LogSummary& aSummary);
DateTime DayAt(const LogSummary& aSummary, int lDay);  // its midnight
std::vector<SiteState> Days(const LogSummary& aSummary, const SiteSummary& aSite);
// What a day was like: how much of it the site was up, then what else it was and from when to when.
std::vector<std::string> DayWords(const SiteSummary& aSite, DateTime dtDay);

// A log's whole time laid out over a number of columns; whole days where they are shown by day.
class Scale {
 public:
  Scale(const LogSummary& aSummary, int lColumnCount);  // at least one column
  double Part(DateTime dtMoment) const;                 // 0 to 1
  int Column(DateTime dtMoment) const;
  DateTime Moment(int lColumn) const { return dtFrom + dSpan * lColumn / lColumns; }
  int ColumnCount() const { return lColumns; }

 private:
  DateTime dtFrom;
  double dSpan;  // days
  int lColumns;
};

// The state that each column shows. A failure is at least three columns wide, and where several states share
// a column the worst of them shows.
std::vector<SiteState> Columns(const Scale& aScale, const SiteSummary& aSite);

// When the state that the columns from lFirst on, before lPast, show really was so, by the checks, not by the
// columns. Of several stretches of it, from the first to the last; dtFrom 0: before the site's first check.
StateInterval Stretch(const Scale& aScale, const SiteSummary& aSite, SiteState iState, int lFirst, int lPast);
// The same in words, to the minute.
std::string Words(const Scale& aScale, const SiteSummary& aSite, SiteState iState, int lFirst, int lPast);

// Midnights within the log's time, at most eight of them, evenly chosen.
std::vector<DateTime> Midnights(const LogSummary& aSummary);
// What the axis names: the first day, and those midnights that leave room for its name.
std::vector<DateTime> AxisDays(const LogSummary& aSummary);

// Where a state's band lies in a strip 24 high. Higher is worse, so that the shape alone tells the states
// apart.
struct Band {
  int lTop, lHeight;
};
Band BandOf(SiteState iState);

// Shared shapes: the icons ("icon-up" ...) and the patterns that tell states apart without colour. Once a
// page.
std::string Definitions();

// The small sign of a state; decoration, so a word has to stand beside it.
std::string Icon(SiteState iState);

// A piece of strip for the legend.
std::string Key(SiteState iState);

// From the start to the end of the whole log. Every failure is at least wide enough to be seen, and where
// several states share a column the worst of them shows. szId: unique in the page, letters and digits.
std::string Picture(const LogSummary& aSummary, const SiteSummary& aSite, const std::string& szId);

// The days below the strips.
std::string Axis(const LogSummary& aSummary);

// CSS class of a state: "up", "warning", "down", "off", "unwatched".
const char* ClassOf(SiteState iState);

}  // namespace LogStrip
