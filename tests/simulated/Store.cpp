// The nine entry points of the registry, and the brackets around writes, on a tree in memory. Every change is
// noted so that it can be taken back until it is committed.
#include "simulated/Store.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <memory>
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
  std::map<std::string, std::shared_ptr<Node>, std::less<>> aKeys;  // by lower-case name
  std::vector<Value> aValues;                                       // in the order made
  bool bDeleted = false;
};
using NodePtr = std::shared_ptr<Node>;

// One change, and what was there before it.
struct Change {
  enum class Kind : std::uint8_t { KeyMade, KeyDeleted, ValueMade, ValueChanged, ValueDeleted };
  Kind iKind;
  NodePtr pNode;       // the key that has the value, or the parent
  std::string szName;  // of the key, lower case
  NodePtr pChild = nullptr;
  std::size_t lPlace = 0;
  Value aBefore = {};
};

struct Tree {
  NodePtr pMachine = std::make_shared<Node>(), pUser = std::make_shared<Node>();
  std::vector<NodePtr> aOpen;  // a handle is its place + 1
  std::size_t lOpen = 0;
  std::vector<Change> aChanges;  // not committed
  std::int32_t lBrackets = 0;
  bool bBroken = false;  // the bracket's writes are undone and further ones refused
};

Tree& TheTree() {
  static Tree aTree;
  return aTree;
}

void Undo() {
  auto& aChanges = TheTree().aChanges;
  for (; !aChanges.empty(); aChanges.pop_back()) {
    auto& aChange = aChanges.back();
    auto& aValues = aChange.pNode->aValues;
    const auto aPlace = aValues.begin() + static_cast<std::ptrdiff_t>(aChange.lPlace);
    switch (aChange.iKind) {
      case Change::Kind::KeyMade:
        aChange.pNode->aKeys[aChange.szName]->bDeleted = true;
        aChange.pNode->aKeys.erase(aChange.szName);
        break;
      case Change::Kind::KeyDeleted:
        aChange.pChild->bDeleted = false;
        aChange.pNode->aKeys[aChange.szName] = aChange.pChild;
        break;
      case Change::Kind::ValueMade:
        aValues.pop_back();
        break;
      case Change::Kind::ValueChanged:
        *aPlace = std::move(aChange.aBefore);
        break;
      case Change::Kind::ValueDeleted:
        aValues.insert(aPlace, std::move(aChange.aBefore));
        break;
    }
  }
}

// A write outside a bracket is committed by itself.
void Note(Change aChange) {
  if (TheTree().lBrackets > 0) TheTree().aChanges.push_back(std::move(aChange));
}

// The key of a handle. nullptr, and the code, where it is none.
NodePtr NodeOf(Key hKey, std::int32_t& lCode) {
  auto& aTree = TheTree();
  lCode = lSuccess;
  if (hKey == HKEY_LOCAL_MACHINE) return aTree.pMachine;
  if (hKey == HKEY_CURRENT_USER) return aTree.pUser;
  lCode = hKey == hUnreadable ? lAccessDenied : lInvalidHandle;
  if (hKey == 0 || hKey > aTree.aOpen.size()) return nullptr;
  const auto& pNode = aTree.aOpen[hKey - 1];
  if (!pNode || pNode->bDeleted) return nullptr;
  lCode = lSuccess;
  return pNode;
}

Key Hold(NodePtr pNode) {
  auto& aTree = TheTree();
  ++aTree.lOpen;
  const auto pFree = std::find(aTree.aOpen.begin(), aTree.aOpen.end(), nullptr);
  const auto lPlace = static_cast<Key>(pFree - aTree.aOpen.begin());
  if (pFree == aTree.aOpen.end())
    aTree.aOpen.push_back(std::move(pNode));
  else
    *pFree = std::move(pNode);
  return lPlace + 1;
}

// The key below the given one; pParent and szLast: the way to it. bMake: with all that is missing.
NodePtr Walk(NodePtr pNode, std::string_view szPath, bool bMake, NodePtr* pParent = nullptr,
             std::string* pLast = nullptr) {
  std::vector<std::string_view> aParts;
  if (!SplitPath(szPath, aParts)) return nullptr;
  for (const auto szPart : aParts) {
    auto szLower = Text::LowerCase(szPart);
    const auto pFound = pNode->aKeys.find(szLower);
    if (pParent != nullptr) *pParent = pNode;
    if (pFound != pNode->aKeys.end()) {
      pNode = pFound->second;
    } else {
      if (!bMake) return nullptr;
      const auto pMade = std::make_shared<Node>();
      pMade->szName = szPart;
      pNode->aKeys[szLower] = pMade;
      Note({Change::Kind::KeyMade, pNode, szLower});
      pNode = pMade;
    }
    if (pLast != nullptr) *pLast = std::move(szLower);
  }
  return pNode;
}

std::vector<Value>::iterator FindValue(Node& aNode, std::string_view szName) {
  return std::find_if(aNode.aValues.begin(), aNode.aValues.end(), [&](const Value& aValue) {
    return aValue.szName.size() == szName.size() && Text::EqualNoCase(aValue.szName, szName);
  });
}

void Set(const NodePtr& pNode, std::string_view szName, std::uint32_t lType, std::string szData) {
  const auto pFound = FindValue(*pNode, szName);
  const auto lPlace = static_cast<std::size_t>(pFound - pNode->aValues.begin());
  if (pFound == pNode->aValues.end()) {
    Note({Change::Kind::ValueMade, pNode, {}});
    pNode->aValues.push_back({std::string(szName), lType, std::move(szData)});
  } else {
    if (TheTree().lBrackets > 0) Note({Change::Kind::ValueChanged, pNode, {}, nullptr, lPlace, *pFound});
    pFound->lType = lType;
    pFound->szData = std::move(szData);
  }
}

void Erase(const NodePtr& pNode, std::vector<Value>::iterator pValue) {
  Note({Change::Kind::ValueDeleted,
        pNode,
        {},
        nullptr,
        static_cast<std::size_t>(pValue - pNode->aValues.begin()),
        *pValue});
  pNode->aValues.erase(pValue);
}

// A call that fails inside a bracket costs the whole bracket, as with a full or failing disk; a read not on
// every machine.
bool Refused(const Call& aCall, bool bRead) {
  auto& aTree = TheTree();
  if (aCall.Fails() && aTree.lBrackets > 0 && !(bRead && The().bReadsSpareBrackets && !The().Dead())) {
    Undo();
    aTree.bBroken = true;
  }
  return aCall.Fails();
}

bool MayWrite(const Call& aCall) {
  return !Refused(aCall, false) && !TheTree().bBroken;
}

std::size_t CountKeys(const Node& aNode, std::size_t& lValues) {
  lValues += aNode.aValues.size();
  std::size_t lKeys = 1;
  for (const auto& [szName, pChild] : aNode.aKeys)
    lKeys += CountKeys(*pChild, lValues);
  return lKeys;
}

NodePtr Root(Key hRoot) {
  return hRoot == HKEY_CURRENT_USER ? TheTree().pUser : TheTree().pMachine;
}

}  // namespace

std::int32_t Store::Value::Number() const {
  std::int32_t lNumber = 0;
  if (szData.size() == sizeof lNumber) std::memcpy(&lNumber, szData.data(), sizeof lNumber);
  return lNumber;
}

std::vector<std::string> Store::Keys(Key hRoot, const std::string& szPath) {
  std::vector<std::string> aNames;
  const auto pNode = Walk(Root(hRoot), szPath, false);
  if (!pNode) return aNames;
  aNames.reserve(pNode->aKeys.size());
  for (const auto& [szName, pChild] : pNode->aKeys)
    aNames.push_back(pChild->szName);
  return aNames;
}

const std::vector<Value>& Store::Values(Key hRoot, const std::string& szPath) {
  static const std::vector<Value> aNone;
  const auto pNode = Walk(Root(hRoot), szPath, false);
  return pNode ? pNode->aValues : aNone;
}

bool Store::HasKey(Key hRoot, const std::string& szPath) {
  return Walk(Root(hRoot), szPath, false) != nullptr;
}

const Value* Store::Find(Key hRoot, const std::string& szPath, const std::string& szName) {
  const auto pNode = Walk(Root(hRoot), szPath, false);
  if (!pNode) return nullptr;
  const auto pValue = FindValue(*pNode, szName);
  return pValue == pNode->aValues.end() ? nullptr : &*pValue;
}

void Store::PutText(Key hRoot, const std::string& szPath, const std::string& szName,
                    const std::string& szText) {
  Set(Walk(Root(hRoot), szPath, true), szName, REG_SZ, szText + '\0');
}

void Store::PutNumber(Key hRoot, const std::string& szPath, const std::string& szName, std::int32_t lNumber) {
  std::string szData(sizeof lNumber, '\0');
  std::memcpy(szData.data(), &lNumber, sizeof lNumber);
  Set(Walk(Root(hRoot), szPath, true), szName, REG_DWORD, std::move(szData));
}

void Store::Remove(Key hRoot, const std::string& szPath, const std::string& szName) {
  const auto pNode = Walk(Root(hRoot), szPath, false);
  if (!pNode) return;
  if (const auto pValue = FindValue(*pNode, szName); pValue != pNode->aValues.end()) Erase(pNode, pValue);
}

Store::Size Store::Measure() {
  const auto& aTree = TheTree();
  Size aSize{aTree.lOpen, 0, 0, aTree.lBrackets};
  aSize.lKeys = CountKeys(*aTree.pMachine, aSize.lValues) + CountKeys(*aTree.pUser, aSize.lValues);
  return aSize;
}

void Store::Clear() {
  TheTree() = Tree();
}

void Store::LosePower() {
  Undo();
  auto& aTree = TheTree();
  aTree.aOpen.clear();
  aTree.lOpen = 0;
  aTree.lBrackets = 0;
  aTree.bBroken = false;
}

}  // namespace Simulated

namespace Registry {

using namespace Simulated;

std::int32_t RegOpenKeyExA(Key hKey, const char* szPath, std::uint32_t, Key& hResult) {
  const Call aCall(Access::StoreRead);
  hResult = 0;
  std::int32_t lCode = lSuccess;
  const auto pFrom = NodeOf(hKey, lCode);
  if (Refused(aCall, true)) lCode = lAccessDenied;
  if (lCode == lAccessDenied) hResult = hUnreadable;
  if (lCode != lSuccess) return lCode;
  const auto pNode = Walk(pFrom, szPath != nullptr ? szPath : "", false);
  if (!pNode) return lNotFound;
  hResult = Hold(pNode);
  return lSuccess;
}

std::int32_t RegCreateKeyExA(Key hKey, const char* szPath, std::uint32_t, Key& hResult) {
  const Call aCall(Access::StoreWrite);
  hResult = 0;
  if (szPath == nullptr) return lInvalidParameter;
  std::int32_t lCode = lSuccess;
  const auto pFrom = NodeOf(hKey, lCode);
  if (!MayWrite(aCall)) lCode = lAccessDenied;
  if (lCode == lAccessDenied) hResult = hUnreadable;
  if (lCode != lSuccess) return lCode;
  const auto pNode = Walk(pFrom, szPath, true);
  if (!pNode) return lInvalidParameter;
  hResult = Hold(pNode);
  return lSuccess;
}

std::int32_t RegCloseKey(Key hKey) {
  if (hKey == HKEY_LOCAL_MACHINE || hKey == HKEY_CURRENT_USER || hKey == hUnreadable) return lSuccess;
  auto& aTree = TheTree();
  if (hKey == 0 || hKey > aTree.aOpen.size() || !aTree.aOpen[hKey - 1]) return lInvalidHandle;
  aTree.aOpen[hKey - 1].reset();
  --aTree.lOpen;
  return lSuccess;
}

std::int32_t RegQueryValueExA(Key hKey, const char* szName, std::uint32_t* pType, void* pData,
                              std::uint32_t* pSize) {
  const Call aCall(Access::StoreRead);
  std::int32_t lCode = lSuccess;
  const auto pNode = NodeOf(hKey, lCode);
  if (lCode != lSuccess) return lCode;
  if (Refused(aCall, true)) return lAccessDenied;
  const auto pValue = FindValue(*pNode, szName != nullptr ? szName : "");
  if (pValue == pNode->aValues.end()) return lNotFound;
  return Deliver(pValue->lType, pValue->szData, pType, pData, pSize);
}

std::int32_t RegSetValueExA(Key hKey, const char* szName, std::uint32_t lType, const void* pData,
                            std::uint32_t lSize) {
  const Call aCall(Access::StoreWrite);
  std::int32_t lCode = lSuccess;
  const auto pNode = NodeOf(hKey, lCode);
  if (lCode != lSuccess) return lCode;
  if (pData == nullptr && lSize > 0) return lInvalidParameter;
  if (!MayWrite(aCall)) return lAccessDenied;
  Set(pNode, szName != nullptr ? szName : "", lType, std::string(static_cast<const char*>(pData), lSize));
  return lSuccess;
}

std::int32_t RegDeleteKeyA(Key hKey, const char* szPath) {
  const Call aCall(Access::StoreWrite);
  if (szPath == nullptr) return lInvalidParameter;
  std::int32_t lCode = lSuccess;
  const auto pFrom = NodeOf(hKey, lCode);
  if (lCode != lSuccess) return lCode;
  if (!MayWrite(aCall)) return lAccessDenied;
  NodePtr pParent;
  std::string szLast;
  const auto pNode = Walk(pFrom, szPath, false, &pParent, &szLast);
  if (!pNode) return lNotFound;
  if (!pParent || !pNode->aKeys.empty()) return lAccessDenied;
  pNode->bDeleted = true;
  pParent->aKeys.erase(szLast);
  Note({Change::Kind::KeyDeleted, pParent, szLast, pNode});
  return lSuccess;
}

std::int32_t RegDeleteValueA(Key hKey, const char* szName) {
  const Call aCall(Access::StoreWrite);
  std::int32_t lCode = lSuccess;
  const auto pNode = NodeOf(hKey, lCode);
  if (lCode != lSuccess) return lCode;
  if (!MayWrite(aCall)) return lAccessDenied;
  const auto pValue = FindValue(*pNode, szName != nullptr ? szName : "");
  if (pValue == pNode->aValues.end()) return lNotFound;
  Erase(pNode, pValue);
  return lSuccess;
}

std::int32_t RegEnumKeyA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t lNameSize) {
  const Call aCall(Access::StoreRead);
  std::int32_t lCode = lSuccess;
  const auto pNode = NodeOf(hKey, lCode);
  if (lCode != lSuccess) return lCode;
  if (szName == nullptr) return lInvalidParameter;
  if (Refused(aCall, true)) return lAccessDenied;
  if (lIndex >= pNode->aKeys.size()) return lNoMoreItems;
  const auto pChild = std::next(pNode->aKeys.begin(), static_cast<std::ptrdiff_t>(lIndex));
  return CopyName(pChild->second->szName, szName, lNameSize) ? lSuccess : lMoreData;
}

std::int32_t RegEnumValueA(Key hKey, std::uint32_t lIndex, char* szName, std::uint32_t* pNameSize,
                           std::uint32_t* pType, void* pData, std::uint32_t* pSize) {
  const Call aCall(Access::StoreRead);
  std::int32_t lCode = lSuccess;
  const auto pNode = NodeOf(hKey, lCode);
  if (lCode != lSuccess) return lCode;
  if (szName == nullptr || pNameSize == nullptr) return lInvalidParameter;
  if (Refused(aCall, true)) return lAccessDenied;
  if (lIndex >= pNode->aValues.size()) return lNoMoreItems;
  const auto& aValue = pNode->aValues[lIndex];
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
  if (!bLost && !aTree.aChanges.empty()) {
    const Call aCall(Access::StoreCommit);
    bLost = aCall.Fails();
    if (!bLost) aTree.aChanges.clear();
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

void CloseStore() {
}

void RemoveOwnStore() {
}

StoreState ShareStore() {
  StoreState aState;
  aState.iCondition = StoreCondition::Private;
  return aState;
}

std::string StoreName() {
  return "/store";
}

}  // namespace Registry
