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
    int lCode, lType;
    std::string szValue;
  } aCases[] = {
      {szKey, "missing", 2, 9, "before"},  {"Software\\None", "v", 6, 9, "before"},
      {szKey, "binary", -1, 0, "before"},  {szKey, "size 0", 0, 9, "before"},
      {szKey, "inner NUL", 0, 1, "a\0b"s}, {szKey, "8 bytes", 234, 4, "before"},
  };
  RawRegistry::Put(szKey, "binary", Registry::REG_BINARY, "xyz");
  RawRegistry::Put(szKey, "size 0", Registry::REG_SZ, "");
  RawRegistry::Put(szKey, "inner NUL", Registry::REG_SZ, "a\0b\0"s);
  RawRegistry::Put(szKey, "8 bytes", Registry::REG_DWORD, "12345678");
  for (const auto& aCase : aCases) {
    std::string szValue = "before";
    std::int32_t lType = 9;
    EXPECT_EQ(RegReadValue(hRoot, aCase.szPath, aCase.szName, szValue, lType), aCase.lCode) << aCase.szName;
    EXPECT_TRUE(lType == aCase.lType && szValue == aCase.szValue) << aCase.szName;
  }
  Stored::Put(szKey, "v", "kept");
  EXPECT_EQ(RegWriteValue(hRoot, szKey, "v", "abc", 4), Registry::lInvalidParameter);
  EXPECT_EQ(Stored::Get(szKey, "v"), "kept");
}

TEST_F(RegistryAccessTest, AllValuesOfAKeyAreThoseThatAreReadOneByOne) {
  const std::string szLongName(5000, 'n'), szLongText(70000, 't');
  Stored::Put(szKey, "short", "  blanks stay ");
  Stored::Put(szKey, szLongName, szLongText);
  Stored::Put(szKey, "Number", -5);
  RawRegistry::Put(szKey, "binary", Registry::REG_BINARY, "xyz");
  RawRegistry::Put(szKey, "size 0", Registry::REG_SZ, "");
  RawRegistry::Put(szKey, "8 bytes", Registry::REG_DWORD, "12345678");
  std::vector<RegValueEntry> aEntries;
  EXPECT_EQ(RegReadValues(hRoot, szKey, aEntries), 0);
  EXPECT_EQ(aEntries.size(), 3U);
  for (const auto& szName : {"SHORT"s, szLongName, "number"s}) {
    const auto* const pEntry = FindValue(aEntries, szName);
    ASSERT_NE(pEntry, nullptr) << szName;
    std::string szText;
    TakeValue(aEntries, szName, szText);
    EXPECT_EQ(szText, Stored::Get(szKey, szName));
    EXPECT_EQ(pEntry->Type, szName == "number" ? 4 : 1);
  }
  std::uint8_t iByte = 77;
  TakeValue(aEntries, "missing", iByte);
  EXPECT_EQ(iByte, 77);
  EXPECT_EQ(RegReadValues(hRoot, "Software\\None", aEntries), Registry::lInvalidHandle);
  EXPECT_TRUE(aEntries.empty());
}

}  // namespace
