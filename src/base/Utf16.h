// Utf16: 8-bit text, by intent UTF-8, to UTF-16 and back without loss. A byte that belongs to no UTF-8
// character becomes one unpaired surrogate, U+DC80 to U+DCFF, and comes back as that byte.
#pragma once

#include <string>
#include <string_view>

namespace Utf16 {

std::u16string FromBytes(std::string_view szBytes);
std::string ToBytes(std::u16string_view szText);

// As a file holds it: two bytes a unit, the low one first.
std::string LittleEndian(std::u16string_view szText);
// bSwapped: the high one first. A single byte at the end is dropped.
std::u16string FromLittleEndian(std::string_view szBytes, bool bSwapped = false);

}  // namespace Utf16
