#include "platform/SingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <string>

#include "platform/posix/Descriptor.h"
#include "platform/posix/StoreFile.h"

struct SingleInstance::State {
  // One lock for the whole process: a second descriptor of the same file would be refused.
  struct Lock {
    std::string szPath;
    Descriptor aFile;
  };
  static std::weak_ptr<Lock> pHeld;
  std::shared_ptr<Lock> pLock;
};

std::weak_ptr<SingleInstance::State::Lock> SingleInstance::State::pHeld;

SingleInstance::SingleInstance() : pState(std::make_unique<State>()) {
}
SingleInstance::~SingleInstance() = default;

bool SingleInstance::TryLock() {
  const auto szStore = StoreFile::Path();
  const auto szPath = szStore + ".lock";
  auto pLock = State::pHeld.lock();
  if (!pLock || pLock->szPath != szPath) {
    StoreFile::Prepare(szStore);  // for its folder
    pLock = std::make_shared<State::Lock>();
    pLock->szPath = szPath;
    pLock->aFile =
        Descriptor(open(szPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOCTTY | O_NONBLOCK, 0600));
    if (pLock->aFile && flock(pLock->aFile.Number(), LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)
      return false;
    State::pHeld = pLock;
  }
  pState->pLock = pLock;
  return true;
}
