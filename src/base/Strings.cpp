#include "base/Strings.h"

std::string LoadResString(std::int32_t lNumber) {
  switch (lNumber) {
#define STRING(name, number, text) \
  case number:                     \
    return text;
#include "resources/strings/all.def"
#undef STRING
    default:
      return {};
  }
}
