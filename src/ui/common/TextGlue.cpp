#include "ui/common/TextGlue.h"

#include <wx/arrstr.h>
#include <wx/control.h>
#include <wx/dcscreen.h>
#include <wx/strconv.h>

#include <algorithm>

namespace {

const wxMBConvUTF8& Lossless() {
  static const wxMBConvUTF8 aConverter(wxMBConvUTF8::MAP_INVALID_UTF8_TO_PUA);
  return aConverter;
}

}  // namespace

wxString ToWx(std::string_view szText) {
  return wxString(szText.data(), Lossless(), szText.size());
}

std::string FromWx(const wxString& szText) {
  const wxScopedCharBuffer aBytes = szText.mb_str(Lossless());
  return {aBytes.data(), aBytes.length()};
}

wxString ToWxLines(std::string_view szText) {
  wxString szLines = ToWx(szText);
  szLines.Replace("\r\n", "\n");
  return szLines;
}

wxString ResText(std::int32_t lNumber) {
  return ToWxLines(LoadResString(lNumber));
}

wxString ToWxLabel(std::string_view szText) {
  return wxControl::EscapeMnemonics(ToWx(szText));
}

wxString BreakLines(const wxString& szText, const wxWindow* pOver) {
  // Boxes break at blanks themselves, at about this length; twice would leave ragged lines.
  constexpr int lUsual = 60, lMost = 80;  // letters
  while (pOver && pOver->GetParent())
    pOver = pOver->GetParent();
  wxScreenDC aMeasure;
  aMeasure.SetFont(pOver ? pOver->GetFont() : *wxNORMAL_FONT);
  // A box has margins, and sets its first part larger and in bold. What it breaks at blanks need not fit
  // here, but some cut off a word that is longer than their usual line.
  const int lUsualRoom = lUsual * aMeasure.GetCharWidth();
  const int lOver =
      pOver ? (pOver->GetSize().x - pOver->FromDIP(80)) * 3 / 4 : lMost * aMeasure.GetCharWidth();
  const bool bAtBlanks = lOver < lUsualRoom;
  const int lRoom = std::min(lOver, lUsualRoom);
  wxString szResult;
  for (wxString szRest : wxSplit(szText, '\n', '\0')) {
    szResult << (szResult.empty() ? "" : "\n");
    for (;;) {
      wxArrayInt aEnds;
      aMeasure.GetPartialTextExtents(szRest, aEnds);
      const auto lFits = static_cast<std::size_t>(std::ranges::upper_bound(aEnds, lRoom) - aEnds.begin());
      if (lFits == szRest.length()) break;
      const std::size_t lBlank = szRest.rfind(' ', lFits);
      const bool bInWord = lBlank == wxString::npos;
      const std::size_t lPart = bInWord ? std::max<std::size_t>(1, lFits) : lBlank;
      szResult << szRest.Left(lPart) << (bInWord || bAtBlanks ? '\n' : ' ');
      szRest.erase(0, lPart + (bInWord ? 0 : 1));
    }
    szResult << szRest;
  }
  return szResult;
}
