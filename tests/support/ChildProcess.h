// ChildProcess: a program started by a test, with its output read and its end waited for, never without a
// limit. What still runs when the object goes is killed.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

class ChildProcess {
 public:
  using Variables = std::vector<std::pair<std::string, std::string>>;

  // The environment is the test's own with these variables set.
  ChildProcess(const std::string& szProgram, const std::vector<std::string>& aArguments,
               const Variables& aEnvironment = {});
  ~ChildProcess();
  ChildProcess(const ChildProcess&) = delete;
  ChildProcess& operator=(const ChildProcess&) = delete;

  // The exit code; lKilled when it was ended from outside; lRunning when it still runs after the time. All
  // output has been read by then.
  static constexpr int lRunning = -1;
  static constexpr int lKilled = -2;
  int Wait(double dSeconds);
  // Reads until the text has appeared in the output. False at the program's end or after the time.
  bool WaitForOutput(const std::string& szText, double dSeconds);

  void Kill();       // hard, as when the machine stops
  void Interrupt();  // as Ctrl-C does

  const std::string& Output() const;  // read so far
  const std::string& Errors() const;

  // A program built with the tests, by its plain name.
  static std::string BuiltProgram(const std::string& szName);

 private:
  struct State;
  std::unique_ptr<State> pState;
};
