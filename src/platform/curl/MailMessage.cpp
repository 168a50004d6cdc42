#include "platform/curl/MailMessage.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "base/Utf8.h"
#include "platform/Clock.h"

namespace {

constexpr std::size_t lMostOfLine = 998;  // RFC 5322 section 2.1.1
constexpr std::string_view szHex = "0123456789ABCDEF";

unsigned char Byte(char ch) {
  return static_cast<unsigned char>(ch);
}

bool IsAscii(std::string_view szText) {
  return std::all_of(szText.begin(), szText.end(), [](char ch) { return Byte(ch) < 0x80; });
}

std::string Base64(std::string_view szBytes) {
  constexpr std::string_view szDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string szResult;
  for (std::size_t i = 0; i < szBytes.size(); i += 3) {
    std::uint32_t lBits = 0;
    for (std::size_t j = i; j < i + 3; ++j)
      lBits = (lBits << 8) | (j < szBytes.size() ? Byte(szBytes[j]) : 0U);
    for (std::size_t j = 0; j < 4; ++j)
      szResult += i + j <= szBytes.size() ? szDigits[(lBits >> (18 - 6 * j)) & 63] : '=';
  }
  return szResult;
}

// A header text: as it stands where that is safe, else as encoded words (RFC 2047 section 2), each of at most
// 75 characters and of whole characters, on lines of their own.
std::string HeaderText(const std::string& szRaw) {
  std::string szText = Utf8::FromLatin1WhereNeeded(szRaw);
  std::replace_if(
      szText.begin(), szText.end(), [](char ch) { return Byte(ch) < 0x20 || ch == 0x7F; }, ' ');
  if (IsAscii(szText) && szText.size() < 900 && szText.find("=?") == std::string::npos) return szText;
  constexpr std::size_t lMostOfWord = 45;
  std::string szResult, szWord;
  const auto Flush = [&] {
    szResult += (szResult.empty() ? "=?UTF-8?B?" : "\r\n =?UTF-8?B?") + Base64(szWord) + "?=";
    szWord.clear();
  };
  for (std::string_view szRest = szText; !szRest.empty();) {
    char32_t chCharacter = 0;
    const std::size_t lLength = Utf8::Decode(szRest, chCharacter);
    if (szWord.size() + lLength > lMostOfWord) Flush();
    szWord += szRest.substr(0, lLength);
    szRest.remove_prefix(lLength);
  }
  Flush();
  return szResult;
}

// Only the name before the address may be encoded.
std::string FromText(const std::string& szFrom) {
  const auto lAddress = szFrom.rfind('<');
  if (IsAscii(szFrom) || lAddress == std::string::npos || lAddress == 0) return szFrom;
  const auto lEnd = szFrom.find_last_not_of(' ', lAddress - 1);
  return lEnd == std::string::npos ? szFrom
                                   : HeaderText(szFrom.substr(0, lEnd + 1)) + " " + szFrom.substr(lAddress);
}

// What a server sent may stand in a mail, and a terminal obeys control characters. Tabs stay.
std::string Harmless(std::string_view szLine) {
  std::string szHarmless;
  for (auto lTab = szLine.find('\t'); lTab != std::string_view::npos; lTab = szLine.find('\t')) {
    szHarmless += Text::Printable(szLine.substr(0, lTab)) + '\t';
    szLine.remove_prefix(lTab + 1);
  }
  return szHarmless + Text::Printable(szLine);
}

std::vector<std::string> Lines(std::string_view szBody) {
  std::vector<std::string> aLines;
  while (!szBody.empty()) {
    const auto lEnd = std::min(szBody.find('\n'), szBody.size());
    auto szLine = szBody.substr(0, lEnd);
    if (lEnd < szBody.size() && szLine.ends_with('\r')) szLine.remove_suffix(1);
    aLines.push_back(Harmless(szLine));
    szBody.remove_prefix(std::min(lEnd + 1, szBody.size()));
  }
  return aLines;
}

bool IsPlain(const std::string& szLine) {
  return szLine.size() <= lMostOfLine && IsAscii(szLine);
}

// RFC 2045 section 6.7.
std::string QuotedPrintable(std::string_view szLine) {
  constexpr std::size_t lMost = 75;  // and the sign that the line goes on
  std::string szResult;
  std::size_t lColumn = 0;
  for (std::size_t i = 0; i < szLine.size(); ++i) {
    const char ch = szLine[i];
    const bool bLast = i + 1 == szLine.size();
    const bool bBlank = (ch == ' ' || ch == '\t') && !bLast;
    std::string szUnit(1, ch);
    if (!bBlank && (Byte(ch) <= 0x20 || Byte(ch) >= 0x7F || ch == '='))
      szUnit = {'=', szHex[Byte(ch) >> 4], szHex[Byte(ch) & 15]};
    if (lColumn + szUnit.size() > lMost) {
      szResult += "=\r\n";
      lColumn = 0;
    }
    szResult += szUnit;
    lColumn += szUnit.size();
  }
  return szResult;
}

// RFC 5322 section 3.3, with the offset from UTC that holds at that time.
std::string DateText(DateTime dtMoment) {
  static constexpr const char* aDays[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  static constexpr const char* aMonths[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                            "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const DateParts aParts = SplitDateTime(dtMoment);
  const std::int32_t lOffset = Clock::MinutesEastOfUtc(dtMoment);
  char aText[80];
  std::snprintf(aText, sizeof aText, "%s, %d %s %d %02d:%02d:%02d %c%02d%02d", aDays[aParts.lWeekday - 1],
                aParts.lDay, aMonths[aParts.lMonth - 1], aParts.lYear, aParts.lHour, aParts.lMinute,
                aParts.lSecond, lOffset < 0 ? '-' : '+', std::abs(lOffset) / 60, std::abs(lOffset) % 60);
  return aText;
}

std::string MessageID(const std::string& szTo) {
  static std::random_device aRandom;
  std::string szID = "<";
  for (int i = 0; i < 4; ++i) {
    for (std::uint32_t lBits = aRandom(), j = 0; j < 8; ++j, lBits >>= 4)
      szID += szHex[lBits & 15];
    szID += i < 3 ? "." : "@";
  }
  std::string szDomain = szTo.substr(szTo.rfind('@') + 1);  // all of it where there is none
  std::erase_if(szDomain, [](char ch) { return !std::isalnum(Byte(ch)) && ch != '.' && ch != '-'; });
  return szID + (szDomain.empty() ? "localhost" : szDomain) + ">";
}

}  // namespace

std::string MailMessage::Compose(const std::string& szFrom, const std::string& szTo,
                                 const std::string& szSubject, const std::string& szBody,
                                 const std::string& szMailer) {
  const auto aLines = Lines(Utf8::FromLatin1WhereNeeded(szBody));
  const bool bPlain = std::all_of(aLines.begin(), aLines.end(), IsPlain);

  std::string szMessage =
      "Date: " + DateText(Clock::Now()) + "\r\nFrom: " + FromText(szFrom) + "\r\nTo: " + szTo +
      "\r\nSubject: " + HeaderText(szSubject) + "\r\nMessage-ID: " + MessageID(szTo) +
      "\r\nX-Mailer: " + HeaderText(szMailer) +
      "\r\nMIME-Version: 1.0\r\nContent-Type: text/plain; charset=" + (bPlain ? "us-ascii" : "utf-8") +
      "\r\nContent-Transfer-Encoding: " + (bPlain ? "7bit" : "quoted-printable") + "\r\n\r\n";
  for (const std::string& szLine : aLines)
    (bPlain ? szMessage += szLine : szMessage += QuotedPrintable(szLine)) += "\r\n";
  return szMessage;
}
