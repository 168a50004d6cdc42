#include "support/ReadMail.h"

#include <sstream>

#include "base/Text.h"

ReadMail::ReadMail(const std::string& szMail) {
  const std::string szLines = Text::Replace(szMail, "\r\n", "\n");
  const std::size_t lGap = szLines.find("\n\n");
  if (lGap == std::string::npos) return;
  std::istringstream aLines(Text::Replace(Text::Replace(szLines.substr(0, lGap), "\n ", " "), "\n\t", " "));
  for (std::string szLine; std::getline(aLines, szLine);)
    if (const std::size_t lColon = szLine.find(':'); lColon != std::string::npos)
      aHeaders.emplace(Text::LowerCase(szLine.substr(0, lColon)), Text::Trim(szLine.substr(lColon + 1)));
  szBody = szLines.substr(lGap + 2);
  if (Text::EqualNoCase(Only("content-transfer-encoding"), "quoted-printable")) {
    szBody = Text::Replace(szBody, "=\n", "");
    for (std::size_t i = 0; (i = szBody.find('=', i)) != std::string::npos; ++i)
      szBody.replace(i, 3, 1, static_cast<char>(std::stoi(szBody.substr(i + 1, 2), nullptr, 16)));
    szBody = Text::Replace(szBody, "\r\n", "\n");
  }
  if (!szBody.ends_with('\n')) szBody += '\n';
}

std::string ReadMail::Only(const std::string& szLowerCaseName) const {
  return aHeaders.count(szLowerCaseName) == 1 ? aHeaders.find(szLowerCaseName)->second
                                              : "not exactly one " + szLowerCaseName;
}
