#include <gtest/gtest.h>

#include "persistence/RegistryAccess.h"
#include "support/Stored.h"
#include "support/TestHome.h"

using namespace RegistryAccess;
using namespace std::string_literals;
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
      {70000, 255, 32767, 70000, "70000"}, {-1, 0, -1, -1, "-1"},
      {" 12 ", 12, 12, 12, " 12 "},        {"-99999999999", 0, -32768, INT32_MIN, "-99999999999"},
      {"12x", 77, 77, 77, "12x"},          {"", 77, 77, 77, ""},
  };
  for (const auto& aCase : aCases) {
    Stored::Put(szKey, "v", aCase.aStored);
    std::uint8_t iByte = 77;
    std::int16_t iShort = 77;
    std::int32_t lLong = 77, lType = 0;
    EXPECT_EQ(RegReadValue(hRoot, szKey, "V", iByte, lType), 0);
    RegReadValue(hRoot, szKey, "v", iShort, lType);
    RegReadValue(hRoot, szKey, "v", lLong, lType);
    EXPECT_TRUE(iByte == aCase.iByte && iShort == aCase.iShort && lLong == aCase.lLong) << aCase.szText;
    EXPECT_EQ(Stored::Get(szKey, "v"), aCase.szText);
  }
}

TEST_F(RegistryAccessTest, WhatCannotBeReadOrWrittenLeavesTheOther) {
  const struct {
    const char *szPath, *szName;
    std::uint32_t lStoredType;  // 0: not stored
    std::string szBytes;
    int lCode, lType;
    std::string szValue;
  } aCases[] = {
      {szKey, "missing", 0, "", 2, 9, "before"},
      {"Software\\None", "v", 0, "", 6, 9, "before"},
      {szKey, "binary", Registry::REG_BINARY, "xyz", -1, 0, "before"},
      {szKey, "size 0", Registry::REG_SZ, "", 0, 9, "before"},
      {szKey, "inner NUL", Registry::REG_SZ, "a\0b\0"s, 0, 1, "a\0b"s},
      {szKey, "8 bytes", Registry::REG_DWORD, "12345678", 234, 4, "before"},
  };
  for (const auto& aCase : aCases) {
    if (aCase.lStoredType != 0)
      RawRegistry::Put(aCase.szPath, aCase.szName, aCase.lStoredType, aCase.szBytes);
    Variant aValue = "before";
    std::int32_t lType = 9;
    EXPECT_EQ(RegReadValue(hRoot, aCase.szPath, aCase.szName, aValue, lType), aCase.lCode) << aCase.szName;
    EXPECT_EQ(lType, aCase.lType) << aCase.szName;
    EXPECT_EQ(std::get<std::string>(aValue), aCase.szValue) << aCase.szName;
  }
  Stored::Put(szKey, "v", "kept");
  EXPECT_EQ(RegWriteValue(hRoot, szKey, "v", "new", 3), 0);
  EXPECT_EQ(RegWriteValue(hRoot, szKey, "v", "abc", 4), Registry::lInvalidParameter);
  EXPECT_EQ(Stored::Get(szKey, "v"), "kept");
  EXPECT_EQ(RegWriteValue(hRoot, szKey, "v", "0042", 4), 0);
  EXPECT_EQ(RawRegistry::Get(szKey, "v"), "\x2A\0\0\0"s);
  EXPECT_EQ(RegWriteValue(hRoot, "Software\\None", "v", 1, 4), 6);
  EXPECT_EQ(RegRemoveValue(hRoot, "Software\\None", "v"), 6);
}

TEST_F(RegistryAccessTest, ListsUpToTheirBounds) {
  for (const char* szName : {"a", "B b", "c", "d"})
    RegCreatePath(hRoot, std::string(szKey) + "\\" + szName);
  const struct {
    const char* szPath;
    int lMaxIndex, lBuffer, lCount, lEnd;
    std::string szNames;
  } aCases[] = {
      {szKey, 0, 0, 4, 259, "a\0B b\0c\0d\0"s},
      {szKey, 1, 3, 2, 0, "a\0B b\0"s},
      {"Software\\Test\\a", 1000, 1000, 0, 259, ""},
      {"Software\\None", 1000, 1000, 0, 6, ""},
  };
  std::int32_t lCount = 9;
  for (const auto& aCase : aCases) {
    std::string szNames = "before";
    std::int32_t lMaxIndex = aCase.lMaxIndex, lBuffer = aCase.lBuffer, lEnd = 0;
    EXPECT_EQ(RegListKeys(hRoot, aCase.szPath, szNames, lCount, lMaxIndex, lBuffer, &lEnd), 0);
    EXPECT_EQ(szNames, aCase.szNames);
    EXPECT_TRUE(lCount == aCase.lCount && lEnd == aCase.lEnd && lMaxIndex * lBuffer > 0) << lCount << lEnd;
  }
  std::vector<RegValueEntry> aEntries(7);
  std::int32_t lFirst = 0, lLimit = 0;
  EXPECT_EQ(RegListValues(hRoot, "Software\\None", aEntries, lCount, lFirst, lLimit), 6);
  EXPECT_EQ(RegListValues(hRoot, szKey, aEntries, lCount, lFirst, lLimit), 0);
  EXPECT_TRUE(lCount == 0 && aEntries.size() == 1U && lFirst * 1000 + lLimit == 50256);
  Stored::Put(szKey, "one", " 12345678 ");
  Stored::Put(szKey, "two", -2);
  RawRegistry::Put(szKey, "three", Registry::REG_BINARY, "x");
  Stored::Put(szKey, "zlong", std::string(20, 'x'));
  lLimit = 12;
  EXPECT_EQ(RegListValues(hRoot, szKey, aEntries, lCount, lFirst, lLimit), 0);
  std::vector<std::string> aSeen;
  for (const auto& aEntry : aEntries) {
    const auto* pText = std::get_if<std::string>(&aEntry.Value);
    aSeen.push_back(aEntry.Name + ":" + std::to_string(aEntry.Type) + (pText != nullptr ? *pText : ""));
  }
  std::ranges::sort(aSeen);
  EXPECT_EQ(aSeen, (std::vector<std::string>{":0", "one:112345678", "three:-1", "two:4", "zlong:1"}));
  for (int i = 0; i < 9; ++i)
    Stored::Put(szKey, "v" + std::to_string(i), i);  // 13 values, one more than the limit
  EXPECT_EQ(RegListValues(hRoot, szKey, aEntries, lCount, lFirst, lLimit), 0);
  EXPECT_TRUE(lCount == 12 && aEntries.size() == 13U);
}

TEST_F(RegistryAccessTest, SortsTheSlotsThatCount) {
  using Records = std::vector<std::pair<Variant, Variant>>;
  const Records aRecords = {{9, "0"}, {10, "a"}, {9, "b"}, {{}, "c"}, {-1, "d"}, {1, "e"}};
  const struct {
    Records aRecords;
    std::int32_t lCount;
    bool bAscending;
    const char* szOrder;
  } aCases[] = {{aRecords, 5, true, "0dceba"},
                {aRecords, 5, false, "0abecd"},
                {aRecords, 3, true, "0cbade"},
                {aRecords, 99, true, "0dceba"},
                {{{0, "0"}, {"b", "b"}, {"a", "a"}, {7, "7"}}, 3, true, "07ab"}};
  for (auto aCase : aCases) {
    SortKeyedRecords(aCase.aRecords, aCase.lCount, aCase.bAscending);
    std::string szOrder;
    for (const auto& aRecord : aCase.aRecords)
      szOrder += std::get<std::string>(aRecord.second);
    EXPECT_EQ(szOrder, aCase.szOrder);
  }
}

}  // namespace
