// ChildProcess: a program started by a test, with what it writes kept and its end waited for, never without a
// limit. What still runs when the object goes is killed.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

class ChildProcess {
 public:
  ChildProcess(const std::string& szProgram, const std::vector<std::string>& aArguments);
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // The exit code; lKilled when it was ended from outside; lRunning when it still runs after the time; 127
  // when it could not be started.
  static constexpr int lRunning = -1;
  static constexpr int lKilled = -2;
  int Wait(double dSeconds);
  // False when the program ended, or the time, before the text appeared.
  bool WaitForOutput(const std::string& szText, double dSeconds);

  void Kill();       // hard, as when the machine stops
  void Interrupt();  // as Ctrl-C does

  std::intptr_t Number() const { return hProcess; }  // the system's
  // What it took, once it has ended: of the processors, and of memory at its most (0 where that is not
  // known).
  double CpuSeconds() const { return dCpuSeconds; }
  std::int64_t PeakKilobytes() const { return lPeakKilobytes; }

  // Written so far, with LF at line ends.
  std::string Output() const;
  std::string Errors() const;

  // A program built with the tests, by its plain name.
  static std::string BuiltProgram(const std::string& szName);

 private:
  static std::string NewFile();
  // The system's part. Start leaves hProcess at 0 when it fails; Ended sets lResult at the end.
  void Start(const std::vector<std::string>& aWords);
  bool Ended();

  const std::string szOutputFile = NewFile(), szErrorFile = NewFile();
  std::intptr_t hProcess = 0;
  int lResult = lRunning;
  double dCpuSeconds = 0;
  std::int64_t lPeakKilobytes = 0;
};
