// log: check logs as lines, as a summary, as a page and as a table.
#include <filesystem>

#include "base/Strings.h"
#include "base/Text.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "history/LogCsv.h"
#include "history/LogHistory.h"
#include "history/LogHtml.h"
#include "history/LogSummary.h"
#include "history/LogSummaryText.h"
#include "platform/Files.h"

namespace {

bool SameFile(const std::string& szOne, const std::string& szOther) {
  std::error_code aMissing;
  return szOne == szOther || std::filesystem::equivalent(szOne, szOther, aMissing);
}

// What is wrong with the names, as a sentence; empty when nothing is. Checked before anything is written.
std::string WrongNames(const std::vector<std::string>& aFiles, const std::string& szHtml,
                       const std::string& szCsv) {
  for (const auto& szFile : aFiles) {
    if (!Files::FileExists(szFile) && !Files::FolderExists(szFile))
      return FillResString(IDS_CLI_CANNOT_READ, {szFile});
    for (const auto& szOutput : {szHtml, szCsv})
      if (!szOutput.empty() && SameFile(szFile, szOutput))
        return FillResString(IDS_CLI_SAME_FILE, {szOutput});
  }
  if (!szHtml.empty() && SameFile(szHtml, szCsv)) return FillResString(IDS_CLI_SAME_OUTPUT, {szHtml});
  return {};
}

}  // namespace

int CliCommands::Log(const std::vector<std::string>& aFiles, const std::string& szHtml,
                     const std::string& szCsv, bool bSummary) {
  const std::string szWrong = WrongNames(aFiles, szHtml, szCsv);
  if (!szWrong.empty()) return Report::Fail(szWrong);
  LogHistory aHistory;
  aHistory.Open(aFiles);
  // A history with a hole in it would count wrongly, so one file that cannot be read is enough to give up.
  if (!aHistory.Problems().empty())
    return Report::Fail(FillResString(IDS_CLI_CANNOT_READ, {aHistory.Problems().front().szPath}));
  if (aHistory.FileCount() == 0) return Report::Fail(FillResString(IDS_CLI_NO_LOGS, {aFiles.front()}));

  const LogSummary aSummary = Summarise(aHistory);
  if (!szHtml.empty()) {
    if (!LogHtml::Write(szHtml, aHistory, aSummary))
      return Report::Fail(FillResString(IDS_CLI_CANNOT_WRITE, {szHtml}));
    Report::Say(FillResString(IDS_CLI_FILE_WRITTEN, {Text::Printable(szHtml)}));
  }
  if (!szCsv.empty()) {
    if (!LogCsv::Write(szCsv, aHistory)) return Report::Fail(FillResString(IDS_CLI_CANNOT_WRITE, {szCsv}));
    Report::Say(FillResString(IDS_CLI_FILE_WRITTEN, {Text::Printable(szCsv)}));
  }
  if (bSummary) {
    Report::Say(LogSummaryText::Compose(aSummary));
  } else if (szHtml.empty() && szCsv.empty()) {
    for (const auto aLine : aHistory.Lines())
      Report::Say(Text::Printable(aHistory.Text(aLine)));
  }
  return Report::iAllUp;
}
