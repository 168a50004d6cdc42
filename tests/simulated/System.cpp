// The small services, as far as the engine and what it stands on ask for them: clocks and shell.
#include "platform/Clock.h"
#include "platform/Shell.h"
#include "simulated/Machine.h"

using namespace Simulated;

namespace {

class MachineSource : public Clock::Source {
 public:
  DateTime WallTime() override { return ThisMachine().Wall(); }
  std::int32_t MinutesEastOfUtc(DateTime dtLocal) override { return Machine::MinutesEastOfUtc(dtLocal); }
  double SteadySeconds() override { return ThisMachine().Steady(); }
  double BootSeconds() override { return ThisMachine().Boot(); }
  void Wait(double dSeconds) override { ThisMachine().Pass(dSeconds); }
};

}  // namespace

Clock::Source& Clock::System() {
  static MachineSource aSource;
  return aSource;
}

std::string Shell::ProgramFolder() {
  return "/program";
}

std::string Shell::DefaultLogFolder() {
  return "/program/Logs";
}

std::string Shell::UserDataFolder() {
  return "/home/operator/data";
}

std::string Shell::HomeFolder() {
  return "/home/operator";
}

std::int32_t Shell::OpenDocument(const std::string&) {
  return 0;
}
