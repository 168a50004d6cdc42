// The registry's rules as every system's own keeps them: the same cases hold for the store on SQLite and for
// the registry of Windows. They work below a key of their own and remove it.
#include <gtest/gtest.h>

#include <array>
#include <chrono>

#include "platform/Registry.h"
#include "platform/Text.h"
#include "support/TestHome.h"

using namespace Registry;

namespace {

constexpr std::uint32_t lFullAccess = 0x3F;
constexpr char szBase[] = "Software\\KestrovaRegistryTest";

class RegistryTest : public testing::Test {
 protected:
  RegistryTest() {
    RemoveTree(szBase);
    hBase = Create(HKEY_CURRENT_USER, szBase);
  }
  ~RegistryTest() override {
    RegCloseKey(hBase);
    RemoveTree(szBase);
  }

  static Key Create(Key hParent, const std::string& szPath) {
    Key hKey = 0;
    EXPECT_EQ(lSuccess, RegCreateKeyExA(hParent, szPath.c_str(), lFullAccess, hKey)) << szPath;
    return hKey;
  }
  static std::int32_t Open(Key hParent, const std::string& szPath) {
    Key hKey = 0;
    const auto lCode = RegOpenKeyExA(hParent, szPath.c_str(), lFullAccess, hKey);
    EXPECT_EQ(lCode == lSuccess, hKey != 0);
    if (hKey != 0) RegCloseKey(hKey);
    return lCode;
  }
  static std::int32_t SetText(Key hKey, const std::string& szName, const std::string& szText) {
    return RegSetValueExA(hKey, szName.c_str(), REG_SZ, szText.c_str(),
                          static_cast<std::uint32_t>(szText.size() + 1));
  }
  // The text without its NUL, or the code in brackets.
  static std::string GetText(Key hKey, const std::string& szName) {
    std::array<char, 1024> aBuffer{};
    std::uint32_t lSize = aBuffer.size();
    const auto lCode = RegQueryValueExA(hKey, szName.c_str(), nullptr, aBuffer.data(), &lSize);
    return lCode == lSuccess ? std::string(aBuffer.data(), lSize - 1) : "[" + std::to_string(lCode) + "]";
  }
  static std::vector<std::string> Keys(Key hKey) {
    std::vector<std::string> aNames;
    std::array<char, 256> aName{};
    while (RegEnumKeyA(hKey, static_cast<std::uint32_t>(aNames.size()), aName.data(), 256) == lSuccess)
      aNames.emplace_back(aName.data());
    return aNames;
  }
  static std::vector<std::string> Values(Key hKey) {
    std::vector<std::string> aNames;
    std::array<char, 256> aName{};
    for (std::uint32_t lSize = 256;
         RegEnumValueA(hKey, static_cast<std::uint32_t>(aNames.size()), aName.data(), &lSize, nullptr,
                       nullptr, nullptr) == lSuccess;
         lSize = 256) {
      aNames.emplace_back(aName.data(), lSize);
    }
    return aNames;
  }
  static void RemoveTree(const std::string& szPath) {
    Key hKey = 0;
    if (RegOpenKeyExA(HKEY_CURRENT_USER, szPath.c_str(), lFullAccess, hKey) != lSuccess) return;
    const auto aNames = Keys(hKey);
    RegCloseKey(hKey);
    for (const auto& szName : aNames)
      RemoveTree(szPath + "\\" + szName);
    RegDeleteKeyA(HKEY_CURRENT_USER, szPath.c_str());
  }

  TestHome aHome;
  Key hBase = 0;
};

using Names = std::vector<std::string>;

TEST_F(RegistryTest, KeysMatchWithoutCaseAndKeepTheCaseTheyWereMadeWith) {
  RegCloseKey(Create(hBase, "One\\Two\\Three"));
  RegCloseKey(Create(hBase, "ONE\\tWO\\www.Example.com/a?b"));
  EXPECT_EQ(lSuccess, Open(hBase, "one\\two\\THREE"));
  EXPECT_EQ(lSuccess, Open(HKEY_CURRENT_USER, Text::UpperCase(szBase) + "\\One\\Two\\"));
  EXPECT_EQ(lNotFound, Open(hBase, "One\\Three"));
  EXPECT_EQ(lNotFound, Open(HKEY_LOCAL_MACHINE, szBase));  // the roots are apart
  EXPECT_EQ(Names{"One"}, Keys(hBase));
  const auto hTwo = Create(hBase, "one\\two");
  EXPECT_EQ((Names{"Three", "www.Example.com/a?b"}), Keys(hTwo));
  RegCloseKey(hTwo);
}

TEST_F(RegistryTest, SubkeysAreListedByNameWhateverTheOrderTheyWereMadeIn) {
  for (const char* const szName : {"b", "C", "a", "Domain10", "Domain2", "_"})
    RegCloseKey(Create(hBase, szName));
  EXPECT_EQ((Names{"_", "a", "b", "C", "Domain10", "Domain2"}), Keys(hBase));
}

TEST_F(RegistryTest, DeletingAKey) {
  RegCloseKey(Create(hBase, "A\\B"));
  EXPECT_EQ(lAccessDenied, RegDeleteKeyA(hBase, "A"));  // has a subkey
  EXPECT_EQ(lNotFound, RegDeleteKeyA(hBase, "A\\C"));
  EXPECT_EQ(lSuccess, RegDeleteKeyA(hBase, "a\\b"));
  EXPECT_EQ(lNotFound, RegDeleteKeyA(hBase, "A\\B"));
  const auto hA = Create(hBase, "A");
  EXPECT_EQ(lSuccess, SetText(hA, "v", "1"));
  RegCloseKey(hA);
  EXPECT_EQ(lSuccess, RegDeleteKeyA(hBase, "A\\"));  // an empty last part is the key before it
  EXPECT_EQ(lNotFound, Open(hBase, "A"));
  const auto hAgain = Create(hBase, "A");
  EXPECT_EQ(Names{}, Values(hAgain));  // a new key has none of the old one's values
  EXPECT_NE(lSuccess, RegDeleteKeyA(HKEY_CURRENT_USER, ""));
  RegCloseKey(hAgain);
}

TEST_F(RegistryTest, ValuesMatchWithoutCaseAndKeepTypeAndBytes) {
  EXPECT_EQ(lSuccess, SetText(hBase, "Timeout", "30"));
  EXPECT_EQ("30", GetText(hBase, "TimeOut"));
  const std::int32_t lNumber = -2;
  EXPECT_EQ(lSuccess, RegSetValueExA(hBase, "TIMEOUT", REG_DWORD, &lNumber, 4));
  EXPECT_EQ(Names{"Timeout"}, Values(hBase));
  std::uint32_t lType = 0;
  std::int32_t lRead = 0;
  std::uint32_t lSize = 4;
  EXPECT_EQ(lSuccess, RegQueryValueExA(hBase, "timeout", &lType, &lRead, &lSize));
  EXPECT_EQ(REG_DWORD, lType);
  EXPECT_EQ(-2, lRead);
  EXPECT_EQ(lSuccess, RegSetValueExA(hBase, "Empty", REG_BINARY, nullptr, 0));
  EXPECT_EQ(lSuccess, RegQueryValueExA(hBase, "Empty", &lType, nullptr, &lSize));
  EXPECT_EQ(REG_BINARY, lType);
  EXPECT_EQ(0U, lSize);
  EXPECT_EQ(lSuccess, SetText(hBase, "", "the key's own"));
  EXPECT_EQ("the key's own", GetText(hBase, ""));
  EXPECT_EQ(lSuccess, RegDeleteValueA(hBase, "tImEoUt"));
  EXPECT_EQ(lNotFound, RegDeleteValueA(hBase, "Timeout"));
  EXPECT_EQ("[2]", GetText(hBase, "Timeout"));
}

TEST_F(RegistryTest, BuffersThatAreTooSmallAreLeftAloneAndTheNeededSizeIsTold) {
  EXPECT_EQ(lSuccess, SetText(hBase, "Value", "12345"));
  RegCloseKey(Create(hBase, "Subkey"));
  std::uint32_t lSize = 0;
  EXPECT_EQ(lSuccess, RegQueryValueExA(hBase, "Value", nullptr, nullptr, &lSize));
  EXPECT_EQ(6U, lSize);
  std::array<char, 8> aBuffer{"xxxxxxx"};
  lSize = 5;
  EXPECT_EQ(lMoreData, RegQueryValueExA(hBase, "Value", nullptr, aBuffer.data(), &lSize));
  EXPECT_EQ(6U, lSize);
  EXPECT_EQ(lInvalidParameter, RegQueryValueExA(hBase, "Value", nullptr, aBuffer.data(), nullptr));
  EXPECT_EQ(lMoreData, RegEnumKeyA(hBase, 0, aBuffer.data(), 6));
  EXPECT_EQ(lSuccess, RegEnumKeyA(hBase, 0, aBuffer.data(), 7));
  EXPECT_EQ(lNoMoreItems, RegEnumKeyA(hBase, 1, aBuffer.data(), 7));
  std::uint32_t lName = 5;
  EXPECT_EQ(lMoreData, RegEnumValueA(hBase, 0, aBuffer.data(), &lName, nullptr, nullptr, nullptr));
  lName = 6;
  lSize = 5;
  std::array<char, 8> aData{};
  EXPECT_EQ(lMoreData, RegEnumValueA(hBase, 0, aBuffer.data(), &lName, nullptr, aData.data(), &lSize));
  lName = 6;
  lSize = 6;
  EXPECT_EQ(lSuccess, RegEnumValueA(hBase, 0, aBuffer.data(), &lName, nullptr, aData.data(), &lSize));
  EXPECT_EQ(5U, lName);
  EXPECT_STREQ("12345", aData.data());
  lName = 6;
  EXPECT_EQ(lNoMoreItems, RegEnumValueA(hBase, 1, aBuffer.data(), &lName, nullptr, nullptr, nullptr));
}

TEST_F(RegistryTest, AKeyThatIsNoneOrClosedIsAnInvalidHandle) {
  const auto hClosed = Create(hBase, "Closed");
  EXPECT_EQ(lSuccess, RegCloseKey(hClosed));
  for (const Key hKey : {Key{0}, hClosed}) {
    std::array<char, 256> aName{};
    std::uint32_t lSize = 256;
    Key hResult = 1;
    EXPECT_EQ(lInvalidHandle, RegOpenKeyExA(hKey, "x", lFullAccess, hResult));
    EXPECT_EQ(Key{0}, hResult);
    EXPECT_EQ(lInvalidHandle, RegCreateKeyExA(hKey, "x", lFullAccess, hResult));
    EXPECT_EQ(lInvalidHandle, RegQueryValueExA(hKey, "x", nullptr, nullptr, &lSize));
    EXPECT_EQ(lInvalidHandle, SetText(hKey, "x", "y"));
    EXPECT_EQ(lInvalidHandle, RegDeleteValueA(hKey, "x"));
    EXPECT_EQ(lInvalidHandle, RegDeleteKeyA(hKey, "x"));
    EXPECT_EQ(lInvalidHandle, RegEnumKeyA(hKey, 0, aName.data(), 256));
    EXPECT_EQ(lInvalidHandle, RegEnumValueA(hKey, 0, aName.data(), &lSize, nullptr, nullptr, nullptr));
    EXPECT_EQ(lInvalidHandle, RegCloseKey(hKey));
  }
}

TEST_F(RegistryTest, AThousandKeysAndValuesAreListedInNoTime) {
  {
    const Transaction aOneCommit;
    for (int i = 0; i < 1000; ++i) {
      RegCloseKey(Create(hBase, "www.site" + std::to_string(i) + ".example"));
      EXPECT_EQ(lSuccess, SetText(hBase, "Domain" + std::to_string(i), "x"));
    }
  }
  const auto aStart = std::chrono::steady_clock::now();
  EXPECT_EQ(1000U, Keys(hBase).size());
  EXPECT_EQ(1000U, Values(hBase).size());
  const std::chrono::duration<double> aTaken = std::chrono::steady_clock::now() - aStart;
  EXPECT_LT(aTaken.count(), 0.5);  // listing anew for each index took seconds
}

TEST_F(RegistryTest, AListingSeesWhatIsChangedWhileItRuns) {
  for (const char* const szName : {"a", "b", "c"})
    RegCloseKey(Create(hBase, szName));
  std::array<char, 256> aName{};
  EXPECT_EQ(lSuccess, RegEnumKeyA(hBase, 0, aName.data(), 256));
  EXPECT_EQ(lSuccess, RegDeleteKeyA(hBase, "a"));
  EXPECT_EQ(lSuccess, RegEnumKeyA(hBase, 0, aName.data(), 256));
  EXPECT_STREQ("b", aName.data());
  EXPECT_EQ(Names{}, Values(hBase));
  EXPECT_EQ(lSuccess, SetText(hBase, "new", "1"));
  EXPECT_EQ(Names{"new"}, Values(hBase));
}

}  // namespace
