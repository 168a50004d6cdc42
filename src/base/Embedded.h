// Embedded: files that became part of the program when it was built (embed, in the CMakeLists.txt of who
// shows them).
#pragma once

#include <algorithm>
#include <span>
#include <string_view>

namespace Embedded {

struct File {
  std::string_view szName;   // without folder
  std::string_view szBytes;  // as they are; a NUL stands behind them
};
using Files = std::span<const File>;

// What the file of that name holds; empty where there is none.
inline std::string_view Bytes(Files aFiles, std::string_view szName) {
  const auto pFile = std::ranges::find(aFiles, szName, &File::szName);
  return pFile == aFiles.end() ? std::string_view() : pFile->szBytes;
}

}  // namespace Embedded
