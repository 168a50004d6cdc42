#include "ui/logview/OpenViewer.h"

#include <array>
#include <cstdint>
#include <cstdio>

#include "history/LogFiles.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/Shell.h"
#include "platform/SingleInstance.h"

namespace {

// A word of small letters and digits for a path of any length.
std::string WordFor(const std::string& szLog) {
  std::uint64_t lHash = 14695981039346656037U;  // FNV-1a
  for (const char ch : szLog)
    lHash = (lHash ^ static_cast<unsigned char>(ch)) * 1099511628211U;
  std::array<char, 32> aWord{};
  std::snprintf(aWord.data(), aWord.size(), "viewer-%016llx", static_cast<unsigned long long>(lHash));
  return aWord.data();
}

std::string RequestFile(const std::string& szWord) {
  const auto szFolder = Shell::UserDataFolder();
  for (const auto& szLevel : {LogFiles::FolderOf(szFolder), szFolder})
    Files::MakeFolder(szLevel);
  return szFolder + Files::chSeparator + szWord + ".request";
}

}  // namespace

OpenViewer::OpenViewer() = default;
OpenViewer::~OpenViewer() = default;

void OpenViewer::Shows(const std::string& szLog) {
  const auto szWord = WordFor(szLog);
  pLock = std::make_unique<SingleInstance>(szWord);
  szRequest = pLock->TryLock() ? RequestFile(szWord) : std::string();
}

std::optional<std::string> OpenViewer::Asked() const {
  constexpr std::uint64_t lMost = 1U << 16U;
  if (szRequest.empty() || !Files::FileExists(szRequest)) return {};
  auto szSite = Files::ReadWhole(szRequest, lMost);
  // Gone tells the other one that it was read. One that cannot be taken away would come again and again.
  return Files::Delete(szRequest) == Files::Deletion::Done ? szSite : std::nullopt;
}

bool OpenViewer::Ask(const std::string& szLog, const std::string& szSite) {
  constexpr double dPatience = 3;  // seconds
  const auto szWord = WordFor(szLog);
  if (SingleInstance(szWord).TryLock()) return false;
  const auto szFile = RequestFile(szWord);
  if (!Files::WriteWhole(szFile, szSite)) return false;
  for (const auto dtEnd = AddSeconds(Clock::SteadyNow(), dPatience); Clock::SteadyNow() < dtEnd;) {
    if (!Files::FileExists(szFile)) return true;
    Clock::Wait(0.02);
  }
  return Files::Delete(szFile) != Files::Deletion::Done;
}
