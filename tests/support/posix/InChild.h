// InChild: runs a piece of a test in a process of its own, so that its limits, its user and its signals are
// not the test's. The piece answers 0; anything else, or a crash, fails.
#pragma once

#include <sys/wait.h>
#include <unistd.h>

#include <functional>

inline int InChild(const std::function<int()>& aPiece) {
  const pid_t lChild = fork();
  if (lChild == 0) _exit(aPiece());
  int lStatus = -1;
  waitpid(lChild, &lStatus, 0);
  return WIFEXITED(lStatus) ? WEXITSTATUS(lStatus) : -lStatus;
}
