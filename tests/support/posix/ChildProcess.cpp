#include "support/ChildProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>

namespace {

double Seconds(const timeval& aTime) {
  return static_cast<double>(aTime.tv_sec) + static_cast<double>(aTime.tv_usec) / 1e6;
}

}  // namespace

void ChildProcess::Start(const std::vector<std::string>& aWords) {
  std::vector<char*> aList;
  for (const auto& szWord : aWords)
    aList.push_back(const_cast<char*>(szWord.c_str()));
  aList.push_back(nullptr);
  constexpr int lNew = O_WRONLY | O_CREAT | O_TRUNC;
  posix_spawn_file_actions_t aActions;
  posix_spawn_file_actions_init(&aActions);
  posix_spawn_file_actions_addopen(&aActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  posix_spawn_file_actions_addopen(&aActions, STDOUT_FILENO, szOutputFile.c_str(), lNew, 0600);
  posix_spawn_file_actions_addopen(&aActions, STDERR_FILENO, szErrorFile.c_str(), lNew, 0600);
  posix_spawn_file_actions_addclosefrom_np(&aActions, STDERR_FILENO + 1);
  pid_t lChild = 0;
  if (posix_spawnp(&lChild, aList[0], &aActions, nullptr, aList.data(), environ) == 0) hProcess = lChild;
  posix_spawn_file_actions_destroy(&aActions);
}

bool ChildProcess::Ended() {
  int lStatus = 0;
  rusage aUsed{};
  if (wait4(static_cast<pid_t>(hProcess), &lStatus, WNOHANG, &aUsed) == 0) return false;
  dCpuSeconds = Seconds(aUsed.ru_utime) + Seconds(aUsed.ru_stime);
  lPeakKilobytes = aUsed.ru_maxrss;
  lResult = WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : lKilled;
  return true;
}

void ChildProcess::Kill() {
  if (lResult == lRunning) kill(static_cast<pid_t>(hProcess), SIGKILL);
}

void ChildProcess::Interrupt() {
  if (lResult == lRunning) kill(static_cast<pid_t>(hProcess), SIGINT);
}

std::string ChildProcess::BuiltProgram(const std::string& szName) {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / szName).string();
}
