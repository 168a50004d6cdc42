#include <gtest/gtest.h>

#include "persistence/modBasic.h"
#include "platform/Files.h"
#include "support/TestHome.h"

TEST(modBasicTest, MakesFolderPathsAndTellsTextFromOtherFiles) {
  const TestHome aHome;
  const std::string szSeparator(1, Files::chSeparator), szA = aHome.Path("a") + szSeparator;
  EXPECT_EQ(modBasic::MakeFolderPath(" " + szA + szSeparator + "b c" + szSeparator), 0);
  EXPECT_TRUE(Files::FolderExists(szA + "b c"));
  EXPECT_EQ(modBasic::MakeFolderPath("Logs" + szSeparator + "Daily"), 2);
  EXPECT_FALSE(Files::FolderExists("Logs"));
  const std::pair<std::string, int> aFiles[] = {
      {"text\twith\r\nlines \xFF\xE4", 0}, {std::string(255, 'x') + '\0', 1}, {"\x1B[0m", 1}};
  for (const auto& [szBytes, iAnswer] : aFiles) {
    aHome.Write("f", szBytes);
    EXPECT_EQ(modBasic::HasControlCharacters(aHome.Path("f")), iAnswer) << szBytes;
  }
}
