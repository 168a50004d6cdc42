#include "history/LogReader.h"

#include <algorithm>

#include "platform/Files.h"

namespace {
constexpr std::size_t lProbe = 256;  // bytes compared at either end to notice a replaced file
constexpr std::string_view szByteOrderMark = "\xEF\xBB\xBF";
}  // namespace

bool LogReader::StillTheSame() const {
  const auto lLength = std::min(szText.size(), lProbe);
  const auto szHead = Files::ReadPiece(szPath, 0, lLength);
  const auto szTail = Files::ReadPiece(szPath, szText.size() - lLength, lLength);
  return szHead && szTail && Text().starts_with(*szHead) && szHead->size() == lLength &&
         Text().ends_with(*szTail) && szTail->size() == lLength;
}

LogReader::LogReader(std::string szName, std::string szBytes)
    : szPath(std::move(szName)), szText(std::move(szBytes)), bReadOnce(true), bNoFile(true) {
  if (szText.starts_with(szByteOrderMark)) lReadTo = szByteOrderMark.size();
  ReadLines();
}

LogReader::Change LogReader::Update() {
  if (bNoFile) return Change::None;
  const auto lSize = Files::FileSize(szPath);
  if (!lSize) return Change::Unreadable;
  if (*lSize > lMostBytes) return Change::TooLarge;
  const bool bReplaced = bReadOnce && (*lSize < szText.size() || !StillTheSame());
  const std::size_t lKept = bReplaced ? 0 : szText.size();
  if (bReadOnce && lKept == *lSize && !bReplaced) return Change::None;
  auto szNew = Files::ReadPiece(szPath, lKept, *lSize - lKept);
  if (!szNew) return Change::Unreadable;
  if (lKept == 0) {
    szText = std::move(*szNew);
    aLines.clear();
    lReadTo = szText.starts_with(szByteOrderMark) ? szByteOrderMark.size() : 0;
    bUnfinished = false;
  } else {
    szText += *szNew;
  }
  bReadOnce = true;
  ReadLines();
  return bReplaced ? Change::Replaced : Change::Grown;
}

void LogReader::ReadLines() {
  if (bUnfinished) aLines.pop_back();
  if (aLines.empty()) aLines.reserve(szText.size() / 64);
  for (auto lEnd = szText.find('\n', lReadTo); lEnd != std::string::npos; lEnd = szText.find('\n', lReadTo)) {
    AddLine(lReadTo, lEnd);
    lReadTo = lEnd + 1;
  }
  const auto lLines = aLines.size();
  AddLine(lReadTo, szText.size());
  bUnfinished = aLines.size() > lLines;
}

void LogReader::AddLine(std::size_t lFrom, std::size_t lPast) {
  if (lPast > lFrom && szText[lPast - 1] == '\r') --lPast;
  if (lPast == lFrom) return;
  LogLine aLine;
  aLine.lOffset = static_cast<std::uint32_t>(lFrom);
  ReadLogLine(Text().substr(lFrom, lPast - lFrom), aLine);
  aLines.push_back(aLine);
}
