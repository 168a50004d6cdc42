// registry export and import: everything the product remembers, as a file for another machine; and share: who
// may use it on this one.
#include "base/Strings.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "persistence/RegFile.h"
#include "persistence/StoreMessages.h"
#include "persistence/modAddress.h"
#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/SingleInstance.h"

namespace {
// A full list comes to less than two megabytes.
constexpr std::uint64_t lLargestFile = 64U << 20U;
}  // namespace

int CliCommands::RegistryExport(const std::string& szFile) {
  if (!Report::OpenToLook()) return Report::iFailed;
  if (Report::ListMayBeIncomplete() && Files::FileExists(szFile))
    return Report::Fail(FillResString(IDS_CLI_EXPORT_INCOMPLETE, {szFile}));
  const auto szText = RegFile::Compose();
  if (szText.empty())
    return Report::Fail(FillResString(IDS_CLI_STORE_UNREAD, {Registry::StoreName(), szFile}));
  if (!Files::WriteWhole(szFile, szText)) return Report::Fail(FillResString(IDS_CLI_CANNOT_WRITE, {szFile}));
  Report::Say(FillResString(IDS_CLI_REGISTRY_EXPORTED, {szFile}));
  return Report::iAllUp;
}

int CliCommands::RegistryShare() {
  const auto aState = Registry::ShareStore();
  if (aState.iCondition != Registry::StoreCondition::Ready)
    return Report::Fail(StoreMessages::Compose(aState));
  Report::Say(FillResString(IDS_CLI_REGISTRY_SHARED, {Registry::StoreName()}));
  return Report::iAllUp;
}

int CliCommands::RegistryImport(const std::string& szFile) {
  const auto szBytes = Files::FileExists(szFile) ? Files::ReadWhole(szFile, lLargestFile) : std::nullopt;
  if (!szBytes) return Report::Fail(FillResString(IDS_CLI_CANNOT_READ, {szFile}));
  if (!Report::OpenStore(true)) return Report::iFailed;
  SingleInstance aInstance;
  if (!aInstance.TryLock()) return Report::Fail(FillResString(IDS_CLI_IN_USE, {Registry::StoreName()}));
  std::string szError;
  // One bracket with the numbering, as the file may bring sites without their index: a kill in between would
  // leave sites that the list does not lead to.
  Registry::Transaction aEntered(Registry::Written::ByTheOperator);
  bool bDone = RegFile::Apply(*szBytes, szError);
  if (bDone && !Report::LoadRebuilt(true)) {
    aEntered.Abandon();
    return Report::iFailed;
  }
  if (const auto lCode = aEntered.Commit(); bDone && lCode != Registry::lSuccess) {
    szError = FillResString(IDS_REGFILE_WRITE, {std::to_string(lCode)});
    bDone = false;
  }
  if (!bDone) return Report::Fail(FillResString(IDS_CLI_REGISTRY_WRONG, {szFile, szError}));
  Report::Say(FillResString(IDS_CLI_REGISTRY_IMPORTED, {szFile, Report::SiteNumber(lSiteCount)}));
  return Report::iAllUp;
}
