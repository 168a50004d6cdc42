// Registry: the nine ANSI entry points of the registry under their own names, with the platform's result
// codes. On Windows they are the system's. Elsewhere one SQLite file holds both roots; it keeps the same
// rules: keys and value names match without regard to (ASCII) case and keep the case they were made with,
// "\" separates keys and nothing else does, key names hold at most 255 bytes, a key that has subkeys cannot
// be deleted, subkeys are listed in name order and values in the order they were made.
//
// The file is $KESTROVA_REGISTRY, else ${XDG_DATA_HOME:-~/.local/share}/kestrova/registry.db, mode 0600. It
// is opened at the first call, or by OpenStore. A committed value survives a kill at any moment; what the
// operator entered survives a power cut too. A last good copy lies beside the file.
//
// On Windows $KESTROVA_REGISTRY names a store beside the registry proper too: both roots then lie in a key of
// that name below HKEY_CURRENT_USER\Software\Tamsel\Stores.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/DateTime.h"

namespace Registry {

using Key = std::uintptr_t;  // 0 is no key; every call on it answers lInvalidHandle

inline constexpr Key HKEY_CURRENT_USER = 0x80000001;
inline constexpr Key HKEY_LOCAL_MACHINE = 0x80000002;

inline constexpr std::uint32_t REG_SZ = 1;
inline constexpr std::uint32_t REG_BINARY = 3;
inline constexpr std::uint32_t REG_DWORD = 4;

// Result codes, as winerror.h numbers them.
inline constexpr std::int32_t lSuccess = 0;
inline constexpr std::int32_t lNotFound = 2;      // no such key or value
inline constexpr std::int32_t lAccessDenied = 5;  // also: store read-only, busy for 2 s, full or unreadable
inline constexpr std::int32_t lInvalidHandle = 6;
inline constexpr std::int32_t lInvalidParameter = 87;
inline constexpr std::int32_t lMoreData = 234;  // the caller's buffer is too small
inline constexpr std::int32_t lNoMoreItems = 259;

// Paths are relative to the key given; "" is that key itself, and "\" at the end adds nothing. On failure
// hResult is 0, except where the store itself failed (5): then it is a key on which every call answers 5 too,
// so that a caller who looks at the last code only does not take an unreadable store for a missing key.
std::int32_t RegOpenKeyExA(Key hKey, const char* szPath, std::uint32_t lAccess, Key& hResult);
std::int32_t RegCreateKeyExA(Key hKey, const char* szPath, std::uint32_t lAccess, Key& hResult);
std::int32_t RegCloseKey(Key hKey);

// Any of pType, pData may be nullptr. pSize: in the bytes at pData, out the bytes stored (with the NUL of a
// string). With pData nullptr only type and size are answered.
std::int32_t RegQueryValueExA(Key hKey, const char* szName, std::uint32_t* pType, void* pData,
                              std::uint32_t* pSize);
std::int32_t RegSetValueExA(Key hKey, const char* szName, std::uint32_t lType, const void* pData,
                            std::uint32_t lSize);
std::int32_t RegDeleteKeyA(Key hKey, const char* szPath);
std::int32_t RegDeleteValueA(Key hKey, const char* szName);

// The name arrives with its NUL. lNameSize: bytes at szName.
std::int32_t RegEnumKeyA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t lNameSize);
// pNameSize: in the bytes at szName, out the length without the NUL. The rest as in RegQueryValueExA.
std::int32_t RegEnumValueA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t* pNameSize,
                           std::uint32_t* pType, void* pData, std::uint32_t* pSize);

// What a power cut may cost: a bracket of what the operator enters is on the disk when it ends, and a new
// last good copy is made of it; what a pass records gets there in its time.
enum class Written { ByThePass, ByTheOperator };

// Brackets several writes, so that a kill leaves all of them or none, and so that they cost one commit.
// Nests: the outermost one says who writes and commits when it ends. On Windows it does nothing: there the
// order of writes must serve.
class Transaction {
 public:
  explicit Transaction(Written iBy = Written::ByThePass);
  ~Transaction();
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;

  // Ends the bracket now. 0, or the code of the failure after which none of its writes is kept (an inner one
  // always answers 0). What the destructor meets is not reported.
  std::int32_t Commit();
  // Ends the bracket with none of its writes kept, nor those of a bracket around it.
  void Abandon();

 private:
  bool bEnded = false;
};

// How the store stands, as facts; what is said of them to an operator is composed above (StoreMessages).
enum class StoreCondition {
  Ready,        // it can be read and written
  Unreachable,  // no file can be opened or made at its path
  Locked,       // another program keeps it
  ReadOnly,     // it may not be written
  Full,         // its disk takes no more, or fails
  Foreign,      // the file is another program's, or of a newer version
  Damaged,      // damaged or gone, and no other could be put in its place
  Lost,         // damaged, neither a row nor a copy of it can be read; a new one begins with what is entered
  Failed,       // anything else; szSystem says what
  KeyRefused,   // Windows: the product's key may not be written
  KeyFailed,    // Windows: nor can it be opened; szSystem says why
  NotShared,    // Windows: what may be done to the key could not be changed; szSystem says why
  Private       // where each user has a store of their own, none is shared
};

struct StoreState {
  StoreCondition iCondition = StoreCondition::Ready;
  std::string szSystem;    // the system's own code or fixed words for the failure, empty where there are none
  bool bReadable = false;  // what it holds can be read, whatever else is the matter

  // Where the store was put together again after damage: said for a minute, so that all who met the damage
  // say it, and until something is entered where bWhole is false.
  bool bRecovered = false;
  std::string szKept;                // the damaged file, as which it is kept; empty where it was missing
  std::optional<DateTime> dtCopied;  // when the copy was made that it was begun from
  bool bWhole = true;                // false: something may be missing
};

// Opens the store now, and puts it together again where it is damaged. bBeginAnew: for one who enters
// something; a store of which nothing is left is then begun anew.
StoreState OpenStore(bool bBeginAnew = false);
void CloseStore();

// Closes a store that $KESTROVA_REGISTRY names and takes it away, where it is no file that its owner can
// delete: on Windows its key. Never the registry proper. For what made the store: the demonstration, a test.
void RemoveOwnStore();

// The text that stood under that name of a key in HKEY_LOCAL_MACHINE when the last good copy was made: for
// who finds that the store holds what cannot be. Nothing where the copy has none; there is no copy on
// Windows.
std::optional<std::string> LastGoodText(const std::string& szPath, const std::string& szName);

// Lets every account of this machine read and write the product's key, which is made where it is missing, and
// all below it. On Windows an administrator can; elsewhere nobody. Ready when it is done.
StoreState ShareStore();

// Where the store lies, for messages and for the lock of the single instance: a file path, or on Windows the
// name of the product's key.
std::string StoreName();

}  // namespace Registry
