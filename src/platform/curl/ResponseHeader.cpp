#include "platform/curl/ResponseHeader.h"

#include "base/Text.h"

namespace {

bool IsStatusLine(std::string_view szLine) {
  return Text::EqualNoCase(szLine.substr(0, 5), "HTTP/");
}

// 101 ends the exchange in HTTP: it is final.
bool IsInterim(std::string_view szStatusLine) {
  const auto lBlank = szStatusLine.find(' ');
  if (lBlank == std::string_view::npos) return false;
  const auto szCode = szStatusLine.substr(lBlank + 1, 3);
  return szCode.size() == 3 && szCode.front() == '1' && szCode != "101";
}

}  // namespace

bool ResponseHeader::TakeLine(std::string_view szLine) {
  lOnWire += szLine.size();
  if (lOnWire > lMostOnWire) return false;
  if (bComplete && !bInterim) return true;  // a trailer field
  if ((!bStatusLineSeen || bComplete) && IsStatusLine(szLine)) {
    szText.clear();
    bStatusLineSeen = true;
    bComplete = false;
    bInterim = IsInterim(szLine);
  }
  if (szLine == "\r\n" || szLine == "\n")
    bComplete = true;
  else if (szText.size() + szLine.size() <= lMostKept)
    szText += szLine;
  return true;
}
