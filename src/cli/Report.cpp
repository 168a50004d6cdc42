#include "cli/Report.h"

#include <iostream>

#include "base/Strings.h"
#include "base/Text.h"
#include "persistence/Settings.h"
#include "persistence/StoreMessages.h"
#include "persistence/modAddress.h"

std::string Report::SiteNumber(std::int32_t lNumber) {
  return lNumber == 1 ? LoadResString(IDS_CLI_SITE_ONE)
                      : FillResString(IDS_CLI_SITE_MANY, {std::to_string(lNumber)});
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

bool Report::OpenStore() {
  const auto aState = Registry::OpenStore();
  const auto szMessage = StoreMessages::Compose(aState);
  if (!szMessage.empty()) Complain(szMessage);
  return aState.iCondition == Registry::StoreCondition::Ready;
}

bool Report::LoadAll() {
  if (!OpenStore()) return false;
  LoadSettings();
  return modAddress::LoadSites(true, true) == 0;
}
