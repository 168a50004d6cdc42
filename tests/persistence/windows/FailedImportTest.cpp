#include <gtest/gtest.h>

#include "persistence/ProductKeys.h"
#include "persistence/RegFile.h"
#include "support/Stored.h"
#include "support/TestHome.h"

// The system's registry takes each write for itself, so what a failing import has written must be undone.
TEST(FailedImport, LeavesTheKeysAsTheyWere) {
  const TestHome aHome;
  const std::string szBase = ProductKeys::szBase, szKey = "[HKEY_LOCAL_MACHINE\\" + szBase;
  Stored::Put(szBase + "\\Log", "Path", "D:\\Logs");
  const auto szBefore = RegFile::Compose();
  std::string szTooDeep, szError;
  for (int i = 0; i < 200; ++i)
    szTooDeep += "\\" + std::string(200, 'k');  // each name is fine; the path is more than the system takes
  EXPECT_FALSE(RegFile::Apply("Windows Registry Editor Version 5.00\r\n[-" + szKey.substr(1) + "]\r\n" +
                                  szKey + "\\New]\r\n\"a\"=\"b\"\r\n" + szKey + szTooDeep + "]\r\n",
                              szError));
  EXPECT_NE(szError.find("nothing was changed"), std::string::npos) << szError;
  EXPECT_TRUE(RegFile::Compose() == szBefore);
}
