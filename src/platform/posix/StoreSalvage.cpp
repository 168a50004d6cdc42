#include "platform/posix/StoreSalvage.h"

#include <string_view>

#include "platform/Registry.h"
#include "platform/RegistryRules.h"
#include "platform/posix/StoreFormat.h"

namespace {

using Sqlite::Connection;
using Sqlite::Statement;

// A row may be readable and nonsense all the same: a page can look like another one's.
bool IsKey(const Statement& aRow) {
  const auto szName = aRow.Bytes(2);
  return aRow.Type(0) == SQLITE_INTEGER && aRow.Number(0) > 0 && aRow.Type(1) == SQLITE_INTEGER &&
         aRow.Type(2) == SQLITE_TEXT && !szName.empty() && szName.size() <= Registry::lLongestKeyName &&
         szName.find('\\') == std::string::npos && szName.find('\0') == std::string::npos;
}

bool IsValue(const Statement& aRow) {
  if (aRow.Type(0) != SQLITE_INTEGER || aRow.Type(1) != SQLITE_TEXT || aRow.Type(2) != SQLITE_INTEGER ||
      aRow.Type(3) != SQLITE_BLOB)
    return false;
  const auto szData = aRow.Bytes(3);
  if (aRow.Number(2) == Registry::REG_DWORD) return szData.size() == sizeof(std::uint32_t);
  return aRow.Number(2) != Registry::REG_SZ || szData.find('\0') >= szData.size() - 1;
}

// One table, read from either end.
template <typename Take>
void Scan(Connection& aFrom, const std::string& szSelect, const Take& aTake) {
  for (const char* const szOrder : {" ORDER BY id", " ORDER BY id DESC"}) {
    Statement aRows(aFrom.Handle(), (szSelect + szOrder).c_str());
    while (aRows.Row())
      aTake(aRows);
    if (aRows.Result() == SQLITE_DONE) return;
  }
}

// Ids are never used twice and no key is ever renamed, so a key that the copy knows too is right there. Where
// it has the same place under another id, it was deleted and made again since.
std::int64_t TakeKeys(Connection& aFrom, Connection& aInto) {
  std::int64_t lTaken = 0;
  Statement aOutdated(aInto.Handle(), "DELETE FROM keys WHERE parent = ? AND name = ? AND id < ?");
  Statement aAdd(aInto.Handle(), "INSERT INTO keys(id, parent, name) VALUES(?, ?, ?) ON CONFLICT DO NOTHING");
  Scan(aFrom, "SELECT id, parent, name FROM keys NOT INDEXED", [&](const Statement& aRow) {
    const auto lId = aRow.Number(0);
    if (lId <= StoreFormat::lLastFixedKey || !IsKey(aRow)) return;
    const auto szName = aRow.Bytes(2);
    aOutdated.Bind(aRow.Number(1)).Bind(szName).Bind(lId).Run();
    lTaken += aAdd.Bind(lId).Bind(aRow.Number(1)).Bind(szName).Run();
  });
  return lTaken;
}

std::int64_t TakeValues(Connection& aFrom, Connection& aInto) {
  std::int64_t lTaken = 0;
  Statement aAdd(aInto.Handle(),
                 "INSERT INTO vals(key, name, type, data) VALUES(?, ?, ?, ?) ON CONFLICT(key, name) "
                 "DO UPDATE SET type = excluded.type, data = excluded.data");
  Scan(aFrom, "SELECT key, name, type, data FROM vals NOT INDEXED", [&](const Statement& aRow) {
    if (!IsValue(aRow)) return;
    const auto szName = aRow.Bytes(1), szData = aRow.Bytes(3);
    lTaken += aAdd.Bind(aRow.Number(0)).Bind(szName).Bind(aRow.Number(2)).BindData(szData).Run();
  });
  return lTaken;
}

// What hangs below a key that could not be read is out of reach.
void DropOrphans(Connection& aInto) {
  Statement aKeys(aInto.Handle(),
                  "DELETE FROM keys WHERE parent IS NOT NULL AND parent NOT IN (SELECT id FROM keys)");
  do
    aKeys.Run();
  while (sqlite3_changes64(aInto.Handle()) > 0);
  aInto.Execute("DELETE FROM vals WHERE key NOT IN (SELECT id FROM keys)");
}

}  // namespace

std::int64_t StoreSalvage::Run(const std::string& szDamaged, Connection& aInto) {
  Connection aFrom(szDamaged, SQLITE_OPEN_READONLY);
  // Lets a schema that is damaged itself pass, as far as the tables can be found in it.
  aFrom.Execute("PRAGMA writable_schema = ON");
  aInto.Execute("PRAGMA foreign_keys = OFF; BEGIN");
  const auto lKeys = TakeKeys(aFrom, aInto);
  const auto lValues = TakeValues(aFrom, aInto);
  DropOrphans(aInto);
  aInto.Execute("COMMIT");
  return lKeys + lValues;
}
