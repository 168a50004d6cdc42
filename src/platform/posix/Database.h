// Database: the SQLite connection under the registry. It owns the connection, its statements and the bracket
// around several writes, and turns SQLite's codes into the registry's. One connection for the process.
#pragma once

#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/Registry.h"
#include "platform/posix/StoreFile.h"
#include "platform/posix/StoreFormat.h"

class Database {
 public:
  static constexpr std::int64_t lLocalMachine = StoreFormat::lLocalMachine;
  static constexpr std::int64_t lCurrentUser = StoreFormat::lCurrentUser;

  enum Sql {
    FIND_KEY,      // parent, name -> id
    KEY_EXISTS,    // id
    ADD_KEY,       // parent, name
    DELETE_KEY,    // id; only without subkeys
    LIST_KEYS,     // parent -> name, id
    FIND_VALUE,    // key, name -> type, data
    SET_VALUE,     // key, name, type, data
    DELETE_VALUE,  // key, name
    LIST_VALUES,   // key -> name, type, data, id; in no order
    ALL_VALUES,    // -> the same and key, by id
    DATA_VERSION,  // -> see Version
    BEGIN_READING,
    BEGIN,
    COMMIT,
    ROLLBACK,
    SQL_COUNT
  };

  using Condition = Registry::StoreCondition;

  ~Database() { Close(); }

  // Opens or makes the store. With bCheck its whole structure is examined, unless it is known to be sound as
  // it is, and one write tried. Where only writing fails it is open for reading.
  Condition Open(const std::string& szPath, bool bCheck);
  void Close();
  void Forget() {  // closed, and as if it had never been open
    Close();
    szOpenedPath.clear();
  }
  bool IsOpen() const { return pConnection != nullptr; }
  // From then on nothing is written.
  bool DamageSeen() const { return bDamageSeen; }
  void NoteDamage() { bDamageSeen = true; }
  sqlite3* Handle() const { return pConnection; }
  const std::string& OpenedPath() const { return szOpenedPath; }
  // The next wait for the lock is a whole one again.
  void BePatient();
  // Another file stands in the store's place, or none.
  bool Moved() const;
  const StoreFile::Identity& Opened() const { return aOpened; }
  Condition TryWrite();
  const char* LastText() const { return szLastText.c_str(); }  // SQLite's fixed text of the last failure

  // A statement in use: binds from the first parameter on; reset when it goes.
  class Use {
   public:
    Use(Database& aOwner, Sql lSql) : aDatabase(aOwner), pStatement(aOwner.aStatements[lSql]) {
      if (lSql < BEGIN_READING) aOwner.BeginReading();
    }
    ~Use();
    Use(const Use&) = delete;
    Use& operator=(const Use&) = delete;
    Use& Bind(std::int64_t lNumber);
    Use& Bind(std::string_view szText);
    Use& BindData(std::string_view szBytes);
    // True for a row. Otherwise Code() tells the end (0) from a failure.
    bool Row();
    // For statements without rows: the registry's code.
    std::int32_t Run();
    std::int32_t Code() const { return lCode; }
    std::int64_t Number(int lColumn) const { return sqlite3_column_int64(pStatement, lColumn); }
    std::string_view Bytes(int lColumn) const;

   private:
    Database& aDatabase;
    sqlite3_stmt* pStatement;
    int lBound = 0;
    std::int32_t lCode = 0;
  };

  std::int64_t Changes() const { return sqlite3_changes64(pConnection); }
  std::int64_t LastId() const { return sqlite3_last_insert_rowid(pConnection); }

  // A number that another connection's commit changes. 0, or the registry's code.
  std::int32_t Version(std::int64_t& lVersion);

  // The bracket. What is read in it before its first write is one snapshot, for which the file is locked
  // once; from the first write on nobody else writes. Every write asks BeforeWrite first. After a failure
  // that undid its writes all further ones in it answer 5, so that it stays whole: all or none.
  void Enter(bool bSynced);  // bSynced: the outermost one's commit is on the disk when Leave answers
  std::int32_t Leave();
  void Break();  // undoes the bracket's writes and refuses further ones until it is left
  std::int32_t BeforeWrite();
  bool InBracket() const { return lDepth > 0; }
  bool IsLooking() const { return bReading; }  // in a bracket without a write: at what is committed
  std::int64_t AllChanges() const {
    return pConnection != nullptr ? sqlite3_total_changes64(pConnection) : 0;
  }
  std::function<void()> RolledBack;  // what was made in the bracket is gone

 private:
  friend class Use;
  int Connect(const std::string& szUri, int lFlags);
  bool ConnectForReading(const std::string& szPath);
  Condition Examine();
  int ConfigureWhenFree();
  int Configure();
  void FinalizeStatements();
  int MakeTables();
  int Prepare();
  int Execute(const char* szSql);
  int ReadNumber(const char* szSql, std::int64_t& lNumber);
  std::int32_t Translate(int lResult, bool bWritten = false);
  Condition Judge(int lResult);
  Condition JudgeSystem(Condition iElse) const;
  void BeginReading();
  void EndReading();
  void Undo();

  sqlite3* pConnection = nullptr;
  std::array<sqlite3_stmt*, SQL_COUNT> aStatements{};
  std::string szOpenedPath;
  StoreFile::Identity aOpened;
  std::string szLastText;
  std::int32_t lDepth = 0;
  bool bBegun = false;
  bool bReading = false;
  std::int64_t lVersionSeen = -1;  // in what is begun; -1: not looked yet
  bool bSyncWanted = false;        // for the bracket
  bool bSyncSet = false;           // in the connection
  bool bBroken = false;
  bool bDamageSeen = false;
  bool bImpatient = false;  // a wait for the lock came to nothing, and nothing was written since
};
