// ResultText: what an entry of the log says of a check. It begins with one of the texts of
// resources/strings/results.def, because by its beginning the reader tells where an unquoted address with
// commas ends and the result starts. A text that is not listed there does not compile as a result, so
// nothing can be recorded that would be read back wrongly.
#pragma once

#include <algorithm>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Strings.h"

// The number of a listed text.
class ResultId {
 public:
  consteval ResultId(StringId iResult) : iText(iResult) {  // NOLINT(google-explicit-constructor)
    if (std::ranges::find(aResultTexts, iResult) == aResultTexts.end())
      throw "a text that begins a result is to be listed in resources/strings/results.def";
  }
  constexpr StringId Text() const { return iText; }

 private:
  StringId iText;
};

class ResultText {
 public:
  ResultText() = default;  // no result: the check was stopped
  // szMore: what the moment adds behind the listed text, such as a server's own words.
  explicit ResultText(ResultId iBegin, std::string_view szMore = {});
  // The two results of an IP check.
  static ResultText Both(const ResultText& aFirst, const ResultText& aSecond);

  const std::string& Text() const { return szText; }
  bool Empty() const { return szText.empty(); }

  // An error of the HTTP client: its number and its words.
  static ResultText Error(std::int32_t lError, std::string_view szInfo);
  // With which the result begins that names this error.
  static std::string ErrorBegin(std::int32_t lError);

  // Every listed text as a result.
  static std::vector<ResultText> All();
  // True for a text with which a result, or the first of two, begins.
  static bool Begins(std::string_view szText);

 private:
  std::string szText;
};
