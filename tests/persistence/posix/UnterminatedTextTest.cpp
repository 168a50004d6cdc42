// Windows itself ends the text of a value with a NUL; here a value can lie in the store without one.
#include <gtest/gtest.h>

#include "persistence/RegistryAccess.h"
#include "support/RawRegistry.h"
#include "support/TestHome.h"

TEST(UnterminatedText, LosesItsLastCharacter) {
  const TestHome aHome;
  RawRegistry::Put("Software\\Test", "no NUL", Registry::REG_SZ, "abc");
  std::string szValue = "before";
  std::int32_t lType = 9;
  EXPECT_EQ(
      RegistryAccess::RegReadValue(Registry::HKEY_LOCAL_MACHINE, "Software\\Test", "no NUL", szValue, lType),
      0);
  EXPECT_EQ(szValue, "ab");
}
