// StoreFile: the file that holds the registry, as a file: where it lies, that nobody else may read it, and
// how a damaged one is kept.
#pragma once

#include <sys/types.h>

#include <string>

namespace StoreFile {

// Tells a file from another one that took its name.
struct Identity {
  dev_t lDevice = 0;
  ino_t lNumber = 0;
  bool operator==(const Identity&) const = default;
};

// $KESTROVA_REGISTRY, else kestrova/registry.db in the user's data folder.
std::string Path();

Identity Identify(const std::string& szPath);  // all 0 when there is no such file

// Makes the folder (0700) and an empty file (0600) where they are missing. False when the path cannot hold a
// store: no folder, or something that is no regular file.
bool Prepare(const std::string& szPath);

// An empty file with a journal beside it that is not: the pages are gone, and SQLite would delete the
// journal.
bool LostItsPages(const std::string& szPath);

// Renames the store and its journal to NAME.damaged-YYYYMMDD-HHMMSS and gives that name; empty when it
// cannot. Does nothing, and gives the old name, when another process put a different file there meanwhile.
std::string SetAside(const std::string& szPath, const Identity& aExamined);

}  // namespace StoreFile
