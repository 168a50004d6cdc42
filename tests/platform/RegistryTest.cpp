// The registry's rules as every system's own keeps them: the same cases hold for the store on SQLite and for
// the registry of Windows.
#include <gtest/gtest.h>

#include <array>

#include "base/Text.h"
#include "platform/Registry.h"
#include "support/TestHome.h"

using namespace Registry;
using Names = std::vector<std::string>;

namespace {

constexpr std::uint32_t lFullAccess = 0x3F;
constexpr char szBase[] = "Software\\KestrovaRegistryTest";

class RegistryTest : public testing::Test {
 protected:
  Key Create(const std::string& szPath, Key hParent = 0) const {
    Key hKey = 0;
    EXPECT_EQ(lSuccess, RegCreateKeyExA(hParent ? hParent : hBase, szPath.c_str(), lFullAccess, hKey));
    return hKey;
  }
  static std::int32_t Open(Key hParent, const std::string& szPath) {
    Key hKey = 1;
    const auto lCode = RegOpenKeyExA(hParent, szPath.c_str(), lFullAccess, hKey);
    EXPECT_EQ(lCode == lSuccess, hKey != 0);
    RegCloseKey(hKey);
    return lCode;
  }
  static std::int32_t SetText(Key hKey, const std::string& szName, const std::string& szText) {
    return RegSetValueExA(hKey, szName.c_str(), REG_SZ, szText.c_str(),
                          static_cast<std::uint32_t>(szText.size() + 1));
  }
  static Names Listed(Key hKey, bool bValues) {
    Names aNames;
    for (std::array<char, 256> aName{};; aNames.emplace_back(aName.data())) {
      const auto lIndex = static_cast<std::uint32_t>(aNames.size());
      std::uint32_t lSize = 256;
      if ((bValues ? RegEnumValueA(hKey, lIndex, aName.data(), &lSize, nullptr, nullptr, nullptr)
                   : RegEnumKeyA(hKey, lIndex, aName.data(), 256)) != lSuccess)
        return aNames;
    }
  }
  TestHome aHome;
  Key hBase = Create(szBase, HKEY_CURRENT_USER);
};

TEST_F(RegistryTest, KeysMatchWithoutCaseAndAreListedByNameAsTheyWereMade) {
  for (const char* const szPath :
       {"b\\Two\\Three", "B\\tWO\\www.Example.com/a?b", "C", "a", "Domain10", "Domain2", "_"})
    RegCloseKey(Create(szPath));
  EXPECT_EQ((Names{"_", "a", "b", "C", "Domain10", "Domain2"}), Listed(hBase, false));
  EXPECT_EQ((Names{"Three", "www.Example.com/a?b"}), Listed(Create("b\\TWO"), false));
  EXPECT_EQ(lSuccess, Open(HKEY_CURRENT_USER, Text::UpperCase(szBase) + "\\B\\Two\\"));
  EXPECT_EQ(lNotFound, Open(HKEY_LOCAL_MACHINE, szBase)) << "the roots are apart";

  EXPECT_EQ(lAccessDenied, RegDeleteKeyA(hBase, "b\\two")) << "has subkeys";
  EXPECT_EQ(lSuccess, SetText(Create("A"), "v", "1"));
  EXPECT_EQ(lSuccess, RegDeleteKeyA(hBase, "A\\")) << "an empty last part is the key before it";
  EXPECT_EQ(lNotFound, RegDeleteKeyA(hBase, "A"));
  EXPECT_EQ(Names{}, Listed(Create("A"), true)) << "a new key has none of the old one's values";
}

}  // namespace
