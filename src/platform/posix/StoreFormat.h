// StoreFormat: what makes a file a store, for the connection that works on it and for what is done beside it.
//
// keys(id, parent, name) and vals(id, key, name, type, data). Names compare without regard to ASCII case
// (SQLite's NOCASE works on bytes, so text that is no UTF-8 keeps its bytes). Key ids are never used twice,
// so a stale id finds nothing rather than another key. Values are listed by id: in the order they were made,
// rewriting keeps the id. A store that was put together again after damage also has the table recovery, whose
// one row says how, until the operator enters something.
#pragma once

#include <cstdint>

namespace StoreFormat {

inline constexpr std::int64_t lApplication = 0x4B455354;  // marks the file as ours
inline constexpr std::int64_t lFormat = 1;

inline constexpr std::int64_t lLocalMachine = 1;
inline constexpr std::int64_t lCurrentUser = 2;
inline constexpr std::int64_t lLastFixedKey = 8;  // those that every store has

// The two roots, and the key of the user's folders, which every account has.
inline constexpr char szMakeTables[] = R"(
  CREATE TABLE keys(id INTEGER PRIMARY KEY AUTOINCREMENT, parent INTEGER REFERENCES keys(id),
                    name TEXT NOT NULL COLLATE NOCASE, UNIQUE(parent, name));
  CREATE TABLE vals(id INTEGER PRIMARY KEY, key INTEGER NOT NULL REFERENCES keys(id) ON DELETE CASCADE,
                    name TEXT NOT NULL COLLATE NOCASE, type INTEGER NOT NULL, data BLOB NOT NULL,
                    UNIQUE(key, name));
  INSERT INTO keys VALUES(1, NULL, 'HKEY_LOCAL_MACHINE'), (2, NULL, 'HKEY_CURRENT_USER'), (3, 2, 'Software'),
    (4, 3, 'Microsoft'), (5, 4, 'Windows'), (6, 5, 'CurrentVersion'), (7, 6, 'Explorer'),
    (8, 7, 'Shell Folders');
  PRAGMA application_id = 0x4B455354;
  PRAGMA user_version = 1;
)";

// Moments are date-times, local; kept may be empty, copied NULL. whole: 1 where nothing is known to be lost.
inline constexpr char szMakeNote[] =
    "CREATE TABLE recovery(kept TEXT NOT NULL, done REAL NOT NULL, copied REAL, whole INTEGER NOT NULL)";
inline constexpr char szReadNote[] = "SELECT kept, done, copied, whole FROM recovery";
inline constexpr char szDropNote[] = "DROP TABLE IF EXISTS recovery";

// One row: 1 where the file is sound. The check itself answers "ok", or the first damage in words.
inline constexpr char szIsSound[] = "SELECT integrity_check = 'ok' FROM pragma_integrity_check(1)";

}  // namespace StoreFormat
