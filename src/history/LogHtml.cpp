#include "history/LogHtml.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Utf8.h"
#include "history/LogFacts.h"
#include "history/LogHtmlParts.h"
#include "history/LogHtmlWeeks.h"
#include "history/LogPageStyle.h"
#include "history/LogStrip.h"
#include "history/LogTables.h"
#include "history/LogWords.h"
#include "log/LogGrammar.h"
#include "platform/Clock.h"
#include "platform/Files.h"

namespace {

using namespace LogHtmlParts;
using LogHtml::Escape;
using LogHtml::Limits;
using LogWords::Count;
using LogWords::Moment;

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

std::string Opening(const LogSummary& aSummary, DateTime dtNow, const std::string& szLinks) {
  std::string szOut = "<header>\n<p class=\"kind\">" + Words(IDS_LOG_PAGE_KIND);
  if (aSummary.dtFrom > 0)
    szOut += ", " + Words(IDS_LOG_SPAN, {LogWords::Day(aSummary.dtFrom), LogWords::Day(aSummary.dtTo)});
  szOut += "</p>\n<h1>" + LogStrip::Icon(aSummary.Worst()) + "<span>" +
           Escape(LogWords::Headline(aSummary, dtNow)) + "</span></h1>\n<div class=\"lead\">\n";
  for (const auto& szSentence : LogWords::Lead(aSummary, dtNow))
    szOut += "<p>" + Isolated(Escape(szSentence)) + "</p>\n";
  return szOut + "</div>\n<p class=\"note\">" + Words(IDS_LOG_HOW) + "</p>\n" + szLinks + "</header>\n";
}

std::string FactOf(const LogFacts::Fact& aFact) {
  std::string szValue;
  for (const auto& szLine : aFact.aLines)
    szValue += aFact.aLines.size() > 1 ? "<li>" + Isolated(Escape(szLine)) + "</li>" : Escape(szLine);
  if (aFact.aLines.size() > 1) szValue = "<ul>" + szValue + "</ul>";
  if (!aFact.szNote.empty()) szValue += " <span class=\"note\">" + Escape(aFact.szNote) + "</span>";
  return "<dt>" + Words(aFact.iName) + "</dt><dd>" + szValue + "</dd>\n";
}

std::string Facts(const LogSummary& aSummary) {
  std::string szOut = "<dl>\n";
  for (const auto& aFact : LogFacts::Of(aSummary))
    szOut += FactOf(aFact);
  return szOut + "</dl>\n";
}

std::string SiteCell(const SiteSummary& aSite, LogTables::SiteColumn iColumn) {
  const auto szText = LogTables::Cell(aSite, iColumn);
  switch (iColumn) {
    case LogTables::SiteColumn::Site:
      return "<th scope=\"row\" class=\"site\">" + SiteName(szText) + "</th>";
    case LogTables::SiteColumn::State:
      return StateCell(aSite.iCurrent, Escape(szText));
    case LogTables::SiteColumn::Since:
      return WhenCell(szText);
    default:
      return Cell("n", Escape(szText));
  }
}

std::string SiteTable(const LogSummary& aSummary, const std::vector<std::size_t>& aShown) {
  const auto aColumns = LogTables::SiteColumns(aSummary);
  std::vector<StringId> aTitles, aNumbers;
  for (const auto iColumn : aColumns) {
    aTitles.push_back(LogTables::Title(iColumn));
    if (LogTables::IsNumber(iColumn)) aNumbers.push_back(aTitles.back());
  }
  auto szRows = Heads(aTitles, aNumbers) + "<tbody>\n";
  for (const auto lSite : aShown) {
    const auto& aSite = aSummary.aSites[lSite];
    szRows += std::string("<tr class=\"") + LogStrip::ClassOf(aSite.iCurrent) + "\">";
    for (const auto iColumn : aColumns)
      szRows += Named(SiteCell(aSite, iColumn), LogTables::Title(iColumn));
    szRows += "</tr>\n";
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
           Words(LogStrip::ByDay(aSummary) ? IDS_LOG_STRIPS_DAYS_NOTE : IDS_LOG_STRIPS_NOTE,
                 {Moment(aSummary.dtFrom), Moment(aSummary.dtTo)}) +
           "</p>\n" + Legend() + "<div class=\"strips\">\n";
  for (const auto lSite : aShown)
    szOut += "<div class=\"name\">" + SiteName(aSummary.aSites[lSite].szSite) + "</div>" +
             LogStrip::Picture(aSummary, aSummary.aSites[lSite], "s" + std::to_string(lSite)) + "\n";
  return szOut + LogStrip::Axis(aSummary) + "</div>\n</section>\n";
}

std::string OutageCell(const LogTables::OutageRow& aRow, LogTables::OutageColumn iColumn,
                       const Limits& aLimits) {
  const auto szText = LogTables::Cell(aRow, iColumn);
  switch (iColumn) {
    case LogTables::OutageColumn::Site:
      return "<th scope=\"row\" class=\"site\">" + SiteName(szText) + "</th>";
    case LogTables::OutageColumn::From:
    case LogTables::OutageColumn::To:
      return WhenCell(szText);
    case LogTables::OutageColumn::Answer:
      return Cell("", Isolated(LogHtml::Field(Utf8::Shorten(szText, aLimits.lFieldBytes))));
    default:
      return Cell("", Escape(szText));
  }
}

std::string Outages(const LogSummary& aSummary, LogTables::Runs iWanted, const Limits& aLimits) {
  const bool bHiccups = iWanted == LogTables::Runs::Hiccups;
  const auto aAll = LogTables::Outages(aSummary, iWanted);
  if (aAll.empty()) return {};
  const auto iTitle = bHiccups ? IDS_LOG_WARNINGS : IDS_LOG_OUTAGES;
  const auto lShown = std::min(aAll.size(), aLimits.lOutages);
  std::string szOut = "<section>\n<h2>" + Words(iTitle) + "</h2>\n<p class=\"note\">" +
                      Words(bHiccups ? IDS_LOG_HICCUP_NOTE : IDS_LOG_OUTAGE_NOTE) + "</p>\n";
  if (lShown < aAll.size())
    szOut += "<p class=\"note\">" + Words(IDS_LOG_OUTAGES_LEFT_OUT, {Count(lShown), Count(aAll.size())}) +
             "</p>\n";
  std::vector<StringId> aTitles;
  for (std::size_t i = 0; i < LogTables::lOutageColumns; ++i)
    aTitles.push_back(LogTables::Title(static_cast<LogTables::OutageColumn>(i)));
  auto szRows = Heads(aTitles) + "<tbody>\n";
  for (std::size_t lRow = 0; lRow < lShown; ++lRow) {
    szRows += "<tr>";
    for (std::size_t i = 0; i < LogTables::lOutageColumns; ++i)
      szRows += Named(OutageCell(aAll[lRow], static_cast<LogTables::OutageColumn>(i), aLimits), aTitles[i]);
    szRows += "</tr>\n";
  }
  return szOut + TableOf("outages", iTitle, szRows + "</tbody>\n") + "</section>\n";
}

// A cell is a paragraph of its own, so its text cannot turn the direction of what is around it.
std::string FieldCell(std::string_view szField, const Limits& aLimits) {
  auto szMarkup = LogHtml::Field(Utf8::Shorten(szField, aLimits.lFieldBytes));
  if (szField.size() > aLimits.lFieldBytes) szMarkup += Words(IDS_LOG_CUT, {Count(szField.size())});
  return Cell("", szMarkup);
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
         FieldCell(LogWords::Answer(aFields.StatusText), aLimits) +
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
  if (aPass.bStarted && !aPass.bEnded && !bLast) szHead += " <span>(" + LogWords::NoEnd(aPass) + ")</span>";
  return "<tbody>\n<tr><th colspan=\"6\" scope=\"rowgroup\">" + szHead + "</th></tr>\n";
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

std::string NoteRow(const std::string& szMarkup) {
  return "<tbody><tr class=\"gap\"><td colspan=\"6\">" + szMarkup + "</td></tr></tbody>\n";
}

// Writes the entries pass by pass. Of a log that is too long, the last passes; of a last pass that alone is
// too long, its last lines.
class EntryWriter {
 public:
  EntryWriter(const LogHistory& aTheHistory, const Limits& aTheLimits);
  std::string Write(const LogSummary& aSummary);
  // Lines, start and end lines included where every entry is shown.
  std::size_t lWanted = 0, lShown = 0;

 private:
  bool Wants(LogHistory::LineRef aRef);
  void AddPass(std::size_t lPass, std::size_t lFirst, std::size_t lPast);
  void AddQuiet();

  const LogHistory& aHistory;
  const Limits& aLimits;
  EntryTables aTables;
  std::vector<bool> aFailing;  // by site: its last check failed
  std::vector<bool> aWanted;   // by line
  std::size_t lQuiet = 0;      // passes since the last that was shown
};

EntryWriter::EntryWriter(const LogHistory& aTheHistory, const Limits& aTheLimits)
    : aHistory(aTheHistory), aLimits(aTheLimits), aFailing(aTheHistory.Sites().size()) {
  aWanted.reserve(aHistory.Lines().size());
  for (const auto aRef : aHistory.Lines())
    aWanted.push_back(Wants(aRef));
  lWanted = static_cast<std::size_t>(std::ranges::count(aWanted, true));
}

bool EntryWriter::Wants(LogHistory::LineRef aRef) {
  const auto& aLine = aHistory.Line(aRef);
  if (aLimits.bEveryEntry || aLine.iKind == LineKind::Unread) return true;
  if (aLine.iKind != LineKind::Entry || aLine.iOutcome == Outcome::Disabled) return false;
  const bool bUp = aLine.iOutcome == Outcome::Up;
  const bool bWanted = !bUp || aFailing[aLine.lSite];
  aFailing[aLine.lSite] = !bUp;
  return bWanted;
}

void EntryWriter::AddQuiet() {
  if (lQuiet > 0)
    aTables.Add(NoteRow(Words(lQuiet == 1 ? IDS_LOG_QUIET_ONE : IDS_LOG_QUIET, {Count(lQuiet)})), 1);
  lQuiet = 0;
}

void EntryWriter::AddPass(std::size_t lPass, std::size_t lFirst, std::size_t lPast) {
  std::string szRows;
  std::size_t lLines = 0;
  for (auto lRow = lFirst; lRow < lPast; ++lRow) {
    if (!aWanted[lRow]) continue;
    szRows += EntryRow(aHistory, aHistory.Lines()[lRow], aLimits);
    ++lLines;
  }
  if (lLines == 0) {
    ++lQuiet;
    return;
  }
  AddQuiet();
  const bool bLast = lPass + 1 == aHistory.Passes().size();
  aTables.Add(PassHead(aHistory.Pass(aHistory.Passes()[lPass]), bLast) + szRows + "</tbody>\n", lLines);
  lShown += lLines;
}

std::string EntryWriter::Write(const LogSummary& aSummary) {
  const auto& aPasses = aHistory.Passes();
  // The first line of the last that may be shown, and past the last.
  std::size_t lFrom = 0, lPastWanted = aWanted.size();
  while (lPastWanted > 0 && !aWanted[lPastWanted - 1])
    --lPastWanted;
  for (auto lOver = lWanted - std::min(lWanted, aLimits.lLines); lOver > 0; ++lFrom)
    lOver -= aWanted[lFrom] ? 1 : 0;
  std::size_t lAt = 0;
  auto aGap = aSummary.aGaps.begin();
  for (std::size_t lPass = 0; lPass < aPasses.size(); ++lPass) {
    const auto& aPass = aHistory.Pass(aPasses[lPass]);
    const auto lPast = lAt + aPass.lPast - aPass.lFirst;
    const bool bGap = aGap != aSummary.aGaps.end() && aPass.dtStart > 0 && aPass.dtStart == aGap->dtTo;
    const auto aPresentGap = bGap ? aGap++ : aGap;
    if (lAt >= lFrom || (lAt < lPastWanted && lPastWanted <= lPast)) {
      if (bGap && lShown + lQuiet > 0) {
        AddQuiet();
        aTables.Add(NoteRow(Words(IDS_LOG_FACT_GAPS) + ": " + Escape(LogWords::Gap(*aPresentGap))), 1);
      }
      AddPass(lPass, std::max(lAt, lFrom), lPast);
    }
    lAt = lPast;
  }
  AddQuiet();
  aTables.Close();
  return std::move(aTables.szTables);
}

std::string Entries(const LogHistory& aHistory, const LogSummary& aSummary, const Limits& aLimits) {
  if (aHistory.Lines().empty()) return {};
  EntryWriter aWriter(aHistory, aLimits);
  const auto szTables = aWriter.Write(aSummary);
  const auto iTitle = aLimits.bEveryEntry ? IDS_LOG_ENTRIES : IDS_LOG_ENTRIES_AROUND;
  const auto Note = [](StringId iText, std::size_t lSome, std::size_t lAll) {
    return "<p class=\"note\">" + Words(iText, {Count(lSome), Count(lAll)}) + "</p>\n";
  };
  std::string szOut = "<section>\n<h2>" + Words(iTitle) + "</h2>\n";
  if (aWriter.lShown < aWriter.lWanted)
    szOut += Note(IDS_LOG_ENTRIES_LEFT_OUT, aWriter.lShown, aWriter.lWanted);
  else if (aWriter.lShown < aHistory.Lines().size())
    szOut += Note(IDS_LOG_ENTRIES_QUIET, aWriter.lShown, aHistory.Lines().size());
  return szOut + Region(iTitle, szTables) + "<p class=\"note\">" + Words(IDS_LOG_FOOT_NOTE) +
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
  const auto dtNow = Clock::Now();
  const LogHtmlWeeks::Sections aWeeks(aHistory, aSummary, aLimits.lSites, aLimits.lPaceDays);
  return Head(aSummary) + Opening(aSummary, dtNow, aWeeks.Links()) + "<main>\n" + Facts(aSummary) +
         Sites(aSummary, aLimits) + Outages(aSummary, LogTables::Runs::Outages, aLimits) +
         Outages(aSummary, LogTables::Runs::Hiccups, aLimits) + Entries(aHistory, aSummary, aLimits) +
         aWeeks.Markup() + "</main>\n<footer>" + Words(IDS_LOG_FOOT, {KESTROVA_VERSION, Moment(dtNow)}) +
         "</footer>\n</body>\n</html>\n";
}

bool LogHtml::Write(const std::string& szPath, const LogHistory& aHistory, const LogSummary& aSummary,
                    const Limits& aLimits) {
  return Files::WriteWhole(szPath, Compose(aHistory, aSummary, aLimits));
}
