#include "editing/AddressRules.h"

#include <algorithm>

#include "base/Strings.h"
#include "base/Text.h"

namespace AddressRules {

std::int16_t AddressMode = 0;
std::int32_t AddressIndex = 0;
std::vector<SiteRecord> EditCopy;

namespace {

constexpr std::int32_t lShortest = SiteRecord::lShortestTimeOut;
constexpr std::int32_t lLongest = SiteRecord::lLongestTimeOut;
constexpr std::int32_t lUsual = 60;
constexpr std::size_t lOctetLength = 3;

bool IsEdit() {
  return AddressMode == 1 && !EditCopy.empty();
}

bool IsDigit(char ch) {
  return ch >= '0' && ch <= '9';
}

bool IsControl(char ch) {
  const auto iByte = static_cast<unsigned char>(ch);
  return iByte < 32 || iByte == 127;
}

// Removes every byte that bUnwanted finds. True when there was one.
template <typename Unwanted>
bool Remove(std::string& szText, Unwanted bUnwanted) {
  return std::erase_if(szText, bUnwanted) > 0;
}

std::array<std::string, 4> SplitIP(const std::string& szIP) {
  std::array<std::string, 4> aOctets;
  std::size_t lStart = 0;
  for (std::size_t i = 0; i < aOctets.size() && lStart <= szIP.size(); ++i) {
    const auto lEnd = i + 1 < aOctets.size() ? std::min(szIP.find('.', lStart), szIP.size()) : szIP.size();
    aOctets[i] = szIP.substr(lStart, lEnd - lStart);
    lStart = lEnd + 1;
  }
  return aOctets;
}

// The boxes as plain numbers, joined; empty when all of them are.
std::string JoinIP(std::array<std::string, 4>& aOctets) {
  if (std::all_of(aOctets.begin(), aOctets.end(), [](const std::string& szBox) { return szBox.empty(); }))
    return {};
  std::string szIP;
  for (auto& szOctet : aOctets) {
    szOctet = std::to_string(std::max(0, Text::LeadingNumber(szOctet)));
    szIP += (szIP.empty() ? "" : ".") + szOctet;
  }
  return szIP;
}

// Another site has this key. The list is asked too, because a store that fails knows none.
bool IsTaken(const std::string& szURL) {
  const auto szKeyName = modAddress::KeyName(szURL);
  if (IsEdit() && szKeyName == modAddress::KeyName(EditCopy[0].URL)) return false;
  SiteRecord aStored;
  if (modAddress::FindStoredSite(szURL, aStored)) return true;
  for (std::int32_t n = 1; modAddress::IsSite(n); ++n)
    if (modAddress::KeyName(modAddress::Site(n).URL) == szKeyName) return true;
  return false;
}

Verdict CheckURL(const std::string& szURL) {
  Verdict aVerdict{"", Verdict::Field::URL};
  if (modAddress::KeyName(szURL).size() > modAddress::lKeyNameLimit)
    aVerdict.szMessage = LoadResString(IDS_URL_TOO_LONG);
  else if (IsTaken(szURL))
    aVerdict.szMessage = FillResString(IDS_URL_EXISTS, {szURL});
  else if (!IsEdit() && ListIsFull())
    aVerdict.szMessage = LoadResString(IDS_LIST_FULL);
  return aVerdict.szMessage.empty() ? Verdict{} : aVerdict;
}

}  // namespace

Form OpeningForm() {
  if (!IsEdit()) return {"", {}, std::to_string(lUsual), true};
  const auto& aSite = EditCopy[0];
  return {aSite.URL, SplitIP(aSite.IP), std::to_string(aSite.TimeOut), aSite.TakesPart()};
}

UrlChange ChangeURL(const std::string& szText) {
  UrlChange aChange{szText, false};
  Remove(aChange.szText, IsControl);  // a pasted address often brings its line end
  for (;;) {
    const auto szLower = Text::LowerCase(aChange.szText);
    if (szLower.find("http:") == std::string::npos) return aChange;
    for (const std::string szAgent : {"http://", "http:/", "http:"}) {
      const auto lAt = szLower.find(szAgent);
      if (lAt == std::string::npos) continue;
      aChange.szText.erase(lAt, szAgent.size());
      break;
    }
    aChange.bAgent = true;
  }
}

Flaw FlawOf(const std::string& szURL) {
  if (Text::LowerCase(Text::Trim(szURL)).starts_with("https:")) return Flaw::Https;
  const auto lEnd = szURL.find_first_of("/\\?#");
  return lEnd != std::string::npos && szURL[lEnd] == '\\' ? Flaw::Backslash : Flaw::None;
}

OctetChange ChangeOctet(const std::string& szText) {
  OctetChange aChange{szText, false, false};
  const bool bDot = Remove(aChange.szText, [](char ch) { return ch == '.'; });
  aChange.bBeep = Remove(aChange.szText, [](char ch) { return !IsDigit(ch); });
  if (bDot && aChange.szText.empty()) aChange.szText = "0";
  aChange.bNext = bDot || aChange.szText.size() >= lOctetLength;
  return aChange;
}

TimeOutChange ChangeTimeOut(const std::string& szText) {
  TimeOutChange aChange{szText, false};
  aChange.bBeep = Remove(aChange.szText, [](char ch) { return !IsDigit(ch); });
  if (!aChange.szText.empty()) aChange.szText = std::to_string(Text::LeadingNumber(aChange.szText));
  return aChange;
}

int MoveFromOctet(int iBox, OctetKey iKey) {
  if (iKey == OctetKey::Left || iKey == OctetKey::Up) return iBox - 1;
  return iBox < 4 ? iBox + 1 : -1;
}

TimeOutAnswer LeaveTimeOut(const std::string& szText) {
  if (Text::IsBlank(szText)) return {std::to_string(lUsual), IDS_TIME_OUT_BLANK};
  const auto lSeconds = Text::LeadingNumber(szText);
  if (lSeconds < lShortest) return {std::to_string(lShortest), IDS_TIME_OUT_RANGE};
  if (lSeconds > lLongest) return {std::to_string(lLongest), IDS_TIME_OUT_RANGE};
  return {szText, 0};
}

Verdict Check(Form& aForm, SiteRecord& aRecord) {
  // Enter brings OK about without leaving the box, so its check may not have been made yet.
  const auto aTimeOut = LeaveTimeOut(aForm.szTimeOut);
  aForm.szTimeOut = aTimeOut.szText;
  if (aTimeOut.lMessage != 0) return {LoadResString(aTimeOut.lMessage), Verdict::Field::TimeOut};
  aForm.szURL = Text::Trim(aForm.szURL);
  auto szIP = JoinIP(aForm.aOctets);
  if (aForm.szURL.empty() && szIP.empty()) return {LoadResString(IDS_URL_MISSING), Verdict::Field::URL};
  if (aForm.szURL.empty()) {
    aForm.szURL.swap(szIP);
    aForm.aOctets = {};
  }
  auto aVerdict = CheckURL(aForm.szURL);
  if (!aVerdict.szMessage.empty()) return aVerdict;
  aRecord = {};
  aRecord.URL = aForm.szURL;
  aRecord.IP = szIP;
  aRecord.TimeOut = Text::LeadingNumber(aForm.szTimeOut);
  aRecord.Enabled = aForm.bEnabled ? SiteRecord::iEnabled : SiteRecord::iDisabled;
  return {};
}

bool ListIsFull() {
  return lSiteCount >= modAddress::lSiteCapacity;
}

StoreResult Store(const SiteRecord& aRecord) {
  const bool bEdit = IsEdit() && modAddress::IsSite(AddressIndex);
  // A new site always goes behind the last one; a gap in the list would be a site without an address.
  if (!bEdit) AddressIndex = modAddress::AddSite({});
  StoreResult aResult{AddressIndex, false};
  const bool bSameURL = bEdit && aRecord.URL == EditCopy[0].URL;
  aResult.bAddressChanged = bEdit && (!bSameURL || aRecord.IP != EditCopy[0].IP);
  // The light that the list shows now: a pass may have moved it since the editor was opened.
  auto aNew = aRecord;
  aNew.Status =
      bSameURL && aRecord.TakesPart() ? modAddress::Site(AddressIndex).Status : SiteStatus::iNotKnown;
  aNew.Comments = LoadResString(bEdit ? IDS_EDITED : IDS_ADDED);
  modAddress::ReplaceSite(AddressIndex, aNew);

  modAddress::SaveEntered(AddressIndex, bEdit ? modAddress::KeyName(EditCopy[0].URL) : std::string());
  return aResult;
}

}  // namespace AddressRules
