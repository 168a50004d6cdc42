#include "platform/Environment.h"

#include <unistd.h>

#include <cstdlib>

std::string Environment::Get(const std::string& szName) {
  const char* const szValue = std::getenv(szName.c_str());
  return szValue != nullptr ? szValue : "";
}

void Environment::Set(const std::string& szName, const std::string& szValue) {
  setenv(szName.c_str(), szValue.c_str(), 1);
}

void Environment::Unset(const std::string& szName) {
  unsetenv(szName.c_str());
}

long Environment::ProcessNumber() {
  return getpid();
}
