// The numbered table of every text that the operator sees. The texts stand in strings/*.def, one file for
// each area; a number is never reused. Some of them look wrong: see the comment there before "correcting"
// one.
#pragma once

#include <cstdint>
#include <string>

enum StringId : std::int32_t {
#define STRING(name, number, text) name = (number),
#include "resources/strings/all.def"
#undef STRING
};

// The text of that number, UTF-8. An unknown number gives an empty text.
std::string LoadResString(std::int32_t lNumber);
