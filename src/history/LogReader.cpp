#include "history/LogReader.h"

#include <algorithm>

#include "log/LogGrammar.h"
#include "platform/Files.h"

namespace {

constexpr std::size_t lProbe = 256;  // bytes compared at either end to notice a replaced file
constexpr std::uint64_t lPiece = std::uint64_t{1} << 20U;  // bytes read at a time
constexpr std::string_view szByteOrderMark = "\xEF\xBB\xBF";

}  // namespace

LogReader::LogReader(std::string szName, std::string_view szBytes)
    : szPath(std::move(szName)), bReadOnce(true), bNoFile(true) {
  Take(szBytes);
}

bool LogReader::StillTheSame() const {
  return Files::ReadPiece(szPath, 0, szHead.size()) == szHead &&
         Files::ReadPiece(szPath, lSeen - szTail.size(), szTail.size()) == szTail;
}

LogReader::Change LogReader::Update() {
  if (bNoFile) return Change::None;
  const auto lSize = Files::FileSize(szPath);
  if (!lSize) return Change::Unreadable;
  if (*lSize > lMostBytes) return Change::TooLarge;
  if (!bReadOnce || *lSize < lSeen || !StillTheSame()) return ReadAll(*lSize);
  if (lSeen == *lSize) return Change::None;
  const auto szNew = Files::ReadPiece(szPath, lSeen, *lSize - lSeen);
  if (!szNew) return Change::Unreadable;
  Take(*szNew);
  return Change::Grown;
}

LogReader::Change LogReader::ReadAll(std::uint64_t lSize) {
  const auto iChange = bReadOnce ? Change::Replaced : Change::Grown;
  LogReader aAnew(szPath);
  aAnew.bReadOnce = true;
  // About as long as lines are, and what of them is their own.
  aAnew.aLines.reserve(lSize / 64);
  aAnew.szOwn.reserve(lSize / 3);
  while (aAnew.lSeen < lSize) {
    const auto szNew = Files::ReadPiece(szPath, aAnew.lSeen, std::min(lPiece, lSize - aAnew.lSeen));
    if (!szNew) return Change::Unreadable;
    if (szNew->empty()) break;  // it was cut meanwhile
    aAnew.Take(*szNew);
  }
  *this = std::move(aAnew);
  return iChange;
}

void LogReader::Take(std::string_view szNew) {
  if (bUnfinished) {
    szOwn.resize(aLines.back().lOwn);
    aLines.pop_back();
  }
  const bool bMarked = lSeen == 0 && szNew.starts_with(szByteOrderMark);
  lSeen += szNew.size();
  szHead += szNew.substr(0, lProbe - szHead.size());
  szTail += szNew.substr(szNew.size() - std::min(szNew.size(), lProbe));
  szTail.erase(0, szTail.size() - std::min(szTail.size(), lProbe));
  szPending += szNew;
  std::string_view szLeft = szPending;
  if (bMarked) szLeft.remove_prefix(szByteOrderMark.size());
  for (auto lEnd = szLeft.find('\n'); lEnd != std::string_view::npos; lEnd = szLeft.find('\n')) {
    AddLine(szLeft.substr(0, lEnd));
    szLeft.remove_prefix(lEnd + 1);
  }
  const auto lLines = aLines.size();
  AddLine(szLeft);
  bUnfinished = aLines.size() > lLines;
  szPending.erase(0, szPending.size() - szLeft.size());
}

void LogReader::AddLine(std::string_view szLine) {
  if (szLine.ends_with('\r')) szLine.remove_suffix(1);
  if (szLine.empty()) return;
  const auto lComma = szLine.find(LogGrammar::chField);
  if (lComma == std::string_view::npos || !AddKnownEntry(szLine, lComma)) AddReadLine(szLine, lComma);
}

bool LogReader::AddKnownEntry(std::string_view szLine, std::size_t lComma) {
  if (aShared.empty()) return false;
  const auto szText = szLine.substr(lComma + 1);
  // Sites are checked in their order, so what came next before mostly comes next again.
  auto lNumber = aShared[lLastShared].lFollower;
  if (aShared[lNumber].szText != szText) {
    const auto aFound = aSharedNumbers.find(szText);
    if (aFound == aSharedNumbers.end()) return false;
    lNumber = aFound->second;
  }
  LogLine aLine = aShared[lNumber].aRead;
  if (!ReadLogMoment(szLine.substr(0, lComma), aLine.dtMoment)) return false;
  aLine.bTimeKnown = aLine.dtMoment >= 1;
  aLine.lShared = lNumber;
  aShared[lLastShared].lFollower = lNumber;
  lLastShared = lNumber;
  Add(aLine, szLine.substr(0, lComma));
  return true;
}

void LogReader::AddReadLine(std::string_view szLine, std::size_t lComma) {
  PlacedLine aLine;
  ReadLogLine(szLine, aLine);
  if (aLine.iKind != LineKind::Entry) return Add(aLine, szLine);
  const auto lNumber = static_cast<std::uint32_t>(aShared.size());
  aLine.lShared = lNumber;
  const auto lBefore = static_cast<std::uint32_t>(lComma + 1);
  auto& aNew = aShared.emplace_back(Shared{std::string(szLine.substr(lBefore)), aLine, lNumber});
  for (auto* const pPlace :
       {&aNew.aRead.lAddress, &aNew.aRead.lStatus, &aNew.aRead.lElapsed, &aNew.aRead.lComment})
    *pPlace -= lBefore;
  aSharedNumbers.emplace(aNew.szText, lNumber);
  aShared[lLastShared].lFollower = lNumber;
  lLastShared = lNumber;
  Add(aLine, szLine.substr(0, lComma));
}

void LogReader::Add(LogLine aLine, std::string_view szOwnText) {
  aLine.lOwn = static_cast<std::uint32_t>(szOwn.size());
  aLine.lOwnLength = static_cast<std::uint32_t>(szOwnText.size());
  szOwn += szOwnText;
  aLines.push_back(aLine);
}

std::string_view LogReader::Own(const LogLine& aLine) const {
  return std::string_view(szOwn).substr(aLine.lOwn, aLine.lOwnLength);
}

std::string LogReader::Text(const LogLine& aLine) const {
  std::string szText(Own(aLine));
  if (aLine.iKind == LineKind::Entry) (szText += LogGrammar::chField) += aShared[aLine.lShared].szText;
  return szText;
}

LogFields LogReader::Fields(const LogLine& aLine) const {
  const auto& aFound = aShared[aLine.lShared];
  auto aFields = SplitLogLine(aFound.szText, aFound.aRead);
  aFields.CheckTime = Own(aLine);
  return aFields;
}

bool LogReader::SameAs(const LogReader& aOther) const {
  const auto Same = [&](const LogLine& aLine, const LogLine& aLeft) {
    return aLine.iKind == aLeft.iKind && Own(aLine) == aOther.Own(aLeft) &&
           (aLine.iKind != LineKind::Entry ||
            aShared[aLine.lShared].szText == aOther.aShared[aLeft.lShared].szText);
  };
  return lSeen > 0 && lSeen == aOther.lSeen && szHead == aOther.szHead && szTail == aOther.szTail &&
         std::ranges::equal(aLines, aOther.aLines, Same);
}
