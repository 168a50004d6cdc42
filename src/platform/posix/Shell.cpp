#include "platform/Shell.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <climits>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "platform/Files.h"
#include "platform/posix/UserFolders.h"

namespace {

constexpr std::int32_t lFileNotFound = 2;    // SE_ERR_FNF of ShellExecute
constexpr std::int32_t lNoAssociation = 31;  // SE_ERR_NOASSOC
constexpr int lCannotStart = 255;            // no exit code of xdg-open

// How a program is started: in a session of its own, because Ctrl-C in our terminal is not meant for it, with
// the signals that we catch or ignore as they are by nature, and without our input and output.
class Launch {
 public:
  // szFolder: where it works; nullptr for where we do.
  explicit Launch(const char* szFolder) {
    sigset_t aSignals;
    sigemptyset(&aSignals);
    for (const int lSignal : {SIGPIPE, SIGINT, SIGHUP, SIGTERM})
      sigaddset(&aSignals, lSignal);
    posix_spawnattr_init(&aAttributes);
    posix_spawnattr_setsigdefault(&aAttributes, &aSignals);
    posix_spawnattr_setflags(&aAttributes, POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGDEF);
    posix_spawn_file_actions_init(&aActions);
    for (const int lStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
      posix_spawn_file_actions_addopen(&aActions, lStream, "/dev/null", O_RDWR, 0);
    if (szFolder != nullptr) posix_spawn_file_actions_addchdir_np(&aActions, szFolder);
  }
  ~Launch() {
    posix_spawnattr_destroy(&aAttributes);
    posix_spawn_file_actions_destroy(&aActions);
  }
  Launch(const Launch&) = delete;
  Launch& operator=(const Launch&) = delete;

  bool Run(char* const* aArguments, pid_t& lProgram) const {
    return posix_spawnp(&lProgram, aArguments[0], &aActions, &aAttributes, aArguments, environ) == 0;
  }

 private:
  posix_spawnattr_t aAttributes{};
  posix_spawn_file_actions_t aActions{};
};

// The end of the child within the time, else 0.
int WaitBriefly(pid_t lChild, int lMilliseconds) {
  for (int lWaited = 0; lWaited < lMilliseconds; lWaited += 5) {
    int lStatus = 0;
    if (waitpid(lChild, &lStatus, WNOHANG) == lChild) return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : 1;
    const timespec aStep{0, 5'000'000};
    nanosleep(&aStep, nullptr);
  }
  return 0;
}

// Starts the program as a grandchild, whose end the system reaps. lCannotStart, or its exit code when it ends
// within the time, or 0. szFolder: where it works; nullptr for where we do.
int Start(const std::vector<std::string>& aWords, const char* szFolder, int lMilliseconds) {
  std::vector<char*> aArguments;
  aArguments.reserve(aWords.size() + 1);
  for (const auto& szWord : aWords)
    aArguments.push_back(const_cast<char*>(szWord.c_str()));
  aArguments.push_back(nullptr);
  const Launch aLaunch(szFolder);
  const pid_t lBetween = fork();
  if (lBetween == 0) {  // only what takes no lock: another thread may have held any at the fork
    pid_t lProgram = 0;
    _exit(aLaunch.Run(aArguments.data(), lProgram) ? WaitBriefly(lProgram, lMilliseconds) : lCannotStart);
  }
  if (lBetween < 0) return lCannotStart;
  int lStatus = 0;
  while (waitpid(lBetween, &lStatus, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : lCannotStart;
}

std::string Folder(const std::string& szPath) {
  const auto lSlash = szPath.rfind('/');
  return lSlash == 0 || lSlash == std::string::npos ? "/" : szPath.substr(0, lSlash);
}

}  // namespace

std::string Shell::ProgramFolder() {
  const char* const szHome = std::getenv("KESTROVA_HOME");
  if (szHome != nullptr && szHome[0] != '\0') {
    std::string szFolder = szHome;
    while (szFolder.size() > 1 && szFolder.back() == '/')
      szFolder.pop_back();
    return szFolder;
  }
  std::array<char, PATH_MAX> aPath{};
  const auto lLength = readlink("/proc/self/exe", aPath.data(), aPath.size());
  return lLength > 0 ? Folder({aPath.data(), static_cast<std::size_t>(lLength)}) : "/";
}

std::string Shell::UserDataFolder() {
  return UserFolders::Data() + "/kestrova";
}

std::string Shell::DefaultLogFolder() {
  const char* const szHome = std::getenv("KESTROVA_HOME");
  const auto szProgram = ProgramFolder() + "/";
  const bool bPackaged = szProgram.starts_with("/usr/") && !szProgram.starts_with("/usr/local/");
  const bool bBeside = szHome != nullptr && szHome[0] != '\0' && !bPackaged;
  return (bBeside ? szProgram : UserDataFolder() + "/") + "Logs";
}

std::string Shell::HomeFolder() {
  return UserFolders::Home();
}

std::string Shell::ProgramFileName(const std::string& szName) {
  return szName;
}

std::int32_t Shell::OpenDocument(const std::string& szTarget) {
  const bool bAddress = szTarget.starts_with("http://") || szTarget.starts_with("https://");
  if (!bAddress && !Files::FileExists(szTarget) && !Files::FolderExists(szTarget)) return lFileNotFound;
  std::error_code aFailed;
  const auto szWhole = bAddress ? szTarget : std::filesystem::absolute(szTarget, aFailed).string();
  // The viewer runs on for as long as it likes, so it works in a folder that is always there. Half a second
  // shows most refusals and is not felt; a viewer that runs on counts as opened.
  const int lResult = Start({"xdg-open", szWhole}, "/", 500);
  return lResult == 0 ? 0 : lResult == lFileNotFound ? lFileNotFound : lNoAssociation;
}

bool Shell::StartProgram(const std::string& szProgram, const std::vector<std::string>& aArguments) {
  std::vector<std::string> aWords{szProgram};
  aWords.insert(aWords.end(), aArguments.begin(), aArguments.end());
  return Start(aWords, nullptr, 0) == 0;
}
