#include "alert/AlertText.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

#include "alert/IPCheckMeaning.h"
#include "alert/modBackUpEmailContent.h"
#include "base/Strings.h"
#include "base/Text.h"
#include "platform/Files.h"
#include "platform/Shell.h"

namespace {

constexpr std::string_view szLineEnd = "\r\n";
constexpr std::size_t lColumns = 76;
constexpr std::size_t lMostBytes = std::size_t{1024} * 1024;
constexpr int lMostReplacements = 10'000;

std::string MessageFile(const std::string& szName) {
  const std::string szBelow = std::string{Files::chSeparator} + "Messages" + Files::chSeparator + szName;
  // The folder of an installed program is not the operator's to edit.
  std::string szOwn = Shell::UserDataFolder() + szBelow;
  return Files::FileExists(szOwn) ? szOwn : Shell::ProgramFolder() + szBelow;
}

std::string ReadTemplate(const std::string& szFile) {
  auto szText = Files::ReadWhole(szFile, lMostBytes);
  if (!szText) throw AlertAbandoned(LoadResString(IDS_ALERT_UNREADABLE) + szFile);
  return *std::move(szText);
}

// The order counts: a value may hold the placeholders that come after its own. The last eight are about the
// last request.
using Placeholders = std::array<std::pair<std::string_view, std::string>, 14>;

Placeholders PlaceholderValues(const SiteRecord& aSite, const SettingsRecord& aSettings,
                               const CheckFacts& aFacts) {
  const std::string szAgent = LoadResString(IDS_AGENT);
  const RequestFacts& aLast = aFacts.Last();
  const bool bByIP = aFacts.aByIP.has_value();
  return {{
      {"%FIRSTFAILURE%", aFacts.FirstFailure == 0 ? std::string(LoadResString(IDS_ALERT_TIME_UNKNOWN))
                                                  : FormatGeneral(aFacts.FirstFailure)},
      {"%SECONDFAILURE%", FormatGeneral(aFacts.SecondFailure)},
      {"%RESULT%", aFacts.aByName.szResult},
      {"%IPRESULT%", bByIP ? aLast.szResult : ""},
      {"%MEANING%", bByIP ? LoadResString(IPCheckMeaning::Of(aFacts.aByName, aLast)) : TableText()},
      {"%ANSWER%", aFacts.aByName.szHeader},
      {"%MGRNAME%", Text::IsBlank(aSettings.Name) ? LoadResString(IDS_ALERT_MANAGER) : aSettings.Name},
      // After an IP check the client's last address is the IP; the mail is about the site.
      {"%URL%", bByIP ? szAgent + aSite.URL : aLast.szURL},
      {"%IP%", szAgent + aSite.IP},
      {"%TIMEOUT%", std::to_string(aSite.TimeOut) + " " + LoadResString(IDS_ALERT_SECONDS)},
      {"%ERRORINFO%", aLast.szErrorText},
      {"%ERRORCODE%", std::to_string(aLast.lErrorNumber)},
      {"%RESPONSECODE%", ""},
      {"%HEADER%", aLast.szHeader},
  }};
}

// A text being filled in, with its upper-case twin to search in: placeholders count in any letter case.
class Filler {
 public:
  explicit Filler(const std::string& szText) : szFilled(szText), szUpper(Text::UpperCase(szText)) {}

  void ReplaceAll(std::string_view szName, const std::string& szValue) {
    const std::string szUpperValue = Text::UpperCase(szValue);
    // A server can send a header that says "%HEADER%". Such a value goes in once for each occurrence and is
    // not searched itself; behind any other the search starts over.
    const bool bHoldsItself = szUpperValue.find(szName) != std::string::npos;
    std::size_t lFrom = 0;
    for (std::size_t lAt; (lAt = szUpper.find(szName, lFrom)) != std::string::npos;) {
      if (lReplacements == lMostReplacements || szFilled.size() - szName.size() + szValue.size() > lMostBytes)
        return;
      ++lReplacements;
      szFilled.replace(lAt, szName.size(), szValue);
      szUpper.replace(lAt, szName.size(), szUpperValue);
      lFrom = bHoldsItself ? lAt + szValue.size() : lAt - std::min(lAt, szName.size() - 1);
    }
  }

  const std::string& Result() const { return szFilled; }

 private:
  std::string szFilled;
  std::string szUpper;
  int lReplacements = 0;
};

// Where the next line of the rest ends: its length, how many characters the break itself takes, and whether
// this was the last one.
struct LineBreak {
  std::size_t lLength;
  std::size_t lSkip = 0;
  bool bLast = false;
};

// lPair: where the rest has its first CR LF, npos for nowhere. A line broken at a blank keeps it. Positions
// in the comments count from 1: a pair that starts at 75 still ends the line, one at 76 does not.
LineBreak NextBreak(std::string_view szRest, std::size_t lPair) {
  const bool bPair = lPair != std::string_view::npos;
  if (bPair && lPair + 1 < lColumns) return {lPair, szLineEnd.size()};
  if (bPair && szRest[lColumns - 1] == ' ') return {lColumns};
  if (!bPair && szRest.size() <= lColumns) return {szRest.size(), 0, true};
  if (const auto lBlank = szRest.substr(0, lColumns).rfind(' '); lBlank != std::string_view::npos)
    return {lBlank + 1};
  if (const auto lBlank = szRest.find(' '); lBlank != std::string_view::npos) return {lBlank + 1};
  return {szRest.size(), 0, true};
}

std::string Wrap(std::string_view szText) {
  std::string szWrapped;
  szWrapped.reserve(szText.size() + szText.size() / 16);
  std::size_t lAt = 0;
  std::size_t lPair = szText.find(szLineEnd);  // looked for once each, or a long text takes quadratic time
  while (true) {
    if (lPair != std::string_view::npos && lPair < lAt) lPair = szText.find(szLineEnd, lAt);
    const std::string_view szRest = szText.substr(lAt);
    const LineBreak aBreak = NextBreak(szRest, lPair == std::string_view::npos ? lPair : lPair - lAt);
    szWrapped += szRest.substr(0, aBreak.lLength);
    if (aBreak.bLast) return szWrapped;
    szWrapped += szLineEnd;
    lAt += aBreak.lLength + aBreak.lSkip;
  }
}

}  // namespace

std::string AlertText::BodyTemplate(const std::string& szCode) {
  for (const std::string& szName : {"HTTP-" + szCode + ".txt", std::string("Unknown.txt")})
    if (const std::string szFile = MessageFile(szName); Files::FileExists(szFile))
      return ReadTemplate(szFile);
  // The table goes by number, and a class such as "3xx" is none: without a file it has no text.
  if (!Text::IsDigits(szCode)) throw AlertAbandoned(LoadResString(IDS_ALERT_NO_TEXT) + szCode);
  return modBackUpEmailContent::BuiltInMessage(Text::LeadingNumber(szCode));
}

std::string AlertText::PostscriptTemplate(bool bIPAnswered) {
  const std::string szFile = MessageFile(bIPAnswered ? "DT_OK.txt" : "DT_NG.txt");
  if (Files::FileExists(szFile)) return ReadTemplate(szFile);
  return LoadResString(IDS_ALERT_IP_CHECK) + std::string(szLineEnd) +
         LoadResString(bIPAnswered ? IDS_ALERT_IP_OK : IDS_ALERT_IP_FAILED);
}

std::string AlertText::ParseEmailContent(const std::string& szText, const SiteRecord& aSite,
                                         const SettingsRecord& aSettings, const CheckFacts& aFacts) {
  Filler aFiller(szText);
  for (const auto& [szName, szValue] : PlaceholderValues(aSite, aSettings, aFacts))
    aFiller.ReplaceAll(szName, szValue);
  return Wrap(aFiller.Result());
}

std::string AlertText::ComposeBody(const std::string& szCode, const SiteRecord& aSite,
                                   const SettingsRecord& aSettings, const CheckFacts& aFacts) {
  const std::string szBody = BodyTemplate(szCode);
  if (!aFacts.aByIP) return ParseEmailContent(szBody, aSite, aSettings, aFacts);
  const std::string szPostscript =
      ParseEmailContent(PostscriptTemplate(aFacts.aByIP->szCode.empty()), aSite, aSettings, aFacts);
  const std::string szFilled = ParseEmailContent(szBody, aSite, aSettings, aFacts);
  // An emptied postscript file is the operator's way of having none.
  return szPostscript.empty() ? szFilled : szFilled + "\r\n\r\n" + szPostscript;
}
