#include "platform/Shell.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
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
#include "platform/posix/Descriptor.h"
#include "platform/posix/UserFolders.h"

namespace {

constexpr std::int32_t lFileNotFound = 2;    // SE_ERR_FNF of ShellExecute
constexpr std::int32_t lNoAssociation = 31;  // SE_ERR_NOASSOC
constexpr int lCannotStart = 255;            // no exit code of xdg-open

// Between fork and exec only calls that are safe in a signal handler are made: another thread may have held
// any lock at the fork.
[[noreturn]] void Become(char* const* aArguments, const char* szFolder, int lReport) {
  setsid();  // Ctrl-C in our terminal is not meant for the other program
  for (const int lSignal : {SIGPIPE, SIGINT, SIGHUP, SIGTERM})
    signal(lSignal, SIG_DFL);
  const int lNull = open("/dev/null", O_RDWR);
  for (const int lStream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
    dup2(lNull, lStream);
  if (szFolder != nullptr && chdir(szFolder) != 0) _exit(lCannotStart);
  execvp(aArguments[0], aArguments);
  [[maybe_unused]] const auto lIgnored = write(lReport, "!", 1);
  _exit(lCannotStart);
}

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
  std::array<int, 2> aPipe{};
  if (pipe2(aPipe.data(), O_CLOEXEC) != 0) return lCannotStart;
  const Descriptor aRead(aPipe[0]);
  Descriptor aWrite(aPipe[1]);
  const pid_t lBetween = fork();
  if (lBetween == 0) {
    const pid_t lProgram = fork();
    if (lProgram == 0) Become(aArguments.data(), szFolder, aWrite.Number());
    close(aWrite.Number());
    char chFailed = 0;
    if (lProgram < 0 || read(aRead.Number(), &chFailed, 1) != 0) _exit(lCannotStart);
    _exit(WaitBriefly(lProgram, lMilliseconds));
  }
  aWrite.Close();
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

bool Shell::ProgramFolderIsPackaged() {
  return ProgramFolder().starts_with("/usr/") && !ProgramFolder().starts_with("/usr/local/");
}

std::string Shell::UserDataFolder() {
  return UserFolders::Data() + "/kestrova";
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
