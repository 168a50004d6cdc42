// Sqlite: a connection and a statement that go with their owner, for what is done beside the open store.
#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>

namespace Sqlite {

class Connection {
 public:
  Connection(const std::string& szPath, int lFlags) {
    lOpened = sqlite3_open_v2(szPath.c_str(), &pHandle, lFlags, nullptr);
  }
  ~Connection() { sqlite3_close(pHandle); }
  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  sqlite3* Handle() const { return pHandle; }
  // SQLITE_OK or the failure; of the opening too.
  int Execute(const char* szSql) {
    return lOpened != SQLITE_OK ? lOpened : sqlite3_exec(pHandle, szSql, nullptr, nullptr, nullptr);
  }

 private:
  sqlite3* pHandle = nullptr;
  int lOpened = SQLITE_OK;
};

class Statement {
 public:
  Statement(sqlite3* pHandle, const char* szSql) {
    lResult = sqlite3_prepare_v2(pHandle, szSql, -1, &pStatement, nullptr);
  }
  ~Statement() { sqlite3_finalize(pStatement); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  Statement& Bind(std::int64_t lNumber) {
    sqlite3_bind_int64(pStatement, ++lBound, lNumber);
    return *this;
  }
  Statement& Bind(double dNumber) {
    sqlite3_bind_double(pStatement, ++lBound, dNumber);
    return *this;
  }
  Statement& Bind(std::string_view szText) {  // the text outlives the next step
    sqlite3_bind_text64(pStatement, ++lBound, szText.data(), szText.size(), SQLITE_STATIC, SQLITE_UTF8);
    return *this;
  }
  Statement& BindData(std::string_view szBytes) {
    sqlite3_bind_blob64(pStatement, ++lBound, szBytes.data(), szBytes.size(), SQLITE_STATIC);
    return *this;
  }
  // True for a row. Otherwise Result() tells the end (SQLITE_DONE) from a failure.
  bool Row() {
    if (pStatement != nullptr) lResult = sqlite3_step(pStatement);
    return lResult == SQLITE_ROW;
  }
  // For statements without rows, to be bound and run again.
  bool Run() {
    Row();
    sqlite3_reset(pStatement);
    lBound = 0;
    return lResult == SQLITE_DONE;
  }
  int Result() const { return lResult; }
  int Type(int lColumn) const { return sqlite3_column_type(pStatement, lColumn); }
  std::int64_t Number(int lColumn) const { return sqlite3_column_int64(pStatement, lColumn); }
  double Real(int lColumn) const { return sqlite3_column_double(pStatement, lColumn); }
  std::string Bytes(int lColumn) const {
    const auto* const pData = static_cast<const char*>(sqlite3_column_blob(pStatement, lColumn));
    const auto lSize = static_cast<std::size_t>(sqlite3_column_bytes(pStatement, lColumn));
    return pData != nullptr ? std::string(pData, lSize) : std::string();
  }

 private:
  sqlite3_stmt* pStatement = nullptr;
  int lResult = SQLITE_OK;
  int lBound = 0;
};

}  // namespace Sqlite
