// The product's keys as a text file in the registry editor's form ("Windows Registry Editor Version 5.00").
// Written as UTF-16 LE with a byte-order mark, as the registry editor writes it; read in that form and in
// UTF-8.
#pragma once

#include <string>

namespace RegFile {

// All keys below the product's base key, sorted by path.
std::string Compose();

// Applies a file's text: creates keys, writes values, removes what it marks with "-". Nothing is applied
// unless every line can be read and every key lies below the product's base key; szError then says which line
// is wrong and why.
bool Apply(const std::string& szBytes, std::string& szError);

}  // namespace RegFile
