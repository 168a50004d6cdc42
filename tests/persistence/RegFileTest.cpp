#include <gtest/gtest.h>

#include "persistence/ProductKeys.h"
#include "persistence/RegFile.h"
#include "persistence/Utf16.h"
#include "platform/Registry.h"
#include "support/TestHome.h"

using namespace Registry;

namespace {

const std::string szBase = ProductKeys::szBase;
const std::string szHeader = "Windows Registry Editor Version 5.00\r\n\r\n";
const std::string szKeyLine = "[HKEY_LOCAL_MACHINE\\" + szBase + "]\r\n";

std::int32_t Write(const std::string& szPath, const std::string& szName, std::uint32_t lType,
                   const std::string& szData) {
  Key hKey = 0;
  RegCreateKeyExA(HKEY_LOCAL_MACHINE, szPath.c_str(), 0x3F, hKey);
  const auto lCode =
      RegSetValueExA(hKey, szName.c_str(), lType, szData.data(), static_cast<std::uint32_t>(szData.size()));
  RegCloseKey(hKey);
  return lCode;
}

std::string WithNul(const std::string& szText) {
  return szText + '\0';
}

// The bytes of a value, or the code.
std::string Read(const std::string& szPath, const std::string& szName) {
  Key hKey = 0;
  RegOpenKeyExA(HKEY_LOCAL_MACHINE, szPath.c_str(), 0x3F, hKey);
  std::string szData(4096, '\0');
  std::uint32_t lSize = 4096;
  const auto lCode = RegQueryValueExA(hKey, szName.c_str(), nullptr, szData.data(), &lSize);
  RegCloseKey(hKey);
  return lCode == lSuccess ? szData.substr(0, lSize) : "code " + std::to_string(lCode);
}

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
  Write(szBase + "\\Settings\\Timer", "Interval", REG_DWORD, std::string("\x3C\0\0\0", 4));
  Write(szBase + "\\Address\\www.example.com/a%5cb", "URL", REG_SZ, WithNul("www.example.com/a\\\"b\""));
  Write(szBase + "\\Address\\www.example.com/a%5cb", "", REG_SZ, WithNul(""));
  Write(szBase, "Long", REG_BINARY, std::string(26, '\xAB'));
  EXPECT_EQ(szHeader + szKeyLine +
                "\"Long\"=hex:ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,ab,\\\r\n"
                "  ab,ab,ab,ab\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Address]\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Address\\www.example.com/a%5cb]\r\n"
                "\"URL\"=\"www.example.com/a\\\\\\\"b\\\"\"\r\n@=\"\"\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Settings]\r\n\r\n"
                "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\Kestrova\\Settings\\Timer]\r\n"
                "\"Interval\"=dword:0000003c\r\n\r\n",
            Composed());
}

TEST_F(RegFileTest, EveryValueComesBackByteForByte) {
  const std::pair<std::uint32_t, std::string> aValues[] = {
      {REG_SZ, WithNul("plain")},
      {REG_SZ, WithNul("")},
      {REG_SZ, WithNul("C:\\Logs\\")},
      {REG_SZ, WithNul("\"\\\"")},
      {REG_SZ, WithNul("two\r\nlines")},
      {REG_SZ, "no NUL"},
      {REG_SZ, ""},
      {REG_SZ, WithNul("caf\xC3\xA9 \xF0\x9F\x90\xA6")},
      {REG_SZ, WithNul("caf\xE9 \xC3\x28 \xED\xA0\x80 \xF5\xFF")},  // no UTF-8
      {REG_DWORD, std::string("\xFF\xFE\xFD\xFC", 4)},
      {REG_DWORD, "abc"},
      {REG_BINARY, std::string(300, '\0')},
      {2, WithNul("%PATH%")},
      {7, WithNul("a") + WithNul("b") + '\0'},
      {0xFFFF, "x"},
  };
  int i = 0;
  for (const auto& [lType, szData] : aValues)
    EXPECT_EQ(lSuccess,
              Write(szBase + "\\caf\xE9\\[Key]", "V\xC3\xA9\"" + std::to_string(i++), lType, szData));
  const auto szFile = RegFile::Compose();
  ASSERT_TRUE(RegFile::Apply(Utf16::LittleEndian(u"\uFEFF") +
                                 Utf16::LittleEndian(Utf16::FromBytes(szHeader + "[-" + szKeyLine.substr(1))),
                             szError))
      << szError;
  EXPECT_EQ(szHeader, Composed());
  ASSERT_TRUE(RegFile::Apply(szFile, szError)) << szError;
  EXPECT_TRUE(szFile == RegFile::Compose());
  i = 0;
  for (const auto& [lType, szData] : aValues)
    EXPECT_EQ(szData, Read(szBase + "\\CAF\xE9\\[Key]", "V\xC3\xA9\"" + std::to_string(i++)));
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
  const std::string aForms[] = {szText, "\xEF\xBB\xBF" + szText, "\xFF\xFE" + Utf16::LittleEndian(szWide),
                                "\xFE\xFF" + Utf16::LittleEndian(szSwapped)};
  for (const auto& szForm : aForms) {
    Write(szBase + "\\Log", "Old", REG_SZ, WithNul("x"));
    Write(szBase + "\\Gone\\Deep\\Deeper", "v", REG_SZ, WithNul("x"));
    ASSERT_TRUE(RegFile::Apply(szForm, szError)) << szError;
    EXPECT_EQ(WithNul("D:\\Logs \"x\""), Read(szBase + "\\Log", "path"));
    EXPECT_EQ(std::string("\x1F\0\0\0", 4), Read(szBase + "\\Log", "Number"));
    EXPECT_EQ("\x01\x02\xFF", Read(szBase + "\\Log", "Bytes"));
    EXPECT_EQ("", Read(szBase + "\\Log", "None"));
    EXPECT_EQ(WithNul("\xC3\xA9"), Read(szBase + "\\Log", "Wide"));
    EXPECT_EQ("code 2", Read(szBase + "\\Log", "Old"));
    EXPECT_EQ("code 6", Read(szBase + "\\Gone", "v"));
  }
}

TEST_F(RegFileTest, AFileWithOneBadLineChangesNothing) {
  const std::pair<std::string, std::string> aCases[] = {
      {"", "no registry file"},
      {"REGEDIT4\r\n\r\n" + szKeyLine, "no registry file"},
      {"\xFF\xFE", "no registry file"},
      {szHeader + "\"a\"=\"b\"\r\n", "Line 3"},
      {szHeader + "[HKEY_LOCAL_MACHINE\\Software\\Tamsel]\r\n", "Line 3"},
      {szHeader + "[HKEY_LOCAL_MACHINE\\Software\\Tamsel\\KestrovaX]\r\n", "Line 3"},
      {szHeader + "[HKEY_CURRENT_USER\\Software\\Tamsel\\Kestrova]\r\n", "Line 3"},
      {szHeader + "[-HKEY_LOCAL_MACHINE\\Software]\r\n", "Line 3"},
      {szHeader + "[HKEY_LOCAL_MACHINE\\" + szBase + "\r\n", "Line 3"},
      {szHeader + "[HKEY_LOCAL_MACHINE\\" + szBase + "\\\\x]\r\n", "Line 3"},
      {szHeader + "[HKEY_LOCAL_MACHINE\\" + szBase + "\\" + std::string(256, 'k') + "]\r\n", "Line 3"},
      {szHeader + "[-HKEY_LOCAL_MACHINE\\" + szBase + "\\x]\r\n\"a\"=\"b\"\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=\"b\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=\"b\\", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=\"b\"c\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a=\"b\"\r\n", "Line 4"},
      {szHeader + szKeyLine + "a=b\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=dword:123456789\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=dword:\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=dword:-1\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=hex:1,zz\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=hex(2):1\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=hex(2:1\r\n", "Line 4"},
      {szHeader + szKeyLine + "\"a\"=hex:01,\\", "Line 5"},
      {szHeader + szKeyLine + "\"a\"=hex:01,\\\r\n02,\\\r\n03;\r\n", "Line 6"},
      {szHeader + szKeyLine + std::string("\"a\0b\"=\"x\"\r\n", 11), "Line 4"},
  };
  ASSERT_EQ(lSuccess, Write(szBase, "kept", REG_SZ, WithNul("x")));
  const auto szBefore = RegFile::Compose();
  for (const auto& [szText, szExpected] : aCases) {
    // A good change follows; it is not to be made either.
    EXPECT_FALSE(RegFile::Apply(szText + "\r\n[-" + szKeyLine.substr(1), szError)) << szText;
    EXPECT_NE(std::string::npos, szError.find(szExpected)) << szText << ": " << szError;
    EXPECT_TRUE(szBefore == RegFile::Compose()) << szText;
  }
}

TEST_F(RegFileTest, AnUnreadableRegistryIsNotAnEmptyFile) {
  aHome.Write("registry.db", "damaged");
  EXPECT_EQ("", RegFile::Compose());
  EXPECT_FALSE(RegFile::Apply(szHeader + szKeyLine + "\"a\"=\"b\"\r\n", szError));
  EXPECT_NE(std::string::npos, szError.find("Error: 5")) << szError;
}

}  // namespace
