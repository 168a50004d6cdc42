#include <gtest/gtest.h>

#include "persistence/modBasic.h"
#include "platform/Files.h"
#include "support/TestHome.h"

namespace {

TEST(modBasicTest, MakesEveryFolderOfAPath) {
  const TestHome aHome;
  aHome.Write("file", "x");
  const std::string szSeparator(1, Files::chSeparator);
  const struct {
    std::string szPath;
    int iCode;
    const char* szMade;
  } aCases[] = {
      {"", 3, nullptr},
      {"   ", 3, nullptr},
      {"Logs" + szSeparator + "Daily", 2, nullptr},
      {aHome.Path("a") + szSeparator + szSeparator + szSeparator + "b c" + szSeparator, 0, "b c"},
      {" " + aHome.Path("a") + szSeparator + "d ", 0, "d"},
      {aHome.Path("a"), 0, nullptr},
      {aHome.Path("file") + szSeparator + "x", 1, nullptr},
  };
  for (const auto& aCase : aCases) {
    EXPECT_EQ(modBasic::MakeFolderPath(aCase.szPath), aCase.iCode) << aCase.szPath;
    if (aCase.szMade != nullptr) {
      EXPECT_TRUE(Files::FolderExists(aHome.Path("a") + szSeparator + aCase.szMade)) << aCase.szPath;
    }
  }
  EXPECT_FALSE(Files::FolderExists("Logs"));
}

TEST(modBasicTest, TellsTextFromOtherFilesByTheFirst256Bytes) {
  const TestHome aHome;
  const struct {
    std::string szBytes;
    int iAnswer;
  } aCases[] = {
      {"", 0},
      {"text\twith\r\nlines \xFF\xE4", 0},
      {std::string(255, 'x') + '\0', 1},
      {std::string(256, 'x') + '\0', 0},
      {"\x1B[0m", 1},
      {"\x7F", 1},
  };
  for (const auto& aCase : aCases) {
    aHome.Write("f", aCase.szBytes);
    EXPECT_EQ(modBasic::HasControlCharacters(aHome.Path("f")), aCase.iAnswer) << aCase.szBytes;
  }
  EXPECT_EQ(modBasic::HasControlCharacters(aHome.Path("none")), -1);
}

}  // namespace
