#include "check/ResultCodes.h"

#include <algorithm>
#include <array>

#include "base/Text.h"

namespace {

// A redirect (302) and an unchanged page (304) are a site at work; a page that moved for good (301) is not.
constexpr std::array<std::int32_t, 5> aUp = {200, 201, 202, 302, 304};

struct ListedStatus {
  std::int32_t lStatus;
  ResultId iText;
};
constexpr std::array<ListedStatus, 12> aListed = {{
    {204, IDS_RESULT_204},
    {301, IDS_RESULT_301},
    {400, IDS_RESULT_400},
    {401, IDS_RESULT_401},
    {403, IDS_RESULT_403},
    {404, IDS_RESULT_404},
    {405, IDS_RESULT_405},
    {500, IDS_RESULT_500},
    {501, IDS_RESULT_501},
    {502, IDS_RESULT_502},
    {503, IDS_RESULT_503},
    {504, IDS_RESULT_504},
}};

struct StatusClass {
  char chFirst;
  const char* szCode;
  ResultId iText;
  std::int16_t iBackupOutcome;
};
constexpr std::array<StatusClass, 5> aClasses = {{
    {'1', "1xx", IDS_RESULT_1XX, iServerAnswered},
    {'2', "2xx", IDS_RESULT_2XX, iServerAnswered},
    {'3', "3xx", IDS_RESULT_3XX, iServerAnswered},
    {'4', "4xx", IDS_RESULT_4XX, iServerFailed},
    {'5', "5xx", IDS_RESULT_5XX, iServerFailed},
}};

Classification Failure(const std::string& szCode, const ResultText& aText,
                       std::int16_t iBackupOutcome = iServerFailed) {
  Classification aResult;
  aResult.szCode = szCode;
  aResult.aText = aText;
  aResult.iBackupOutcome = iBackupOutcome;
  return aResult;
}

}  // namespace

std::string GetResponseCode(const std::string& szHeader) {
  const std::size_t lProtocol = Text::UpperCase(szHeader).find("HTTP/");
  if (lProtocol == std::string::npos) return szCodeUnreadable;
  const std::size_t lBlank = szHeader.find(' ', lProtocol);
  if (lBlank == std::string::npos) return szCodeUnreadable;
  std::string szCode = szHeader.substr(lBlank + 1, 3);
  // As a number a code loses its leading zeros; then it is no longer three characters long.
  if (szCode.size() != 3 || !Text::IsDigits(szCode) || szCode.front() == '0') return szCodeUnreadable;
  return szCode;
}

Classification ClassifyResponse(const std::string& szHeader) {
  const std::string szCode = GetResponseCode(szHeader);
  const std::int32_t lStatus = Text::LeadingNumber(szCode);
  if (lStatus == 0) {
    Classification aResult = Failure(szCodeUnreadable, ResultText(IDS_RESULT_NO_CODE));
    aResult.aLogStatus = ResultText(IDS_LOG_NO_CODE);
    return aResult;
  }
  if (std::ranges::find(aUp, lStatus) != aUp.end()) {
    Classification aResult;
    aResult.bUp = true;
    return aResult;
  }
  if (const auto aStatus = std::ranges::find(aListed, lStatus, &ListedStatus::lStatus);
      aStatus != aListed.end()) {
    return Failure(szCode, ResultText(aStatus->iText));
  }
  const auto aClass = std::ranges::find(aClasses, szCode.front(), &StatusClass::chFirst);
  if (aClass == aClasses.end()) return Failure(szCodeUnreadable, ResultText(IDS_RESULT_UNKNOWN_CODE));
  return Failure(aClass->szCode, ResultText(aClass->iText), aClass->iBackupOutcome);
}

Classification ClassifyTimeOut() {
  return Failure(szCodeTimedOut, ResultText(IDS_RESULT_TIMED_OUT));
}

Classification ClassifyError(std::int32_t lError, const std::string& szInfo) {
  return Failure(szCodeError, ResultText::Error(lError, szInfo));
}

Classification ClassifyUnknownState(std::int16_t iInetState) {
  return Failure(szCodeUnreadable,
                 ResultText(IDS_RESULT_UNKNOWN_STATE, " (" + std::to_string(iInetState) + ")"));
}
