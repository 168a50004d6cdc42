#include "platform/Files.h"

#include <algorithm>
#include <atomic>

#include "platform/windows/Handle.h"
#include "platform/windows/System.h"

// The "A" entry points take UTF-8: the manifest says so.

namespace {

constexpr DWORD lShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A lock on Windows also stops readers of the locked bytes and writers that do not ask. Locking one byte far
// behind the end keeps our writers apart and leaves everybody else alone.
class WriterLock {
 public:
  explicit WriterLock(HANDLE hGiven) : hFile(hGiven) {
    bLocked = LockFileEx(hFile, LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &aPlace);
  }
  ~WriterLock() {
    if (bLocked) UnlockFileEx(hFile, 0, 1, 0, &aPlace);
  }
  WriterLock(const WriterLock&) = delete;
  WriterLock& operator=(const WriterLock&) = delete;

 private:
  static OVERLAPPED FarPlace() {
    OVERLAPPED aFar{};
    aFar.OffsetHigh = 0x7FFFFFFF;
    return aFar;
  }
  HANDLE hFile;
  OVERLAPPED aPlace = FarPlace();
  bool bLocked = false;
};

// pWhere: nullptr for the file's position.
bool WriteAll(HANDLE hFile, std::string_view szBytes, OVERLAPPED* pWhere = nullptr) {
  while (!szBytes.empty()) {
    const auto lPiece = static_cast<DWORD>(std::min<std::size_t>(szBytes.size(), 1 << 24));
    DWORD lWritten = 0;
    if (!WriteFile(hFile, szBytes.data(), lPiece, &lWritten, pWhere) || lWritten == 0) return false;
    szBytes.remove_prefix(lWritten);
  }
  return true;
}

}  // namespace

const char Files::chSeparator = '\\';
const bool Files::bCaseMatters = false;

std::size_t Files::DriveLength(std::string_view szPath) {
  if (szPath.size() < 3 || szPath[1] != ':' || szPath[2] != chSeparator) return 0;
  const char chDrive = static_cast<char>(szPath[0] | 0x20);
  return chDrive >= 'a' && chDrive <= 'z' ? 3 : 0;
}

bool Files::Append(const std::string& szPath, std::string_view szBytes) {
  const Handle aFile(CreateFileA(szPath.c_str(), GENERIC_READ | GENERIC_WRITE, lShareAll, nullptr,
                                 OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!aFile) return false;
  const WriterLock aLock(aFile.Get());
  LARGE_INTEGER aEnd;
  if (!GetFileSizeEx(aFile.Get(), &aEnd)) return false;
  // All ones is the end of the file at the moment of writing, lock or no lock.
  OVERLAPPED aAtEnd{};
  aAtEnd.Offset = aAtEnd.OffsetHigh = 0xFFFFFFFF;
  if (WriteAll(aFile.Get(), szBytes, &aAtEnd)) return true;
  if (SetFilePointerEx(aFile.Get(), aEnd, nullptr, FILE_BEGIN)) SetEndOfFile(aFile.Get());
  return false;
}

std::optional<std::string> Files::ReadPiece(const std::string& szPath, std::uint64_t lFrom,
                                            std::uint64_t lMost) {
  const Handle aFile(CreateFileA(szPath.c_str(), GENERIC_READ, lShareAll, nullptr, OPEN_EXISTING,
                                 FILE_ATTRIBUTE_NORMAL, nullptr));
  LARGE_INTEGER aFrom;
  aFrom.QuadPart = static_cast<LONGLONG>(lFrom);
  if (!aFile || !SetFilePointerEx(aFile.Get(), aFrom, nullptr, FILE_BEGIN)) return std::nullopt;
  std::string szBytes;
  while (szBytes.size() < lMost) {
    const std::size_t lHave = szBytes.size();
    const auto lPiece = static_cast<DWORD>(std::min<std::uint64_t>(lMost - lHave, 1 << 20));
    DWORD lRead = 0;
    szBytes.resize(lHave + lPiece);
    if (!ReadFile(aFile.Get(), szBytes.data() + lHave, lPiece, &lRead, nullptr)) return std::nullopt;
    szBytes.resize(lHave + lRead);
    if (lRead == 0) break;
  }
  return szBytes;
}

struct Files::Replacement::State {
  std::string szTarget, szBeside;
  std::optional<Handle> aFile;
  bool bWhole = false;
};

Files::Replacement::Replacement(const std::string& szPath) : pState(std::make_unique<State>()) {
  static std::atomic<unsigned> lCount = 0;
  pState->szTarget = szPath;
  pState->szBeside =
      szPath + "." + std::to_string(GetCurrentProcessId()) + "-" + std::to_string(++lCount) + ".new";
  pState->aFile.emplace(CreateFileA(pState->szBeside.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS,
                                    FILE_ATTRIBUTE_NORMAL, nullptr));
  pState->bWhole = static_cast<bool>(*pState->aFile);
  if (!pState->bWhole) pState->szBeside.clear();
}

Files::Replacement::~Replacement() {
  pState->aFile.reset();
  if (!pState->szBeside.empty()) DeleteFileA(pState->szBeside.c_str());
}

bool Files::Replacement::Write(std::string_view szBytes) {
  pState->bWhole = pState->bWhole && WriteAll(pState->aFile->Get(), szBytes);
  return pState->bWhole;
}

bool Files::Replacement::Commit() {
  State& a = *pState;
  a.bWhole = a.bWhole && FlushFileBuffers(a.aFile->Get());
  a.aFile.reset();
  a.bWhole = a.bWhole && MoveFileExA(a.szBeside.c_str(), a.szTarget.c_str(),
                                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
  if (a.bWhole) a.szBeside.clear();
  return a.bWhole;
}
