// Utf8: reading and repairing UTF-8 (RFC 3629) in bytes that may be anything.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Utf8 {

// The length in bytes of the character at the start of the text, and its number. 0 where none begins: an
// empty text, a stray or missing byte, a form longer than need be, half of a surrogate pair, beyond U+10FFFF.
std::size_t Decode(std::string_view szBytes, char32_t& chCharacter);
// Any number up to U+10FFFF, surrogates too.
void Append(std::string& szBytes, char32_t chCharacter);

// What a reader obeys instead of showing: the control characters up to U+009F, tab and line ends among them.
constexpr bool IsControl(char32_t chCharacter) {
  return chCharacter < 0x20 || (chCharacter >= 0x7F && chCharacter < 0xA0);
}

// Valid UTF-8 out of any bytes: what is none, every control character (tab too) and what is no character at
// all become U+FFFD.
std::string Clean(std::string_view szBytes);
// The next character of Clean at lAt, and the number of bytes it stands for. lAt < size.
char32_t NextClean(std::string_view szBytes, std::size_t lAt, std::size_t& lBytes);

// Valid UTF-8 out of any bytes: those that are none are taken for Latin-1, which servers' headers are often
// in.
std::string FromLatin1WhereNeeded(std::string_view szBytes);

// At most lMost bytes, cut between characters.
std::string_view Shorten(std::string_view szBytes, std::size_t lMost);

// How many characters the text holds; a terminal shows a column for each, as far as it is that simple.
std::size_t Width(std::string_view szText);
// The first lMost characters, all where there are no more.
std::string_view First(std::string_view szText, std::size_t lMost);
// At most lMost characters, 5 or more: cut in the middle, as addresses differ at either end.
std::string ShortenMiddle(std::string_view szText, std::size_t lMost);

}  // namespace Utf8
