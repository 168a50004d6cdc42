// The lock that keeps a second copy from working on the same store. It dies with the process that holds it.
// A file beside the store, or on Windows a named mutex for the whole machine. A store can have further locks,
// told apart by a word in small letters.
#pragma once

#include <memory>
#include <string>

class SingleInstance {
 public:
  explicit SingleInstance(const std::string& szWord = {});
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  // True when this process holds the lock, now or already. A lock that cannot be made at all counts as held:
  // a monitor that does not start because of its lock file watches nothing.
  bool TryLock();

 private:
  struct State;
  std::unique_ptr<State> pState;
};
