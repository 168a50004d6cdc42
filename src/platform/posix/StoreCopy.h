// StoreCopy: the last good copy of the store, which lies beside it as NAME.good. It is a whole store in one
// file, has passed the check of its structure and is on the disk before it takes the older one's place.
#pragma once

#include <sqlite3.h>

#include <optional>
#include <string>
#include <string_view>

#include "base/DateTime.h"

namespace StoreCopy {

std::string PathOf(const std::string& szStore);

// When it was made, local time; nothing where there is none.
std::optional<DateTime> Made(const std::string& szStore);

// There is none, or it is older than an hour.
bool IsDue(const std::string& szStore);

// The text that the copy has under that name of a key in HKEY_LOCAL_MACHINE; nothing where it has none.
std::optional<std::string> Text(const std::string& szStore, std::string_view szPath, std::string_view szName);

enum class Outcome { Done, Damage, Failed };
// Damage: what was copied does not pass the check, so the store itself is damaged; the older copy stays, as
// it does when writing fails.
Outcome Make(sqlite3* pStore, const std::string& szStore);

// Copies one store into another file, which is emptied first, and checks the result. For the copy and back.
Outcome CopyInto(sqlite3* pFrom, const std::string& szTo);

}  // namespace StoreCopy
