#include <gtest/gtest.h>

#include "persistence/ProductKeys.h"
#include "persistence/RegFile.h"
#include "persistence/Utf16.h"
#include "support/RawRegistry.h"
#include "support/TestHome.h"

using namespace Registry;
using namespace std::string_literals;
using RawRegistry::Get;
using RawRegistry::Put;

namespace {

const std::string szBase = ProductKeys::szBase;
const std::string szHeader = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string szKeyLine = "[HKEY_LOCAL_MACHINE\\" + szBase + "]\r\n";
const std::string szGone = "[-" + szKeyLine.substr(1);

// What Compose gives, as 8-bit text.
std::string Composed() {
  const auto szBytes = RegFile::Compose();
  EXPECT_TRUE(szBytes.starts_with("\xFF\xFE"));
  return Utf16::ToBytes(Utf16::FromLittleEndian(szBytes.substr(2)));
}

class RegFileTest : public testing::Test {
 protected:
  TestHome aHome;
  std::string szError;
};

TEST_F(RegFileTest, LooksAsTheRegistryEditorWritesIt) {
  EXPECT_EQ(szHeader, Composed());  // nothing stored yet
  Put(szBase + "\\Settings\\Timer", "Interval", REG_DWORD, "\x3C\0\0\0"s);
  Put(szBase + "\\Address\\a.test/a%5cb", "URL", REG_SZ, "a.test/a\\\"b\"\0"s);
  Put(szBase + "\\Address\\a.test/a%5cb", "", REG_SZ, "\0"s);
  Put(szBase, "Long", REG_BINARY, std::string(26, '\xAB'));
  EXPECT_EQ(szHeader + szKeyLine +
                "\"Long\"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\\\r\n"
                "  ab,ab,ab,ab\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Address]\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Address\\a.test/a%5cb]\r\n"
                "\"URL\"=\"a.test/a\\\\\\\"b\\\"\"\r\n@=\"\"\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Settings]\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Settings\\Timer]\r\n"
                "\"Interval\"=dword:0000003c\r\n\r\n",
            Composed());
}

TEST_F(RegFileTest, EveryValueComesBackByteForByte) {
  const std::string szKey = szBase + "\\caf\xE9\\[Key]", szName = "V\xC3\xA9\"";
  const std::pair<std::uint32_t, std::string> aValues[] = {
      {REG_SZ, "\0"s},
      {REG_SZ, "C:\\Logs\\\0"s},
      {REG_SZ, "\"\\\"\0"s},
      {REG_SZ, "two\r\nlines\0"s},
      {REG_SZ, "no NUL"},
      {REG_SZ, ""},
      {REG_SZ, "caf\xC3\xA9 \xF0\x9F\x90\xA6\0"s},
      {REG_SZ, "caf\xE9 \xC3\x28 \xED\xA0\x80 \xF5\xFF\0"s},  // no UTF-8
      {REG_DWORD, "\xFF\xFE\xFD\xFC"},
      {REG_DWORD, "abc"},
      {REG_BINARY, std::string(300, '\0')},
      {7, "a\0b\0\0"s},
      {0xFFFF, "x"},
  };
  for (const auto& aValue : aValues)
    Put(szKey, szName + std::to_string(&aValue - aValues), aValue.first, aValue.second);
  const auto szFile = RegFile::Compose();
  ASSERT_TRUE(RegFile::Apply("\xFF\xFE" + Utf16::LittleEndian(Utf16::FromBytes(szHeader + szGone)), szError));
  EXPECT_EQ(szHeader, Composed());
  ASSERT_TRUE(RegFile::Apply(szFile, szError)) << szError;
  EXPECT_TRUE(szFile == RegFile::Compose());
  for (const auto& aValue : aValues)
    EXPECT_EQ(aValue.second, Get(szKey, szName + std::to_string(&aValue - aValues)));
}

TEST_F(RegFileTest, IsReadInEveryFormAndByHand) {
  const std::string szText =
      "Windows Registry Editor Version 5.00\n; by hand\n\n  "
      "[hkey_local_machine\\SOFTWARE\\tamsel\\kestrova\\Log]  \n"
      "\"Path\" = \"D:\\\\Logs \\\"x\\\"\"\n\"Number\"=DWORD:1F\n\"Bytes\"=hex:01, 2,\\\n  "
      "ff\n\"None\"=hex:\n"
      "\"Old\"=-\n\"Wide\"=hex(2):e9,00,00,00\n\n[-HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Gone]";
  const auto szWide = Utf16::FromBytes(szText);
  std::u16string szSwapped;
  for (const char16_t lUnit : szWide)
    szSwapped += static_cast<char16_t>(lUnit << 8 | lUnit >> 8);
  const std::pair<const char*, std::string> aExpected[] = {{"Log\\path", "D:\\Logs \"x\"\0"s},
                                                           {"Log\\Number", "\x1F\0\0\0"s},
                                                           {"Log\\Bytes", "\x01\x02\xFF"},
                                                           {"Log\\None", ""},
                                                           {"Log\\Wide", "\xC3\xA9\0"s},
                                                           {"Log\\Old", "[2]"},
                                                           {"Gone\\v", "[6]"}};
  for (const auto& szForm : {szText, "\xEF\xBB\xBF" + szText, "\xFF\xFE" + Utf16::LittleEndian(szWide),
                             "\xFE\xFF" + Utf16::LittleEndian(szSwapped)}) {
    Put(szBase + "\\Log", "Old", REG_SZ, "x");
    Put(szBase + "\\Gone\\Deep\\Deeper", "v", REG_SZ, "x");
    ASSERT_TRUE(RegFile::Apply(szForm, szError)) << szError;
    for (const auto& [szPath, szValue] : aExpected) {
      const std::string szWhole = szBase + "\\" + szPath;
      const auto lName = szWhole.rfind('\\');
      EXPECT_EQ(szValue, Get(szWhole.substr(0, lName), szWhole.substr(lName + 1))) << szPath;
    }
  }
}

TEST_F(RegFileTest, AFileWithOneBadLineChangesNothing) {
  const std::string szKey = szHeader + szKeyLine, szRoot = szHeader + "[HKEY_LOCAL_MACHINE\\";
  const struct {
    const char* szError;
    std::vector<std::string> aTexts;
  } aCases[] = {
      {"no registry file", {"", "REGEDIT4\r\n\r\n" + szKeyLine, "\xFF\xFE"}},
      {"Line 3",
       {szHeader + "\"a\"=\"b\"", szRoot + "Software\\Tamsel]", szRoot + "Software\\Tamsel\\KestrovaX]",
        szHeader + "[HKEY_CURRENT_USER\\Software\\Tamsel\\Kestrova]",
        szHeader + "[-HKEY_LOCAL_MACHINE\\Software]", szRoot + szBase, szRoot + szBase + "\\\\x]",
        szRoot + szBase + "\\" + std::string(256, 'k') + "]"}},
      {"Line 4",
       {szHeader + "[-HKEY_LOCAL_MACHINE\\" + szBase + "\\x]\r\n\"a\"=\"b\"", szKey + "\"a\"=\"b",
        szKey + "\"a\"=\"b\\", szKey + "\"a\"=\"b\"c", szKey + "\"a=\"b\"", szKey + "a=b", szKey + "\"a\"",
        szKey + "\"a\"=dword:123456789", szKey + "\"a\"=dword:", szKey + "\"a\"=dword:-1",
        szKey + "\"a\"=hex:1,zz", szKey + "\"a\"=hex(2):1", szKey + "\"a\"=hex(2:1",
        szKey + "\"a\0b\"=\"x\""s}},
      {"Line 5", {szKey + "\"a\"=hex:01,\\"}},
      {"Line 6", {szKey + "\"a\"=hex:01,\\\r\n02,\\\r\n03;"}},
  };
  ASSERT_EQ(lSuccess, Put(szBase, "kept", REG_SZ, "x"));
  const auto szBefore = RegFile::Compose();
  for (const auto& aCase : aCases)
    for (const auto& szText : aCase.aTexts) {
      // A good change follows; it is not to be made either.
      EXPECT_FALSE(RegFile::Apply(szText + "\r\n" + szGone, szError)) << szText;
      EXPECT_NE(std::string::npos, szError.find(aCase.szError)) << szText << ": " << szError;
      EXPECT_TRUE(szBefore == RegFile::Compose()) << szText;
    }
  CloseStore();
  aHome.Write("registry.db", "damaged");  // unreadable is not empty
  EXPECT_EQ("", RegFile::Compose());
  EXPECT_FALSE(RegFile::Apply(szKey + "\"a\"=\"b\"\r\n", szError));
  EXPECT_NE(std::string::npos, szError.find("Error: 5")) << szError;
}

}  // namespace
