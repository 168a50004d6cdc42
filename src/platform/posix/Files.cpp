#include "platform/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <memory>

#include "platform/posix/Descriptor.h"

const char Files::chSeparator = '/';
const bool Files::bCaseMatters = true;

namespace {

bool IsRegular(int lFile) {
  struct stat aStat {};
  return fstat(lFile, &aStat) == 0 && S_ISREG(aStat.st_mode);
}

// O_NONBLOCK: a pipe or device in a file's place answers instead of holding the program up.
Descriptor OpenAny(const std::string& szPath, int lFlags) {
  return Descriptor(open(szPath.c_str(), lFlags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0666));
}

Descriptor OpenRegular(const std::string& szPath, int lFlags) {
  auto aFile = OpenAny(szPath, lFlags);
  if (!aFile || !IsRegular(aFile.Number())) return {};
  return aFile;
}

// The bytes that got written; fewer than given after a failure.
std::size_t WriteAll(int lFile, std::string_view szBytes) {
  std::size_t lWritten = 0;
  while (lWritten < szBytes.size()) {
    const auto lStep = write(lFile, szBytes.data() + lWritten, szBytes.size() - lWritten);
    if (lStep < 0 && errno == EINTR) continue;
    if (lStep <= 0) break;
    lWritten += static_cast<std::size_t>(lStep);
  }
  return lWritten;
}

// What follows in the file, up to lMost bytes.
std::optional<std::string> ReadUpTo(int lFile, std::uint64_t lMost) {
  std::string szBytes;
  std::array<char, 65536> aBuffer{};
  while (szBytes.size() < lMost) {
    const auto lWanted = std::min<std::uint64_t>(aBuffer.size(), lMost - szBytes.size());
    const auto lStep = read(lFile, aBuffer.data(), static_cast<std::size_t>(lWanted));
    if (lStep < 0 && errno == EINTR) continue;
    if (lStep < 0) return {};
    if (lStep == 0) break;
    szBytes.append(aBuffer.data(), static_cast<std::size_t>(lStep));
  }
  return szBytes;
}

// A link is followed, so that writing replaces what it points to and not the link.
std::string Resolved(const std::string& szPath) {
  const std::unique_ptr<char, decltype(&std::free)> pReal(realpath(szPath.c_str(), nullptr), &std::free);
  return pReal ? pReal.get() : szPath;
}

// What a new file's permissions would be, or those of the one that is replaced.
mode_t Permissions(const std::string& szPath) {
  struct stat aStat {};
  if (stat(szPath.c_str(), &aStat) == 0) return aStat.st_mode & 07777;
  const mode_t lMask = umask(0);
  umask(lMask);
  return 0666 & ~lMask;
}

// What a write leaves beside its target when it is killed. Each is locked as long as its writer lives.
constexpr std::string_view szBesideStart = ".kestrova-";
constexpr std::size_t lBesideLength = szBesideStart.size() + 6;

void SweepLeftovers(const std::string& szFolder) {
  std::error_code aFailed;
  for (std::filesystem::directory_iterator aEntry(szFolder.empty() ? "." : szFolder, aFailed), aEnd;
       !aFailed && aEntry != aEnd; aEntry.increment(aFailed)) {
    const auto szName = aEntry->path().filename().string();
    if (!szName.starts_with(szBesideStart) || szName.size() != lBesideLength) continue;
    const auto szPath = aEntry->path().string();
    const auto aFile = OpenRegular(szPath, O_WRONLY | O_NOFOLLOW);
    if (aFile && flock(aFile.Number(), LOCK_EX | LOCK_NB) == 0) unlink(szPath.c_str());
  }
}

}  // namespace

std::size_t Files::DriveLength(std::string_view szPath) {
  return szPath.starts_with('/') ? 1 : 0;
}

bool Files::Append(const std::string& szPath, std::string_view szBytes) {
  const auto aFile = OpenAny(szPath, O_WRONLY | O_CREAT | O_APPEND);
  if (!aFile) return false;
  flock(aFile.Number(), LOCK_EX | LOCK_NB);  // released by the close
  struct stat aBefore {};
  if (fstat(aFile.Number(), &aBefore) != 0 || !S_ISREG(aBefore.st_mode)) return false;
  const auto lWritten = WriteAll(aFile.Number(), szBytes);
  if (lWritten == szBytes.size()) return true;
  struct stat aAfter {};
  // Only our own torn piece may be cut off, not what another writer put behind it.
  if (lWritten > 0 && fstat(aFile.Number(), &aAfter) == 0 &&
      aAfter.st_size == aBefore.st_size + static_cast<off_t>(lWritten)) {
    [[maybe_unused]] const int lIgnored = ftruncate(aFile.Number(), aBefore.st_size);
  }
  return false;
}

std::optional<std::string> Files::ReadPiece(const std::string& szPath, std::uint64_t lFrom,
                                            std::uint64_t lMost) {
  const auto aFile = OpenRegular(szPath, O_RDONLY);
  if (!aFile || lFrom > INT64_MAX) return {};
  if (lseek(aFile.Number(), static_cast<off_t>(lFrom), SEEK_SET) < 0) return {};
  return ReadUpTo(aFile.Number(), lMost);
}

struct Files::Replacement::State {
  std::string szTarget, szBeside;  // nothing beside: a device, which is written itself
  Descriptor aFile;
  bool bWhole = false;
};

Files::Replacement::Replacement(const std::string& szPath) : pState(std::make_unique<State>()) {
  struct stat aStat {};
  if (stat(szPath.c_str(), &aStat) == 0 && !S_ISREG(aStat.st_mode)) {
    // /dev/stdout and its like: there is nothing to replace.
    pState->aFile = Descriptor(open(szPath.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
  } else {
    pState->szTarget = Resolved(szPath);
    const auto szFolder =
        pState->szTarget.substr(0, pState->szTarget.rfind('/') + 1);  // empty: where we work
    SweepLeftovers(szFolder);
    pState->szBeside = szFolder + std::string(szBesideStart) + "XXXXXX";
    pState->aFile = Descriptor(mkostemp(pState->szBeside.data(), O_CLOEXEC));
    if (!pState->aFile) pState->szBeside.clear();
    if (pState->aFile) flock(pState->aFile.Number(), LOCK_EX | LOCK_NB);  // tells a sweeper that we are at it
  }
  pState->bWhole = static_cast<bool>(pState->aFile);
}

Files::Replacement::~Replacement() {
  if (!pState->szBeside.empty()) unlink(pState->szBeside.c_str());
}

bool Files::Replacement::Write(std::string_view szBytes) {
  pState->bWhole = pState->bWhole && WriteAll(pState->aFile.Number(), szBytes) == szBytes.size();
  return pState->bWhole;
}

bool Files::Replacement::Commit() {
  State& a = *pState;
  if (!a.bWhole || a.szBeside.empty()) return a.bWhole;
  a.bWhole = fchmod(a.aFile.Number(), Permissions(a.szTarget)) == 0 && fsync(a.aFile.Number()) == 0 &&
             a.aFile.Close() && rename(a.szBeside.c_str(), a.szTarget.c_str()) == 0;
  if (a.bWhole) a.szBeside.clear();
  return a.bWhole;
}
