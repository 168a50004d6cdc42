// StoreRecovery: a damaged or missing store is put together again: from the last good copy beside it, and
// over that every row that can still be read in the damaged file. The damaged file is kept under another
// name.
#pragma once

#include <string>

#include "platform/posix/StoreFile.h"

namespace StoreRecovery {

enum class Outcome {
  Done,         // a sound store is in place; its table recovery says how it came about
  ByAnother,    // another process has done it meanwhile
  Busy,         // somebody keeps a lock on the damaged file
  Failed,       // the new store could not be written, or the damaged one not be renamed
  NothingLeft,  // neither copy nor row: the damaged file stays where it is
};

// Waits some seconds at most for another process that is about it. aExamined: the file that was found
// damaged, all 0 for a missing one. bBeginAnew: with neither copy nor row an empty store is begun.
Outcome Run(const std::string& szStore, const StoreFile::Identity& aExamined, bool bBeginAnew);

}  // namespace StoreRecovery
