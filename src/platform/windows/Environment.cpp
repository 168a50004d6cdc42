#include "platform/Environment.h"

#include <process.h>

#include <cstdlib>

#include "platform/windows/System.h"

std::string Environment::Get(const std::string& szName) {
  const char* const szValue = std::getenv(szName.c_str());
  return szValue != nullptr ? szValue : "";
}

// Both copies: the C library's own, which getenv reads, and the system's, which child programs inherit.
void Environment::Set(const std::string& szName, const std::string& szValue) {
  _putenv_s(szName.c_str(), szValue.c_str());
  SetEnvironmentVariableA(szName.c_str(), szValue.c_str());
}

void Environment::Unset(const std::string& szName) {
  _putenv_s(szName.c_str(), "");
  SetEnvironmentVariableA(szName.c_str(), nullptr);
}

long Environment::ProcessNumber() {
  return _getpid();
}
