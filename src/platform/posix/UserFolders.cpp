#include "platform/posix/UserFolders.h"

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "base/Text.h"
#include "platform/Files.h"

namespace {

std::string WithoutEndSlash(std::string szPath) {
  while (szPath.size() > 1 && szPath.back() == '/')
    szPath.pop_back();
  return szPath;
}

// An absolute path from the environment; relative ones are to be ignored.
std::string FromEnvironment(const char* szName, const std::string& szElse) {
  const char* const szValue = std::getenv(szName);
  return WithoutEndSlash(szValue != nullptr && szValue[0] == '/' ? szValue : szElse);
}

std::string Below(const std::string& szFolder, const std::string& szName) {
  return szFolder == "/" ? "/" + szName : szFolder + "/" + szName;
}

// The value of one line of user-dirs.dirs: "$HOME/..." or "/...", with shell escapes. Empty for any other.
std::string ReadQuoted(std::string_view szValue) {
  std::string szPath;
  if (szValue.starts_with("\"$HOME")) {
    szPath = UserFolders::Home();
    szValue.remove_prefix(6);
  } else if (szValue.starts_with("\"/")) {
    szValue.remove_prefix(1);
  } else {
    return {};
  }
  for (std::size_t lAt = 0; lAt < szValue.size() && szValue[lAt] != '"'; ++lAt) {
    if (szValue[lAt] == '\\' && lAt + 1 < szValue.size()) ++lAt;
    szPath += szValue[lAt];
  }
  return WithoutEndSlash(szPath);
}

std::string DesktopSetting() {
  const auto szText = Files::ReadWhole(UserFolders::Config() + "/user-dirs.dirs", 65536).value_or("");
  constexpr std::string_view szKey = "XDG_DESKTOP_DIR=";
  std::string szPath;
  for (std::size_t lStart = 0; lStart < szText.size();) {
    const auto lEnd = std::min(szText.find('\n', lStart), szText.size());
    auto szLine = std::string_view(szText).substr(lStart, lEnd - lStart);
    szLine.remove_prefix(std::min(szLine.find_first_not_of(" \t"), szLine.size()));
    if (szLine.starts_with(szKey)) szPath = ReadQuoted(szLine.substr(szKey.size()));
    lStart = lEnd + 1;
  }
  return szPath;
}

}  // namespace

std::string UserFolders::Home() {
  const char* const szValue = std::getenv("HOME");
  if (szValue != nullptr && szValue[0] == '/') return WithoutEndSlash(szValue);
  const passwd* const pUser = getpwuid(getuid());
  return WithoutEndSlash(pUser != nullptr && pUser->pw_dir[0] == '/' ? pUser->pw_dir : "/");
}

std::string UserFolders::Config() {
  return FromEnvironment("XDG_CONFIG_HOME", Below(Home(), ".config"));
}

std::string UserFolders::Data() {
  return FromEnvironment("XDG_DATA_HOME", Below(Home(), ".local/share"));
}

std::string UserFolders::Desktop() {
  for (const auto& szPath : {DesktopSetting(), Below(Home(), "Desktop")}) {
    if (!szPath.empty() && Files::FolderExists(szPath)) return szPath;
  }
  return Home();
}

bool UserFolders::MakePrivate(const std::string& szFolder) {
  for (std::size_t lEnd = szFolder.find('/', 1); lEnd != std::string::npos;
       lEnd = szFolder.find('/', lEnd + 1))
    mkdir(szFolder.substr(0, lEnd).c_str(), 0700);
  mkdir(szFolder.c_str(), 0700);
  return Files::FolderExists(szFolder);
}
