// RegFileParser: reads the registry editor's text form into the changes that it asks for. Touches no
// registry.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace RegFileParser {

inline constexpr char szHeader[] = "Windows Registry Editor Version 5.00";

struct Change {
  enum class Kind { MakeKey, DeleteKey, SetValue, DeleteValue };
  Kind iKind = Kind::MakeKey;
  std::string szPath;  // below HKEY_LOCAL_MACHINE
  std::string szName;
  std::uint32_t lType = 0;
  std::string szData;
};

// Types whose bytes the form keeps as UTF-16 and the registry's 8-bit calls as 8-bit text: 1, 2 and 7.
bool IsTextType(std::uint32_t lType);

// False with szError set ("Line 7: ...") where any line cannot be read or names a key that is not the
// product's.
bool Parse(const std::string& szBytes, std::vector<Change>& aChanges, std::string& szError);

}  // namespace RegFileParser
