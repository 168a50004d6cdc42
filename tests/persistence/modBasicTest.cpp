#include <gtest/gtest.h>

#include "persistence/modBasic.h"
#include "platform/Files.h"
#include "support/TestHome.h"

TEST(modBasicTest, MakesFolderPathsAndTellsTextFromOtherFiles) {
  const TestHome aHome;
  aHome.Write("file", "x");
  const std::string szSeparator(1, Files::chSeparator), szA = aHome.Path("a") + szSeparator;
  const std::pair<std::string, int> aPaths[] = {{"", 3},
                                                {"   ", 3},
                                                {"Logs" + szSeparator + "Daily", 2},
                                                {szA + szSeparator + szSeparator + "b c" + szSeparator, 0},
                                                {" " + szA + "d ", 0},
                                                {aHome.Path("a"), 0},
                                                {aHome.Path("file") + szSeparator + "x", 1}};
  for (const auto& [szPath, iCode] : aPaths)
    EXPECT_EQ(modBasic::MakeFolderPath(szPath), iCode) << szPath;
  EXPECT_TRUE(Files::FolderExists(szA + "b c") && Files::FolderExists(szA + "d"));
  EXPECT_FALSE(Files::FolderExists("Logs"));

  const std::pair<std::string, int> aFiles[] = {{"", 0},
                                                {"text\twith\r\nlines \xFF\xE4", 0},
                                                {std::string(255, 'x') + '\0', 1},
                                                {std::string(256, 'x') + '\0', 0},
                                                {"\x1B[0m", 1},
                                                {"\x7F", 1}};
  for (const auto& [szBytes, iAnswer] : aFiles) {
    aHome.Write("f", szBytes);
    EXPECT_EQ(modBasic::HasControlCharacters(aHome.Path("f")), iAnswer) << szBytes;
  }
  EXPECT_EQ(modBasic::HasControlCharacters(aHome.Path("none")), -1);
}
