#include <gtest/gtest.h>

#include "base/Utf16.h"
#include "persistence/ProductKeys.h"
#include "persistence/RegFile.h"
#include "persistence/RegistryAccess.h"
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
  Put(szBase + "\\Address\\a.test/a%5cb", "", REG_SZ, "\0"s);
  Put(szBase + "\\Address\\a.test/a%5cb", "URL", REG_SZ, "a.test/a\\\"b\"\0"s);
  Put(szBase, "Long", REG_BINARY, std::string(23, '\xAB'));
  EXPECT_EQ(szHeader + szKeyLine +
                "\"Long\"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\\\r\n"
                "  ab\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Address]\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Address\\a.test/a%5cb]\r\n"
                "@=\"\"\r\n\"URL\"=\"a.test/a\\\\\\\"b\\\"\"\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Settings]\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Settings\\Timer]\r\n"
                "\"Interval\"=dword:0000003c\r\n\r\n",
            Composed());
}

TEST_F(RegFileTest, EveryValueComesBackByteForByte) {
  const std::string szKey = szBase + "\\caf\xE9\\[Key]", szName = "V\xC3\xA9\"";
  const std::pair<std::uint32_t, std::string> aValues[] = {
      {REG_SZ, "\0"s},
      {REG_SZ, "\"\\\"\0"s},
      {REG_SZ, "two\r\nlines\0"s},
      {REG_SZ, "no NUL"},
      {REG_SZ, ""},
      {REG_SZ, "caf\xC3\xA9 \xF0\x9F\x90\xA6\0"s},
      {REG_SZ, "caf\xE9 \xC3\x28 \xED\xA0\x80 \xF5\xFF\0"s},  // no UTF-8
      {REG_DWORD, "\xFF\xFE\xFD\xFC"},
      {REG_BINARY, std::string(300, '\0')},
      {7, "a\0b\0\0"s},
      {0xFFFF, "x"},
  };
  std::vector<std::string>
      aStored;  // a system's own registry ends texts and mends UTF-8 while it stores them
  for (const auto& [lType, szData] : aValues) {
    const auto szValue = szName + std::to_string(aStored.size());
    Put(szKey, szValue, lType, szData);
    aStored.push_back(Get(szKey, szValue));
  }
  const auto szFile = RegFile::Compose();
  ASSERT_TRUE(RegFile::Apply("\xFF\xFE" + Utf16::LittleEndian(Utf16::FromBytes(szHeader + szGone)), szError));
  EXPECT_EQ(szHeader + szKeyLine + "\r\n", Composed());
  ASSERT_TRUE(RegFile::Apply(szFile, szError)) << szError;
  EXPECT_TRUE(szFile == RegFile::Compose());
  for (std::size_t i = 0; i < aStored.size(); ++i)
    EXPECT_EQ(aStored[i], Get(szKey, szName + std::to_string(i)));
}

TEST_F(RegFileTest, IsReadInEveryFormAndByHand) {
  const std::string szText =
      "Windows Registry Editor Version 5.00\n; by hand\n\n  "
      "[hkey_local_machine\\SOFTWARE\\tamsel\\kestrova\\Log]  \n"
      "\"Path\" = \"D:\\\\Logs \\\"x\\\"\"\n\"Number\"=DWORD:1F\n\"Bytes\"=hex:01, 2,\\\n  "
      "ff\n\"Old\"=-\n\"Wide\"=hex(2):e9,00,00,00\n\n"
      "[-HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Log\\Gone]";
  const auto szWide = Utf16::LittleEndian(Utf16::FromBytes(szText));
  std::string szSwapped = szWide;
  for (std::size_t i = 0; i < szSwapped.size(); i += 2)
    std::swap(szSwapped[i], szSwapped[i + 1]);
  const std::string szKey = szBase + "\\Log";
  for (const auto& szForm : {szText, "\xEF\xBB\xBF" + szText, "\xFF\xFE" + szWide, "\xFE\xFF" + szSwapped}) {
    Put(szKey, "Old", REG_SZ, "x");
    Put(szKey + "\\Gone\\Deep", "v", REG_SZ, "x");
    ASSERT_TRUE(RegFile::Apply(szForm, szError)) << szError;
    EXPECT_EQ(Get(szKey, "path"), "D:\\Logs \"x\"\0"s);
    EXPECT_EQ(Get(szKey, "Number"), "\x1F\0\0\0"s);
    EXPECT_EQ(Get(szKey, "Bytes"), "\x01\x02\xFF");
    EXPECT_EQ(Get(szKey, "Wide"), "\xC3\xA9\0"s);
    EXPECT_EQ(Get(szKey, "Old"), "[2]") << "removed by its line";
    EXPECT_EQ(Get(szKey + "\\Gone", "v"), "[6]") << "removed with its key";
    RegistryAccess::RegRemoveKey(HKEY_LOCAL_MACHINE, szKey);
  }
}

TEST_F(RegFileTest, AFileWithOneBadLineChangesNothing) {
  const std::string szKey = szHeader + szKeyLine, szRoot = szHeader + "[HKEY_LOCAL_MACHINE\\";
  const std::string szValue = szKey + "\"a\"=", szContinued = szValue + "hex:01,\\";
  const std::pair<const char*, std::vector<std::string>> aCases[] = {
      {"no registry file", {"", "REGEDIT4\r\n\r\n" + szKeyLine, "\xFF\xFE"}},
      {"Line 3",
       {szHeader + "\"a\"=\"b\"", szRoot + "Software\\Tamsel]", szRoot + "Software\\Tamsel\\KestrovaX]",
        szHeader + "[HKEY_CURRENT_USER\\Software\\Tamsel\\Kestrova]", szRoot + szBase,
        szHeader + "[-HKEY_LOCAL_MACHINE\\Software]", szRoot + szBase + "\\" + std::string(256, 'k') + "]"}},
      {"Line 4",
       {szKey + "a=b", szKey + "\"a\"", szKey + "\"a\0b\"=\"x\""s, szValue + "\"b", szValue + "\"b\"c",
        szValue + "dword:123456789", szValue + "dword:-1", szValue + "hex:1,zz", szValue + "hex(2:1"}},
      {"Line 5", {szContinued}},
      {"Line 6", {szContinued + "\r\n02,\\\r\n03;"}},
  };
  ASSERT_EQ(lSuccess, Put(szBase, "kept", REG_SZ, "x"));
  const auto szBefore = RegFile::Compose();
  for (const auto& [szReason, aTexts] : aCases)
    for (const auto& szText : aTexts) {
      // A good change follows; it is not to be made either.
      EXPECT_FALSE(RegFile::Apply(szText + "\r\n" + szGone, szError)) << szText;
      EXPECT_NE(std::string::npos, szError.find(szReason)) << szText << ": " << szError;
      EXPECT_TRUE(szBefore == RegFile::Compose()) << szText;
    }
}

}  // namespace
