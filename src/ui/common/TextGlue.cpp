#include "ui/common/TextGlue.h"

#include <wx/control.h>
#include <wx/strconv.h>

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

wxString BreakLongWords(const wxString& szText) {
  constexpr std::size_t lLongest = 80;
  wxString szResult;
  std::size_t lWord = 0;
  for (const wxUniChar ch : szText) {
    const auto lCode = ch.GetValue();
    lWord = lCode == ' ' || lCode == '\n' ? 0 : lWord + 1;
    if (lWord > lLongest) {
      szResult << '\n';
      lWord = 1;
    }
    szResult << ch;
  }
  return szResult;
}
