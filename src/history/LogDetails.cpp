// A row in full: its fields one by one, with the log's own marks turned into line ends and emphasis.
#include "base/Strings.h"
#include "base/Utf8.h"
#include "history/LogFiles.h"
#include "history/LogRows.h"
#include "history/LogWords.h"
#include "log/LogGrammar.h"

namespace {

constexpr std::size_t lMostBytes = 20000;

using Run = LogRows::Run;

void AddText(std::vector<Run>& aRuns, std::string_view szText, bool bEmphasis) {
  if (szText.empty()) return;
  if (aRuns.empty() || aRuns.back().bEmphasis != bEmphasis) aRuns.push_back({{}, bEmphasis});
  aRuns.back().szText += Utf8::Clean(szText);
}

// Only marks in exactly the writer's spelling count, emphasis only where it is closed again; all else is
// text.
std::vector<Run> RunsOf(std::string_view szField) {
  const bool bCut = szField.size() > lMostBytes;
  const auto lAll = szField.size();
  szField = Utf8::Shorten(szField, lMostBytes);
  std::vector<Run> aRuns;
  bool bEmphasis = false;
  for (std::size_t lAt = 0; lAt < szField.size();) {
    const auto lMark = std::min(szField.find('<', lAt), szField.size());
    AddText(aRuns, szField.substr(lAt, lMark - lAt), bEmphasis);
    const auto szRest = szField.substr(lMark);
    lAt = lMark;
    if (szRest.starts_with(LogGrammar::szBreak)) {
      if (aRuns.empty()) aRuns.push_back({{}, bEmphasis});
      aRuns.back().szText += '\n';
      lAt += LogGrammar::szBreak.size();
    } else if (!bEmphasis && szRest.starts_with(LogGrammar::szEmphasis) &&
               szRest.find(LogGrammar::szEmphasisEnd) != std::string_view::npos) {
      bEmphasis = true;
      lAt += LogGrammar::szEmphasis.size();
    } else if (bEmphasis && szRest.starts_with(LogGrammar::szEmphasisEnd)) {
      bEmphasis = false;
      lAt += LogGrammar::szEmphasisEnd.size();
    } else if (!szRest.empty()) {
      AddText(aRuns, szRest.substr(0, 1), bEmphasis);
      ++lAt;
    }
  }
  if (bCut) AddText(aRuns, FillResString(IDS_LOG_CUT, {LogWords::Count(lAll)}), false);
  return aRuns;
}

std::vector<Run> Words(const std::string& szText, bool bEmphasis = false) {
  return {{szText, bEmphasis}};
}

}  // namespace

std::vector<LogRows::Detail> LogRows::Details(std::size_t lRow) const {
  std::vector<Detail> aDetails;
  const auto Add = [&](StringId iName, std::vector<Run> aRuns) {
    if (!aRuns.empty() && !aRuns.front().szText.empty())
      aDetails.push_back({LoadResString(iName), std::move(aRuns)});
  };
  if (aKinds[lRow] == Kind::Gap) {
    const auto& aGap = GapOf(lRow);
    Add(IDS_LOG_COL_TIME, Words(FillResString(IDS_LOG_SPAN, {LogWords::MomentToSecond(aGap.dtFrom),
                                                             LogWords::MomentToSecond(aGap.dtTo)})));
    Add(IDS_VIEW_COL_RESULT, Words(Cell(lRow, LogColumn::Address)));
    Add(IDS_LOG_COL_REMARKS, Words(LoadResString(IDS_VIEW_DETAIL_GAP_NOTE)));
    return aDetails;
  }
  const auto aRef = aRefs[lRow];
  const auto& aLine = pHistory->Line(aRef);
  const auto& aPass = PassOf(aRef);
  if (aKinds[lRow] == Kind::Pass) {
    if (aPass.dtStart > 0) Add(IDS_LOG_COL_TIME, Words(LogWords::MomentToSecond(aPass.dtStart)));
    Add(IDS_VIEW_DETAIL_PASS, Words(PassName(aPass)));
    Add(IDS_VIEW_COL_RESULT, Words(PassCount(lRow)));
    Add(IDS_LOG_COL_REMARKS, Words(PassRemark(aPass)));
  } else if (aLine.iKind != LineKind::Entry) {
    Add(IDS_LOG_UNREAD, Words(LoadResString(IDS_VIEW_DETAIL_UNREAD_NOTE), true));
    const auto szLine = pHistory->Text(aRef);
    Add(IDS_VIEW_DETAIL_LINE,
        Words(Utf8::Clean(Utf8::Shorten(szLine, lMostBytes)) +
              (szLine.size() > lMostBytes ? FillResString(IDS_LOG_CUT, {LogWords::Count(szLine.size())})
                                          : std::string())));
  } else {
    const auto aFields = pHistory->Fields(aRef);
    Add(IDS_LOG_COL_ADDRESS, RunsOf(aFields.Address));
    Add(IDS_LOG_COL_TIME,
        Words(aLine.bTimeKnown ? LogWords::MomentToSecond(aLine.dtMoment) : Utf8::Clean(aFields.CheckTime)));
    Add(IDS_VIEW_COL_RESULT, Words(LoadResString(LogWords::OutcomeName(aLine.iOutcome))));
    Add(IDS_LOG_COL_ANSWER, RunsOf(LogWords::Answer(aFields.StatusText)));
    Add(IDS_LOG_COL_REMARKS, RunsOf(aFields.Comment));
    Add(IDS_LOG_COL_SECONDS, Words(FillResString(IDS_VIEW_SECONDS_VALUE, {Utf8::Clean(aFields.Elapsed)})));
  }
  Add(IDS_VIEW_DETAIL_FILE, Words(Utf8::Clean(LogFiles::NameOf(pHistory->File(aRef.lFile).Path()))));
  return aDetails;
}
