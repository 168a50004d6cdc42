#include "platform/Files.h"

#include "simulated/Disk.h"
#include "simulated/Machine.h"

const char Files::chSeparator = '/';
const bool Files::bCaseMatters = true;

namespace Simulated {

namespace {

std::string FolderOf(const std::string& szPath) {
  return szPath.substr(0, szPath.rfind('/'));
}

// Room for that many more bytes, and a folder that takes them.
bool Takes(const std::string& szPath, std::size_t lBytes) {
  const auto& aDisk = Disk::The();
  const auto szFolder = FolderOf(szPath);
  return aDisk.aFolders.count(szFolder) > 0 && aDisk.aLocked.count(szFolder) == 0 &&
         (aDisk.lRoom < 0 || static_cast<std::int64_t>(lBytes) <= aDisk.lRoom);
}

void Use(std::int64_t lBytes) {
  if (Disk::The().lRoom >= 0) Disk::The().lRoom -= lBytes;
}

const std::string* Find(const std::string& szPath) {
  const auto pFile = Disk::The().aFiles.find(szPath);
  return pFile == Disk::The().aFiles.end() ? nullptr : &pFile->second;
}

}  // namespace

Disk::State& Disk::The() {
  static State aState;
  return aState;
}

void Disk::Clear() {
  The() = State();
}

void Disk::LosePower() {
}

}  // namespace Simulated

using namespace Simulated;

std::size_t Files::DriveLength(std::string_view szPath) {
  return szPath.starts_with('/') ? 1 : 0;
}

bool Files::FolderExists(const std::string& szPath) {
  const Call aCall(Access::FileRead);
  return szPath == "/" || Disk::The().aFolders.count(szPath) > 0;
}

bool Files::FileExists(const std::string& szPath) {
  return FileSize(szPath).has_value();
}

std::optional<std::uint64_t> Files::FileSize(const std::string& szPath) {
  const Call aCall;
  const auto* const pBytes = Find(szPath);
  if (pBytes == nullptr) return {};
  return pBytes->size();
}

std::vector<std::string> Files::List(const std::string& szFolder, const std::string& szEnding) {
  const Call aCall(Access::FileRead);
  std::vector<std::string> aNames;
  if (aCall.Fails()) return aNames;
  const auto szStart = szFolder + "/";
  const auto& aFiles = Disk::The().aFiles;
  for (auto pFile = aFiles.lower_bound(szStart); pFile != aFiles.end() && pFile->first.starts_with(szStart);
       ++pFile) {
    auto szName = pFile->first.substr(szStart.size());
    if (szName.ends_with(szEnding) && szName.find('/') == std::string::npos)
      aNames.push_back(std::move(szName));
  }
  return aNames;
}

std::string Files::Absolute(const std::string& szPath) {
  return szPath;
}

bool Files::Same(const std::string& szOne, const std::string& szOther) {
  return szOne == szOther;
}

bool Files::MakeFolder(const std::string& szPath) {
  const Call aCall(Access::FileWrite);
  auto& aDisk = Disk::The();
  if (aDisk.aFolders.count(szPath) > 0) return true;
  if (aCall.Fails() || aDisk.aFiles.count(szPath) > 0 || aDisk.aLocked.count(FolderOf(szPath)) > 0)
    return false;
  aDisk.aFolders.insert(szPath);
  return true;
}

Files::Deletion Files::Delete(const std::string& szPath) {
  const Call aCall(Access::FileWrite);
  const auto* const pBytes = Find(szPath);
  if (pBytes == nullptr) return Deletion::Gone;
  if (aCall.Fails() || Disk::The().aLocked.count(FolderOf(szPath)) > 0) return Deletion::Failed;
  Use(-static_cast<std::int64_t>(pBytes->size()));
  if (The().pWitness != nullptr) The().pWitness->Deleted(szPath);
  Disk::The().aFiles.erase(szPath);
  return Deletion::Done;
}

bool Files::Append(const std::string& szPath, std::string_view szBytes) {
  const Call aCall(Access::FileWrite);
  if (aCall.Gone()) return false;
  auto& aDisk = Disk::The();
  if (aCall.IsTheLast() && aDisk.bTears && Takes(szPath, szBytes.size())) {
    aDisk.aFiles[szPath] += szBytes.substr(0, szBytes.size() / 2);
    aDisk.bTorn = true;
    return false;
  }
  const bool bKept = !aCall.Fails() && Takes(szPath, szBytes.size());
  if (The().pWitness != nullptr) The().pWitness->Appended(szPath, std::string(szBytes), bKept);
  if (!bKept) return false;
  aDisk.aFiles[szPath] += szBytes;
  Use(static_cast<std::int64_t>(szBytes.size()));
  return true;
}

std::optional<std::string> Files::ReadWhole(const std::string& szPath, std::uint64_t lMost) {
  const Call aCall(Access::FileRead);
  const auto* const pBytes = Find(szPath);
  if (aCall.Fails() || pBytes == nullptr || pBytes->size() > lMost) return {};
  return *pBytes;
}

std::optional<std::string> Files::ReadPiece(const std::string& szPath, std::uint64_t lFrom,
                                            std::uint64_t lMost) {
  const Call aCall(Access::FileRead);
  const auto* const pBytes = Find(szPath);
  if (aCall.Fails() || pBytes == nullptr) return {};
  return lFrom >= pBytes->size() ? std::string() : pBytes->substr(lFrom, lMost);
}

bool Files::WriteWhole(const std::string& szPath, std::string_view szBytes) {
  const Call aCall(Access::FileWrite);
  if (aCall.Fails() || !Takes(szPath, szBytes.size())) return false;
  auto& szFile = Disk::The().aFiles[szPath];
  Use(static_cast<std::int64_t>(szBytes.size()) - static_cast<std::int64_t>(szFile.size()));
  szFile = szBytes;
  return true;
}

struct Files::Replacement::State {
  std::string szPath, szBytes;
};

Files::Replacement::Replacement(const std::string& szPath)
    : pState(std::make_unique<State>(State{szPath, {}})) {
}

Files::Replacement::~Replacement() = default;

bool Files::Replacement::Write(std::string_view szBytes) {
  pState->szBytes += szBytes;
  return true;
}

bool Files::Replacement::Commit() {
  return WriteWhole(pState->szPath, pState->szBytes);
}
