// The small services: clocks, environment, shell, terminal, the lock of the single instance.
#include <map>

#include "platform/Clock.h"
#include "platform/Environment.h"
#include "platform/Shell.h"
#include "platform/SingleInstance.h"
#include "platform/Terminal.h"
#include "simulated/Machine.h"

using namespace Simulated;

namespace {

class MachineSource : public Clock::Source {
 public:
  DateTime WallTime() override { return The().Wall(); }
  std::int32_t MinutesEastOfUtc(DateTime dtLocal) override { return Machine::MinutesEastOfUtc(dtLocal); }
  double SteadySeconds() override { return The().Steady(); }
  double BootSeconds() override { return The().Boot(); }
  void Wait(double dSeconds) override { The().Pass(dSeconds); }
};

std::map<std::string, std::string>& Variables() {
  static std::map<std::string, std::string> aVariables;
  return aVariables;
}

const void* pHolder = nullptr;  // of the lock
bool bInterrupted = false;

}  // namespace

Clock::Source& Clock::System() {
  static MachineSource aSource;
  return aSource;
}

std::string Environment::Get(const std::string& szName) {
  const auto pFound = Variables().find(szName);
  return pFound == Variables().end() ? std::string() : pFound->second;
}

void Environment::Set(const std::string& szName, const std::string& szValue) {
  Variables()[szName] = szValue;
}

void Environment::Unset(const std::string& szName) {
  Variables().erase(szName);
}

long Environment::ProcessNumber() {
  return 4711;
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

std::string Shell::ProgramFileName(const std::string& szName) {
  return szName;
}

std::int32_t Shell::OpenDocument(const std::string&) {
  return 0;
}

bool Shell::StartProgram(const std::string&, const std::vector<std::string>&) {
  return !The().Dead();
}

struct SingleInstance::State {};

SingleInstance::SingleInstance(const std::string&) : pState(std::make_unique<State>()) {
}

SingleInstance::~SingleInstance() {
  if (pHolder == pState.get()) pHolder = nullptr;
}

bool SingleInstance::TryLock() {
  if (pHolder == nullptr) pHolder = pState.get();
  return pHolder == pState.get();
}

bool Terminal::OutputIsTerminal() {
  return false;
}

bool Terminal::ErrorIsTerminal() {
  return false;
}

bool Terminal::ColourWanted() {
  return false;
}

void Terminal::CatchInterrupt() {
}

bool Terminal::Interrupted() {
  return bInterrupted;
}

void Terminal::ClearInterrupt() {
  bInterrupted = false;
}

int Terminal::InterruptSignal() {
  return 0;
}

bool Terminal::InterruptedAgain() {
  return false;
}

bool Terminal::OutputClosed() {
  return false;
}
