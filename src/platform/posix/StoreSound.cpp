#include "platform/posix/StoreSound.h"

#include <unistd.h>

#include <functional>
#include <string_view>

#include "platform/Files.h"
#include "platform/posix/StoreFile.h"

namespace {

constexpr std::uint64_t lLongest = 100;
constexpr sqlite3_int64 lMostSummed = 64 << 20;

// In the header, as SQLite's file format has it: the count of changes, and that count with the version of the
// library as of the last change. Every open adds one when it tries whether it may write.
void Blank(std::string& szFile) {
  constexpr std::size_t lHeader = 100;
  if (szFile.size() < lHeader) return;
  szFile.replace(24, 4, 4, '\0');
  szFile.replace(92, 8, 8, '\0');
}

// Through SQLite's own descriptor: to close another one of that file would take its locks away.
std::optional<std::string> ReadOpen(sqlite3* pStore) {
  sqlite3_file* pFile = nullptr;
  sqlite3_int64 lSize = 0;
  if (sqlite3_file_control(pStore, "main", SQLITE_FCNTL_FILE_POINTER, &pFile) != SQLITE_OK ||
      pFile == nullptr || pFile->pMethods == nullptr ||
      pFile->pMethods->xFileSize(pFile, &lSize) != SQLITE_OK || lSize <= 0 || lSize > lMostSummed)
    return {};
  std::string szFile(static_cast<std::size_t>(lSize), '\0');
  if (pFile->pMethods->xRead(pFile, szFile.data(), static_cast<int>(lSize), 0) != SQLITE_OK) return {};
  return szFile;
}

}  // namespace

std::string StoreSound::PathOf(const std::string& szStore) {
  return szStore + ".sound";
}

std::optional<std::string> StoreSound::Sum(sqlite3* pStore, const std::string& szStore) {
  if (Files::FileSize(szStore + "-wal").value_or(0) > 0) return {};
  auto szFile = ReadOpen(pStore);
  if (!szFile) return {};
  Blank(*szFile);
  return std::to_string(szFile->size()) + ' ' + std::to_string(std::hash<std::string>{}(*szFile));
}

bool StoreSound::IsKnown(const std::string& szStore, const std::string& szSum) {
  return Files::ReadWhole(PathOf(szStore), lLongest) == szSum;
}

void StoreSound::Note(const std::string& szStore, const std::string& szSum) {
  const auto aFile = StoreFile::MakeEmpty(PathOf(szStore));
  [[maybe_unused]] const auto lIgnored = aFile ? write(aFile.Number(), szSum.data(), szSum.size()) : 0;
}
