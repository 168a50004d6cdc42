#include "log/ResultText.h"

#include <array>

#include "log/LogGrammar.h"

ResultText::ResultText(ResultId iBegin, std::string_view szMore)
    : szText(LoadResString(iBegin.Text()) + szMore) {
}

ResultText ResultText::Both(const ResultText& aFirst, const ResultText& aSecond) {
  ResultText aBoth;
  aBoth.szText = LogGrammar::Numbered(aFirst.szText, aSecond.szText);
  return aBoth;
}

ResultText ResultText::Error(std::int32_t lError, std::string_view szInfo) {
  ResultText aError;
  aError.szText = ErrorBegin(lError).append(szInfo);
  return aError;
}

std::string ResultText::ErrorBegin(std::int32_t lError) {
  return LoadResString(IDS_RESULT_ERROR) + " " + std::to_string(lError) + " ";
}

std::vector<ResultText> ResultText::All() {
  std::vector<ResultText> aAll(aResultTexts.size());
  for (std::size_t i = 0; i < aAll.size(); ++i)
    aAll[i].szText = LoadResString(aResultTexts[i]);
  return aAll;
}

bool ResultText::Begins(std::string_view szText) {
  if (szText.starts_with(LogGrammar::szFirst)) szText.remove_prefix(LogGrammar::szFirst.size());
  static const auto aBegins = [] {
    std::array<std::string_view, aResultTexts.size()> aLoaded;
    std::ranges::transform(aResultTexts, aLoaded.begin(),
                           [](StringId iText) { return LoadResString(iText); });
    return aLoaded;
  }();
  return std::ranges::any_of(aBegins, [&](std::string_view szBegin) { return szText.starts_with(szBegin); });
}
