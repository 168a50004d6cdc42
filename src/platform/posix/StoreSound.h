// StoreSound: what a store's file held when its structure was last examined and found sound, as a sum beside
// it ("registry.db.sound"). To examine a thousand sites takes longer than to load them, and a file that is
// the same to the byte need not be examined again. A sum that is missing, torn or another's costs an
// examination, nothing else.
#pragma once

#include <sqlite3.h>

#include <optional>
#include <string>

namespace StoreSound {

std::string PathOf(const std::string& szStore);

// The sum of what the open store's file holds, but for the count of its changes, which SQLite keeps in it.
// Nothing where it cannot be read, or where pages that belong to it still lie in the journal beside it.
std::optional<std::string> Sum(sqlite3* pStore, const std::string& szStore);

bool IsKnown(const std::string& szStore, const std::string& szSum);
void Note(const std::string& szStore, const std::string& szSum);

}  // namespace StoreSound
