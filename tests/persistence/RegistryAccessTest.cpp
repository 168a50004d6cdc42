#include <gtest/gtest.h>

#include <algorithm>

#include "persistence/RegistryAccess.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace RegistryAccess;
using Stored::hRoot;

namespace {

constexpr char szKey[] = "Software\\Test";

class RegistryAccessTest : public testing::Test {
 protected:
  RegistryAccessTest() { RegCreatePath(hRoot, szKey); }
  TestHome aHome;
};

TEST_F(RegistryAccessTest, ReadsIntoTheFieldsTypeAndNeverWraps) {
  const struct {
    Variant aStored;
    int iByte, iShort, lLong;  // the fields hold 77 before the read
    const char* szText;
  } aCases[] = {
      {5, 5, 5, 5, "5"},
      {70000, 255, 32767, 70000, "70000"},
      {-1, 0, -1, -1, "-1"},
      {" 12 ", 12, 12, 12, " 12 "},
      {"-99999999999", 0, -32768, INT32_MIN, "-99999999999"},
      {"abc", 77, 77, 77, "abc"},
      {"12x", 77, 77, 77, "12x"},
      {"", 77, 77, 77, ""},
  };
  for (const auto& aCase : aCases) {
    Stored::Put(szKey, "v", aCase.aStored);
    std::uint8_t iByte = 77;
    std::int16_t iShort = 77;
    std::int32_t lLong = 77, lType = 0;
    std::string szText = "before";
    EXPECT_EQ(RegReadValue(hRoot, szKey, "V", iByte, lType), 0);
    RegReadValue(hRoot, szKey, "v", iShort, lType);
    RegReadValue(hRoot, szKey, "v", lLong, lType);
    RegReadValue(hRoot, szKey, "v", szText, lType);
    EXPECT_EQ(iByte, aCase.iByte) << aCase.szText;
    EXPECT_EQ(iShort, aCase.iShort) << aCase.szText;
    EXPECT_EQ(lLong, aCase.lLong) << aCase.szText;
    EXPECT_EQ(szText, aCase.szText);
  }
}

TEST_F(RegistryAccessTest, WhatCannotBeReadLeavesTheField) {
  Stored::PutRaw(szKey, "binary", Registry::REG_BINARY, "xyz");
  Stored::PutRaw(szKey, "size 0", Registry::REG_SZ, "");
  Stored::PutRaw(szKey, "no NUL", Registry::REG_SZ, "abc");
  Stored::PutRaw(szKey, "inner NUL", Registry::REG_SZ, std::string("a\0b\0", 4));
  Stored::PutRaw(szKey, "8 bytes", Registry::REG_DWORD, "12345678");
  const struct {
    const char *szPath, *szName;
    int lCode, lType;
    std::string szValue;
  } aCases[] = {
      {szKey, "missing", 2, 9, "before"},   {"Software\\None", "v", 6, 9, "before"},
      {szKey, "binary", -1, 0, "before"},   {szKey, "size 0", 0, 9, "before"},
      {szKey, "no NUL", 0, 1, "ab"},        {szKey, "inner NUL", 0, 1, std::string("a\0b", 3)},
      {szKey, "8 bytes", 234, 4, "before"},
  };
  for (const auto& aCase : aCases) {
    Variant aValue = "before";
    std::int32_t lType = 9;
    EXPECT_EQ(RegReadValue(hRoot, aCase.szPath, aCase.szName, aValue, lType), aCase.lCode) << aCase.szName;
    EXPECT_EQ(lType, aCase.lType) << aCase.szName;
    EXPECT_EQ(std::get<std::string>(aValue), aCase.szValue) << aCase.szName;
  }
}

TEST_F(RegistryAccessTest, WritesOnlyTextAndNumbers) {
  Stored::Put(szKey, "v", "kept");
  EXPECT_EQ(RegWriteValue(hRoot, szKey, "v", "new", 3), 0);
  EXPECT_EQ(RegWriteValue(hRoot, szKey, "v", "abc", 4), Registry::lInvalidParameter);
  EXPECT_EQ(Stored::Get(szKey, "v"), "kept");
  EXPECT_EQ(RegWriteValue(hRoot, "Software\\None", "v", 1, 4), 6);
  EXPECT_EQ(RegRemoveValue(hRoot, "Software\\None", "v"), 6);
  Variant aValue;
  std::int32_t lType = 0;
  EXPECT_EQ(RegWriteValue(hRoot, szKey, "v", "0042", 4), 0);
  EXPECT_EQ(RegReadValue(hRoot, szKey, "v", aValue, lType), 0);
  EXPECT_EQ(std::get<std::int32_t>(aValue), 42);
}

TEST_F(RegistryAccessTest, ListsKeysUpToAndWithTheBound) {
  for (const char* szName : {"a", "B b", "c", "d"})
    RegCreatePath(hRoot, std::string(szKey) + "\\" + szName);
  const struct {
    const char* szPath;
    int lMaxIndex, lBuffer, lCount, lEnd;
    std::string szNames;
  } aCases[] = {
      {szKey, 0, 0, 4, 259, std::string("a\0B b\0c\0d\0", 10)},
      {szKey, 1, 3, 2, 0, std::string("a\0B b\0", 6)},
      {"Software\\Test\\a", 1000, 1000, 0, 259, ""},
      {"Software\\None", 1000, 1000, 0, 6, ""},
  };
  for (const auto& aCase : aCases) {
    std::string szNames = "before";
    std::int32_t lCount = 9, lMaxIndex = aCase.lMaxIndex, lBuffer = aCase.lBuffer, lEnd = 0;
    EXPECT_EQ(RegListKeys(hRoot, aCase.szPath, szNames, lCount, lMaxIndex, lBuffer, &lEnd), 0);
    EXPECT_EQ(szNames, aCase.szNames);
    EXPECT_EQ(lCount, aCase.lCount);
    EXPECT_EQ(lEnd, aCase.lEnd);
    EXPECT_GT(lMaxIndex * lBuffer, 0);
  }
}

TEST_F(RegistryAccessTest, ListsValuesAndDropsTheOneBeyondTheLimit) {
  std::vector<RegValueEntry> aEntries(7);
  std::int32_t lCount = 9, lFirst = 0, lLimit = 0;
  EXPECT_EQ(RegListValues(hRoot, "Software\\None", aEntries, lCount, lFirst, lLimit), 6);
  EXPECT_EQ(lCount, 0);
  EXPECT_EQ(RegListValues(hRoot, szKey, aEntries, lCount, lFirst, lLimit), 0);
  EXPECT_EQ(aEntries.size(), 1U);
  EXPECT_EQ(lFirst * 1000 + lLimit, 50256);

  Stored::Put(szKey, "one", " 12345678 ");
  Stored::Put(szKey, "two", -2);
  Stored::PutRaw(szKey, "three", Registry::REG_BINARY, "x");
  Stored::Put(szKey, "zlong", std::string(20, 'x'));
  lLimit = 12;
  EXPECT_EQ(RegListValues(hRoot, szKey, aEntries, lCount, lFirst, lLimit), 0);
  ASSERT_EQ(aEntries.size(), 5U);
  std::string szSeen;
  std::sort(aEntries.begin() + 1, aEntries.end(),
            [](const auto& aLeft, const auto& aRight) { return aLeft.Name < aRight.Name; });
  for (const auto& aEntry : aEntries) {
    const auto* pText = std::get_if<std::string>(&aEntry.Value);
    szSeen += aEntry.Name + ":" + std::to_string(aEntry.Type) + (pText != nullptr ? *pText : "") + " ";
  }
  EXPECT_EQ(szSeen, ":0 one:112345678 three:-1 two:4 zlong:1 ");
  for (int i = 0; i < 9; ++i)
    Stored::Put(szKey, "v" + std::to_string(i), i);  // 13 values, one more than the limit
  EXPECT_EQ(RegListValues(hRoot, szKey, aEntries, lCount, lFirst, lLimit), 0);
  EXPECT_EQ(lCount, 12);
  EXPECT_EQ(aEntries.size(), 13U);
}

TEST_F(RegistryAccessTest, SortsTheSlotsThatCount) {
  using Records = std::vector<std::pair<Variant, Variant>>;
  const auto Sorted = [](Records aRecords, std::int32_t lCount, bool bAscending) {
    SortKeyedRecords(aRecords, lCount, bAscending);
    std::string szOrder;
    for (const auto& aRecord : aRecords)
      szOrder += std::get<std::string>(aRecord.second);
    return szOrder;
  };
  const Records aRecords = {{9, "0"}, {10, "a"}, {9, "b"}, {{}, "c"}, {-1, "d"}, {1, "e"}};
  EXPECT_EQ(Sorted(aRecords, 5, true), "0dceba");
  EXPECT_EQ(Sorted(aRecords, 5, false), "0abecd");
  EXPECT_EQ(Sorted(aRecords, 3, true), "0cbade");
  EXPECT_EQ(Sorted(aRecords, 99, true), "0dceba");
  EXPECT_EQ(Sorted({{0, "0"}, {"b", "b"}, {"a", "a"}, {7, "7"}}, 3, true), "07ab");
}

}  // namespace
