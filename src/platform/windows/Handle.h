// A kernel handle that closes itself.
#pragma once

#include "platform/windows/System.h"

class Handle {
 public:
  explicit Handle(HANDLE hGiven) : hOwned(hGiven == INVALID_HANDLE_VALUE ? nullptr : hGiven) {}
  ~Handle() {
    if (hOwned) CloseHandle(hOwned);
  }
  Handle(const Handle&) = delete;
  Handle& operator=(const Handle&) = delete;

  explicit operator bool() const { return hOwned != nullptr; }
  HANDLE Get() const { return hOwned; }

 private:
  HANDLE hOwned;
};
