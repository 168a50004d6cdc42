#include "fleet/StatusPage.h"

#include <algorithm>
#include <cmath>

#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "history/LogHtml.h"
#include "history/LogWords.h"

namespace {

constexpr int lSlots = 48;  // of the picture: half-hours
constexpr std::size_t lMostOutages = 60;
constexpr std::size_t lMostName = 90;  // bytes
constexpr std::size_t lMostEscaped = 130;

constexpr const char* szStyle = R"(
:root{color-scheme:light dark;--paper:#fff;--ink:#1b1f24;--soft:#59636e;--line:#d5dbe1;--up:#2e8b57;--warn:#b27d00;--down:#c0262d;--none:#c3cad1}
@media (prefers-color-scheme:dark){:root{--paper:#14181c;--ink:#e8ecf0;--soft:#a3adb8;--line:#38414a;--up:#4fb97f;--warn:#f0b92e;--down:#ff7a7c;--none:#4a545e}}
*{box-sizing:border-box}body{margin:0 auto;max-width:70rem;padding:1.2rem 1rem 3rem;background:var(--paper);color:var(--ink);font:16px/1.45 system-ui,"Segoe UI",Roboto,"Noto Sans","DejaVu Sans",sans-serif;overflow-wrap:anywhere}
h1{font-size:1.7rem;line-height:1.2;margin:.2rem 0 .5rem}h1.u{color:var(--up)}h1.w{color:var(--warn)}h1.d{color:var(--down)}
h2{font-size:1.2rem;margin:2rem 0 .5rem}p{margin:.3rem 0}.k{color:var(--soft);font-size:.9rem}
table{border-collapse:collapse;width:100%;font-size:.92rem}th,td{text-align:left;vertical-align:top;padding:.35rem .6rem .35rem 0;border-bottom:1px solid var(--line)}
thead th{color:var(--soft);white-space:nowrap}tbody th{font-weight:500}.n,.p{text-align:right;white-space:nowrap;font-variant-numeric:tabular-nums}
b{white-space:nowrap}.u b{color:var(--up)}.w b{color:var(--warn)}.d b{color:var(--down)}.o b{color:var(--soft)}
.u b::before{content:"\25CF  "}.w b::before{content:"\25B2  "}.d b::before{content:"\25A0  "}.o b::before{content:"\25CB  "}small{color:var(--soft);display:block}
svg,i{display:block;width:9rem;height:1rem;background:var(--none)}i{background:var(--up)}i.o{background:var(--none)}
.su{fill:var(--up)}.sw{fill:var(--warn)}.sd{fill:var(--down)}
@media (max-width:40rem){thead{position:absolute;left:-99rem}tbody tr{display:grid;grid-template-columns:1fr 9rem;padding:.5rem 0;border-bottom:1px solid var(--line)}th,td{border:0;padding:.1rem .4rem .1rem 0}tbody th{grid-column:1/3;font-weight:600}svg,i{width:100%}.p::before,.n::before{content:attr(title) ": ";color:var(--soft)}}
@media print{:root{color-scheme:light;--paper:#fff;--ink:#000;--soft:#444;--line:#bbb;--up:#2e8b57;--warn:#8a6100;--down:#c0262d;--none:#ccc}body{padding:0;max-width:none;font-size:9.5pt}tr{break-inside:avoid}thead{display:table-header-group}svg,i{print-color-adjust:exact;-webkit-print-color-adjust:exact}}
)";

struct Entry {
  const SiteRecord* pSite;
  const std::vector<StateInterval>* pStates;
  std::vector<Trails::Failure> aFailures;
  std::string szName;  // escaped
  int lRank;           // what to read first
};

// Cut so that it stays short in the page too.
std::string Shown(std::string_view szText) {
  std::string szEscaped;
  for (std::size_t lMost = lMostName;; lMost /= 2) {
    const std::string_view szCut = Utf8::Shorten(szText, lMost);
    szEscaped = LogHtml::Escape(szCut) + (szCut.size() < szText.size() ? "\xE2\x80\xA6" : "");
    if (szEscaped.size() <= lMostEscaped || lMost < 8) return szEscaped;
  }
}

const char* ClassOf(const SiteRecord& aSite) {
  if (!aSite.TakesPart() || !SiteStatus::HasLight(aSite.Status)) return "o";
  return aSite.Status == SiteStatus::iUp ? "u" : aSite.Status == SiteStatus::iWarning ? "w" : "d";
}

StringId WordOf(const SiteRecord& aSite) {
  if (!aSite.TakesPart()) return IDS_LOG_DISABLED;
  return aSite.Status == SiteStatus::iUp        ? IDS_LOG_UP
         : aSite.Status == SiteStatus::iWarning ? IDS_LOG_WARNING
         : aSite.Status == SiteStatus::iDown    ? IDS_LOG_DOWN
                                                : IDS_PAGE_UNKNOWN;
}

// The moment from which the site has been as it is; 0: not known.
DateTime Since(const std::vector<StateInterval>& aStates) {
  if (aStates.empty()) return 0;
  auto pAt = aStates.rbegin();
  while (pAt + 1 != aStates.rend() && (pAt + 1)->iState == aStates.back().iState)
    ++pAt;
  return pAt->dtFrom;
}

std::string Share(const Trails::Watched& aTime) {
  return LogWords::Share(static_cast<std::uint64_t>(std::llround(aTime.dUp)),
                         static_cast<std::uint64_t>(std::llround(aTime.dAll)));
}

// The worst state in each half-hour of the last day.
std::vector<SiteState> DaySlots(const std::vector<StateInterval>& aStates, DateTime dtNow) {
  std::vector<SiteState> aSlots(lSlots, SiteState::Unwatched);
  const auto Weight = [](SiteState iState) {
    return iState == SiteState::Down ? 3 : iState == SiteState::Warning ? 2 : iState == SiteState::Up ? 1 : 0;
  };
  for (const StateInterval& a : aStates) {
    const double dFrom = (a.dtFrom - (dtNow - 1)) * lSlots;
    const double dTo = (a.dtTo - (dtNow - 1)) * lSlots;
    if (dTo < 0) continue;
    for (int n = std::max(0, static_cast<int>(dFrom)); n < lSlots && n <= dTo; ++n)
      if (auto& iSlot = aSlots[static_cast<std::size_t>(n)]; Weight(a.iState) > Weight(iSlot))
        iSlot = a.iState;
  }
  return aSlots;
}

std::string Picture(const std::vector<StateInterval>& aStates, DateTime dtNow) {
  const auto aSlots = DaySlots(aStates, dtNow);
  std::string szPicture = "<svg viewBox=\"0 0 48 6\" preserveAspectRatio=\"none\">";
  for (const auto& [iState, szClass] :
       {std::pair{SiteState::Up, "su"}, {SiteState::Warning, "sw"}, {SiteState::Down, "sd"}}) {
    std::string szPath;
    for (int n = 0; n < lSlots;) {
      int lEnd = n;
      while (lEnd < lSlots && aSlots[static_cast<std::size_t>(lEnd)] == iState)
        ++lEnd;
      const auto szLength = std::to_string(lEnd - n);
      if (lEnd > n) szPath += "M" + std::to_string(n) + " 0h" + szLength + "v6h-" + szLength + "z";
      n = std::max(n + 1, lEnd);
    }
    if (!szPath.empty()) szPicture += std::string("<path class=\"") + szClass + "\" d=\"" + szPath + "\"/>";
  }
  return szPicture + "</svg>";
}

// True when nothing but up is known of the last day, so that a plain bar says it all.
bool IsQuiet(const std::vector<StateInterval>& aStates, DateTime dtNow) {
  return std::ranges::all_of(
             aStates, [&](const auto& a) { return a.dtTo < dtNow - 1 || a.iState == SiteState::Up; }) &&
         !aStates.empty() && aStates.front().dtFrom <= dtNow - 1;
}

std::vector<Entry> Entries(const std::vector<SiteRecord>& aList, const Trails& aTrails) {
  std::vector<Entry> aEntries;
  for (std::size_t n = 1; n < aList.size(); ++n) {
    const SiteRecord& aSite = aList[n];
    const std::string szName = SiteName(aSite);
    if (szName.empty()) continue;
    const auto& aStates = aTrails.Of(szName);
    const int lRank = !aSite.TakesPart()                     ? 4
                      : aSite.Status == SiteStatus::iDown    ? 0
                      : aSite.Status == SiteStatus::iWarning ? 1
                      : aSite.Status == SiteStatus::iUp      ? 3
                                                             : 2;
    aEntries.push_back({&aSite, &aStates, Trails::Failures(aStates), Shown(szName), lRank});
  }
  std::ranges::stable_sort(aEntries, [](const Entry& aLeft, const Entry& aRight) {
    if (aLeft.lRank != aRight.lRank) return aLeft.lRank < aRight.lRank;
    return aLeft.aFailures.size() > aRight.aFailures.size();
  });
  return aEntries;
}

std::string Head(const std::vector<Entry>& aEntries, const PassFacts& aFacts, DateTime dtNow) {
  std::int64_t lDown = 0;
  std::int64_t lWarning = 0;
  std::int64_t lUp = 0;
  for (const Entry& aEntry : aEntries) {
    lUp += aEntry.lRank == 3 ? 1 : 0;
    lDown += aEntry.lRank == 0 ? 1 : 0;
    lWarning += aEntry.lRank == 1 ? 1 : 0;
  }
  const auto Number = [](std::int64_t lNumber) {
    return LogWords::Count(static_cast<std::uint64_t>(lNumber));
  };
  const bool bUnknown = std::ranges::any_of(aEntries, [](const Entry& a) { return a.lRank == 2; });
  std::string szLine;
  if (lDown > 0 && lWarning > 0)
    szLine = FillResString(IDS_PAGE_NOT_UP, {Number(lDown), Number(lWarning)});
  else if (lDown > 0)
    szLine = FillResString(IDS_PAGE_DOWN, {Number(lDown)});
  else if (lWarning > 0)
    szLine = FillResString(IDS_PAGE_WARNING, {Number(lWarning)});
  else if (bUnknown)
    szLine = LoadResString(IDS_PAGE_UNKNOWN);
  else if (lUp == 1)
    szLine = LoadResString(IDS_PAGE_ONE_UP);
  else if (lUp > 0)
    szLine = FillResString(IDS_PAGE_ALL_UP, {FillResString(IDS_CLI_SITE_MANY, {Number(lUp)})});
  else
    szLine = LoadResString(IDS_PAGE_NO_SITES);
  const char* szClass = lDown > 0 ? "d" : lWarning > 0 ? "w" : bUnknown || lUp == 0 ? "o" : "u";
  std::string szHead = std::string("<h1 class=\"") + szClass + "\">" + szLine + "</h1>\n";
  const auto Seconds = [](double dSeconds) { return LogWords::Length(std::llround(dSeconds)); };
  const DateTime dtEnded = aFacts.dtEnded > 0 ? aFacts.dtEnded : dtNow;
  szHead +=
      "<p>" +
      FillResString(IDS_PAGE_LAST, {LogWords::Moment(dtEnded), Seconds(std::max(0.0, aFacts.dDuration))}) +
      "</p>\n";
  if (aFacts.dtNext == 0) {
    szHead += "<p><strong>" + LoadResString(IDS_PAGE_NO_NEXT) + "</strong></p>\n";
  } else {
    // The page comes at the pass's end.
    const DateTime dtDue = AddSeconds(aFacts.dtNext, 60 + 2 * std::max(0.0, aFacts.dDuration));
    szHead += "<p><strong>" + FillResString(IDS_PAGE_NEXT, {LogWords::Moment(dtDue)}) + "</strong></p>\n";
  }
  return szHead;
}

// In two halves: the picture goes between them.
std::pair<std::string, std::string> RowOf(const Entry& aEntry, DateTime dtNow) {
  const SiteRecord& aSite = *aEntry.pSite;
  std::string szStart = std::string("<tr class=\"") + ClassOf(aSite) + "\"><th>" + aEntry.szName +
                        "</th><td><b>" + LoadResString(WordOf(aSite)) + "</b>";
  if (aEntry.lRank < 2 && !aSite.Comments.empty())
    szStart += "<small>" + Shown(LogWords::PlainField(aSite.Comments)) + "</small>";
  const DateTime dtSince = aEntry.lRank == 4 ? 0 : Since(*aEntry.pStates);
  if (dtSince > 0)
    szStart += "<small>" + LoadResString(IDS_PAGE_SINCE) + " " + LogWords::Moment(dtSince) + "</small>";
  std::string szEnd = "</td><td class=\"p\" title=\"" + LoadResString(IDS_PAGE_MONTH) + "\">" +
                      Share(Trails::TimeUp(*aEntry.pStates, AddDays(dtNow, -Trails::lDays), dtNow)) +
                      "</td><td class=\"n\" title=\"" + LoadResString(IDS_PAGE_OUTAGES) + "\">" +
                      std::to_string(aEntry.aFailures.size()) + "</td></tr>\n";
  return {szStart + "</td><td>", szEnd};
}

std::string Outages(const std::vector<Entry>& aEntries) {
  struct Found {
    const Entry* pEntry;
    Trails::Failure aFailure;
  };
  std::vector<Found> aAll;
  for (const Entry& aEntry : aEntries)
    for (const auto& aFailure : aEntry.aFailures)
      aAll.push_back({&aEntry, aFailure});
  std::ranges::stable_sort(
      aAll, [](const Found& a, const Found& b) { return a.aFailure.dtFrom > b.aFailure.dtFrom; });
  std::string szOut = "<h2>" + LoadResString(IDS_PAGE_RECENT) + "</h2>\n";
  if (aAll.empty()) return szOut + "<p>" + LoadResString(IDS_PAGE_NO_OUTAGES) + "</p>\n";
  szOut += "<table><thead><tr><th>" + LoadResString(IDS_PAGE_SITE) + "</th><th>" +
           LoadResString(IDS_PAGE_FROM) + "</th><th>" + LoadResString(IDS_PAGE_LENGTH) +
           "</th></tr></thead><tbody>\n";
  for (std::size_t i = 0; i < std::min(aAll.size(), lMostOutages); ++i) {
    const auto& [pEntry, aFailure] = aAll[i];
    szOut += "<tr><th>" + pEntry->szName + "</th><td>" + LogWords::Moment(aFailure.dtFrom) + "</td><td>" +
             LogWords::Length(SecondsBetween(aFailure.dtFrom, aFailure.dtTo)) +
             (aFailure.bEnded ? std::string() : ", " + LoadResString(IDS_PAGE_ONGOING)) + "</td></tr>\n";
  }
  szOut += "</tbody></table>\n";
  if (aAll.size() > lMostOutages)
    szOut += "<p>" + FillResString(IDS_PAGE_MORE, {LogWords::Count(aAll.size() - lMostOutages)}) + "</p>\n";
  return szOut;
}

}  // namespace

std::string StatusPage::Compose(const std::vector<SiteRecord>& aList, const PassFacts& aFacts,
                                const Trails& aTrails, DateTime dtNow) {
  const auto aEntries = Entries(aList, aTrails);
  const std::string szTitle = LoadResString(IDS_PAGE_TITLE);
  std::string szTop =
      "<!DOCTYPE html>\n<html lang=\"en\" xmlns=\"http://www.w3.org/1999/xhtml\">\n<head>\n"
      "<meta charset=\"utf-8\"/>\n<meta http-equiv=\"refresh\" content=\"60\"/>\n"
      "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>" +
      szTitle + "</title>\n<style>" + szStyle + "</style>\n</head>\n<body>\n<p class=\"k\">" + szTitle +
      "</p>\n" + Head(aEntries, aFacts, dtNow);
  std::string szBottom = Outages(aEntries);
  if (aTrails.From() > 0)
    szBottom +=
        "<p class=\"k\">" + FillResString(IDS_PAGE_NO_LOG, {LogWords::Moment(aTrails.From())}) + "</p>\n";
  szBottom += "</body>\n</html>\n";

  std::vector<std::pair<std::string, std::string>> aRows;
  std::size_t lBytes = szTop.size() + szBottom.size() + 1000;
  for (const Entry& aEntry : aEntries) {
    aRows.push_back(RowOf(aEntry, dtNow));
    lBytes += aRows.back().first.size() + aRows.back().second.size() + 18;  // with the plain bar
  }
  std::string szPage = std::move(szTop);
  if (!aEntries.empty()) {
    szPage += "<table><thead><tr><th>" + LoadResString(IDS_PAGE_SITE) + "</th><th>" +
              LoadResString(IDS_PAGE_NOW) + "</th><th>" + LoadResString(IDS_PAGE_DAY) +
              "</th><th class=\"p\">" + LoadResString(IDS_PAGE_MONTH) + "</th><th class=\"n\">" +
              LoadResString(IDS_PAGE_OUTAGES) + "</th></tr></thead><tbody>\n";
    for (std::size_t i = 0; i < aRows.size(); ++i) {
      const auto& aStates = *aEntries[i].pStates;
      std::string szPicture = "<i></i>";
      if (aEntries[i].lRank == 4 || aStates.empty()) {
        szPicture = "<i class=\"o\"></i>";
      } else if (!IsQuiet(aStates, dtNow)) {
        std::string szDrawn = Picture(aStates, dtNow);
        const bool bRoom = lBytes + szDrawn.size() <= lMostBytes;
        if (bRoom) lBytes += szDrawn.size();
        szPicture = bRoom ? std::move(szDrawn) : std::string();
      }
      szPage += aRows[i].first + szPicture + aRows[i].second;
    }
    szPage += "</tbody></table>\n";
  }
  return szPage + szBottom;
}
