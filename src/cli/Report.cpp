#include "cli/Report.h"

#include <algorithm>
#include <iostream>
#include <vector>

#include "base/Strings.h"
#include "base/Text.h"
#include "base/Utf8.h"
#include "persistence/Settings.h"
#include "persistence/StoreMessages.h"
#include "persistence/modAddress.h"

namespace {

bool bIncomplete = false;

Registry::StoreState Open(bool bBeginAnew) {
  auto aState = Registry::OpenStore(bBeginAnew);
  const auto szMessage = StoreMessages::Compose(aState);
  if (!szMessage.empty()) Report::Complain(szMessage);
  return aState;
}

}  // namespace

std::string Report::SiteNumber(std::int32_t lNumber) {
  return lNumber == 1 ? LoadResString(IDS_CLI_SITE_ONE)
                      : FillResString(IDS_CLI_SITE_MANY, {std::to_string(lNumber)});
}

std::string Report::StatusWord(std::uint8_t iStatus) {
  switch (iStatus) {
    case SiteStatus::iUp:
      return LoadResString(IDS_CLI_UP);
    case SiteStatus::iWarning:
      return LoadResString(IDS_CLI_WARNING);
    case SiteStatus::iDown:
      return LoadResString(IDS_CLI_DOWN);
    default:
      return LoadResString(IDS_CLI_UNKNOWN);
  }
}

std::string Report::AddressOf(const SiteRecord& aSite) {
  return Text::Printable(LoadResString(IDS_AGENT) + (Text::IsBlank(aSite.URL) ? aSite.IP : aSite.URL));
}

std::string Report::Padded(std::string szText, std::size_t lWidth) {
  const auto lHas = Utf8::Width(szText);
  if (lHas < lWidth) szText.append(lWidth - lHas, ' ');
  return szText;
}

void Report::Say(std::string_view szText) {
  std::cout << szText << '\n';
}

void Report::Complain(std::string_view szText) {
  // The store's own messages spread over several lines.
  std::string szLine = Text::Replace(szText, "\r\n\r\n", " ");
  szLine = Text::Replace(Text::Replace(szLine, "\r\n", " "), "\n", " ");
  std::cout.flush();
  std::cerr << Text::Printable(FillResString(IDS_CLI_ERROR, {szLine})) << std::endl;
}

int Report::Fail(std::string_view szText) {
  Complain(szText);
  return iFailed;
}

bool Report::OpenStore(bool bBeginAnew) {
  const auto aState = Open(bBeginAnew);
  bIncomplete = !aState.bWhole && !bBeginAnew;
  return aState.iCondition == Registry::StoreCondition::Ready;
}

bool Report::OpenToLook() {
  const auto aState = Open(false);
  bIncomplete = !aState.bWhole;
  return aState.bReadable;
}

bool Report::ListMayBeIncomplete() {
  return bIncomplete;
}

bool Report::LoadRebuilt(bool bKeepResults) {
  modAddress::Mismatches aFound;
  if (modAddress::LoadRebuilt(bKeepResults, bKeepResults, aFound) != 0) return false;
  bIncomplete = bIncomplete || !aFound.aDropped.empty();
  if (const auto szSaid = aFound.Said(); !szSaid.empty()) Complain(szSaid);
  return true;
}

bool Report::LoadAll() {
  if (!OpenToLook()) return false;
  LoadSettings();
  if (modAddress::LoadSites(true, true) != 0) return false;
  const auto aHidden = modAddress::HiddenSites();
  bIncomplete = bIncomplete || !aHidden.empty();
  if (!aHidden.empty()) Complain(FillResString(IDS_CLI_LIST_HIDDEN, {Text::Joined(aHidden, ", ")}));
  return true;
}
