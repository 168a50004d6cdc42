// StoreFile: the file that holds the registry, as a file: where it lies, that nobody else may read it, and
// how a damaged one is kept and another put in its place.
#pragma once

#include <sys/types.h>

#include <string>

#include "platform/posix/Descriptor.h"

namespace StoreFile {

// Tells a file from another one that took its name.
struct Identity {
  dev_t lDevice = 0;
  ino_t lNumber = 0;
  bool operator==(const Identity&) const = default;
};

// $KESTROVA_REGISTRY, else kestrova/registry.db in the user's data folder; where that is a link, the file
// that it leads to, so that everything beside it (journal, lock, copy) is the same for all who come by a
// link.
std::string Path();

Identity Identify(const std::string& szPath);  // all 0 when there is no such file

// Makes the folder (0700) and an empty file (0600) where they are missing. False when the path cannot hold a
// store: no folder, or something that is no regular file.
bool Prepare(const std::string& szPath);

// Why no further file can be made in the store's folder: the system's code, 0 where one can.
int WhyNoneBeside(const std::string& szPath);

// An empty file with a journal beside it that is not: the pages are gone, and SQLite would delete the
// journal.
bool LostItsPages(const std::string& szPath);

// Under which name a damaged store will be kept: NAME.damaged-YYYYMMDD-HHMMSS, a number behind it where that
// is taken.
std::string NameToKeep(const std::string& szPath);

// Gives the store and its journal that name too. The journal loses its old one, so that no new store meets
// it; the store itself keeps both until another file is put in its place.
bool Keep(const std::string& szPath, const std::string& szKept);

// Deletes the journal of a store that is gone: beside another file SQLite would read it into that one.
bool DropJournal(const std::string& szPath);

// An empty file (0600) to write a store into; what was left there by a process that was killed is emptied.
// Nothing while another process is writing one.
Descriptor MakeEmpty(const std::string& szPath);

// Brings the file's content to the disk and renames it over the other name.
bool PutInPlace(Descriptor& aFile, const std::string& szFrom, const std::string& szTo);

}  // namespace StoreFile
