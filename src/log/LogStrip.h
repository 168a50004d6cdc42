// LogStrip: the picture of a site's states over time, as inline SVG.
#pragma once

#include <string>

#include "log/LogSummary.h"

namespace LogStrip {

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
