#include "history/LogFilter.h"

#include <cstring>

#include "base/Strings.h"
#include "base/Text.h"

namespace {

std::vector<std::string> SplitWords(std::string_view szWords) {
  std::vector<std::string> aWords;
  std::size_t lFrom = 0;
  while ((lFrom = szWords.find_first_not_of(' ', lFrom)) != std::string_view::npos) {
    const auto lPast = std::min(szWords.find(' ', lFrom), szWords.size());
    aWords.push_back(Text::LowerCase(szWords.substr(lFrom, lPast - lFrom)));
    lFrom = lPast;
  }
  return aWords;
}

char Lower(char chByte) {
  return chByte >= 'A' && chByte <= 'Z' ? static_cast<char>(chByte + ('a' - 'A')) : chByte;
}

bool Contains(std::string_view szText, const std::string& szLowerWord) {
  if (szText.size() < szLowerWord.size()) return false;
  const auto lLast = szText.size() - szLowerWord.size();
  for (std::size_t lAt = 0; lAt <= lLast; ++lAt) {
    std::size_t lSame = 0;
    while (lSame < szLowerWord.size() && Lower(szText[lAt + lSame]) == szLowerWord[lSame])
      ++lSame;
    if (lSame == szLowerWord.size()) return true;
  }
  return false;
}

bool ContainsAll(std::string_view szText, const std::vector<std::string>& aWords) {
  for (const auto& szWord : aWords)
    if (!Contains(szText, szWord)) return false;
  return true;
}

constexpr std::uint32_t lAnySite = UINT32_MAX;
constexpr std::uint32_t lNoSite = UINT32_MAX - 1;

std::uint32_t FindSite(const LogHistory& aHistory, const std::string& szSite) {
  if (szSite.empty()) return lAnySite;
  for (std::uint32_t lSite = 0; lSite < aHistory.Sites().size(); ++lSite)
    if (Text::EqualNoCase(aHistory.Sites()[lSite], szSite)) return lSite;
  return lNoSite;
}

bool Remarks(const LogHistory& aHistory, LogHistory::LineRef aRef, LogFilter::Remark iWanted) {
  using enum LogFilter::Remark;
  if (iWanted == Any) return true;
  if (aHistory.Line(aRef).iKind != LineKind::Entry) return false;
  const auto szComment = aHistory.Fields(aRef).Comment;
  const auto Tells = [&](StringId iText) {
    return szComment.find(LoadResString(iText)) != std::string_view::npos;
  };
  if (iWanted == IPCheck) return Tells(IDS_IP_CHECK_PERFORMED);
  return Tells(IDS_MAIL_FAILED) || (iWanted == Mail && Tells(IDS_MAIL_SENT));
}

std::optional<std::size_t> Step(const LogHistory& aHistory, const std::vector<LogHistory::LineRef>& aLines,
                                std::size_t lFrom, bool bForward, std::string_view szWords) {
  const auto aWords = SplitWords(szWords);
  if (aWords.empty()) return {};
  const auto lCount = aLines.size();
  for (std::size_t lDone = 0; lDone < lCount; ++lDone) {
    lFrom = bForward ? (lFrom + 1) % lCount : (lFrom + lCount - 1) % lCount;
    if (ContainsAll(aHistory.Text(aLines[lFrom]), aWords)) return lFrom;
  }
  return {};
}

}  // namespace

bool LogFilter::Empty() const {
  return szSite.empty() && (lOutcomes & lEvery) == lEvery && iRemark == Remark::Any && Text::IsBlank(szWords);
}

std::vector<LogHistory::LineRef> LogFilter::Apply(const LogHistory& aHistory) const {
  if (Empty()) return aHistory.Lines();
  const auto aWords = SplitWords(szWords);
  const auto lSite = FindSite(aHistory, szSite);
  std::vector<LogHistory::LineRef> aFound;
  std::optional<LogHistory::LineRef> aStart;  // of the present pass, until it is shown
  for (const auto aRef : aHistory.Lines()) {
    const auto& aLine = aHistory.Line(aRef);
    if (aLine.iKind == LineKind::StartManual || aLine.iKind == LineKind::StartAuto) {
      aStart = aRef;
      continue;
    }
    if (aLine.iKind == LineKind::End) {
      aStart.reset();
      continue;
    }
    if ((lOutcomes & Bit(aLine.iOutcome)) == 0) continue;
    if (lSite != lAnySite && (aLine.iKind != LineKind::Entry || aLine.lSite != lSite)) continue;
    if (!Remarks(aHistory, aRef, iRemark)) continue;
    if (!aWords.empty() && !ContainsAll(aHistory.Text(aRef), aWords)) continue;
    if (aStart && aHistory.Line(*aStart).lPass == aLine.lPass && aStart->lFile == aRef.lFile)
      aFound.push_back(*aStart);
    aStart.reset();
    aFound.push_back(aRef);
  }
  return aFound;
}

std::optional<std::size_t> LogFind::Next(const LogHistory& aHistory,
                                         const std::vector<LogHistory::LineRef>& aLines,
                                         std::optional<std::size_t> lFrom, std::string_view szWords) {
  if (aLines.empty()) return {};
  return Step(aHistory, aLines, lFrom.value_or(aLines.size() - 1), true, szWords);
}

std::optional<std::size_t> LogFind::Previous(const LogHistory& aHistory,
                                             const std::vector<LogHistory::LineRef>& aLines,
                                             std::optional<std::size_t> lFrom, std::string_view szWords) {
  if (aLines.empty()) return {};
  return Step(aHistory, aLines, lFrom.value_or(0), false, szWords);
}
