#include "platform/Startup.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "base/Text.h"
#include "platform/Environment.h"
#include "platform/Files.h"
#include "platform/posix/StartupUnit.h"
#include "platform/posix/UserFolders.h"

namespace fs = std::filesystem;

namespace {

constexpr const char* szUnitName = "kestrova-watch.service";
constexpr const char* szPackagedUnit = "/usr/lib/systemd/user/kestrova-watch.service";
constexpr const char* szPackagedFolder = "/usr/lib/kestrova";
// In the first line: what bears it is ours to replace and to delete.
constexpr const char* szMark = "# Written by kestrova-cli startup.";
// Where another list than the usual one is meant, the monitor that starts by itself means it too.
constexpr const char* szVariables[] = {"KESTROVA_REGISTRY", "KESTROVA_HOME"};

std::string DesktopEntry() {
  return UserFolders::Config() + "/autostart/kestrova.desktop";
}
std::string OwnUnit() {
  return UserFolders::Config() + "/systemd/user/" + szUnitName;
}
std::string Link() {
  return UserFolders::Config() + "/systemd/user/default.target.wants/" + szUnitName;
}

std::string ProgramFolder() {
  std::error_code aError;
  return fs::read_symlink("/proc/self/exe", aError).parent_path().string();
}

// For a desktop entry and for a unit alike: both take a word in quotation marks apart as a shell does, and
// have "%" for themselves; a unit has "$" too, by another escape.
std::string Quoted(const std::string& szWord, const char* szDollar) {
  std::string szQuoted = Text::Replace(szWord, "\\", "\\\\");
  szQuoted = Text::Replace(Text::Replace(szQuoted, "\"", "\\\""), "%", "%%");
  return "\"" + Text::Replace(szQuoted, "$", szDollar) + "\"";
}

bool MeansAnotherList() {
  for (const char* szVariable : szVariables)
    if (!Environment::Get(szVariable).empty()) return true;
  return false;
}

std::string EntryText() {
  // A backslash counts once more there: first as in any text of the file, then as in a command.
  const auto Word = [](const std::string& szText) {
    return Text::Replace(Text::Replace(Quoted(szText, "\\$"), "`", "\\`"), "\\", "\\\\");
  };
  std::string szCommand;
  for (const char* szVariable : szVariables)
    if (const auto szValue = Environment::Get(szVariable); !szValue.empty())
      szCommand += (szCommand.empty() ? "env " : "") + Word(std::string(szVariable) + "=" + szValue) + " ";
  return std::string(szMark) +
         "\n[Desktop Entry]\nType=Application\nName=Kestrova\nComment=Watches web sites\n" +
         "Exec=" + szCommand + Word(ProgramFolder() + "/kestrova") + "\nIcon=kestrova\nTerminal=false\n";
}

std::string UnitText() {
  std::string szEnvironment;
  for (const char* szVariable : szVariables)
    if (const auto szValue = Environment::Get(szVariable); !szValue.empty())
      szEnvironment += "Environment=" + Quoted(std::string(szVariable) + "=" + szValue, "$") + "\n";
  std::string szText = Text::Replace(szStartupUnit, "%environment\n", szEnvironment);
  return std::string(szMark) + "\n" +
         Text::Replace(szText, "%program", Quoted(ProgramFolder() + "/kestrova-cli", "$$"));
}

bool IsThere(const std::string& szPath) {
  std::error_code aError;
  return fs::symlink_status(szPath, aError).type() != fs::file_type::not_found;
}

bool IsOurs(const std::string& szPath) {
  constexpr std::uint64_t lMost = 65536;
  return Files::ReadWhole(szPath, lMost).value_or("").starts_with(szMark);
}

// False where somebody else's file of that name is left as it is, too.
bool Write(const std::string& szPath, const std::string& szText) {
  std::error_code aError;
  fs::create_directories(fs::path(szPath).parent_path(), aError);
  return (!IsThere(szPath) || IsOurs(szPath)) && Files::WriteWhole(szPath, szText);
}

bool Remove(const std::string& szPath) {
  return !IsThere(szPath) || Files::Delete(szPath) != Files::Deletion::Failed;
}

// False when systemctl is not here, or when nothing of the user's own listens to it.
bool TellSystemd(std::vector<const char*> aWords) {
  aWords.insert(aWords.begin(), {"systemctl", "--user", "--quiet"});
  aWords.push_back(nullptr);
  posix_spawn_file_actions_t aActions;
  posix_spawn_file_actions_init(&aActions);
  for (const int lStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    posix_spawn_file_actions_addopen(&aActions, lStream, "/dev/null", O_RDWR, 0);
  pid_t lChild = 0;
  const bool bStarted = posix_spawnp(&lChild, aWords[0], &aActions, nullptr,
                                     const_cast<char* const*>(aWords.data()), environ) == 0;
  posix_spawn_file_actions_destroy(&aActions);
  if (!bStarted) return false;
  int lStatus = 0;
  while (waitpid(lChild, &lStatus, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(lStatus) && WEXITSTATUS(lStatus) == 0;
}

// As "systemctl --user enable" leaves it, which needs a systemd that listens.
bool WriteLink(const std::string& szUnit) {
  std::error_code aError;
  fs::create_directories(fs::path(Link()).parent_path(), aError);
  if (!Remove(Link())) return false;
  fs::create_symlink(szUnit, Link(), aError);
  return !aError;
}

Startup::Answer StartService() {
  const bool bPackaged =
      ProgramFolder() == szPackagedFolder && Files::FileExists(szPackagedUnit) && !MeansAnotherList();
  if (bPackaged && IsOurs(OwnUnit())) Remove(OwnUnit());
  if (!bPackaged && !Write(OwnUnit(), UnitText()))
    return {Startup::Result::NotWritten, false, false, OwnUnit()};
  if (!WriteLink(bPackaged ? szPackagedUnit : OwnUnit()))
    return {Startup::Result::NotWritten, false, false, Link()};
  const bool bTold = TellSystemd({"daemon-reload"}) && TellSystemd({"restart", szUnitName});
  return {bTold ? Startup::Result::Done : Startup::Result::Untold, true, true, Link()};
}

}  // namespace

Startup::Answer Startup::Read() {
  if (IsThere(DesktopEntry())) return {Result::Done, true, false, DesktopEntry()};
  if (IsThere(Link())) return {Result::Done, true, true, Link()};
  return {};
}

Startup::Answer Startup::TurnOn() {
  if (Answer aOff = TurnOff(); aOff.iResult == Result::NotWritten) return aOff;
  const bool bDisplay = !Environment::Get("DISPLAY").empty() || !Environment::Get("WAYLAND_DISPLAY").empty();
  if (!bDisplay || !Files::FileExists(ProgramFolder() + "/kestrova")) return StartService();
  if (!Write(DesktopEntry(), EntryText())) return {Result::NotWritten, false, false, DesktopEntry()};
  return {Result::Done, true, false, DesktopEntry()};
}

Startup::Answer Startup::TurnOff() {
  if (!Remove(DesktopEntry())) return {Result::NotWritten, true, false, DesktopEntry()};
  if (!IsThere(Link())) return {};
  TellSystemd({"stop", szUnitName});
  if (!Remove(Link())) return {Result::NotWritten, true, true, Link()};
  if (IsOurs(OwnUnit())) Remove(OwnUnit());
  TellSystemd({"daemon-reload"});
  return {};
}
