#include "platform/SingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <map>
#include <string>

#include "platform/posix/Descriptor.h"
#include "platform/posix/StoreFile.h"

struct SingleInstance::State {
  // One lock for the whole process: a second descriptor of the same file would be refused.
  struct Lock {
    std::string szPath;
    Descriptor aFile;
  };
  static std::map<std::string, std::weak_ptr<Lock>> aHeld;  // by their word
  std::string szWord;
  std::shared_ptr<Lock> pLock;
};

std::map<std::string, std::weak_ptr<SingleInstance::State::Lock>> SingleInstance::State::aHeld;

SingleInstance::SingleInstance(const std::string& szWord) : pState(std::make_unique<State>()) {
  pState->szWord = szWord;
}
SingleInstance::~SingleInstance() = default;

bool SingleInstance::TryLock() {
  const auto szStore = StoreFile::Path();
  const auto szPath = szStore + ".lock" + (pState->szWord.empty() ? "" : "-" + pState->szWord);
  auto& pHeld = State::aHeld[pState->szWord];
  auto pLock = pHeld.lock();
  if (!pLock || pLock->szPath != szPath) {
    StoreFile::Prepare(szStore);  // for its folder
    pLock = std::make_shared<State::Lock>();
    pLock->szPath = szPath;
    pLock->aFile =
        Descriptor(open(szPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600));
    if (pLock->aFile && flock(pLock->aFile.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
      return false;
    pHeld = pLock;
  }
  pState->pLock = pLock;
  return true;
}
