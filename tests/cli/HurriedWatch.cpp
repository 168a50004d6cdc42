// watch as kestrova-cli runs it, on a clock that goes on by half a minute whenever the program waits between
// two passes: so a test meets its passes within moments. Requests keep their true time. With an argument it
// shows every site of every pass.
#include "cli/CliCommands.h"
#include "platform/Clock.h"

namespace {

class HurriedClock : public Clock::Source {
 public:
  DateTime WallTime() override { return AddSeconds(aSystem.WallTime(), dAhead); }
  double SteadySeconds() override { return aSystem.SteadySeconds(); }
  double BootSeconds() override { return aSystem.BootSeconds() + dAhead; }
  void Wait(double) override {
    constexpr double dHalfMinute = 30;
    dAhead += dHalfMinute;
    aSystem.Wait(0.001);
  }

 private:
  Clock::Source& aSystem = Clock::System();
  double dAhead = 0;
};

}  // namespace

int main(int iCount, char** /*aValues*/) {
  HurriedClock aClock;
  Clock::Replace(&aClock);
  PassOptions aOptions;
  aOptions.bVerbose = iCount > 1;
  return CliCommands::Watch(aOptions);
}
