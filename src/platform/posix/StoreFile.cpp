#include "platform/posix/StoreFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>

#include "base/Text.h"
#include "platform/Clock.h"
#include "platform/Files.h"
#include "platform/posix/Descriptor.h"
#include "platform/posix/UserFolders.h"

namespace {

std::string FolderOf(const std::string& szPath) {
  const auto lSlash = szPath.rfind('/');
  return lSlash == std::string::npos ? "." : lSlash == 0 ? "/" : szPath.substr(0, lSlash);
}

bool IsTaken(const std::string& szPath) {
  struct stat aStat {};
  return lstat(szPath.c_str(), &aStat) == 0 || errno != ENOENT;
}

// "m/d/yyyy h:nn:ss AM" cannot stand in a file name that sorts.
std::string Stamp() {
  const auto dtNow = Clock::Now();
  const auto aParts = SplitDateTime(dtNow);
  const auto lTime = 1000000 + aParts.lHour * 10000 + aParts.lMinute * 100 + aParts.lSecond;
  return FormatDay(dtNow) + "-" + std::to_string(lTime).substr(1);
}

}  // namespace

std::string StoreFile::Path() {
  const char* const szNamed = std::getenv("KESTROVA_REGISTRY");
  std::string szPath = szNamed != nullptr ? szNamed : "";
  if (szPath.empty()) szPath = UserFolders::Data() + "/kestrova/registry.db";
  // SQLite gives some plain names (":memory:") a meaning of their own.
  if (szPath[0] != '/') szPath.insert(0, "./");
  const std::unique_ptr<char, decltype(&std::free)> pReal(realpath(szPath.c_str(), nullptr), &std::free);
  return pReal ? pReal.get() : szPath;
}

StoreFile::Identity StoreFile::Identify(const std::string& szPath) {
  struct stat aStat {};
  if (stat(szPath.c_str(), &aStat) != 0) return {};
  return {aStat.st_dev, aStat.st_ino};
}

bool StoreFile::Prepare(const std::string& szPath) {
  if (Files::FileExists(szPath)) return true;
  if (!UserFolders::MakePrivate(FolderOf(szPath))) return false;
  Descriptor aFile(open(szPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600));
  aFile.Close();
  return Files::FileExists(szPath);
}

int StoreFile::WhyNoneBeside(const std::string& szPath) {
  const auto szTried = szPath + ".try";
  const int hFile = open(szTried.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
  if (hFile < 0) return errno;
  close(hFile);
  unlink(szTried.c_str());
  return 0;
}

bool StoreFile::LostItsPages(const std::string& szPath) {
  // In this order: a process that is just making the store writes the file before the journal.
  const auto lJournal = Files::FileSize(szPath + "-wal").value_or(0);
  return lJournal > 0 && Files::FileSize(szPath) == std::uint64_t{0};
}

std::string StoreFile::NameToKeep(const std::string& szPath) {
  const auto szFirst = szPath + ".damaged-" + Stamp();
  auto szKept = szFirst;
  for (int i = 2; IsTaken(szKept) || IsTaken(szKept + "-wal"); ++i)
    szKept = szFirst + "-" + std::to_string(i);
  return szKept;
}

bool StoreFile::Keep(const std::string& szPath, const std::string& szKept) {
  if (rename((szPath + "-wal").c_str(), (szKept + "-wal").c_str()) != 0 && errno != ENOENT) return false;
  // Where a file can have one name only, it is without one until the new store is there; the copy beside it
  // heals that.
  if (link(szPath.c_str(), szKept.c_str()) != 0 && rename(szPath.c_str(), szKept.c_str()) != 0) return false;
  unlink((szPath + "-shm").c_str());  // only an index of the journal; SQLite makes it anew
  return true;
}

bool StoreFile::DropJournal(const std::string& szPath) {
  unlink((szPath + "-shm").c_str());
  return unlink((szPath + "-wal").c_str()) == 0 || errno == ENOENT;
}

Descriptor StoreFile::MakeEmpty(const std::string& szPath) {
  Descriptor aFile(open(szPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, 0600));
  if (!aFile || flock(aFile.Number(), LOCK_EX | LOCK_NB) != 0 || ftruncate(aFile.Number(), 0) != 0) return {};
  return aFile;
}

bool StoreFile::PutInPlace(Descriptor& aFile, const std::string& szFrom, const std::string& szTo) {
  if (fsync(aFile.Number()) != 0 || rename(szFrom.c_str(), szTo.c_str()) != 0) return false;
  const Descriptor aFolder(open(FolderOf(szTo).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  if (aFolder) fsync(aFolder.Number());  // a file system that cannot has the new name in its journal anyway
  return true;
}
