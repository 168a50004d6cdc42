#include "log/LogGrammar.h"

#include "base/Strings.h"
#include "base/Text.h"

std::string LogGrammar::WithoutMarks(std::string_view szField) {
  auto szPlain = Text::Replace(szField, szEmphasis, "");
  if (szPlain.size() < szField.size()) szPlain = Text::Replace(szPlain, szEmphasisEnd, "");
  return Text::Replace(szPlain, szBreak, "; ");
}

std::string LogGrammar::Numbered(std::string_view szOne, std::string_view szOther) {
  return std::string(szFirst).append(szOne).append(szSecond).append(szOther);
}

std::string_view LogGrammar::FirstOfNumbered(std::string_view szField) {
  if (!szField.starts_with(szFirst)) return szField;
  szField.remove_prefix(szFirst.size());
  return szField.substr(0, szField.rfind(szSecond));
}

std::string_view LogGrammar::SecondOfNumbered(std::string_view szField) {
  const auto lSecond = szField.starts_with(szFirst) ? szField.rfind(szSecond) : szField.npos;
  return lSecond == szField.npos ? "" : szField.substr(lSecond + szSecond.size());
}

bool LogGrammar::IsAddress(std::string_view szText) {
  static const std::string_view szUnknown = LoadResString(IDS_UNKNOWN_SITE),
                                szAgent = LoadResString(IDS_AGENT);
  if (szText.starts_with(szUnknown)) return true;
  if (szText.starts_with(szFirst)) szText.remove_prefix(szFirst.size());
  return szText.starts_with(szAgent);
}
