#include "platform/SingleInstance.h"

#include <optional>
#include <string>

#include "base/Text.h"
#include "platform/Registry.h"
#include "platform/windows/Handle.h"
#include "platform/windows/System.h"

struct SingleInstance::State {
  std::string szWord;
  std::optional<Handle> aMutex;
  bool bHeld = false;
};

namespace {

// "Global": the store is the machine's, so a copy in another user's session counts too. One name a store.
std::string MutexName(const std::string& szWord) {
  return "Global\\" + Text::Replace(Text::LowerCase(Registry::StoreName()), "\\", "/") +
         (szWord.empty() ? "" : ":" + szWord);
}

// Lets every user's copy ask for the mutex: a copy that may not even ask could not tell why.
HANDLE MakeMutex(const std::string& szWord) {
  SECURITY_DESCRIPTOR aEveryone;
  InitializeSecurityDescriptor(&aEveryone, SECURITY_DESCRIPTOR_REVISION);
  SetSecurityDescriptorDacl(&aEveryone, TRUE, nullptr, FALSE);
  SECURITY_ATTRIBUTES aSecurity{sizeof aSecurity, &aEveryone, FALSE};
  return CreateMutexA(&aSecurity, FALSE, MutexName(szWord).c_str());
}

}  // namespace

SingleInstance::SingleInstance(const std::string& szWord) : pState(std::make_unique<State>()) {
  pState->szWord = szWord;
}

SingleInstance::~SingleInstance() {
  if (pState->bHeld && pState->aMutex && *pState->aMutex) ReleaseMutex(pState->aMutex->Get());
}

bool SingleInstance::TryLock() {
  if (pState->bHeld) return true;
  if (!pState->aMutex) {
    pState->aMutex.emplace(MakeMutex(pState->szWord));
    if (!*pState->aMutex && GetLastError() == ERROR_ACCESS_DENIED) {
      pState->aMutex.reset();
      return false;  // it is there, and another user's
    }
  }
  if (!*pState->aMutex) return pState->bHeld = true;
  // A copy that died with the mutex leaves it abandoned: then it is ours.
  const DWORD lAnswer = WaitForSingleObject(pState->aMutex->Get(), 0);
  return pState->bHeld = lAnswer != WAIT_TIMEOUT;
}
