#include "support/TestHome.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/Environment.h"
#include "platform/Files.h"
#include "platform/MsgBox.h"
#include "platform/Registry.h"

namespace fs = std::filesystem;

TestHome::TestHome() {
  static int lRunning = 0;
  const auto aFolder =
      fs::temp_directory_path() /
      ("kestrova-test-" + std::to_string(Environment::ProcessNumber()) + "-" + std::to_string(++lRunning));
  fs::remove_all(aFolder);
  fs::create_directories(aFolder);
  szFolder = aFolder.string();
  Registry::CloseStore();
  Environment::Set("KESTROVA_REGISTRY", Path("registry.db"));
  Registry::RemoveOwnStore();  // of an earlier run under the same number
  Environment::Set("KESTROVA_HOME", szFolder);
  Environment::Set("LOCALAPPDATA", Path("data"));
  Environment::Set("XDG_DATA_HOME", Path("data"));
}

TestHome::~TestHome() {
  Registry::RemoveOwnStore();
  std::error_code aIgnored;
  fs::remove_all(szFolder, aIgnored);
}

std::string TestHome::Path(const std::string& szName) const {
  return szFolder + Files::chSeparator + szName;
}

void TestHome::Write(const std::string& szName, const std::string& szBytes) const {
  fs::create_directories(fs::path(Path(szName)).parent_path());
  std::ofstream(Path(szName), std::ios::binary) << szBytes;
}

std::string TestHome::Read(const std::string& szName) const {
  std::ostringstream aText;
  aText << std::ifstream(Path(szName), std::ios::binary).rdbuf();
  return aText.str();
}

std::vector<std::string> TestHome::Names() const {
  std::vector<std::string> aNames;
  for (const auto& aEntry : fs::directory_iterator(szFolder))
    aNames.push_back(aEntry.path().filename().string());
  std::sort(aNames.begin(), aNames.end());
  return aNames;
}

TestBoxes::TestBoxes() {
  MsgBox_SetPresenter([this](const std::string& szText) { aTexts.push_back(szText); });
}

TestBoxes::~TestBoxes() {
  MsgBox_SetPresenter({});
}
