// The product's keys as a text file in the registry editor's form ("Windows Registry Editor Version 5.00").
// Written as UTF-16 LE with a byte-order mark, as the registry editor writes it; read in that form, as
// UTF-16 BE, and in UTF-8.
#pragma once

#include <string>

namespace RegFile {

// The product's base key and all keys below it, sorted by path. Empty when the registry cannot be read: a
// file that lacks half the sites is worse than none.
std::string Compose();

// Applies a file's text: creates keys, writes values, removes what it marks with "-". Nothing is applied
// unless every line can be read and every key is the product's base key or lies below it; szError then says
// which line is wrong and why. Applied as a whole or not at all: what stood there before a write that failed
// is put back, and szError says so where even that cannot be done. A file that removes the base key empties
// it.
bool Apply(const std::string& szBytes, std::string& szError);

}  // namespace RegFile
