#include "platform/Files.h"

#include "simulated/Machine.h"

const char Files::chSeparator = '/';

using namespace Simulated;

namespace {

std::string FolderOf(const std::string& szPath) {
  return szPath.substr(0, szPath.rfind('/'));
}

// Room for that many more bytes, and a folder that takes them.
bool Takes(const std::string& szPath, std::size_t lBytes) {
  const auto& aDisk = ThisMachine().aDisk;
  const auto szFolder = FolderOf(szPath);
  return aDisk.aFolders.count(szFolder) > 0 && aDisk.aLocked.count(szFolder) == 0 &&
         (aDisk.lRoom < 0 || static_cast<std::int64_t>(lBytes) <= aDisk.lRoom);
}

void Use(std::int64_t lBytes) {
  if (ThisMachine().aDisk.lRoom >= 0) ThisMachine().aDisk.lRoom -= lBytes;
}

const std::string* Find(const std::string& szPath) {
  const auto pFile = ThisMachine().aDisk.aFiles.find(szPath);
  return pFile == ThisMachine().aDisk.aFiles.end() ? nullptr : &pFile->second;
}

}  // namespace

std::size_t Files::DriveLength(std::string_view szPath) {
  return szPath.starts_with('/') ? 1 : 0;
}

bool Files::FolderExists(const std::string& szPath) {
  const Call aCall(Access::FileRead);
  return szPath == "/" || ThisMachine().aDisk.aFolders.count(szPath) > 0;
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
  if (aCall.bFails) return aNames;
  const auto szStart = szFolder + "/";
  const auto& aFiles = ThisMachine().aDisk.aFiles;
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

bool Files::MakeFolder(const std::string& szPath) {
  const Call aCall(Access::FileWrite);
  auto& aDisk = ThisMachine().aDisk;
  if (aDisk.aFolders.count(szPath) > 0) return true;
  if (aCall.bFails || aDisk.aFiles.count(szPath) > 0 || aDisk.aLocked.count(FolderOf(szPath)) > 0)
    return false;
  aDisk.aFolders.insert(szPath);
  return true;
}

Files::Deletion Files::Delete(const std::string& szPath) {
  const Call aCall(Access::FileWrite);
  const auto* const pBytes = Find(szPath);
  if (pBytes == nullptr) return Deletion::Gone;
  if (aCall.bFails || ThisMachine().aDisk.aLocked.count(FolderOf(szPath)) > 0) return Deletion::Failed;
  Use(-static_cast<std::int64_t>(pBytes->size()));
  ThisMachine().pWitness->Deleted(szPath);
  ThisMachine().aDisk.aFiles.erase(szPath);
  return Deletion::Done;
}

bool Files::Append(const std::string& szPath, std::string_view szBytes) {
  const Call aCall(Access::FileWrite);
  if (aCall.bGone) return false;
  auto& aDisk = ThisMachine().aDisk;
  if (aCall.bTheLast && aDisk.bTears && Takes(szPath, szBytes.size())) {
    aDisk.aFiles[szPath] += szBytes.substr(0, szBytes.size() / 2);
    ++aDisk.lTorn;
    return false;
  }
  const bool bKept = !aCall.bFails && Takes(szPath, szBytes.size());
  ThisMachine().pWitness->Appended(szPath, std::string(szBytes), bKept);
  if (!bKept) return false;
  aDisk.aFiles[szPath] += szBytes;
  Use(static_cast<std::int64_t>(szBytes.size()));
  return true;
}

std::optional<std::string> Files::ReadWhole(const std::string& szPath, std::uint64_t lMost) {
  const Call aCall(Access::FileRead);
  const auto* const pBytes = Find(szPath);
  if (aCall.bFails || pBytes == nullptr || pBytes->size() > lMost) return {};
  return *pBytes;
}

std::optional<std::string> Files::ReadPiece(const std::string& szPath, std::uint64_t lFrom,
                                            std::uint64_t lMost) {
  const Call aCall(Access::FileRead);
  const auto* const pBytes = Find(szPath);
  if (aCall.bFails || pBytes == nullptr) return {};
  return lFrom >= pBytes->size() ? std::string() : pBytes->substr(lFrom, lMost);
}

bool Files::WriteWhole(const std::string& szPath, std::string_view szBytes) {
  const Call aCall(Access::FileWrite);
  if (aCall.bFails || !Takes(szPath, szBytes.size())) return false;
  auto& szFile = ThisMachine().aDisk.aFiles[szPath];
  Use(static_cast<std::int64_t>(szBytes.size()) - static_cast<std::int64_t>(szFile.size()));
  szFile = szBytes;
  return true;
}
