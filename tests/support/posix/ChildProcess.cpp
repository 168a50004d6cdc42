#include "support/ChildProcess.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <filesystem>

extern char** environ;

using Steady = std::chrono::steady_clock;

struct ChildProcess::State {
  pid_t lChild = -1;
  int lResult = lRunning;
  std::array<pollfd, 2> aPipes{};
  std::array<std::string, 2> aTexts;

  // Takes what has come, waiting for it at most that long.
  void Read(int lMilliseconds) {
    if (poll(aPipes.data(), aPipes.size(), lMilliseconds) <= 0) return;
    for (std::size_t i = 0; i < aPipes.size(); ++i) {
      if (aPipes[i].revents == 0) continue;
      std::array<char, 65536> aBuffer{};
      const auto lRead = read(aPipes[i].fd, aBuffer.data(), aBuffer.size());
      if (lRead > 0) {
        aTexts[i].append(aBuffer.data(), static_cast<std::size_t>(lRead));
      } else {
        close(aPipes[i].fd);
        aPipes[i].fd = -1;
      }
    }
  }

  // Both pipes closed, so that nothing more can come.
  bool AllRead() const { return aPipes[0].fd < 0 && aPipes[1].fd < 0; }

  void Reap(int lFlags) {
    int lStatus = 0;
    if (lChild < 0 || waitpid(lChild, &lStatus, lFlags) != lChild) return;
    lChild = -1;
    lResult = WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : lKilled;
  }
};

ChildProcess::ChildProcess(const std::string& szProgram, const std::vector<std::string>& aArguments,
                           const Variables& aEnvironment)
    : pState(std::make_unique<State>()) {
  std::vector<std::string> aWords{szProgram};
  aWords.insert(aWords.end(), aArguments.begin(), aArguments.end());
  std::vector<char*> aWordList;
  for (auto& szWord : aWords)
    aWordList.push_back(szWord.data());
  aWordList.push_back(nullptr);
  std::vector<std::string> aSet;
  for (const auto& [szName, szValue] : aEnvironment)
    aSet.push_back(szName + "=" + szValue);
  for (char** pEntry = environ; *pEntry != nullptr; ++pEntry)
    aSet.emplace_back(*pEntry);  // the first wins
  std::vector<char*> aVariableList;
  for (auto& szEntry : aSet)
    aVariableList.push_back(szEntry.data());
  aVariableList.push_back(nullptr);

  posix_spawn_file_actions_t aActions;
  posix_spawn_file_actions_init(&aActions);
  posix_spawn_file_actions_addopen(&aActions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
  std::array<int, 2> aWriteEnds{-1, -1};
  for (std::size_t i = 0; i < 2; ++i) {
    std::array<int, 2> aPipe{-1, -1};
    if (pipe2(aPipe.data(), O_CLOEXEC) != 0) continue;
    pState->aPipes[i] = {aPipe[0], POLLIN, 0};
    aWriteEnds[i] = aPipe[1];
    posix_spawn_file_actions_adddup2(&aActions, aPipe[1], i == 0 ? STDOUT_FILENO : STDERR_FILENO);
  }
  if (posix_spawnp(&pState->lChild, szProgram.c_str(), &aActions, nullptr, aWordList.data(),
                   aVariableList.data()) != 0) {
    pState->lChild = -1;
    pState->lResult = 127;
    pState->aTexts[1] = "cannot start " + szProgram;
  }
  posix_spawn_file_actions_destroy(&aActions);
  for (const int lEnd : aWriteEnds)
    close(lEnd);
}

ChildProcess::~ChildProcess() {
  Kill();
  pState->Reap(0);
  for (const auto& aPipe : pState->aPipes) {
    if (aPipe.fd >= 0) close(aPipe.fd);
  }
}

int ChildProcess::Wait(double dSeconds) {
  const auto aEnd = Steady::now() + std::chrono::duration<double>(dSeconds);
  while (pState->lChild >= 0 && Steady::now() < aEnd) {
    pState->Read(pState->AllRead() ? 1 : 10);
    pState->Reap(WNOHANG);
  }
  if (pState->lChild >= 0) return lRunning;
  // A grandchild may hold the pipes open for ever; what the child wrote is there already.
  for (auto lBefore = std::string::npos; lBefore != Output().size() + Errors().size();) {
    lBefore = Output().size() + Errors().size();
    if (!pState->AllRead()) pState->Read(0);
  }
  return pState->lResult;
}

bool ChildProcess::WaitForOutput(const std::string& szText, double dSeconds) {
  const auto aEnd = Steady::now() + std::chrono::duration<double>(dSeconds);
  while (Output().find(szText) == std::string::npos) {
    if (pState->AllRead() || Steady::now() >= aEnd) return false;
    pState->Read(10);
  }
  return true;
}

void ChildProcess::Kill() {
  if (pState->lChild > 0) kill(pState->lChild, SIGKILL);
}

void ChildProcess::Interrupt() {
  if (pState->lChild > 0) kill(pState->lChild, SIGINT);
}

const std::string& ChildProcess::Output() const {
  return pState->aTexts[0];
}

const std::string& ChildProcess::Errors() const {
  return pState->aTexts[1];
}

std::string ChildProcess::BuiltProgram(const std::string& szName) {
  return (std::filesystem::read_symlink("/proc/self/exe").parent_path() / szName).string();
}
