#include "persistence/modBasic.h"

#include <algorithm>

#include "base/Text.h"
#include "platform/Files.h"
#include "platform/Shell.h"

namespace modBasic {

std::int16_t MakeFolderPath(const std::string& szPath) {
  auto szWhole = Text::Trim(szPath);
  if (szWhole.empty()) return 3;
  szWhole += Files::chSeparator;
  szWhole.erase(std::unique(szWhole.begin(), szWhole.end(),
                            [](char chLeft, char chRight) {
                              return chLeft == Files::chSeparator && chRight == Files::chSeparator;
                            }),
                szWhole.end());
  const auto lDrive = Files::DriveLength(szWhole);
  if (lDrive == 0) return 2;
  for (auto lEnd = szWhole.find(Files::chSeparator, lDrive); lEnd != std::string::npos;
       lEnd = szWhole.find(Files::chSeparator, lEnd + 1)) {
    const auto szFolder = szWhole.substr(0, lEnd);
    if (!Files::FolderExists(szFolder) && !Files::MakeFolder(szFolder)) return 1;
  }
  return 0;
}

std::string EscapeBackslash(const std::string& szText) {
  return Text::Replace(szText, "\\", "%5c");
}

std::int16_t HasControlCharacters(const std::string& szFile) {
  const auto szStart = Files::ReadPiece(szFile, 0, 256);
  if (!szStart) return -1;
  const bool bFound = std::any_of(szStart->begin(), szStart->end(), [](char ch) {
    const auto iByte = static_cast<unsigned char>(ch);
    return (iByte < 32 && ch != '\t' && ch != '\n' && ch != '\r') || iByte == 127;
  });
  return bFound ? 1 : 0;
}

std::string ProgramFile(const std::string& szName) {
  auto szPath = Shell::ProgramFolder();
  if (szPath.empty() || szPath.back() != Files::chSeparator) szPath += Files::chSeparator;
  return szPath + szName;
}

std::int32_t OpenWithShell(const std::string& szTarget) {
  const auto lCode = Shell::OpenDocument(szTarget);
  return lCode >= 1 && lCode <= 32 ? lCode : 0;
}

}  // namespace modBasic
