// Descriptor: an open file that is closed when its owner goes.
#pragma once

#include <unistd.h>

#include <utility>

class Descriptor {
 public:
  Descriptor() = default;
  explicit Descriptor(int lOpened) : lNumber(lOpened) {}
  ~Descriptor() { Close(); }
  Descriptor(Descriptor&& aOther) noexcept : lNumber(std::exchange(aOther.lNumber, -1)) {}
  Descriptor& operator=(Descriptor&& aOther) noexcept {
    std::swap(lNumber, aOther.lNumber);
    return *this;
  }

  explicit operator bool() const { return lNumber >= 0; }
  int Number() const { return lNumber; }
  // False when the system reports late that something was not written.
  bool Close() { return lNumber < 0 || close(std::exchange(lNumber, -1)) == 0; }

 private:
  int lNumber = -1;
};
