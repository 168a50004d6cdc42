// Disk: the simulated files as they lie on the machine, for hands that reach past the program.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>

namespace Simulated::Disk {

struct State {
  std::map<std::string, std::string> aFiles;  // by path
  std::set<std::string> aFolders;
  std::set<std::string> aLocked;  // folders that take nothing new and give nothing up
  std::int64_t lRoom = -1;        // bytes; negative: enough
  bool bTears = false;            // a kill during an append leaves its first half (as a power cut may)
  bool bTorn = false;             // and one did, since the last Clear
};
State& The();

void Clear();
void LosePower();

}  // namespace Simulated::Disk
