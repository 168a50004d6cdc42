#include "history/LogHtml.h"

#include <algorithm>
#include <array>
#include <utility>

#include "base/Utf8.h"
#include "history/LogPageStyle.h"
#include "history/LogStrip.h"
#include "history/LogWords.h"
#include "log/LogGrammar.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace {

using LogHtml::Escape;
using LogHtml::Limits;
using LogWords::Count;
using LogWords::Moment;

std::string Words(StringId iText) {
  return Escape(LoadResString(iText));
}

std::string Words(StringId iText, std::initializer_list<std::string_view> aValues) {
  return Escape(FillResString(iText, aValues));
}

// Names come from outside; on their own they cannot turn the direction of the text around them.
std::string Isolated(const std::string& szMarkup) {
  return "<bdi>" + szMarkup + "</bdi>";
}

std::string SiteName(std::string_view szSite) {
  return Isolated(Escape(Utf8::Shorten(szSite, 200)));
}

std::string Cell(const char* szClass, const std::string& szMarkup) {
  return std::string("<td") + (*szClass ? std::string(" class=\"") + szClass + "\"" : "") + ">" + szMarkup +
         "</td>";
}

// Broken, if at all, between day and time.
std::string When(const std::string& szMoment) {
  const auto lBreak = szMoment.find(", ");
  if (lBreak == std::string::npos) return Escape(szMoment);
  return "<span class=\"t\">" + Escape(std::string_view(szMoment).substr(0, lBreak + 1)) +
         "</span> <span class=\"t\">" + Escape(std::string_view(szMoment).substr(lBreak + 2)) + "</span>";
}

std::string WhenCell(const std::string& szMoment) {
  return Cell("when", When(szMoment));
}

std::string StateCell(SiteState iState, const std::string& szMarkup) {
  return Cell("state", LogStrip::Icon(iState) + szMarkup);
}

std::string Heads(const std::vector<StringId>& aColumns, const std::vector<StringId>& aNumbers = {}) {
  std::string szHeads = "<thead><tr>";
  for (const auto iColumn : aColumns) {
    const bool bNumber = std::find(aNumbers.begin(), aNumbers.end(), iColumn) != aNumbers.end();
    szHeads +=
        std::string("<th scope=\"col\"") + (bNumber ? " class=\"n\">" : ">") + Words(iColumn) + "</th>";
  }
  return szHeads + "</tr></thead>\n";
}

// What is too wide for the window is scrolled by itself, with the keyboard too.
std::string Region(StringId iLabel, const std::string& szMarkup) {
  return "<div class=\"wide\" role=\"region\" tabindex=\"0\" aria-label=\"" + Words(iLabel) + "\">" +
         szMarkup + "</div>\n";
}

std::string TableOf(const char* szClass, StringId iLabel, const std::string& szRows) {
  return Region(iLabel, std::string("<table class=\"") + szClass + "\">\n" + szRows + "</table>");
}

std::string Head(const LogSummary& aSummary) {
  const auto szTitle =
      aSummary.dtFrom > 0
          ? Words(
                IDS_LOG_PAGE_TITLE,
                {FillResString(IDS_LOG_SPAN, {LogWords::Day(aSummary.dtFrom), LogWords::Day(aSummary.dtTo)})})
          : Words(IDS_LOG_PAGE_TITLE_EMPTY);
  return "<!DOCTYPE html>\n<html xmlns=\"http://www.w3.org/1999/xhtml\" lang=\"en\" "
         "xml:lang=\"en\">\n<head>\n"
         "<meta charset=\"utf-8\"/>\n"
         "<meta http-equiv=\"Content-Security-Policy\" content=\"default-src 'none'; style-src "
         "'unsafe-inline'\"/>\n"
         "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\"/>\n<title>" +
         szTitle + "</title>\n<style>" + szLogPageStyle + "</style>\n</head>\n<body>\n" +
         LogStrip::Definitions();
}

SiteState WorstState(const LogSummary& aSummary) {
  for (const auto iState : {SiteState::Down, SiteState::Warning, SiteState::Up, SiteState::Disabled})
    if (aSummary.Count(iState) > 0) return iState;
  return SiteState::Unwatched;
}

std::string Opening(const LogSummary& aSummary) {
  std::string szOut = "<header>\n<p class=\"kind\">" + Words(IDS_LOG_PAGE_KIND);
  if (aSummary.dtFrom > 0)
    szOut += ", " + Words(IDS_LOG_SPAN, {LogWords::Day(aSummary.dtFrom), LogWords::Day(aSummary.dtTo)});
  szOut += "</p>\n<h1>" + LogStrip::Icon(WorstState(aSummary)) + "<span>" +
           Escape(LogWords::Headline(aSummary)) + "</span></h1>\n<div class=\"lead\">\n";
  for (const auto& szSentence : LogWords::Lead(aSummary))
    szOut += "<p>" + Isolated(Escape(szSentence)) + "</p>\n";
  szOut += "</div>\n<p class=\"note\">";
  if (aSummary.dtTo > 0) szOut += Words(IDS_LOG_AS_OF, {Moment(aSummary.dtTo)}) + " ";
  return szOut + Words(IDS_LOG_HOW) + "</p>\n</header>\n";
}

std::string Fact(StringId iName, const std::string& szMarkup) {
  return "<dt>" + Words(iName) + "</dt><dd>" + szMarkup + "</dd>\n";
}

std::string GapList(const LogSummary& aSummary) {
  if (aSummary.aGaps.empty()) return Words(IDS_LOG_FACT_GAPS_NONE);
  std::string szList = "<ul>";
  for (const auto& szGap : LogWords::Gaps(aSummary))
    szList += "<li>" + Escape(szGap) + "</li>";
  return szList + "</ul><span class=\"note\">" + Words(IDS_LOG_FACT_GAPS_NOTE) + "</span>";
}

std::string Facts(const LogSummary& aSummary) {
  std::string szOut = "<dl>\n";
  if (aSummary.dtFrom > 0)
    szOut +=
        Fact(IDS_LOG_FACT_COVERED, Words(IDS_LOG_SPAN, {Moment(aSummary.dtFrom), Moment(aSummary.dtTo)}));
  szOut += Fact(IDS_LOG_FACT_PASSES,
                Words(IDS_LOG_FACT_PASSES_VALUE, {Count(aSummary.lAutomatic + aSummary.lManual),
                                                  Count(aSummary.lAutomatic), Count(aSummary.lManual)}));
  szOut += Fact(IDS_LOG_FACT_CHECKS, Escape(LogWords::Checks(aSummary)));
  szOut += Fact(IDS_LOG_FACT_MAILS,
                Words(IDS_LOG_FACT_MAILS_VALUE, {Count(aSummary.lMailsSent), Count(aSummary.lMailsFailed)}));
  if (aSummary.lEntries > 0) szOut += Fact(IDS_LOG_FACT_GAPS, GapList(aSummary));
  if (aSummary.lEndless + aSummary.lStartless > 0)
    szOut += Fact(IDS_LOG_FACT_BROKEN_OFF, Escape(LogWords::BrokenOff(aSummary)));
  if (aSummary.lUnread > 0)
    szOut += Fact(IDS_LOG_FACT_UNREAD, Words(IDS_LOG_FACT_UNREAD_VALUE, {Count(aSummary.lUnread)}));
  return szOut + "</dl>\n";
}

std::string SinceCell(const SiteSummary& aSite) {
  if (aSite.dtSince <= 0) return WhenCell({});
  const auto szSince = Moment(aSite.dtSince);
  const bool bExact = aSite.bSinceKnown || aSite.iCurrent == SiteState::Unwatched;
  return WhenCell(bExact ? szSince : FillResString(IDS_LOG_SINCE_LEAST, {szSince}));
}

std::string SiteTable(const LogSummary& aSummary, const std::vector<std::size_t>& aShown) {
  std::string szRows =
      Heads({IDS_LOG_COL_SITE, IDS_LOG_COL_NOW, IDS_LOG_COL_SINCE, IDS_LOG_COL_CHECKS, IDS_LOG_COL_SHARE,
             IDS_LOG_COL_OUTAGES, IDS_LOG_COL_LONGEST, IDS_LOG_COL_DOWN_TIME},
            {IDS_LOG_COL_CHECKS, IDS_LOG_COL_SHARE, IDS_LOG_COL_OUTAGES, IDS_LOG_COL_LONGEST,
             IDS_LOG_COL_DOWN_TIME}) +
      "<tbody>\n";
  for (const auto lSite : aShown) {
    const auto& aSite = aSummary.aSites[lSite];
    const auto* const pLongest = aSite.Longest();
    szRows += std::string("<tr class=\"") + LogStrip::ClassOf(aSite.iCurrent) +
              "\"><th scope=\"row\" class=\"site\">" + SiteName(aSite.szSite) + "</th>" +
              StateCell(aSite.iCurrent, Escape(LogWords::State(aSite))) + SinceCell(aSite) +
              Cell("n", Count(aSite.lChecks)) + Cell("n", LogWords::Share(aSite.lSuccesses, aSite.lChecks)) +
              Cell("n", Count(aSite.aOutages.size())) +
              Cell("n", pLongest ? Escape(LogWords::Length(pLongest->lSeconds)) : "-") +
              Cell("n", pLongest ? Escape(LogWords::Length(aSite.lDownSeconds)) : "-") + "</tr>\n";
  }
  return TableOf("sites", IDS_LOG_SITES, szRows + "</tbody>\n");
}

std::string Legend() {
  std::string szLegend = "<ul class=\"legend\">";
  for (const auto iState :
       {SiteState::Up, SiteState::Warning, SiteState::Down, SiteState::Unwatched, SiteState::Disabled})
    szLegend += "<li>" + LogStrip::Key(iState) + Words(LogWords::StateName(iState)) + "</li>";
  return szLegend + "</ul>\n";
}

std::string Sites(const LogSummary& aSummary, const Limits& aLimits) {
  auto aShown = LogWords::ByInterest(aSummary);
  if (aShown.empty()) return {};
  aShown.resize(std::min(aShown.size(), aLimits.lSites));
  std::string szOut = "<section>\n<h2>" + Words(IDS_LOG_SITES) + "</h2>\n";
  if (aShown.size() < aSummary.aSites.size())
    szOut += "<p class=\"note\">" +
             Words(IDS_LOG_SITES_LEFT_OUT, {Count(aSummary.aSites.size()), Count(aShown.size())}) + "</p>\n";
  szOut += SiteTable(aSummary, aShown) + "</section>\n";
  if (aSummary.dtFrom <= 0) return szOut;
  szOut += "<section>\n<h2>" + Words(IDS_LOG_STRIPS) + "</h2>\n<p class=\"note\">" +
           Words(IDS_LOG_STRIPS_NOTE, {Moment(aSummary.dtFrom), Moment(aSummary.dtTo)}) + "</p>\n" +
           Legend() + "<div class=\"strips\">\n";
  for (const auto lSite : aShown)
    szOut += "<div class=\"name\">" + SiteName(aSummary.aSites[lSite].szSite) + "</div>" +
             LogStrip::Picture(aSummary, aSummary.aSites[lSite], "s" + std::to_string(lSite)) + "\n";
  return szOut + LogStrip::Axis(aSummary) + "</div>\n</section>\n";
}

std::string MailWords(const Outage& aOutage) {
  if (aOutage.lMailsSent > 0) return Words(IDS_LOG_MAIL_SENT);
  return aOutage.lMailsFailed > 0 ? Words(IDS_LOG_MAIL_FAILED) : "-";
}

std::string Outages(const LogSummary& aSummary, const Limits& aLimits) {
  struct Item {
    const SiteSummary* pSite;
    const Outage* pOutage;
  };
  std::vector<Item> aAll;
  for (const auto& aSite : aSummary.aSites)
    for (const auto& aOutage : aSite.aOutages)
      aAll.push_back({&aSite, &aOutage});
  if (aAll.empty()) return {};
  std::stable_sort(aAll.begin(), aAll.end(), [](const Item& aLeft, const Item& aRight) {
    return aLeft.pOutage->dtFrom > aRight.pOutage->dtFrom;
  });
  const auto lShown = std::min(aAll.size(), aLimits.lOutages);
  std::string szOut = "<section>\n<h2>" + Words(IDS_LOG_OUTAGES) + "</h2>\n<p class=\"note\">" +
                      Words(IDS_LOG_OUTAGE_NOTE) + "</p>\n";
  if (lShown < aAll.size())
    szOut += "<p class=\"note\">" + Words(IDS_LOG_OUTAGES_LEFT_OUT, {Count(lShown), Count(aAll.size())}) +
             "</p>\n";
  std::string szRows = Heads({IDS_LOG_COL_SITE, IDS_LOG_COL_FROM, IDS_LOG_COL_TO, IDS_LOG_COL_LENGTH,
                              IDS_LOG_COL_WHAT, IDS_LOG_COL_MAIL}) +
                       "<tbody>\n";
  for (std::size_t lItem = 0; lItem < lShown; ++lItem) {
    const auto& aOutage = *aAll[lItem].pOutage;
    const auto szFrom = Moment(aOutage.dtFrom);
    szRows += "<tr><th scope=\"row\" class=\"site\">" + SiteName(aAll[lItem].pSite->szSite) + "</th>" +
              WhenCell(aOutage.bStartKnown ? szFrom : FillResString(IDS_LOG_OR_EARLIER, {szFrom})) +
              WhenCell(LogWords::OutageEndWords(aOutage)) +
              Cell("", Escape(LogWords::OutageLength(aOutage))) +
              Cell("", Isolated(LogHtml::Field(Utf8::Shorten(aOutage.szText, aLimits.lFieldBytes)))) +
              Cell("", MailWords(aOutage)) + "</tr>\n";
  }
  return szOut + TableOf("outages", IDS_LOG_OUTAGES, szRows + "</tbody>\n") + "</section>\n";
}

// A cell is a paragraph of its own, so its text cannot turn the direction of what is around it.
std::string FieldCell(std::string_view szField, const Limits& aLimits) {
  auto szMarkup = LogHtml::Field(Utf8::Shorten(szField, aLimits.lFieldBytes));
  if (szField.size() > aLimits.lFieldBytes) szMarkup += Words(IDS_LOG_CUT, {Count(szField.size())});
  return Cell("", szMarkup);
}

SiteState StateOf(Outcome iOutcome) {
  constexpr std::array aStates{SiteState::Unwatched, SiteState::Up,      SiteState::Down,
                               SiteState::Disabled,  SiteState::Warning, SiteState::Unwatched};
  return aStates[static_cast<std::size_t>(iOutcome)];
}

// A log has hundreds of thousands of these: no element more than the cells themselves.
std::string EntryRow(const LogHistory& aHistory, LogHistory::LineRef aRef, const Limits& aLimits) {
  const auto& aLine = aHistory.Line(aRef);
  if (aLine.iKind == LineKind::Unread) {
    const auto szLine = aHistory.Text(aRef);
    auto szMarkup = Escape(Utf8::Shorten(szLine, aLimits.lFieldBytes));
    if (szLine.size() > aLimits.lFieldBytes) szMarkup += Words(IDS_LOG_CUT, {Count(szLine.size())});
    return "<tr class=\"unread\"><td colspan=\"6\">" + Words(IDS_LOG_LINE_NOT_READ) +
           " <span class=\"raw\">" + Isolated(szMarkup) + "</span></td></tr>\n";
  }
  if (aLine.iKind != LineKind::Entry) return {};
  const auto aFields = aHistory.Fields(aRef);
  return std::string("<tr class=\"") + LogStrip::ClassOf(StateOf(aLine.iOutcome)) + "\">" +
         Cell("", aLine.bTimeKnown ? FormatTimeOfDay(aLine.dtMoment) : "-") +
         Cell("", Words(LogWords::OutcomeName(aLine.iOutcome))) + FieldCell(aFields.Address, aLimits) +
         FieldCell(aFields.StatusText, aLimits) +
         Cell("", aLine.bTimeKnown ? std::string(aFields.Elapsed) : "-") +
         FieldCell(aFields.Comment, aLimits) + "</tr>\n";
}

std::string PassHead(const LogPass& aPass, bool bLast) {
  const auto szTime =
      aPass.dtStart > 0 ? LogWords::MomentToSecond(aPass.dtStart) : LoadResString(IDS_LOG_PASS_UNKNOWN_TIME);
  auto szHead = Words(!aPass.bStarted ? (aPass.lEntries > 0 ? IDS_LOG_PASS_STARTLESS : IDS_LOG_PASS_OUTSIDE)
                      : aPass.bManual ? IDS_LOG_PASS_MANUAL
                                      : IDS_LOG_PASS_AUTO,
                      {szTime});
  if (aPass.bStopped) szHead += " <span>(" + Words(IDS_LOG_PASS_STOPPED) + ")</span>";
  if (aPass.bStarted && !aPass.bEnded && !bLast)
    szHead += " <span>(" + Words(IDS_LOG_PASS_ENDLESS) + ")</span>";
  return "<tbody>\n<tr><th colspan=\"6\" scope=\"rowgroup\">" + szHead + "</th></tr>\n";
}

std::string GapRow(const StateInterval& aGap) {
  return "<tbody><tr class=\"gap\"><td colspan=\"6\">" + Words(IDS_LOG_FACT_GAPS) + ": " +
         Escape(LogWords::Gap(aGap)) + "</td></tr></tbody>\n";
}

// The entries as many tables below each other, whole passes in each. A browser lays out only those that are
// looked at, so that a page of a month stays quick.
class EntryTables {
 public:
  void Add(const std::string& szRows, std::size_t lLines);
  void Close();

  std::string szTables;

 private:
  std::string szOpen;
  std::size_t lOpenLines = 0;
  const std::string szHead =
      "<table class=\"entries\">\n"
      "<colgroup><col/><col/><col/><col/><col/><col/></colgroup>" +
      Heads({IDS_LOG_COL_TIME, IDS_LOG_COL_NOW, IDS_LOG_COL_ADDRESS, IDS_LOG_COL_ANSWER, IDS_LOG_COL_SECONDS,
             IDS_LOG_COL_REMARKS},
            {IDS_LOG_COL_SECONDS});
};

void EntryTables::Add(const std::string& szRows, std::size_t lLines) {
  constexpr std::size_t lTableLines = 300;
  szOpen += szRows;
  lOpenLines += lLines;
  if (lOpenLines >= lTableLines) Close();
}

void EntryTables::Close() {
  constexpr std::size_t lRowPixels = 33;  // about; what is not laid out yet is taken to be as high
  if (lOpenLines > 0)
    szTables += "<div class=\"part\" style=\"contain-intrinsic-height:auto " +
                std::to_string((lOpenLines + 1) * lRowPixels) + "px\">" + szHead + szOpen +
                "</table></div>\n";
  szOpen.clear();
  lOpenLines = 0;
}

// Passes from the first that fits whole; of a last pass that alone is too long, its last lines.
std::string EntryRows(const LogHistory& aHistory, const LogSummary& aSummary, const Limits& aLimits,
                      std::size_t& lShown) {
  const auto& aPasses = aHistory.Passes();
  const auto lAll = aHistory.Lines().size();
  const auto lFrom = lAll > aLimits.lLines ? lAll - aLimits.lLines : 0;
  EntryTables aTables;
  std::size_t lAt = 0;
  auto aGap = aSummary.aGaps.begin();
  for (std::size_t lPass = 0; lPass < aPasses.size(); ++lPass) {
    const auto& aPass = aHistory.Pass(aPasses[lPass]);
    const bool bLast = lPass + 1 == aPasses.size();
    const auto lPast = lAt + aPass.lPast - aPass.lFirst;
    const bool bGap = aGap != aSummary.aGaps.end() && aPass.dtStart > 0 && aPass.dtStart == aGap->dtTo;
    const auto aPresentGap = bGap ? aGap++ : aGap;
    if (lAt >= lFrom || bLast) {
      std::string szRows = bGap && lShown > 0 ? GapRow(*aPresentGap) : std::string();
      const auto lFirst = std::max(lAt, lFrom);
      lShown += lPast - lFirst;
      szRows += PassHead(aPass, bLast);
      for (auto lRow = lFirst; lRow < lPast; ++lRow)
        szRows += EntryRow(aHistory, aHistory.Lines()[lRow], aLimits);
      aTables.Add(szRows + "</tbody>\n", lPast - lFirst);
    }
    lAt = lPast;
  }
  aTables.Close();
  return std::move(aTables.szTables);
}

std::string Entries(const LogHistory& aHistory, const LogSummary& aSummary, const Limits& aLimits) {
  if (aHistory.Lines().empty()) return {};
  std::size_t lShown = 0;
  const auto szTables = EntryRows(aHistory, aSummary, aLimits, lShown);
  std::string szOut = "<section>\n<h2>" + Words(IDS_LOG_ENTRIES) + "</h2>\n";
  if (lShown < aHistory.Lines().size())
    szOut += "<p class=\"note\">" +
             Words(IDS_LOG_ENTRIES_LEFT_OUT, {Count(lShown), Count(aHistory.Lines().size())}) + "</p>\n";
  return szOut + Region(IDS_LOG_ENTRIES, szTables) + "<p class=\"note\">" + Words(IDS_LOG_FOOT_NOTE) +
         "</p>\n</section>\n";
}

}  // namespace

std::string LogHtml::Escape(std::string_view szBytes) {
  std::string szOut;
  szOut.reserve(szBytes.size());
  for (std::size_t lAt = 0, lBytes = 0; lAt < szBytes.size(); lAt += lBytes) {
    const auto chNext = Utf8::NextClean(szBytes, lAt, lBytes);
    if (chNext == 0xFFFD)
      szOut += "\xEF\xBF\xBD";
    else if (chNext == '<')
      szOut += "&lt;";
    else if (chNext == '>')
      szOut += "&gt;";
    else if (chNext == '&')
      szOut += "&amp;";
    else if (chNext == '"')
      szOut += "&quot;";
    else if (chNext == '\'')
      szOut += "&#39;";
    else
      szOut += szBytes.substr(lAt, lBytes);
  }
  return szOut;
}

std::string LogHtml::Field(std::string_view szBytes) {
  using namespace LogGrammar;
  std::string szOut;
  bool bEmphasis = false;
  std::size_t lTextFrom = 0;
  auto lNextEnd = szBytes.find(szEmphasisEnd);
  for (auto lAt = szBytes.find('<'); lAt != std::string_view::npos; lAt = szBytes.find('<', lAt)) {
    const auto szRest = szBytes.substr(lAt);
    while (lNextEnd != std::string_view::npos && lNextEnd < lAt)
      lNextEnd = szBytes.find(szEmphasisEnd, lNextEnd + 1);
    const char* szTag = nullptr;
    std::size_t lLength = 1;
    if (szRest.starts_with(szBreak)) {
      szTag = "<br/>";
      lLength = szBreak.size();
    } else if (!bEmphasis && lNextEnd != std::string_view::npos && szRest.starts_with(szEmphasis)) {
      szTag = "<span class=\"Emphasis\">";
      lLength = szEmphasis.size();
      bEmphasis = true;
    } else if (bEmphasis && lNextEnd == lAt) {
      szTag = "</span>";
      lLength = szEmphasisEnd.size();
      bEmphasis = false;
    }
    if (szTag) {
      szOut += Escape(szBytes.substr(lTextFrom, lAt - lTextFrom)) + szTag;
      lTextFrom = lAt + lLength;
    }
    lAt += lLength;
  }
  return szOut + Escape(szBytes.substr(lTextFrom));
}

std::string LogHtml::Compose(const LogHistory& aHistory, const LogSummary& aSummary, const Limits& aLimits) {
  return Head(aSummary) + Opening(aSummary) + "<main>\n" + Facts(aSummary) + Sites(aSummary, aLimits) +
         Outages(aSummary, aLimits) + Entries(aHistory, aSummary, aLimits) + "</main>\n<footer>" +
         Words(IDS_LOG_FOOT, {KESTROVA_VERSION, Moment(Clock::Now())}) + "</footer>\n</body>\n</html>\n";
}

bool LogHtml::Write(const std::string& szPath, const LogHistory& aHistory, const LogSummary& aSummary) {
  return Files::WriteWhole(szPath, Compose(aHistory, aSummary));
}
