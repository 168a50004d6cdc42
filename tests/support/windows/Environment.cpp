#include "support/Environment.h"

#include <process.h>

#include <cstdlib>
#include <string_view>

#include "platform/Registry.h"
#include "platform/windows/System.h"

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

// The key, and the one above it where nothing else is there. Not further up: other tests make theirs beside
// it.
void Environment::RemoveStore() {
  constexpr std::string_view szRoot = "HKEY_CURRENT_USER\\";
  std::string szKey = Registry::StoreName();
  if (!szKey.starts_with(szRoot)) return;
  szKey.erase(0, szRoot.size());
  RegDeleteTreeA(hSystemCurrentUser, szKey.c_str());
  RegDeleteKeyA(hSystemCurrentUser, szKey.erase(szKey.rfind('\\')).c_str());
}
