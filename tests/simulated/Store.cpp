// The nine entry points of the registry, and the brackets around writes, in memory. What a bracket changes is
// kept as it was until it is committed.
#include "simulated/Store.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <optional>
#include <string_view>
#include <utility>

#include "base/Text.h"
#include "platform/RegistryRules.h"
#include "simulated/Machine.h"

namespace Simulated {

namespace {

using namespace Registry;
using Store::Value;

constexpr Key hUnreadable = 0x7FFFFFFF;  // every call on it answers 5

struct Node {
  std::string szName;
  std::vector<Value> aValues;  // in the order made
};

struct Tree {
  std::map<std::string, Node> aKeys = {{"machine", {}}, {"user", {}}};  // by path, lower case
  std::map<std::string, std::optional<Node>> aBefore;                   // of what is not committed
  std::vector<std::string> aOpen;  // paths; a handle is its place + 1, an empty place is free
  std::int32_t lBrackets = 0;
  bool bBroken = false;  // the bracket's writes are undone and further ones refused
};

Tree& TheTree() {
  static Tree aTree;
  return aTree;
}

void Undo() {
  auto& aTree = TheTree();
  for (auto& [szPath, aWas] : aTree.aBefore)
    if (aWas)
      aTree.aKeys[szPath] = std::move(*aWas);
    else
      aTree.aKeys.erase(szPath);
  aTree.aBefore.clear();
}

// A write outside a bracket is committed by itself.
void BeforeChange(const std::string& szPath) {
  auto& aTree = TheTree();
  if (aTree.lBrackets == 0 || aTree.aBefore.contains(szPath)) return;
  const auto pNode = aTree.aKeys.find(szPath);
  aTree.aBefore.emplace(szPath, pNode == aTree.aKeys.end() ? std::nullopt : std::optional(pNode->second));
}

Node* NodeAt(const std::string& szPath) {
  const auto pNode = TheTree().aKeys.find(szPath);
  return pNode == TheTree().aKeys.end() ? nullptr : &pNode->second;
}

// The path of a handle's key; empty, and the code, where it is none.
std::string PathOf(Key hKey, std::int32_t& lCode) {
  const auto& aOpen = TheTree().aOpen;
  lCode = lSuccess;
  if (hKey == HKEY_LOCAL_MACHINE) return "machine";
  if (hKey == HKEY_CURRENT_USER) return "user";
  if (hKey > 0 && hKey <= aOpen.size() && NodeAt(aOpen[hKey - 1]) != nullptr) return aOpen[hKey - 1];
  lCode = hKey == hUnreadable ? lAccessDenied : lInvalidHandle;
  return {};
}

Key Hold(const std::string& szPath) {
  auto& aOpen = TheTree().aOpen;
  const auto pFree = std::find(aOpen.begin(), aOpen.end(), "");
  const auto lPlace = static_cast<Key>(pFree - aOpen.begin());
  if (pFree == aOpen.end())
    aOpen.push_back(szPath);
  else
    *pFree = szPath;
  return lPlace + 1;
}

// The path below another; empty where a name is too long. bMake: with all keys that are missing.
std::string Below(std::string szPath, std::string_view szWay, bool bMake = false) {
  std::vector<std::string_view> aParts;
  if (!SplitPath(szWay, aParts)) return {};
  for (const auto szPart : aParts) {
    szPath.append("\\").append(Text::LowerCase(szPart));
    if (!bMake || NodeAt(szPath) != nullptr) continue;
    BeforeChange(szPath);
    TheTree().aKeys[szPath].szName = szPart;
  }
  return szPath;
}

std::string Below(Key hRoot, const std::string& szWay, bool bMake = false) {
  return Below(hRoot == HKEY_CURRENT_USER ? "user" : "machine", szWay, bMake);
}

std::vector<std::string> KeysBelow(const std::string& szPath) {
  const auto& aKeys = TheTree().aKeys;
  const auto szStart = szPath + "\\";
  std::vector<std::string> aNames;
  for (auto pKey = aKeys.lower_bound(szStart); pKey != aKeys.end() && pKey->first.starts_with(szStart);
       ++pKey)
    if (pKey->first.find('\\', szStart.size()) == std::string::npos) aNames.push_back(pKey->second.szName);
  return aNames;
}

std::vector<Value>::iterator FindValue(Node& aNode, std::string_view szName) {
  return std::find_if(aNode.aValues.begin(), aNode.aValues.end(), [&](const Value& aValue) {
    return aValue.szName.size() == szName.size() && Text::EqualNoCase(aValue.szName, szName);
  });
}

void Set(const std::string& szPath, std::string_view szName, std::uint32_t lType, std::string szData) {
  BeforeChange(szPath);
  auto& aNode = *NodeAt(szPath);
  const auto pFound = FindValue(aNode, szName);
  if (pFound == aNode.aValues.end()) {
    aNode.aValues.push_back({std::string(szName), lType, std::move(szData)});
  } else {
    pFound->lType = lType;
    pFound->szData = std::move(szData);
  }
}

std::int32_t Erase(const std::string& szPath, std::string_view szName) {
  auto& aNode = *NodeAt(szPath);
  const auto pValue = FindValue(aNode, szName);
  if (pValue == aNode.aValues.end()) return lNotFound;
  BeforeChange(szPath);
  aNode.aValues.erase(pValue);
  return lSuccess;
}

// A call that fails inside a bracket costs the whole bracket, as with a full or failing disk; a read not on
// every machine.
bool Refused(const Call& aCall, bool bRead) {
  auto& aTree = TheTree();
  auto& aMachine = ThisMachine();
  if (aCall.bFails && aTree.lBrackets > 0 && !(bRead && aMachine.bReadsSpareBrackets && !aMachine.Dead())) {
    Undo();
    aTree.bBroken = true;
  }
  return aCall.bFails;
}

bool MayWrite(const Call& aCall) {
  return !Refused(aCall, false) && !TheTree().bBroken;
}

}  // namespace

std::int32_t Store::Value::Number() const {
  std::int32_t lNumber = 0;
  if (szData.size() == sizeof lNumber) std::memcpy(&lNumber, szData.data(), sizeof lNumber);
  return lNumber;
}

std::vector<std::string> Store::Keys(Key hRoot, const std::string& szPath) {
  return KeysBelow(Below(hRoot, szPath));
}

const std::vector<Value>& Store::Values(Key hRoot, const std::string& szPath) {
  static const std::vector<Value> aNone;
  const auto* const pNode = NodeAt(Below(hRoot, szPath));
  return pNode == nullptr ? aNone : pNode->aValues;
}

const Value* Store::Find(Key hRoot, const std::string& szPath, const std::string& szName) {
  auto* const pNode = NodeAt(Below(hRoot, szPath));
  if (pNode == nullptr) return nullptr;
  const auto pValue = FindValue(*pNode, szName);
  return pValue == pNode->aValues.end() ? nullptr : &*pValue;
}

bool Store::HasKey(Key hRoot, const std::string& szPath) {
  return NodeAt(Below(hRoot, szPath)) != nullptr;
}

void Store::PutNumber(Key hRoot, const std::string& szPath, const std::string& szName, std::int32_t lNumber) {
  std::string szData(sizeof lNumber, '\0');
  std::memcpy(szData.data(), &lNumber, sizeof lNumber);
  Set(Below(hRoot, szPath, true), szName, REG_DWORD, std::move(szData));
}

void Store::Remove(Key hRoot, const std::string& szPath, const std::string& szName) {
  if (HasKey(hRoot, szPath)) Erase(Below(hRoot, szPath), szName);
}

Store::Size Store::Measure() {
  const auto& aTree = TheTree();
  Size aSize{0, aTree.aKeys.size(), 0, aTree.lBrackets};
  aSize.lOpenKeys = aTree.aOpen.size() - static_cast<std::size_t>(std::ranges::count(aTree.aOpen, ""));
  for (const auto& [szPath, aNode] : aTree.aKeys)
    aSize.lValues += aNode.aValues.size();
  return aSize;
}

void Store::Clear() {
  TheTree() = Tree();
}

void Store::LosePower() {
  Undo();
  auto& aTree = TheTree();
  aTree.aOpen.clear();
  aTree.lBrackets = 0;
  aTree.bBroken = false;
}

}  // namespace Simulated

namespace Registry {

using namespace Simulated;

namespace {

// A call about a key: its code while nothing else is known, and the key's path.
struct KeyCall {
  KeyCall(Access iAccess, Key hKey) : aCall(iAccess), szPath(PathOf(hKey, lCode)) {
    const bool bRead = iAccess == Access::StoreRead;
    if (lCode == lSuccess && (bRead ? Refused(aCall, true) : !MayWrite(aCall))) lCode = lAccessDenied;
  }
  const Call aCall;
  std::int32_t lCode = lSuccess;
  const std::string szPath;
};

std::int32_t Opened(std::int32_t lCode, const std::string& szPath, Key& hResult) {
  hResult = lCode == lSuccess ? Hold(szPath) : lCode == lAccessDenied ? hUnreadable : 0;
  return lCode;
}

}  // namespace

std::int32_t RegOpenKeyExA(Key hKey, const char* szPath, std::uint32_t, Key& hResult) {
  const KeyCall aKey(Access::StoreRead, hKey);
  const auto szFound = aKey.lCode == lSuccess ? Below(aKey.szPath, szPath) : std::string();
  const bool bMissing = aKey.lCode == lSuccess && NodeAt(szFound) == nullptr;
  return Opened(bMissing ? lNotFound : aKey.lCode, szFound, hResult);
}

std::int32_t RegCreateKeyExA(Key hKey, const char* szPath, std::uint32_t, Key& hResult) {
  const KeyCall aKey(Access::StoreWrite, hKey);
  const auto szMade = aKey.lCode == lSuccess ? Below(aKey.szPath, szPath, true) : std::string();
  return Opened(aKey.lCode == lSuccess && szMade.empty() ? lInvalidParameter : aKey.lCode, szMade, hResult);
}

std::int32_t RegCloseKey(Key hKey) {
  auto& aOpen = TheTree().aOpen;
  if (hKey > 0 && hKey <= aOpen.size()) aOpen[hKey - 1].clear();
  return lSuccess;
}

std::int32_t RegQueryValueExA(Key hKey, const char* szName, std::uint32_t* pType, void* pData,
                              std::uint32_t* pSize) {
  const KeyCall aKey(Access::StoreRead, hKey);
  if (aKey.lCode != lSuccess) return aKey.lCode;
  auto& aNode = *NodeAt(aKey.szPath);
  const auto pValue = FindValue(aNode, szName);
  if (pValue == aNode.aValues.end()) return lNotFound;
  return Deliver(pValue->lType, pValue->szData, pType, pData, pSize);
}

std::int32_t RegSetValueExA(Key hKey, const char* szName, std::uint32_t lType, const void* pData,
                            std::uint32_t lSize) {
  const KeyCall aKey(Access::StoreWrite, hKey);
  if (aKey.lCode == lSuccess)
    Set(aKey.szPath, szName, lType, std::string(static_cast<const char*>(pData), lSize));
  return aKey.lCode;
}

std::int32_t RegDeleteKeyA(Key hKey, const char* szPath) {
  const KeyCall aKey(Access::StoreWrite, hKey);
  if (aKey.lCode != lSuccess) return aKey.lCode;
  const auto szGone = Below(aKey.szPath, szPath);
  if (NodeAt(szGone) == nullptr) return lNotFound;
  if (szGone == aKey.szPath || !KeysBelow(szGone).empty()) return lAccessDenied;
  BeforeChange(szGone);
  TheTree().aKeys.erase(szGone);
  return lSuccess;
}

std::int32_t RegDeleteValueA(Key hKey, const char* szName) {
  const KeyCall aKey(Access::StoreWrite, hKey);
  return aKey.lCode == lSuccess ? Erase(aKey.szPath, szName) : aKey.lCode;
}

std::int32_t RegEnumKeyA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t lNameSize) {
  const KeyCall aKey(Access::StoreRead, hKey);
  if (aKey.lCode != lSuccess) return aKey.lCode;
  const auto aNames = KeysBelow(aKey.szPath);
  if (lIndex >= aNames.size()) return lNoMoreItems;
  return CopyName(aNames[lIndex], szName, lNameSize) ? lSuccess : lMoreData;
}

std::int32_t RegEnumValueA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t* pNameSize,
                           std::uint32_t* pType, void* pData, std::uint32_t* pSize) {
  const KeyCall aKey(Access::StoreRead, hKey);
  if (aKey.lCode != lSuccess) return aKey.lCode;
  const auto& aValues = NodeAt(aKey.szPath)->aValues;
  if (lIndex >= aValues.size()) return lNoMoreItems;
  const auto& aValue = aValues[lIndex];
  if (!CopyName(aValue.szName, szName, *pNameSize)) return lMoreData;
  *pNameSize = static_cast<std::uint32_t>(aValue.szName.size());
  return Deliver(aValue.lType, aValue.szData, pType, pData, pSize);
}

Transaction::Transaction(Written) {
  ++TheTree().lBrackets;
}

Transaction::~Transaction() {
  Commit();
}

std::int32_t Transaction::Commit() {
  if (bEnded) return lSuccess;
  bEnded = true;
  auto& aTree = TheTree();
  if (aTree.lBrackets == 0 || --aTree.lBrackets > 0) return lSuccess;
  bool bLost = std::exchange(aTree.bBroken, false);
  if (!bLost && !aTree.aBefore.empty()) {
    const Call aCall(Access::StoreCommit);
    bLost = aCall.bFails;
    if (!bLost) aTree.aBefore.clear();
  }
  Undo();
  return bLost ? lAccessDenied : lSuccess;
}

void Transaction::Abandon() {
  if (!bEnded) {
    Undo();
    TheTree().bBroken = true;
  }
  Commit();
}

StoreState OpenStore(bool) {
  StoreState aState;
  aState.bReadable = true;
  return aState;
}

std::optional<std::string> LastGoodText(const std::string&, const std::string&) {
  return {};
}

std::string StoreName() {
  return "/store";
}

}  // namespace Registry
