#include "editing/ListExchange.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "base/Strings.h"
#include "base/Text.h"
#include "editing/AddressRules.h"
#include "editing/LastLocation.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Registry.h"

namespace ListExchange {
namespace {

constexpr char szEnding[] = ".kvd";
constexpr char szFolderValue[] = "imex";
constexpr char szByteOrderMark[] = "\xEF\xBB\xBF";

// Far beyond any list that could be stored; a file that is larger is not one of ours and is not kept in
// memory.
constexpr std::uint64_t lMostBytes = 16U << 20U;
constexpr std::size_t lMostRecords = 10 * static_cast<std::size_t>(modAddress::lSiteCapacity);

std::string FileLine(const SiteRecord& aSite) {
  // "Not checked" is of this run of the program and would be read back as "up".
  const int iStatus = aSite.Status == SiteStatus::iNotChecked ? SiteStatus::iNotKnown : aSite.Status;
  return Text::Trim(aSite.URL) + "," + aSite.IP + "," + std::to_string(iStatus) + "," +
         std::to_string(aSite.Enabled) + "," + std::to_string(aSite.TimeOut) + "\r\n";
}

std::array<std::string, 5> Fields(const std::string& szLine) {
  std::array<std::string, 5> aFields;
  std::size_t lStart = 0;
  for (auto& szField : aFields) {
    const auto lComma = std::min(szLine.find(',', lStart), szLine.size());
    szField = szLine.substr(lStart, lComma - lStart);
    lStart = std::min(lComma + 1, szLine.size());
  }
  return aFields;
}

// Four numbers between dots; how large they are is not looked at.
bool IsDotted(const std::string& szIP) {
  std::size_t lStart = 0;
  for (int iPart = 1; iPart <= 4; ++iPart) {
    const auto lDot = iPart < 4 ? szIP.find('.', lStart) : szIP.size();
    if (lDot == std::string::npos || !Text::IsDigits(std::string_view(szIP).substr(lStart, lDot - lStart)))
      return false;
    lStart = lDot + 1;
  }
  return true;
}

// A control character in a URL would cut the name of its key short, and so hit another site.
bool IsPlain(const std::string& szLine) {
  return std::none_of(szLine.begin(), szLine.end(), [](char ch) {
    const auto iByte = static_cast<unsigned char>(ch);
    return (iByte < 32 && ch != '\t') || iByte == 127;
  });
}

std::string NextLine(const std::string& szBytes, std::size_t& lPosition) {
  const auto lEnd = std::min(szBytes.find('\n', lPosition), szBytes.size());
  auto szLine = szBytes.substr(lPosition, lEnd - lPosition);
  if (szLine.ends_with('\r')) szLine.pop_back();
  lPosition = lEnd + 1;
  return szLine;
}

// What a record's site is remarked with: its own remark where it is stored already and only added to.
std::string Remark(const SiteRecord& aRecord, bool bReplace) {
  SiteRecord aStored;
  if (!modAddress::FindStoredSite(aRecord.URL, aStored)) return LoadResString(IDS_IMPORT_NEW);
  return bReplace ? LoadResString(IDS_IMPORT_REPLACE) : aStored.Comments;
}

}  // namespace

std::string DefaultFileName() {
  return "KVList-" + FormatDay(Clock::Now()) + szEnding;
}

std::string CompleteFileName(const std::string& szName) {
  return Text::EndsWithNoCase(szName, szEnding) ? szName : szName + szEnding;
}

std::string StartFolder() {
  return LastLocation::StartFolder(szFolderValue);
}

void RememberFolder(const std::string& szFile) {
  LastLocation::Remember(szFolderValue, szFile);
}

bool Export(const std::string& szFile, const Progress& aProgress) {
  std::string szBytes;
  const auto lCount = lSiteCount;  // the callback lets events run
  for (std::int32_t n = 1; n <= lCount && modAddress::IsSite(n); ++n) {
    szBytes += FileLine(modAddress::Site(n));
    if (aProgress) aProgress(n);
  }
  return Files::WriteWhole(szFile, szBytes);
}

bool ParseLine(const std::string& szLine, SiteRecord& aRecord) {
  if (!IsPlain(szLine)) return false;
  const auto aFields = Fields(szLine);
  auto szURL = Text::Trim(aFields[0]);
  auto szIP = Text::Trim(aFields[1]);
  if (szURL.empty() && szIP.empty()) return false;
  if (!szIP.empty() && !IsDotted(szIP)) return false;
  if (szURL.empty()) szURL.swap(szIP);  // a site is stored under its URL; the editor does the same
  if (modAddress::KeyName(szURL).size() > modAddress::lKeyNameLimit) return false;
  aRecord = {};
  aRecord.URL = std::move(szURL);
  aRecord.IP = std::move(szIP);
  aRecord.Status = Text::Saturate<std::uint8_t>(Text::LeadingNumber(aFields[2]));
  aRecord.Enabled = Text::Saturate<std::uint8_t>(Text::LeadingNumber(aFields[3]));
  aRecord.TimeOut = Text::LeadingNumber(aFields[4]);
  if (aRecord.Status == SiteStatus::iNotChecked) aRecord.Status = SiteStatus::iUp;
  if (aRecord.Enabled != SiteRecord::iDisabled) aRecord.Enabled = SiteRecord::iEnabled;
  if (aRecord.TimeOut < 1) aRecord.TimeOut = 60;
  return true;
}

Reading Read(const std::string& szFile, std::vector<SiteRecord>& aRecords, std::int32_t& lBadLine) {
  aRecords.clear();
  lBadLine = 0;
  const auto lSize = Files::FileSize(szFile);
  if (lSize && *lSize > lMostBytes) return Reading::TooMany;
  const auto szBytes = Files::ReadWhole(szFile, lMostBytes);
  std::vector<std::string> aStored;
  if (!szBytes || !modAddress::ListKeyNames(aStored)) return Reading::Unreadable;

  std::set<std::string> aNames;
  for (const auto& szName : aStored)
    aNames.insert(Text::LowerCase(szName));
  bool bTooMany = false;
  auto lPosition = szBytes->starts_with(szByteOrderMark) ? sizeof szByteOrderMark - 1 : 0;
  for (std::int32_t lLine = 1; lPosition < szBytes->size(); ++lLine) {
    const auto szLine = NextLine(*szBytes, lPosition);
    SiteRecord aRecord;
    if (Text::IsBlank(szLine)) continue;
    if (!ParseLine(szLine, aRecord)) {
      lBadLine = lLine;
      aRecords.clear();
      return Reading::Corrupt;
    }
    if (bTooMany) continue;
    const bool bNew = aNames.insert(modAddress::KeyName(aRecord.URL)).second;
    aRecords.push_back(std::move(aRecord));
    bTooMany = (bNew && aNames.size() > modAddress::lSiteCapacity) || aRecords.size() > lMostRecords;
  }
  if (!bTooMany) return Reading::Fine;
  aRecords.clear();
  return Reading::TooMany;
}

std::vector<std::string> Flaws(const std::vector<SiteRecord>& aRecords) {
  using AddressRules::Flaw;
  std::vector<std::string> aFlaws;
  for (const auto& [iFlaw, iText] :
       {std::pair{Flaw::Https, IDS_IMPORT_HTTPS}, std::pair{Flaw::Backslash, IDS_IMPORT_BACKSLASH}}) {
    const auto lCount = std::ranges::count_if(
        aRecords, [iFlaw = iFlaw](const SiteRecord& a) { return AddressRules::FlawOf(a.URL) == iFlaw; });
    if (lCount > 0) aFlaws.push_back(FillResString(iText, {std::to_string(lCount)}));
  }
  return aFlaws;
}

bool Import(const std::vector<SiteRecord>& aRecords, bool bReplace, const Progress& aProgress) {
  std::int32_t lCode = 0;
  {
    Registry::Transaction aAllOrNone(Registry::Written::ByTheOperator);
    std::int32_t lDone = 0;
    modAddress::SaveUnsaved();  // the list is read back below
    for (auto aRecord : aRecords) {
      aRecord.Comments = Remark(aRecord, bReplace);
      if (lCode == 0) lCode = modAddress::WriteSiteRecord(aRecord, 0);
      if (aProgress) aProgress(++lDone);
    }
    modAddress::RebuildSiteIndex();
    if (lCode != 0) aAllOrNone.Abandon();
    const auto lCommitted = aAllOrNone.Commit();
    if (lCode == 0) lCode = lCommitted;
  }
  modAddress::LoadSites(true, true);
  return lCode == 0;
}

}  // namespace ListExchange
