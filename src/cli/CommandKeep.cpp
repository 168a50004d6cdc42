// metrics and page: the files that every pass leaves for other tools.
#include <filesystem>

#include "base/Strings.h"
#include "base/Text.h"
#include "cli/CliCommands.h"
#include "cli/Report.h"
#include "persistence/KeptFiles.h"
#include "platform/Files.h"
#include "platform/Registry.h"

int CliCommands::Keep(KeptFiles::Kind iKind, const std::string& szFile, bool bOff) {
  if (!Report::OpenStore()) return Report::iFailed;
  std::string szKept;
  if (!szFile.empty()) {
    // The window and a service start elsewhere than this command.
    const auto aPath = std::filesystem::path(Files::Absolute(szFile)).lexically_normal();
    szKept = aPath.string();
    if (Files::FolderExists(szKept) || !Files::FolderExists(aPath.parent_path().string()))
      return Report::Fail(FillResString(IDS_CLI_KEEP_FOLDER, {szFile}));
  }
  if (bOff || !szKept.empty()) {
    if (!KeptFiles::Store(iKind, szKept))
      return Report::Fail(FillResString(IDS_CLI_KEEP_NOT_STORED, {Registry::StoreName()}));
  } else {
    szKept = KeptFiles::Read(iKind);
    if (!szKept.empty()) {
      Report::Say(Text::Printable(szKept));
      return Report::iAllUp;
    }
  }
  Report::Say(szKept.empty() ? std::string(LoadResString(IDS_CLI_KEEP_NONE))
                             : Text::Printable(FillResString(IDS_CLI_KEEP_SET, {szKept})));
  return Report::iAllUp;
}
