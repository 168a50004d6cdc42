// StoreSalvage: reads row by row what a damaged store still holds.
#pragma once

#include <cstdint>
#include <string>

#include "platform/posix/Sqlite.h"

namespace StoreSalvage {

// Takes over what can be read in the file at szDamaged into the store of aInto, and answers how many rows
// that were. Its tables are read in full and without their indexes, from either end up to where reading
// fails, so one bad page costs its own rows only. A row that is read may still be wrong: nothing proves it.
std::int64_t Run(const std::string& szDamaged, Sqlite::Connection& aInto);

}  // namespace StoreSalvage
