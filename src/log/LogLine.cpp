#include "log/LogLine.h"

#include <string>

#include "base/Strings.h"
#include "log/CheckLog.h"
#include "log/LogGrammar.h"
#include "log/ResultText.h"

namespace {

using namespace LogGrammar;

constexpr std::size_t lNone = std::string_view::npos;
constexpr std::size_t lLongestEntry = 65536;  // bytes; the writer's lines are far shorter

bool IsDigit(char chByte) {
  return chByte >= '0' && chByte <= '9';
}

// 0 to 59 as the writer puts it, without a leading zero.
bool IsElapsed(std::string_view szText) {
  if (szText.size() == 1) return IsDigit(szText[0]);
  return szText.size() == 2 && szText[0] >= '1' && szText[0] <= '5' && IsDigit(szText[1]);
}

bool ReadStart(std::string_view szLine, std::string_view szBegin, PlacedLine& aLine) {
  if (!szLine.starts_with(szBegin) || !szLine.ends_with(szStartEnd)) return false;
  szLine.remove_prefix(szBegin.size());
  szLine.remove_suffix(szStartEnd.size());
  return ReadLogMoment(szLine, aLine.dtMoment);
}

// A line that was cut short and then continued by the next one holds the next one's time before its address.
bool HoldsTwoLines(std::string_view szMiddle) {
  for (std::size_t lComma = szMiddle.find(chField); lComma != lNone;
       lComma = szMiddle.find(chField, lComma + 1))
    if (lComma >= 3 && (szMiddle.substr(lComma - 3, 3) == " AM" || szMiddle.substr(lComma - 3, 3) == " PM") &&
        IsAddress(szMiddle.substr(lComma + 1)))
      return true;
  return false;
}

// The comma between address and text.
std::size_t FindText(std::string_view szMiddle) {
  std::size_t lFirst = 0;
  if (szMiddle.starts_with(szFirst)) {
    // The address's own second half; the text may have one too.
    const auto szOther = std::string(szSecond) + LoadResString(IDS_AGENT);
    const auto lSecond = szMiddle.find(szOther);
    if (lSecond != lNone) lFirst = lSecond + szOther.size();
  }
  lFirst = szMiddle.find(chField, lFirst);
  for (auto lComma = lFirst; lComma != lNone; lComma = szMiddle.find(chField, lComma + 1))
    if (ResultText::Begins(szMiddle.substr(lComma + 1))) return lComma;
  return lFirst != lNone && szMiddle.ends_with(chField) ? szMiddle.size() - 1 : lFirst;
}

Outcome OutcomeOf(char chClass, std::string_view szComment) {
  static const std::string_view szStopped = LoadResString(IDS_MANUALLY_STOPPED);
  if (szComment.ends_with(szStopped)) return Outcome::None;
  switch (chClass - '0') {
    case CheckLog::iClassSuccess:
      return Outcome::Up;
    case CheckLog::iClassFailure:
      return Outcome::Down;
    case CheckLog::iClassDisabled:
      return Outcome::Disabled;
    case CheckLog::iClassFirstFailure:
      return Outcome::Warning;
    default:
      return Outcome::None;
  }
}

bool ReadEntry(std::string_view szLine, PlacedLine& aLine) {
  if (szLine.size() > lLongestEntry) return false;
  const auto lFirst = szLine.find(chField);
  const auto lLast = szLine.rfind(chField);
  if (lFirst == lNone || lLast == lFirst || lLast + 2 != szLine.size()) return false;
  const char chClass = szLine.back();
  if (chClass < '0' || chClass > '0' + CheckLog::iClassFirstFailure || !IsAddress(szLine.substr(lFirst + 1)))
    return false;
  auto lBehind = szLine.rfind(chField, lLast - 1);  // the comma behind the elapsed seconds
  auto lBefore = lNone;
  for (; lBehind != lNone && lBehind > lFirst; lBehind = lBefore) {
    lBefore = szLine.rfind(chField, lBehind - 1);
    if (lBefore == lNone || lBefore <= lFirst) return false;
    if (IsElapsed(szLine.substr(lBefore + 1, lBehind - lBefore - 1))) break;
  }
  if (lBehind == lNone || lBehind <= lFirst) return false;
  const auto szMiddle = szLine.substr(lFirst + 1, lBefore - lFirst - 1);
  const auto lText = FindText(szMiddle);
  if (lText == lNone || HoldsTwoLines(szMiddle) || !ReadLogMoment(szLine.substr(0, lFirst), aLine.dtMoment))
    return false;
  aLine.lAddress = static_cast<std::uint32_t>(lFirst + 1);
  aLine.lStatus = static_cast<std::uint32_t>(lFirst + 1 + lText + 1);
  aLine.lElapsed = static_cast<std::uint32_t>(lBefore + 1);
  aLine.lComment = static_cast<std::uint32_t>(lBehind + 1);
  aLine.iOutcome = OutcomeOf(chClass, szLine.substr(lBehind + 1, lLast - lBehind - 1));
  for (auto lDigit = lBefore + 1; lDigit < lBehind; ++lDigit)
    aLine.iSeconds = static_cast<std::uint8_t>(aLine.iSeconds * 10 + (szLine[lDigit] - '0'));
  return true;
}

}  // namespace

// The writer's form; the form with a two-digit year, as older logs have it; and a time without a day, which
// stands for day 0.
bool ReadLogMoment(std::string_view szText, DateTime& dtMoment) {
  if (szText.size() < 10 || szText.size() > 22) return false;
  if (ParseGeneral(szText, dtMoment)) return true;
  const auto lBlank = szText.find(' ');
  const auto lSlash = szText.rfind('/', lBlank);
  if (lBlank == lNone) return false;
  if (lSlash == lNone) return ParseGeneral("12/30/1899 " + std::string(szText), dtMoment);
  if (lBlank != lSlash + 3) return false;
  const std::string szCentury = szText[lSlash + 1] < '3' ? "20" : "19";
  return ParseGeneral(
      std::string(szText.substr(0, lSlash + 1)) + szCentury + std::string(szText.substr(lSlash + 1)),
      dtMoment);
}

void ReadLogLine(std::string_view szLine, PlacedLine& aLine) {
  aLine = {};
  if (szLine.starts_with('[')) {
    if (szLine == szEnd) aLine.iKind = LineKind::End;
    if (ReadStart(szLine, szStartManual, aLine)) aLine.iKind = LineKind::StartManual;
    if (ReadStart(szLine, szStartAuto, aLine)) aLine.iKind = LineKind::StartAuto;
  } else if (ReadEntry(szLine, aLine)) {
    aLine.iKind = LineKind::Entry;
  }
  aLine.bTimeKnown = aLine.dtMoment >= 1;  // day 0 stands for "no time"
  if (aLine.iKind != LineKind::Unread && aLine.iKind != LineKind::Entry) aLine.iOutcome = Outcome::None;
}

LogFields SplitLogLine(std::string_view szLine, const PlacedLine& aLine) {
  const auto Between = [&](std::uint32_t lFrom, std::uint32_t lNext) {
    return szLine.substr(lFrom, lNext - 1 - lFrom);
  };
  const auto lClass = static_cast<std::uint32_t>(szLine.size() - 1);
  return {szLine.substr(0, aLine.lAddress - 1),   Between(aLine.lAddress, aLine.lStatus),
          Between(aLine.lStatus, aLine.lElapsed), Between(aLine.lElapsed, aLine.lComment),
          Between(aLine.lComment, lClass),        szLine.substr(lClass)};
}

bool LooksLikeStart(std::string_view szLine) {
  return szLine.starts_with(szStart);
}

std::string_view SiteOfAddress(std::string_view szAddress) {
  szAddress = FirstOfNumbered(szAddress);
  static const std::string_view szAgent = LoadResString(IDS_AGENT);
  if (szAddress.starts_with(szAgent)) szAddress.remove_prefix(szAgent.size());
  while (szAddress.starts_with(' '))
    szAddress.remove_prefix(1);
  while (szAddress.ends_with(' '))
    szAddress.remove_suffix(1);
  return szAddress;
}
