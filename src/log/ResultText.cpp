#include "log/ResultText.h"

#include "log/LogGrammar.h"

ResultText::ResultText(ResultId iBegin, std::string_view szMore)
    : szText(LoadResString(iBegin.Text()) + szMore) {
}

ResultText ResultText::Both(const ResultText& aFirst, const ResultText& aSecond) {
  ResultText aBoth;
  aBoth.szText = LogGrammar::Numbered(aFirst.szText, aSecond.szText);
  return aBoth;
}

std::vector<ResultText> ResultText::All() {
  std::vector<ResultText> aAll(aResultTexts.size());
  for (std::size_t i = 0; i < aAll.size(); ++i)
    aAll[i].szText = LoadResString(aResultTexts[i]);
  return aAll;
}

bool ResultText::Begins(std::string_view szText) {
  if (szText.starts_with(LogGrammar::szFirst)) szText.remove_prefix(LogGrammar::szFirst.size());
  return std::ranges::any_of(aResultTexts,
                             [&](StringId iText) { return szText.starts_with(LoadResString(iText)); });
}
