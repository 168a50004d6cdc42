// TestHome: a folder of its own for one test, with the store and the program folder in it. Nothing of the
// user's is read or written. Programs started by the test inherit it through the environment.
#pragma once

#include <chrono>
#include <string>
#include <vector>

#include "platform/StandingClock.h"

class TestHome {
 public:
  TestHome();
  ~TestHome();
  TestHome(const TestHome&) = delete;
  TestHome& operator=(const TestHome&) = delete;

  const std::string& Folder() const { return szFolder; }
  std::string Path(const std::string& szName) const;  // in the folder, with the system's separator
  void Write(const std::string& szName, const std::string& szBytes) const;
  std::string Read(const std::string& szName) const;  // empty when missing
  std::vector<std::string> Names() const;             // sorted

 private:
  std::string szFolder;
};

// Collects what the program would show in message boxes while it lives.
class TestBoxes {
 public:
  TestBoxes();
  ~TestBoxes();
  TestBoxes(const TestBoxes&) = delete;
  TestBoxes& operator=(const TestBoxes&) = delete;
  std::vector<std::string> aTexts;
};

struct Stopwatch {
  std::chrono::steady_clock::time_point aStart = std::chrono::steady_clock::now();
  double Seconds() const {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - aStart).count();
  }
};
