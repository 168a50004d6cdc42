// InChild: runs a piece of a test in a process of its own, so that its limits, its user and its signals are
// not the test's.
#pragma once

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <functional>

#include "platform/Registry.h"

// What the piece answers, or the signal that ended it, negative. The child opens a store of its own: an open
// one does not survive a fork.
inline int InChild(const std::function<int()>& aPiece) {
  Registry::CloseStore();
  const pid_t lChild = fork();
  if (lChild == 0) _exit(aPiece());
  int lStatus = -1;
  waitpid(lChild, &lStatus, 0);
  return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -lStatus;
}

// From here on no file of the process grows beyond that size; the write fails as on a full disk.
inline void LimitFiles(rlim_t lBytes) {
  signal(SIGXFSZ, SIG_IGN);
  rlimit aLimit{};
  getrlimit(RLIMIT_FSIZE, &aLimit);
  aLimit.rlim_cur = lBytes < aLimit.rlim_max ? lBytes : aLimit.rlim_max;
  setrlimit(RLIMIT_FSIZE, &aLimit);
}
