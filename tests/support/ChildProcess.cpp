#include "support/ChildProcess.h"

#include <filesystem>
#include <thread>

#include "base/Text.h"
#include "platform/Environment.h"
#include "platform/Files.h"
#include "support/TestHome.h"

namespace {

constexpr std::uint64_t lMostOutput = 1 << 30;

std::string Read(const std::string& szFile) {
  return Text::Replace(Files::ReadWhole(szFile, lMostOutput).value_or(""), "\r\n", "\n");
}

}  // namespace

ChildProcess::ChildProcess(const std::string& szProgram, const std::vector<std::string>& aArguments) {
  std::vector<std::string> aWords{szProgram};
  aWords.insert(aWords.end(), aArguments.begin(), aArguments.end());
  Start(aWords);
  if (hProcess == 0) lResult = 127;
}

ChildProcess::~ChildProcess() {
  Kill();
  Wait(60);
  Files::Delete(szOutputFile);
  Files::Delete(szErrorFile);
}

int ChildProcess::Wait(double dSeconds) {
  const Stopwatch aWatch;
  while (lResult == lRunning && !Ended() && aWatch.Seconds() < dSeconds)
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  return lResult;
}

bool ChildProcess::WaitForOutput(const std::string& szText, double dSeconds) {
  const Stopwatch aWatch;
  while (Output().find(szText) == std::string::npos)
    if (aWatch.Seconds() > dSeconds || Wait(0.002) != lRunning)
      return Output().find(szText) != std::string::npos;
  return true;
}

std::string ChildProcess::Output() const {
  return Read(szOutputFile);
}

std::string ChildProcess::Errors() const {
  return Read(szErrorFile);
}

std::string ChildProcess::NewFile() {
  static int lFiles = 0;
  const auto szName = "kestrova-output-" + std::to_string(Environment::ProcessNumber()) + "-";
  return (std::filesystem::temp_directory_path() / (szName + std::to_string(++lFiles))).string();
}
